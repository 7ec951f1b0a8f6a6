#include "uTextEditorFixture.h"

#include "widgets/uSqlHighlighter.h"
#include "widgets/uStylePalette.h"
#include "widgets/uTextEditorColors.h"

#include <QApplication>

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

TEST_F(TTextEditorView, ZoomsByKeysAndTheGutterWithIt)
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

TEST_F(TTextEditorView, MarksBracketsWithTheirPartners)
{
    const auto picture = [this] {
        Settle();
        return Editor->Editor()->viewport()->grab().toImage();
    };
    Send(TSci::SCI_SETCARETSTYLE, TSci::CARETSTYLE_INVISIBLE);
    Load("(a)   ", 0, 3);
    const QImage atBracket = picture();
    Editor->SetCaret(0, 99);
    EXPECT_NE(picture(), atBracket);
}
