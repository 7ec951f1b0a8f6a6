#include "app/uAppProfileStorage.h"

#include "app/uConfig.h"
#include "support/uStringUtils.h"

#include <limits>

namespace {

const QString TunnelWord = QStringLiteral("ssh_tunnel");
const QString DirectWord = QStringLiteral("direct");
constexpr int DefaultSSHPort = 22;

struct TAuthenticationWord
{
    TSSHTunnelAuthentication Authentication;
    QString Word;
};

const TAuthenticationWord AuthenticationWords[] = {
    {taPassword, QStringLiteral("password")},
    {taPublicKey, QStringLiteral("public_key")},
    {taPublicKeyWithPassword, QStringLiteral("public_key_with_password")},
};

TSSHTunnelAuthentication AuthenticationOf(const QString &word)
{
    for (const TAuthenticationWord &row : AuthenticationWords)
        if (row.Word == word)
            return row.Authentication;
    return taPassword;
}

QString WordOf(TSSHTunnelAuthentication authentication)
{
    for (const TAuthenticationWord &row : AuthenticationWords)
        if (row.Authentication == authentication)
            return row.Word;
    return {};
}

TDbmConnectionProfileSSHSettings ReadSSH(const TConfig &config, const QString &group)
{
    TDbmConnectionProfileSSHSettings ssh;
    ssh.HostName = config.GetValue(group, "host", QString(), true);
    const int port = config.GetValue(group, "port", DefaultSSHPort);
    const bool fits = port >= 0 && port <= std::numeric_limits<quint16>::max();
    ssh.Port = static_cast<quint16>(fits ? port : DefaultSSHPort);
    ssh.UserName = config.GetValue(group, "user", QString(), true);
    ssh.Authentication =
        AuthenticationOf(config.GetValue(group, "authentication", QString(), true));
    ssh.Password = config.GetValue(group, "password", QString(), true);
    ssh.PrivateKey = TStringUtils::HexToBytes(config.GetValue(group, "private_key", QString()));
    return ssh;
}

void WriteSSH(TConfig &config, const QString &group, const TDbmConnectionProfileSSHSettings &ssh)
{
    config.SetValue(group, "host", ssh.HostName, true);
    config.SetValue(group, "port", static_cast<int>(ssh.Port));
    config.SetValue(group, "user", ssh.UserName, true);
    config.SetValue(group, "authentication", WordOf(ssh.Authentication), true);
    config.SetValue(group, "password", ssh.Password, true);
    config.SetValue(group, "private_key", TStringUtils::BytesToHex(ssh.PrivateKey));
}

TDbmConnectionProfile ReadConnection(const TConfig &config, const QString &group)
{
    TDbmConnectionProfile profile;
    const QString type = config.GetValue(group, "connection_type", DirectWord);
    profile.ConnectionType = type == TunnelWord ? ctSSHTunnel : ctDirect;
    profile.HostName = config.GetValue(group, "host", QString("localhost"), true);
    profile.Port = config.GetValue(group, "port", 3306);
    profile.UserName = config.GetValue(group, "user", QString("root"), true);
    profile.Password = config.GetValue(group, "password", QString(), true);
    profile.Database = config.GetValue(group, "database", QString(), true);
    profile.Charset = config.GetValue(group, "charset", QString(), true);
    profile.UseCompression = config.GetValue(group, "compression", false);
    profile.SSHSettings = ReadSSH(config, group + ".ssh");
    return profile;
}

void WriteConnection(TConfig &config, const QString &group, const TDbmConnectionProfile &profile)
{
    config.SetValue(group, "connection_type",
                    profile.ConnectionType == ctSSHTunnel ? TunnelWord : DirectWord);
    config.SetValue(group, "host", profile.HostName, true);
    config.SetValue(group, "port", profile.Port);
    config.SetValue(group, "user", profile.UserName, true);
    config.SetValue(group, "password", profile.Password, true);
    config.SetValue(group, "database", profile.Database, true);
    config.SetValue(group, "charset", profile.Charset, true);
    config.SetValue(group, "compression", profile.UseCompression);
    WriteSSH(config, group + ".ssh", profile.SSHSettings);
}

} // namespace

TAppProfilePtr TAppProfileStorage::Read(const TConfig &config, const QString &group)
{
    auto profile = std::make_shared<TAppProfile>();
    profile->Alias = config.GetValue(group, "alias", QString(), true);
    profile->Id = config.GetValue(group, "id", QString());
    profile->ConnectionProfile = ReadConnection(config, group + ".connection");
    return profile;
}

void TAppProfileStorage::Write(TConfig &config, const QString &group, const TAppProfile &profile)
{
    config.SetValue(group, "alias", profile.Alias, true);
    config.SetValue(group, "id", profile.Id);
    WriteConnection(config, group + ".connection", profile.ConnectionProfile);
}
