#include "uModalDriver.h"
#include "uGuiTools.h"
#include "uTestLoop.h"

#include <QDialog>
#include <QFileDialog>
#include <QFileInfo>
#include <QImage>
#include <QLineEdit>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTimer>
#include <QVBoxLayout>

#include <gtest/gtest-spi.h>
#include <gtest/gtest.h>

#include <stdexcept>

namespace {

// A dialog as the program has them: an input, and a button that closes it.
class TSampleDialog : public QDialog
{
public:
    TSampleDialog()
    {
        setObjectName("dlgSample");
        auto *layout = new QVBoxLayout(this);
        auto *edit = new QLineEdit("before", this);
        edit->setObjectName("edtName");
        auto *button = new QPushButton("OK", this);
        button->setObjectName("butOK");
        layout->addWidget(edit);
        layout->addWidget(button);
        connect(button, &QPushButton::clicked, this, [this] {
            if (!Question.isEmpty() &&
                QMessageBox::question(this, "Sample", Question) != QMessageBox::Yes)
                return reject();
            accept();
        });
    }

    QString Text() const { return Find<QLineEdit>(this, "edtName")->text(); }

    QString Question; // asked before it closes; none when empty
};

void ClickOk(QWidget *window)
{
    TGuiTools::Click(window, "butOK");
}

} // namespace

TEST(TModalDriverTest, AnswersDialogAndTheQuestionItAsks)
{
    struct
    {
        QMessageBox::StandardButton Button;
        int Result;
    } const cases[] = {{QMessageBox::Yes, QDialog::Accepted}, {QMessageBox::No, QDialog::Rejected}};
    for (const auto &c : cases) {
        TModalDriver driver;
        driver.Expect("dlgSample", [](QWidget *window) {
            TGuiTools::Retype(Find<QWidget>(window, "edtName"), "after");
            ClickOk(window);
        });
        driver.ExpectMessage("Really", c.Button);
        TSampleDialog dialog;
        dialog.Question = "Really?";
        EXPECT_EQ(dialog.exec(), c.Result);
        EXPECT_EQ(dialog.Text(), "after");
        EXPECT_EQ(driver.Pending(), 0);
        EXPECT_EQ(driver.Seen().size(), 2);
    }
}

TEST(TModalDriverTest, AnswersTheSameWindowAsOftenAsItOpens)
{
    TModalDriver driver;
    TSampleDialog dialog;
    for (int i = 0; i < 3; ++i) {
        driver.Expect(ClickOk);
        EXPECT_EQ(dialog.exec(), QDialog::Accepted);
    }
}

TEST(TModalDriverTest, LetsAllowedWindowsCloseByThemselves)
{
    TModalDriver driver;
    driver.Allow("dlgSample");
    TSampleDialog dialog;
    QTimer::singleShot(100, &dialog, &QDialog::accept);
    EXPECT_EQ(dialog.exec(), QDialog::Accepted);
    EXPECT_EQ(driver.Seen().size(), 1);
}

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
        "butOK, edtName");
}

TEST(TModalDriverTest, ChoosesFromMenusAndFiles)
{
    TModalDriver driver;
    QMenu menu;
    menu.addAction("&Copy");
    QAction *paste = menu.addAction("&Paste\tCtrl+V");
    driver.ExpectMenu("Paste");
    EXPECT_EQ(menu.exec(QPoint(10, 10)), paste);

    QTemporaryDir folder;
    driver.ExpectFile(folder.filePath("new.sql"));
    EXPECT_EQ(QFileDialog::getSaveFileName(nullptr, "Save", folder.path(), {}, nullptr,
                                           QFileDialog::DontUseNativeDialog),
              folder.filePath("new.sql"));
}

TEST(TGuiToolsTest, RefusesWhatAUserCouldNotDo)
{
    TSampleDialog dialog;
    EXPECT_THROW(ClickOk(&dialog), std::runtime_error) << "not shown yet";
    TGuiTools::Show(&dialog);
    Find<QPushButton>(&dialog, "butOK")->setEnabled(false);
    EXPECT_THROW(ClickOk(&dialog), std::runtime_error);
    QMenu menu;
    menu.addAction("Copy")->setEnabled(false);
    EXPECT_THROW(TGuiTools::TriggerEntry(&menu, "Copy"), std::runtime_error);
    EXPECT_THROW(TGuiTools::TriggerEntry(&menu, "Cut"), std::runtime_error);
}

TEST(TGuiToolsTest, SavesPictures)
{
    TSampleDialog dialog;
    TGuiTools::Show(&dialog);
    const QString path = TGuiTools::Grab(&dialog, "testsupport-sample");
    const QImage picture(path);
    EXPECT_EQ(picture.size(), dialog.size() * dialog.devicePixelRatio());
}

TEST(TTestLoopTest, ServesCallsOfAThreadAndPassesWhatItThrows)
{
    QObject context;
    int served = 0;
    EXPECT_THROW(TTestLoop::RunThread([&] {
                     QMetaObject::invokeMethod(
                         &context, [&served] { ++served; }, Qt::BlockingQueuedConnection);
                     throw std::runtime_error("thrown over there");
                 }),
                 std::runtime_error);
    EXPECT_EQ(served, 1);
}

TEST(TTestLoopTest, DeadlineIsAFailure)
{
    EXPECT_NONFATAL_FAILURE(TTestLoop::RunUntil([] { return false; }, 20), "did not come");
}
