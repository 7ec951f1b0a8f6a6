#pragma once

#include "app/uConfig.h"

/// The application's own settings and the typed access to them. Main thread only.
class TAppConfig
{
public:
    /// Opens the configuration file and sets the legacy code page that it names. Raises EException
    /// with the file's path when the file or the page's name is of no use; the settings are usable
    /// all the same, with their defaults.
    static void Open();
    /// Saves the settings. A file that could not be read at Open stays as it is.
    static void Close();
    /// The settings themselves, readable and writable at will.
    static TConfig &Config();

    static QString ReadLastProfileFolder();
    static void WriteLastProfileFolder(const QString &value);
    static QString ReadLastSSHPrivateKeysFolder();
    static void WriteLastSSHPrivateKeysFolder(const QString &value);
    static QString ReadLastQueryFolder();
    static void WriteLastQueryFolder(const QString &value);
    static QString ReadLastDumpFolder();
    static void WriteLastDumpFolder(const QString &value);

    /// Name of the code page of files that are no UTF-8; empty for the locale's.
    static QString ReadLegacyCodePage();
    static void WriteLegacyCodePage(const QString &value);

    /// Sizes of windows, splitters and columns, each under a key of the caller's.
    static QString ReadLayout(const QString &key, const QString &def = QString());
    static void WriteLayout(const QString &key, const QString &value);
};
