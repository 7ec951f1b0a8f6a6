#include "widgets/uStylePalette.h"

#include <QGuiApplication>

#include <algorithm>
#include <cmath>

namespace {

struct TRoleColors
{
    QPalette::ColorRole Role;
    QRgb Light;
    QRgb Dark;
};

const TRoleColors RoleColors[] = {
    {QPalette::Window, 0xf2f4f6, 0x23272d},
    {QPalette::WindowText, 0x1b232c, 0xdde3ea},
    {QPalette::Base, 0xffffff, 0x1a1d22},
    {QPalette::AlternateBase, 0xf6f8fa, 0x20242a},
    {QPalette::Text, 0x1b232c, 0xdde3ea},
    {QPalette::PlaceholderText, 0x67717d, 0x8e98a5},
    {QPalette::Button, 0xfcfcfd, 0x30363e},
    {QPalette::ButtonText, 0x1b232c, 0xdde3ea},
    {QPalette::BrightText, 0xffffff, 0xffffff},
    {QPalette::Highlight, 0x0b6e8f, 0x1b6f8c},
    {QPalette::HighlightedText, 0xffffff, 0xffffff},
    {QPalette::Link, 0x0b6e8f, 0x5cc3e0},
    {QPalette::LinkVisited, 0x6b4a9e, 0xb99be6},
    {QPalette::ToolTipBase, 0xfffdf3, 0x363c45},
    {QPalette::ToolTipText, 0x1b232c, 0xdde3ea},
    {QPalette::Light, 0xffffff, 0x414852},
    {QPalette::Midlight, 0xe7eaee, 0x363c45},
    {QPalette::Mid, 0xc6ccd3, 0x464d58},
    {QPalette::Dark, 0x9ba4af, 0x15181c},
    {QPalette::Shadow, 0x5f6874, 0x0c0e10},
};

const TRoleColors DisabledColors[] = {
    {QPalette::WindowText, 0x98a0aa, 0x6c7581}, {QPalette::Text, 0x98a0aa, 0x6c7581},
    {QPalette::ButtonText, 0x98a0aa, 0x6c7581}, {QPalette::Base, 0xf2f4f6, 0x23272d},
    {QPalette::Highlight, 0xb7bfc8, 0x4a525d},
};

QColor Pick(const TRoleColors &colors, TAppTheme theme)
{
    return QColor(theme == atDark ? colors.Dark : colors.Light);
}

double Luminance(const QColor &color)
{
    const auto linear = [](double part) {
        return part <= 0.03928 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) +
           0.0722 * linear(color.blueF());
}

} // namespace

QPalette TAppPalette::Palette(TAppTheme theme)
{
    QPalette palette;
    for (const TRoleColors &colors : RoleColors)
        palette.setColor(QPalette::All, colors.Role, Pick(colors, theme));
    for (const TRoleColors &colors : DisabledColors)
        palette.setColor(QPalette::Disabled, colors.Role, Pick(colors, theme));
    return palette;
}

TAppTheme TAppPalette::ThemeOf(const QPalette &palette)
{
    return palette.color(QPalette::Window).lightness() < 128 ? atDark : atLight;
}

QColor TAppPalette::Accent(const QPalette &palette)
{
    return palette.color(QPalette::Link);
}

QColor TAppPalette::ErrorText(const QPalette &palette)
{
    // Maroon cannot be read on a dark ground.
    return ThemeOf(palette) == atDark ? QColor(0xff9a90) : QColor(0x800000);
}

QColor TAppPalette::Line(const QPalette &palette)
{
    return palette.color(QPalette::Mid);
}

double TAppPalette::Contrast(const QColor &a, const QColor &b)
{
    const auto [darker, brighter] = std::minmax({Luminance(a), Luminance(b)});
    return (brighter + 0.05) / (darker + 0.05);
}

QColor TAppFieldTypeColors::Color(TAppFieldKind kind, const QPalette &palette)
{
    const bool dark = TAppPalette::ThemeOf(palette) == atDark;
    switch (kind) {
    case TAppFieldKind::fkString:
        return dark ? QColor(0x86d197) : QColor(0x0a6b2d);
    case TAppFieldKind::fkBoolean:
        return dark ? QColor(0xc9a2f2) : QColor(0x7a2ea8);
    case TAppFieldKind::fkNumber:
        return dark ? QColor(0x82b7ff) : QColor(0x1d4fb8);
    case TAppFieldKind::fkDate:
        return dark ? QColor(0xeab46f) : QColor(0x944600);
    case TAppFieldKind::fkOther:
        break;
    }
    return dark ? QColor(0xa4adb8) : QColor(0x5e6670);
}

QColor TAppFieldTypeColors::Color(TAppFieldKind kind)
{
    return Color(kind, QGuiApplication::palette());
}
