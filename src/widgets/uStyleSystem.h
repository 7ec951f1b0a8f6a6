#pragma once

#include "widgets/uStylePalette.h"

#include <QString>

/// Which theme the desktop has. Qt 6.4 has no call for it, and its platform palette is light on
/// desktops for which no platform plug-in is installed.
class TStyleSystem
{
public:
    /// By the platform's palette, then the settings of the desktop.
    static TAppTheme Theme(const QPalette &platformPalette);
    /// A GTK settings.ini; light when there is no such file.
    static TAppTheme ThemeOfGtkSettings(const QString &fileName);
    static bool IsDarkName(const QString &themeName);
};
