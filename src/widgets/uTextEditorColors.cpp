#include "widgets/uTextEditorColors.h"

#include "widgets/uSqlHighlighter.h"
#include "widgets/uTextEditorControl.h"
#include "widgets/uTextEditorStyler.h"

#include <QFontDatabase>
#include <cmath>

namespace {

struct TSqlColor
{
    TSqlStyle Style;
    QRgb Light;
    QRgb Dark;
    bool Bold = false;
    bool Italic = false;
};

// Each has a contrast of at least 4.5 : 1 with white, or with the dark paper.
const TSqlColor SqlColors[] = {
    {ssKeyword, 0x0033B3, 0x7AA8F0, true},   {ssDataType, 0x00627A, 0x5FC6D6},
    {ssFunction, 0x7A3E9D, 0xC79BE8},        {ssString, 0x9A3324, 0xE59A82},
    {ssIdentifier, 0x5B4A00, 0xD9C27E},      {ssComment, 0x5F6B62, 0x8FA396, false, true},
    {ssExecutedComment, 0x2E6F40, 0x86C79A}, {ssNumber, 0x17617E, 0x9CCBEB},
    {ssVariable, 0x8A4B08, 0xEBB06C},        {ssParameter, 0xA0216C, 0xEE8CC0},
};

void SetColors(TTextEditorControl &control, int style, const QColor &text, const QColor &paper)
{
    control.SendScintilla(QsciScintilla::SCI_STYLESETFORE, static_cast<unsigned long>(style), text);
    control.SendScintilla(QsciScintilla::SCI_STYLESETBACK, static_cast<unsigned long>(style),
                          paper);
}

} // namespace

QFont TTextEditorColors::EditorFont()
{
    return QFontDatabase::systemFont(QFontDatabase::FixedFont);
}

bool TTextEditorColors::IsDark() const
{
    return FPalette.color(QPalette::Base).lightness() < FPalette.color(QPalette::Text).lightness();
}

QColor TTextEditorColors::Mix(QPalette::ColorRole from, QPalette::ColorRole to, qreal share) const
{
    const QColor a = FPalette.color(from);
    const QColor b = FPalette.color(to);
    const auto mix = [share](int x, int y) { return int(std::lround(x + (y - x) * share)); };
    return {mix(a.red(), b.red()), mix(a.green(), b.green()), mix(a.blue(), b.blue())};
}

QColor TTextEditorColors::ActiveLine() const
{
    return Mix(QPalette::Base, QPalette::Highlight, IsDark() ? 0.18 : 0.08);
}

QColor TTextEditorColors::GutterPaper() const
{
    return Mix(QPalette::Base, QPalette::Text, 0.05);
}

QColor TTextEditorColors::GutterText() const
{
    return Mix(QPalette::Base, QPalette::Text, 0.6);
}

QColor TTextEditorColors::GutterCaretText() const
{
    return FPalette.color(QPalette::Text);
}

QColor TTextEditorColors::Warning() const
{
    return IsDark() ? QColor(0xF28B82) : QColor(0xB3261E);
}

void TTextEditorColors::Apply(TTextEditorControl &control, const QFont &font) const
{
    using TSci = QsciScintilla;
    const QColor text = FPalette.color(QPalette::Text);
    const QColor paper = FPalette.color(QPalette::Base);
    const qreal points = font.pointSizeF() > 0 ? font.pointSizeF() : QFont().pointSizeF();
    control.Send(TSci::SCI_STYLESETFONT, TSci::STYLE_DEFAULT, font.family().toUtf8().constData());
    control.Send(TSci::SCI_STYLESETSIZEFRACTIONAL, TSci::STYLE_DEFAULT,
                 qsizetype(std::lround(points * int(TSci::SC_FONT_SIZE_MULTIPLIER))));
    SetColors(control, TSci::STYLE_DEFAULT, text, paper);
    control.Send(TSci::SCI_STYLECLEARALL);
    ApplySql(control);
    control.Send(TSci::SCI_STYLESETVISIBLE, TTextEditorStyler::HiddenStyle, false);
    SetColors(control, TSci::STYLE_LINENUMBER, GutterText(), GutterPaper());
    SetColors(control, TSci::STYLE_CONTROLCHAR, GutterText(), paper);
    SetColors(control, TSci::STYLE_BRACELIGHT, text, Mix(QPalette::Base, QPalette::Highlight, 0.4));
    control.Send(TSci::SCI_STYLESETBOLD, TSci::STYLE_BRACELIGHT, true);
    SetColors(control, TSci::STYLE_BRACEBAD, Warning(), paper);
    control.Send(TSci::SCI_STYLESETBOLD, TSci::STYLE_BRACEBAD, true);
    control.setPaper(paper);
    control.setCaretForegroundColor(text);
    control.setSelectionBackgroundColor(FPalette.color(QPalette::Highlight));
    control.setSelectionForegroundColor(FPalette.color(QPalette::HighlightedText));
    // The component paints by its own colours; a palette of its own would hide later changes.
    control.viewport()->update();
}

void TTextEditorColors::ApplySql(TTextEditorControl &control) const
{
    const bool isDark = IsDark();
    for (const TSqlColor &color : SqlColors) {
        const QColor text(isDark ? color.Dark : color.Light);
        SetColors(control, color.Style, text, FPalette.color(QPalette::Base));
        control.Send(QsciScintilla::SCI_STYLESETBOLD, color.Style, color.Bold);
        control.Send(QsciScintilla::SCI_STYLESETITALIC, color.Style, color.Italic);
    }
}
