#include "widgets/uErrorBox.h"
#include "widgets/uIcons.h"
#include "widgets/uWaitCursor.h"

#include "uGuiTools.h"
#include "uModalDriver.h"

#include <QApplication>
#include <QClipboard>
#include <QCursor>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QScreen>

#include <gtest/gtest.h>

namespace {

class TErrorBoxTest : public testing::Test
{
protected:
    TErrorBoxTest() { TIcons::SetFolder(QStringLiteral(KORVANE_SOURCE_DIR "/data/images")); }
};

TEST_F(TErrorBoxTest, ShowsCopiesAndUnfolds)
{
    TModalDriver driver;
    driver.Expect("frmErrorBox", [](QWidget *box) {
        EXPECT_EQ(box->windowTitle(), "Korvane");
        EXPECT_TRUE(box->isModal());
        auto *message = Find<QPlainTextEdit>(box, "edMessage");
        EXPECT_EQ(message->toPlainText(), "Unknown column '<b>x</b>'");
        EXPECT_TRUE(message->textInteractionFlags() & Qt::TextSelectableByMouse);
        auto *details = Find<QPlainTextEdit>(box, "edDetails");
        EXPECT_FALSE(details->isVisible());
        const int folded = box->height();
        TGuiTools::Click(box, "butDetails");
        EXPECT_TRUE(details->isVisible());
        EXPECT_EQ(details->toPlainText(), "SELECT x\nFROM t");
        EXPECT_GT(box->height(), folded);
        TGuiTools::Click(box, "butCopy");
        TGuiTools::Click(box, "butOK");
    });
    TErrorBox::Execute(nullptr, "Unknown column '<b>x</b>'", "SELECT x\nFROM t");
    EXPECT_EQ(QApplication::clipboard()->text(), "Unknown column '<b>x</b>'\n\nSELECT x\nFROM t");
}

TEST_F(TErrorBoxTest, StaysOnTheScreen)
{
    for (const QString &message : {QString(), QString("a long story ").repeated(5000),
                                   QString(100000, 'x'), QString("line\n").repeated(5000)}) {
        SCOPED_TRACE(message.left(20).toStdString());
        TErrorBox box(nullptr, message, {});
        TGuiTools::Show(&box);
        const QSize screen = box.screen()->availableSize();
        EXPECT_LT(box.width(), screen.width());
        EXPECT_LT(box.height(), screen.height());
        EXPECT_TRUE(Find<QPushButton>(&box, "butOK")->isVisible());
        EXPECT_FALSE(Find<QPushButton>(&box, "butDetails")->isVisible());
        TGuiTools::Press(Find<QPushButton>(&box, "butOK"), Qt::Key_Return);
        EXPECT_FALSE(box.isVisible());
    }
}

TEST_F(TErrorBoxTest, AQuestionThatIsClosedIsAnsweredNo)
{
    TModalDriver driver;
    driver.Expect("frmQuestionBox", [](QWidget *box) { box->close(); });
    EXPECT_FALSE(TQuestionBox::Ask(nullptr, "Really?"));
    driver.Expect("frmQuestionBox", [](QWidget *box) {
        EXPECT_EQ(box->windowTitle(), "Korvane");
        TGuiTools::Click(box, "butYes");
    });
    EXPECT_TRUE(TQuestionBox::Ask(nullptr, "Really?"));
}

TEST(TWaitCursorTest, IsHiddenAtOnceHoweverOftenShown)
{
    EXPECT_FALSE(TWaitCursor::IsShown());
    TWaitCursor::Hide();
    QApplication::setOverrideCursor(Qt::CrossCursor);
    TWaitCursor::Show();
    TWaitCursor::Show();
    EXPECT_TRUE(TWaitCursor::IsShown());
    EXPECT_EQ(QApplication::overrideCursor()->shape(), Qt::WaitCursor);
    TWaitCursor::Hide();
    EXPECT_FALSE(TWaitCursor::IsShown());
    EXPECT_EQ(QApplication::overrideCursor()->shape(), Qt::CrossCursor) << "not ours to take away";
    TWaitCursor::Hide();
    EXPECT_EQ(QApplication::overrideCursor()->shape(), Qt::CrossCursor);
    QApplication::restoreOverrideCursor();
}

TEST_F(TErrorBoxTest, TakesTheWaitCursorAway)
{
    TModalDriver driver;
    TWaitCursor::Show();
    driver.Expect("frmErrorBox", [](QWidget *box) {
        EXPECT_EQ(QApplication::overrideCursor(), nullptr);
        TGuiTools::Click(box, "butOK");
    });
    TErrorBox::Execute(nullptr, "It failed.");
    EXPECT_FALSE(TWaitCursor::IsShown());
}

} // namespace
