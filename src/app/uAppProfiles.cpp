#include "app/uAppProfiles.h"

#include "app/uAppPathUtils.h"
#include "app/uAppProfileStorage.h"
#include "app/uConfig.h"
#include "support/uException.h"
#include "support/uFormat.h"

#include <QUuid>

namespace {

TAppProfilePtr DefaultProfile()
{
    auto profile = std::make_shared<TAppProfile>();
    profile->Alias = "localhost";
    profile->Id = TAppProfile::NewId();
    TDbmConnectionProfile &connection = profile->ConnectionProfile;
    connection.HostName = "localhost";
    connection.Port = 3306;
    connection.UserName = "root";
    connection.UseCompression = true;
    connection.SSHSettings.HostName = "localhost";
    connection.SSHSettings.Port = 22;
    return profile;
}

} // namespace

QString TAppProfile::NewId()
{
    return QUuid::createUuid().toString(QUuid::WithBraces).toUpper();
}

QString TAppProfile::GetDisplayString() const
{
    return Alias.isEmpty() ? ConnectionProfile.GetDisplayString() : Alias;
}

TAppProfiles::TAppProfiles(const QString &fileName)
    : FFileName(fileName.isEmpty() ? TAppPathUtils::ProfilesFile() : fileName)
{
    AddDefaultIfEmpty();
}

void TAppProfiles::Read()
{
    FProfiles.clear();
    FIsChanged = false;
    try {
        ReadFile();
    } catch (const EException &) {
        // What was read is usable, but it is not all that the file holds.
        TConfig::MarkUnreadable(FFileName);
        AddDefaultIfEmpty();
        throw;
    }
    AddDefaultIfEmpty();
}

void TAppProfiles::ReadFile()
{
    TConfig config;
    config.Open(FFileName);
    for (const QString &group : config.GetGroupNames(QString())) {
        const TAppProfilePtr profile = TAppProfileStorage::Read(config, group);
        if (FProfiles.count(profile->Id))
            throw EException(TFormat::Format("\"%s\" holds two profiles with the id \"%s\".",
                                             {FFileName, profile->Id}));
        Insert(profile);
    }
}

void TAppProfiles::GiveMissingId()
{
    const auto found = FProfiles.find(QString());
    if (found == FProfiles.end())
        return;
    const TAppProfilePtr profile = found->second;
    FProfiles.erase(found);
    profile->Id = TAppProfile::NewId();
    Insert(profile);
    FIsChanged = true;
}

void TAppProfiles::Write()
{
    if (TConfig::IsUnreadable(FFileName)) {
        if (!FIsChanged)
            return;
        throw EException(TFormat::Format("The changed profiles are not saved, since \"%s\" could "
                                         "not be read. Repair or remove the file and start the "
                                         "program again.",
                                         {FFileName}));
    }
    TConfig config;
    config.New(FFileName);
    int position = 0;
    for (const auto &entry : FProfiles)
        TAppProfileStorage::Write(config, QString::number(position++), *entry.second);
    config.Close();
    FIsChanged = false;
}

void TAppProfiles::Add(const TAppProfilePtr &profile)
{
    if (FProfiles.count(profile->Id))
        throw EException(
            TFormat::Format("There is a profile with the id \"%s\" already.", {profile->Id}));
    Insert(profile);
    FIsChanged = true;
}

void TAppProfiles::Insert(const TAppProfilePtr &profile)
{
    FProfiles.emplace(profile->Id, profile);
}

TAppProfilePtr TAppProfiles::Get(const QString &id) const
{
    const auto found = FProfiles.find(id);
    if (found == FProfiles.end())
        throw EException(TFormat::Format("There is no profile with the id \"%s\".", {id}));
    return found->second;
}

QList<TAppProfilePtr> TAppProfiles::GetArray() const
{
    QList<TAppProfilePtr> profiles;
    for (const auto &entry : FProfiles)
        profiles += entry.second;
    return profiles;
}

void TAppProfiles::Remove(const TAppProfilePtr &profile)
{
    if (FProfiles.erase(profile->Id) > 0)
        FIsChanged = true;
}

void TAppProfiles::Clear()
{
    FProfiles.clear();
    FIsChanged = true;
}

void TAppProfiles::AddDefaultIfEmpty()
{
    if (FProfiles.empty())
        Insert(DefaultProfile());
}
