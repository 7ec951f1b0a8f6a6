#include "uTextEditorFixture.h"

#include "widgets/uEditorGutter.h"
#include "widgets/uSqlHighlighter.h"
#include "widgets/uTextEditorColors.h"

#include <QApplication>
#include <QFrame>
#include <QScrollBar>
#include <QWheelEvent>
#include <cmath>

namespace {

QPalette DarkPalette()
{
    QPalette palette;
    palette.setColor(QPalette::Base, QColor(30, 30, 30));
    palette.setColor(QPalette::Text, QColor(220, 220, 220));
    palette.setColor(QPalette::Window, QColor(45, 45, 45));
    palette.setColor(QPalette::WindowText, Qt::white);
    palette.setColor(QPalette::Highlight, QColor(40, 80, 120));
    return palette;
}

// Relative luminance and contrast as the Web Content Accessibility Guidelines define them.
double Luminance(const QColor &color)
{
    const auto linear = [](double c) {
        return c <= 0.04045 ? c / 12.92 : std::pow((c + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) +
           0.0722 * linear(color.blueF());
}

double Contrast(const QColor &a, const QColor &b)
{
    const double x = Luminance(a) + 0.05;
    const double y = Luminance(b) + 0.05;
    return std::max(x, y) / std::min(x, y);
}

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

TEST_F(TTextEditorView, GutterGrowsWithTheNumbersAndTheZoom)
{
    auto *gutter = Part<TEditorGutter>("gutter");
    Load("a");
    const int narrow = gutter->width();
    Load(QString("\n").repeated(200'000));
    EXPECT_GT(gutter->width(), narrow);
    const int wide = gutter->width();
    Press(Qt::Key_Plus, Qt::ControlModifier);
    Press(Qt::Key_Plus, Qt::ControlModifier);
    EXPECT_GT(gutter->width(), wide);
    Press(Qt::Key_0, Qt::ControlModifier);
    EXPECT_EQ(gutter->width(), wide);
}

TEST_F(TTextEditorView, GutterIsRepaintedAsTheTextScrolls)
{
    Load(QString("\n").repeated(500));
    auto *gutter = Part<TEditorGutter>("gutter");
    const QImage atTop = gutter->grab().toImage();
    Editor->SetCaret(330, 0);
    Settle();
    EXPECT_NE(gutter->grab().toImage(), atTop);
    Editor->SetCaret(0, 0);
    Settle();
    EXPECT_EQ(gutter->grab().toImage(), atTop);
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

TEST_F(TTextEditorView, ZoomsByKeysAndWheel)
{
    const auto zoom = [this] { return Send(TSci::SCI_GETZOOM); };
    Press(Qt::Key_Plus, Qt::ControlModifier);
    EXPECT_EQ(zoom(), 1);
    Press(Qt::Key_Minus, Qt::ControlModifier);
    Press(Qt::Key_Minus, Qt::ControlModifier);
    EXPECT_EQ(zoom(), -1);
    Press(Qt::Key_0, Qt::ControlModifier);
    EXPECT_EQ(zoom(), 0);
    QWidget *viewport = Editor->Editor()->viewport();
    QWheelEvent wheel(QPointF(9, 9), viewport->mapToGlobal(QPointF(9, 9)), {}, {0, 120},
                      Qt::NoButton, Qt::ControlModifier, Qt::NoScrollPhase, false);
    QApplication::sendEvent(viewport, &wheel);
    EXPECT_GT(zoom(), 0);
}

TEST_F(TTextEditorView, FollowsThePalette)
{
    for (const QPalette &palette : {QPalette(Qt::white), DarkPalette(), QPalette(Qt::white)}) {
        Editor->setPalette(palette);
        Settle();
        EXPECT_EQ(Color(TSci::SCI_STYLEGETBACK, 0), palette.color(QPalette::Base));
        EXPECT_EQ(Color(TSci::SCI_STYLEGETFORE, 0), palette.color(QPalette::Text));
        Editor->SetActiveLineVisible(false);
        EXPECT_EQ(QColor(PixelRightOfText()), palette.color(QPalette::Base));
        Editor->SetActiveLineVisible(true);
    }
}

TEST_F(TTextEditorView, EveryStyleIsReadableInLightAndDark)
{
    QPalette light;
    light.setColor(QPalette::Base, Qt::white);
    light.setColor(QPalette::Text, Qt::black);
    for (const QPalette &palette : {light, DarkPalette()}) {
        Editor->setPalette(palette);
        Settle();
        for (int style = 0; style < ssCount; ++style) {
            const QColor text = Color(TSci::SCI_STYLEGETFORE, style);
            EXPECT_GE(Contrast(text, palette.color(QPalette::Base)), 4.5) << style;
            EXPECT_GE(Contrast(text, TTextEditorColors(palette).ActiveLine()), 4.0) << style;
        }
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
