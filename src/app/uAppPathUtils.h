#pragma once

#include <QString>

/// Every path of the system, without trailing separators. Computed on the first call, read-only
/// afterwards.
class TAppPathUtils
{
public:
    /// Makes the maker's, the product's, the user's and the sessions folder where they are missing.
    /// Called at start-up. Raises EException with the folder's path and the reason.
    static void CreateFolders();
    /// Puts other folders in the place of the system's, for tests. An empty one stays as it is.
    static void SetBaseFolders(const QString &applicationData, const QString &documents,
                               const QString &program = QString());

    static QString ApplicationDataFolder();
    static QString DocumentsFolder();
    static QString ProgramFolder();
    static QString DataFolder();
    static QString UserFolder();
    static QString MakerDataFolder();
    static QString ProductDataFolder();
    static QString SessionsFolder();
    static QString ConfigurationFile();
    static QString ProfilesFile();
    static QString ErrorNamesFile();
    static QString FunctionLibraryFile();
    static QString TemplatesFolder();
    static QString ImagesFolder();
    static QString ReservedWordsFile();
    static QString FunctionsCompletionFile();
    static QString StatementsCompletionFile();
};
