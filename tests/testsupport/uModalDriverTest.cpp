#include "uModalDriver.h"
#include "uGuiTools.h"

#include <QDialog>
#include <QPushButton>

#include <gtest/gtest-spi.h>
#include <gtest/gtest.h>

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
