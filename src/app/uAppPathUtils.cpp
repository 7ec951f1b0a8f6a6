#include "app/uAppPathUtils.h"

#include "support/uException.h"

#include <QFile>
#include <QFileInfo>
#include <QStandardPaths>
#include <filesystem>
#include <system_error>

namespace {

struct TBaseFolders
{
    QString ApplicationData = QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation);
    QString Documents = QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
    // Known before there is an application object, unlike Qt's own answer.
    QString Program = QFileInfo(QFile::symLinkTarget("/proc/self/exe")).path();
};

TBaseFolders &Base()
{
    static TBaseFolders folders;
    return folders;
}

void CreateFolder(const QString &folder)
{
    std::error_code error;
    std::filesystem::create_directories(QFile::encodeName(folder).toStdString(), error);
    if (error)
        throw EException("Cannot create the folder \"" + folder +
                         "\": " + QString::fromStdString(error.message()) + '.');
}

} // namespace

void TAppPathUtils::CreateFolders()
{
    CreateFolder(MakerDataFolder());
    CreateFolder(ProductDataFolder());
    CreateFolder(UserFolder());
    CreateFolder(SessionsFolder());
}

void TAppPathUtils::SetBaseFolders(const QString &applicationData, const QString &documents,
                                   const QString &program)
{
    const auto set = [](QString &folder, const QString &value) {
        if (!value.isEmpty())
            folder = value;
    };
    set(Base().ApplicationData, applicationData);
    set(Base().Documents, documents);
    set(Base().Program, program);
}

QString TAppPathUtils::ApplicationDataFolder()
{
    return Base().ApplicationData;
}

QString TAppPathUtils::DocumentsFolder()
{
    return Base().Documents;
}

QString TAppPathUtils::ProgramFolder()
{
    return Base().Program;
}

QString TAppPathUtils::DataFolder()
{
    return ProgramFolder() + "/data";
}

QString TAppPathUtils::UserFolder()
{
    return DocumentsFolder() + "/Korvane";
}

QString TAppPathUtils::MakerDataFolder()
{
    return ApplicationDataFolder() + "/Halimund";
}

QString TAppPathUtils::ProductDataFolder()
{
    return MakerDataFolder() + "/Korvane 6";
}

QString TAppPathUtils::SessionsFolder()
{
    return ProductDataFolder() + "/sessions";
}

QString TAppPathUtils::ConfigurationFile()
{
    return ProductDataFolder() + "/config.xml";
}

QString TAppPathUtils::ProfilesFile()
{
    return UserFolder() + "/profiles.xml";
}

QString TAppPathUtils::ErrorNamesFile()
{
    return DataFolder() + "/errors.xml";
}

QString TAppPathUtils::FunctionLibraryFile()
{
    return DataFolder() + "/functions.xml";
}

QString TAppPathUtils::TemplatesFolder()
{
    return DataFolder() + "/templates";
}

QString TAppPathUtils::ImagesFolder()
{
    return DataFolder() + "/images";
}

QString TAppPathUtils::ReservedWordsFile()
{
    return DataFolder() + "/code-completion/reserved-words.json";
}

QString TAppPathUtils::FunctionsCompletionFile()
{
    return DataFolder() + "/code-completion/functions.json";
}

QString TAppPathUtils::StatementsCompletionFile()
{
    return DataFolder() + "/code-completion/query-statements.json";
}
