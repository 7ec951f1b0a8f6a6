#pragma once

#include <QColor>
#include <QFont>
#include <QPalette>

class TTextEditorControl;

/// Colours and font of an editor, taken from a palette, so that they suit light and dark ones.
class TTextEditorColors
{
public:
    explicit TTextEditorColors(const QPalette &palette) : FPalette(palette) {}

    /// Sets every style of the component.
    void Apply(TTextEditorControl &control, const QFont &font) const;
    QColor ActiveLine() const;
    QColor GutterPaper() const;
    QColor GutterText() const;
    QColor GutterCaretText() const;
    /// For messages that something was not found or is wrong.
    QColor Warning() const;

    /// The system's font of fixed pitch.
    static QFont EditorFont();

private:
    bool IsDark() const;
    QColor Mix(QPalette::ColorRole from, QPalette::ColorRole to, qreal share) const;
    void ApplySql(TTextEditorControl &control) const;

    QPalette FPalette;
};
