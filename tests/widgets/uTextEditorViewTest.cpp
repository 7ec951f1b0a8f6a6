#include "uTextEditorFixture.h"

#include "widgets/uEditorGutter.h"
#include "widgets/uSqlHighlighter.h"
#include "widgets/uStylePalette.h"
#include "widgets/uTextEditorColors.h"

#include <QApplication>
#include <QScrollBar>
#include <QWheelEvent>

namespace {

class TTextEditorView : public TTextEditorFixture
{
protected:
    QColor Color(unsigned int message, int style)
    {
        const long bgr = Send(message, style);
        return QColor(int(bgr & 0xFF), int((bgr >> 8) & 0xFF), int((bgr >> 16) & 0xFF));
    }

    QRgb PixelRightOfText()
    {
        Settle();
        QWidget *viewport = Editor->Editor()->viewport();
        return viewport->grab().toImage().pixel(viewport->width() - 3, 3);
    }
};

} // namespace

TEST_F(TTextEditorView, GutterIsARuler)
{
    QStringList marks;
    for (qsizetype line = 0; line < 21; ++line)
        marks += TEditorGutter::MarkOf(line, 12);
    EXPECT_EQ(marks.join(u' '), "· · · · - · · · · 10 · · 13 · - · · · · 20 ·");
    EXPECT_EQ(TEditorGutter::MarkOf(0, 0), "1");
    EXPECT_EQ(TEditorGutter::MarkOf(4, 4), "5");
}

TEST_F(TTextEditorView, GutterShowsTheLinesThatAreSeen)
{
    Load(QString("\n").repeated(500));
    const QImage atTop = Part("gutter")->grab().toImage();
    Editor->SetCaret(330, 0);
    Settle();
    EXPECT_NE(Part("gutter")->grab().toImage(), atTop);
}

TEST_F(TTextEditorView, GutterSelectsLines)
{
    Load("one\ntwo\nthree\nfour");
    auto *gutter = Part("gutter");
    const int height = int(Send(TSci::SCI_TEXTHEIGHT));
    QTest::mousePress(gutter, Qt::LeftButton, {}, {2, height + 2});
    EXPECT_EQ(Editor->SelectedText(), "two\n");
    QTest::mouseMove(gutter, {2, 3 * height + 2});
    QMouseEvent move(QEvent::MouseMove, QPointF(2, 3 * height + 2), QPointF(), Qt::NoButton,
                     Qt::LeftButton, {});
    QApplication::sendEvent(gutter, &move);
    EXPECT_EQ(Editor->SelectedText(), "two\nthree\nfour");
}

TEST_F(TTextEditorView, ZoomsByKeysAndWheelAndTheGutterWithIt)
{
    const auto zoom = [this] { return Send(TSci::SCI_GETZOOM); };
    const QWidget *gutter = Part("gutter");
    Load("a");
    const int narrow = gutter->width();
    Load(QString("\n").repeated(200'000));
    const int wide = gutter->width();
    EXPECT_GT(wide, narrow);
    Press(Qt::Key_Plus, Qt::ControlModifier);
    Press(Qt::Key_Plus, Qt::ControlModifier);
    EXPECT_GT(gutter->width(), wide);
    Press(Qt::Key_Minus, Qt::ControlModifier);
    EXPECT_EQ(zoom(), 1);
    Press(Qt::Key_0, Qt::ControlModifier);
    EXPECT_EQ(zoom(), 0);
    EXPECT_EQ(gutter->width(), wide);
    QWidget *viewport = Editor->Editor()->viewport();
    QWheelEvent wheel(QPointF(9, 9), viewport->mapToGlobal(QPointF(9, 9)), {}, {0, 120},
                      Qt::NoButton, Qt::ControlModifier, Qt::NoScrollPhase, false);
    QApplication::sendEvent(viewport, &wheel);
    EXPECT_GT(zoom(), 0);
}

TEST_F(TTextEditorView, FollowsThePaletteWithReadableStyles)
{
    for (const TAppTheme theme : {atLight, atDark, atLight}) {
        const QPalette palette = TAppPalette::Palette(theme);
        const QColor base = palette.color(QPalette::Base);
        Editor->setPalette(palette);
        Settle();
        EXPECT_EQ(Color(TSci::SCI_STYLEGETBACK, 0), base);
        EXPECT_EQ(Color(TSci::SCI_STYLEGETFORE, 0), palette.color(QPalette::Text));
        for (int style = 0; style < ssCount; ++style) {
            const QColor text = Color(TSci::SCI_STYLEGETFORE, style);
            for (const QColor &paper : {base, TTextEditorColors(palette).ActiveLine()})
                EXPECT_GE(TAppPalette::Contrast(text, paper), 4.5) << style;
        }
        Editor->SetActiveLineVisible(false);
        EXPECT_EQ(QColor(PixelRightOfText()), base);
        Editor->SetActiveLineVisible(true);
    }
}

TEST_F(TTextEditorView, ShowsTheActiveLineInItsColour)
{
    Load("a\nb");
    const QColor base = Editor->palette().color(QPalette::Base);
    EXPECT_NE(QColor(PixelRightOfText()), base);
    Editor->SetActiveLineColor(QColor(200, 10, 10));
    EXPECT_EQ(QColor(PixelRightOfText()), QColor(200, 10, 10));
    Editor->SetCaret(1, 0);
    EXPECT_EQ(QColor(PixelRightOfText()), base);
    Editor->SetCaret(0, 0);
    Editor->SetActiveLineVisible(false);
    EXPECT_EQ(QColor(PixelRightOfText()), base);
}

TEST_F(TTextEditorView, PartsCanBeTakenAway)
{
    Load(QString(QString("x").repeated(300) + u'\n').repeated(100));
    const int width = Editor->Editor()->width();
    Editor->SetScrollBarsVisible(false);
    Editor->SetGutterVisible(false);
    Editor->SetBorderVisible(false);
    Settle();
    EXPECT_FALSE(Editor->Editor()->verticalScrollBar()->isVisible());
    EXPECT_FALSE(Editor->Editor()->horizontalScrollBar()->isVisible());
    EXPECT_GT(Editor->Editor()->width(), width);
    EXPECT_EQ(Editor->Editor()->width(), Editor->width());
}

TEST_F(TTextEditorView, MarksBracketsWithTheirPartners)
{
    struct TRow
    {
        const char *Text;
        qsizetype Column;
        bool IsMarked; // by other colours at the caret's bracket than without a caret there
    };
    const TRow rows[] = {{"(a)", 1, true}, {"(a)", 3, true}, {"a(", 2, true}, {"ab", 1, false}};
    const auto picture = [this] {
        Settle();
        return Editor->Editor()->viewport()->grab().toImage();
    };
    Send(TSci::SCI_SETCARETSTYLE, TSci::CARETSTYLE_INVISIBLE);
    for (const TRow &row : rows) {
        Load(QString(row.Text) + "   ", 0, row.Column);
        const QImage atBracket = picture();
        Editor->SetCaret(0, 99);
        EXPECT_EQ(picture() != atBracket, row.IsMarked) << row.Text << row.Column;
    }
}

TEST_F(TTextEditorView, IsNamedForScreenReaders)
{
    EXPECT_EQ(Editor->Editor()->accessibleName(), "SQL editor");
    EXPECT_EQ(TTextEditor().Editor()->accessibleName(), "Text editor");
    for (const char *name : {"edFind", "edReplace", "butFindNext", "butFindPrev", "butReplace",
                             "butReplaceAll", "butCase", "butWord", "butRegExp", "butClose"})
        EXPECT_FALSE(Part(name)->accessibleName().isEmpty()) << name;
}
