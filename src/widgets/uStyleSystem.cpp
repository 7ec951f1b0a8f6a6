#include "widgets/uStyleSystem.h"

#include <QProcess>
#include <QSettings>
#include <QStandardPaths>

#include <algorithm>

namespace {

constexpr int GSettingsTimeout = 500; // milliseconds; it answers in about ten

/// The answer of GNOME and its relatives; light on all other desktops.
TAppTheme ThemeOfGSettings()
{
    const QString desktop = qEnvironmentVariable("XDG_CURRENT_DESKTOP");
    const QStringList relatives = {"GNOME", "Unity", "Cinnamon", "Budgie", "Pantheon"};
    const auto isNamed = [&](const QString &name) {
        return desktop.contains(name, Qt::CaseInsensitive);
    };
    if (std::none_of(relatives.begin(), relatives.end(), isNamed))
        return atLight;
    QProcess process;
    process.start("gsettings", {"get", "org.gnome.desktop.interface", "color-scheme"});
    if (!process.waitForFinished(GSettingsTimeout))
        return atLight;
    return process.readAllStandardOutput().contains("prefer-dark") ? atDark : atLight;
}

} // namespace

TAppTheme TStyleSystem::Theme(const QPalette &platformPalette)
{
    if (TAppPalette::ThemeOf(platformPalette) == atDark)
        return atDark;
    const QString forced = qEnvironmentVariable("GTK_THEME");
    if (!forced.isEmpty())
        return IsDarkName(forced) ? atDark : atLight;
    const QString settings = QStandardPaths::locate(QStandardPaths::GenericConfigLocation,
                                                    QStringLiteral("gtk-3.0/settings.ini"));
    if (ThemeOfGtkSettings(settings) == atDark)
        return atDark;
    return ThemeOfGSettings();
}

TAppTheme TStyleSystem::ThemeOfGtkSettings(const QString &fileName)
{
    if (fileName.isEmpty())
        return atLight;
    const QSettings settings(fileName, QSettings::IniFormat);
    const bool prefersDark =
        settings.value("Settings/gtk-application-prefer-dark-theme").toBool() ||
        IsDarkName(settings.value("Settings/gtk-theme-name").toString());
    return prefersDark ? atDark : atLight;
}

bool TStyleSystem::IsDarkName(const QString &themeName)
{
    return themeName.endsWith("dark", Qt::CaseInsensitive);
}
