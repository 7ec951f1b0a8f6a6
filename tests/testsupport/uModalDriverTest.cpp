#include "uModalDriver.h"
#include "uGuiTools.h"
#include "uTestLoop.h"

#include <QDialog>
#include <QMenu>
#include <QPushButton>

#include <gtest/gtest-spi.h>
#include <gtest/gtest.h>

#include <stdexcept>

namespace {

class TSampleDialog : public QDialog
{
public:
    TSampleDialog()
    {
        setObjectName("dlgSample");
        FButton.setObjectName("butOK");
        connect(&FButton, &QPushButton::clicked, this, &QDialog::accept);
    }
    QPushButton FButton{"OK", this};
};

void ClickOk(QWidget *window)
{
    TGuiTools::Click(window, "butOK");
}

} // namespace

// That it answers is seen by every test with a dialog; that it complains, only here.

TEST(TModalDriverTest, UnexpectedWindowIsAFailureAndIsClosed)
{
    EXPECT_NONFATAL_FAILURE(
        {
            const TModalDriver driver;
            TSampleDialog dialog;
            dialog.exec();
        },
        "Nobody expected");
}

TEST(TModalDriverTest, AnswerNobodyCalledForIsAFailure)
{
    EXPECT_NONFATAL_FAILURE(
        {
            TModalDriver driver;
            driver.Expect("dlgSample", ClickOk);
        },
        "dlgSample");
}

TEST(TModalDriverTest, MissingControlIsAFailureThatNamesWhatIsThere)
{
    EXPECT_NONFATAL_FAILURE(
        {
            TModalDriver driver;
            driver.Expect([](QWidget *window) { TGuiTools::Click(window, "butMissing"); });
            TSampleDialog dialog;
            dialog.exec();
        },
        "butOK");
}

TEST(TGuiToolsTest, RefusesWhatAUserCouldNotDo)
{
    TSampleDialog dialog;
    EXPECT_THROW(ClickOk(&dialog), std::runtime_error) << "not shown yet";
    TGuiTools::Show(&dialog);
    dialog.FButton.setEnabled(false);
    EXPECT_THROW(ClickOk(&dialog), std::runtime_error);
    QMenu menu;
    menu.addAction("Copy")->setEnabled(false);
    EXPECT_THROW(TGuiTools::TriggerEntry(&menu, "Copy"), std::runtime_error);
    EXPECT_THROW(TGuiTools::TriggerEntry(&menu, "Cut"), std::runtime_error);
}

TEST(TTestLoopTest, DeadlineIsAFailure)
{
    EXPECT_NONFATAL_FAILURE(TTestLoop::RunUntil([] { return false; }, 20), "did not come");
}
