// Tells the scripts of the demo server what only the program knows: where the user's files lie and
// what is in the profiles.

#include "app/uAppPathUtils.h"
#include "app/uAppProfiles.h"
#include "support/uException.h"
#include "support/uFileUtils.h"

#include <QCoreApplication>
#include <QTextStream>

#include <cstdio>

namespace {

enum TExitCode { ecYes = 0, ecError = 1, ecUsage = 2, ecNo = 3 };

/// The profile of the server whose data lie in one folder. The folder keeps the profile's
/// identifier, so that it is known again under another name.
class TDemoProfile
{
public:
    explicit TDemoProfile(const QString &folder) : FFolder(folder) {}

    /// Whether the server has somebody to serve: a user without profiles, or one who kept this one.
    bool IsWanted();
    /// Brings the profile up to the server's port and password. A profile that the user removed
    /// does not come back.
    void Store();

private:
    QString ReadLine(const QString &name) const;
    void ReadProfiles();
    TDbmConnectionProfile Updated(TDbmConnectionProfile connection) const;
    void Add();
    void Update();

    QString FFolder;
    TAppProfiles FProfiles;
    TAppProfilePtr FProfile; // null when it is not among the profiles
    bool FIsFirst = false;   // there is no profiles file yet
};

QString TDemoProfile::ReadLine(const QString &name) const
{
    QString text;
    TFileUtils::ReadText(FFolder + '/' + name, QString(), text);
    return text.trimmed();
}

void TDemoProfile::ReadProfiles()
{
    FIsFirst = !TFileUtils::Exists(TAppPathUtils::ProfilesFile());
    FProfiles.Read();
    const QString id = ReadLine("profile-id");
    for (const TAppProfilePtr &profile : FProfiles.GetArray())
        if (!id.isEmpty() && profile->Id == id)
            FProfile = profile;
}

bool TDemoProfile::IsWanted()
{
    ReadProfiles();
    return FIsFirst || FProfile;
}

void TDemoProfile::Store()
{
    ReadProfiles();
    if (FIsFirst)
        Add();
    else if (FProfile)
        Update();
}

TDbmConnectionProfile TDemoProfile::Updated(TDbmConnectionProfile connection) const
{
    connection.HostName = "127.0.0.1";
    connection.Port = ReadLine("port").toInt();
    connection.UserName = "demo";
    connection.Password = ReadLine("password");
    if (connection.Port == 0 || connection.Password.isEmpty())
        throw EException("There is no demo server in the folder \"" + FFolder + "\".");
    return connection;
}

void TDemoProfile::Add()
{
    const auto profile = std::make_shared<TAppProfile>();
    profile->Alias = "Demo shop";
    profile->Id = TAppProfile::NewId();
    profile->ConnectionProfile.SSHSettings.Port = 22;
    profile->ConnectionProfile.Charset = "utf8mb4";
    profile->ConnectionProfile = Updated(profile->ConnectionProfile);
    FProfiles.Add(profile);

    TAppPathUtils::CreateFolders();
    // First the identifier: a profile without it would not be known again.
    TFileUtils::WriteBinary(FFolder + "/profile-id", profile->Id.toUtf8());
    FProfiles.Write();
}

void TDemoProfile::Update()
{
    const TAppProfilePtr profile = FProfile->Clone();
    profile->ConnectionProfile = Updated(profile->ConnectionProfile);
    if (profile->ConnectionProfile == FProfile->ConnectionProfile)
        return;
    FProfiles.Remove(FProfile);
    FProfiles.Add(profile);
    FProfiles.Write();
}

int Run(const QStringList &arguments)
{
    const QString command = arguments.value(1);
    if (command == "--paths" && arguments.size() == 2) {
        QTextStream(stdout) << "profiles=" << TAppPathUtils::ProfilesFile() << '\n'
                            << "demo=" << TAppPathUtils::ProductDataFolder() << "/demo\n";
        return ecYes;
    }
    if (command == "--wanted" && arguments.size() == 3)
        return TDemoProfile(arguments[2]).IsWanted() ? ecYes : ecNo;
    if (command == "--store" && arguments.size() == 3) {
        TDemoProfile(arguments[2]).Store();
        return ecYes;
    }
    QTextStream(stderr) << "Usage: korvane-demo-profile --paths | --wanted DIR | --store DIR\n";
    return ecUsage;
}

} // namespace

int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    try {
        return Run(QCoreApplication::arguments());
    } catch (const std::exception &e) {
        QTextStream(stderr) << ExceptionMessage(e) << '\n';
        return ecError;
    }
}
