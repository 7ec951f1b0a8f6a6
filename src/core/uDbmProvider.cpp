#include "core/uDbmProvider.h"

#include "core/uDacMySqlError.h"
#include "core/uNetUtils.h"
#include "support/uFormat.h"

#include <utility>

namespace {

constexpr int CrServerLost = 2013; // CR_SERVER_LOST of the client library

} // namespace

TDbmProvider::TDbmProvider()
    : FConnection(std::make_unique<TDacMySqlConnection>()),
      FCommand(std::make_unique<TDbmCommand>(*FConnection)),
      FSSHTunnel(std::make_unique<TSSHTunnel>())
{
    // Whatever closed the session, the next run finds it open.
    FCommand->SetOnScriptBeforeExecute([this](TDbmCommand *) { OpenConnection(); });
}

TDbmProvider::~TDbmProvider()
{
    CloseConnection();
}

void TDbmProvider::SetParams(const TDbmConnectionProfile &connectionProfile)
{
    CloseConnection();
    FConnectionProfile = connectionProfile;
    FDatabaseInUse.clear();
}

void TDbmProvider::OpenConnection()
{
    if (IsTunnelled() && !FSSHTunnel->Forwarding())
        OpenTunnel();
    if (!FConnection->Connected())
        Connect();
}

void TDbmProvider::CloseConnection()
{
    if (FConnection->Connected())
        FConnection->Disconnect();
    if (FSSHTunnel->Active())
        FSSHTunnel->Close();
}

void TDbmProvider::SetCharset(const QString &value)
{
    FConnection->ChangeCharset(value);
}

QString TDbmProvider::ServerVersion()
{
    OpenConnection();
    return FServerVersion;
}

void TDbmProvider::OpenTunnel()
{
    // A session through a tunnel that broke meanwhile leads nowhere, and its reconnect would try
    // the old tunnel's port.
    if (FConnection->Connected()) {
        const bool inTransaction = FConnection->LibraryConnection().InTransaction();
        FDatabaseInUse = FConnection->LibraryConnection().CurrentDatabase();
        FConnection->Disconnect();
        // What was done in it is gone; going on as if nothing had happened would hide that.
        if (inTransaction)
            throw EDacMySqlError(CrServerLost, "Lost connection to server during a transaction.",
                                 {});
    }

    const TDbmConnectionProfileSSHSettings &settings = FConnectionProfile.SSHSettings;
    FSSHTunnel->HostName = ResolveIPv4Address(settings.HostName);
    FSSHTunnel->Port = settings.Port;
    FSSHTunnel->UserName = settings.UserName;
    FSSHTunnel->Authentication = settings.Authentication;
    FSSHTunnel->Password = settings.Password;
    FSSHTunnel->PrivateKey = settings.PrivateKey;
    // By name: the SSH server resolves it, and may know another address than this machine.
    FSSHTunnel->DestTunnelHost = FConnectionProfile.HostName;
    FSSHTunnel->DestTunnelPort = static_cast<quint16>(FConnectionProfile.Port);
    SendMessage(TFormat::Format("Opening SSH tunnel to %s:%u...",
                                {FSSHTunnel->HostName, static_cast<uint>(FSSHTunnel->Port)}));
    FSSHTunnel->Open();
}

void TDbmProvider::Connect()
{
    SetConnectionAddress();
    FConnection->SetUserName(FConnectionProfile.UserName);
    FConnection->SetPassword(FConnectionProfile.Password);
    // Once only: a database that is gone must not keep the next try from working.
    const QString database = std::exchange(FDatabaseInUse, QString());
    FConnection->SetDatabase(database.isEmpty() ? FConnectionProfile.Database : database);
    FConnection->SetCharset(FConnectionProfile.Charset);
    FConnection->SetUseCompression(FConnectionProfile.UseCompression);
    SendMessage(TFormat::Format("Opening connection to %s:%u...",
                                {FConnection->Host(), static_cast<uint>(FConnection->Port())}));
    FConnection->Connect();
    FConnection->SetDatabase(FConnectionProfile.Database);
    FServerVersion = FConnection->ServerVersion();
}

void TDbmProvider::SetConnectionAddress()
{
    if (IsTunnelled()) {
        FConnection->SetHost(FSSHTunnel->GetSourceTunnelHost());
        FConnection->SetPort(FSSHTunnel->GetSourceTunnelPort());
        return;
    }
    FConnection->SetHost(ResolveIPv4Address(FConnectionProfile.HostName));
    FConnection->SetPort(FConnectionProfile.Port);
}

QString TDbmProvider::ResolveIPv4Address(const QString &hostName)
{
    if (TNetUtils::IsIPv4Address(hostName))
        return hostName;
    SendMessage(TFormat::Format("Resolving \"%s\" IPv4 address...", {hostName}));
    QString address;
    if (!TNetUtils::TryResolveIPv4Address(hostName, address))
        throw EException(QStringLiteral("Cannot resolve IPv4 address."));
    return address;
}

void TDbmProvider::SendMessage(const QString &message)
{
    if (FOnConnectionMessage)
        FOnConnectionMessage(this, message);
}
