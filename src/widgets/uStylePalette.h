#pragma once

#include <QColor>
#include <QPalette>

enum TAppTheme { atLight, atDark };

/// What a field holds, as far as its text colour tells.
enum class TAppFieldKind { fkString, fkBoolean, fkNumber, fkDate, fkOther };

/// The two palettes of the program and the colours that a palette has no role for. What takes a
/// palette answers for the theme that the palette belongs to.
class TAppPalette
{
public:
    static QPalette Palette(TAppTheme theme);
    /// By the brightness of the window colour.
    static TAppTheme ThemeOf(const QPalette &palette);

    static QColor Accent(const QPalette &palette);
    static QColor ErrorText(const QPalette &palette);
    /// Hairlines between panels and around boxes.
    static QColor Line(const QPalette &palette);

    /// Ratio from 1 to 21 by the formula of WCAG 2; ordinary text is readable from 4.5.
    static double Contrast(const QColor &a, const QColor &b);
};

/// Text colours of grid columns by the kind of their field.
class TAppFieldTypeColors
{
public:
    static QColor Color(TAppFieldKind kind, const QPalette &palette);
    /// For the palette that the application has now.
    static QColor Color(TAppFieldKind kind);
};
