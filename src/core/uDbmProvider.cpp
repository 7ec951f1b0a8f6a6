#include "core/uDbmProvider.h"

#include "core/uDacMySqlError.h"
#include "core/uNetUtils.h"
#include "support/uFormat.h"

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
    FConnection->SetOnBeforeChange([this](TDacMySqlConnection *) { OpenConnection(); });
    // A session that was lost with its tunnel comes back by a new one, at another port.
    FConnection->SetOnBeforeConnect([this](TDacMySqlConnection *) {
        if (!NeedsTunnel())
            return;
        OpenTunnel();
        SetConnectionAddress();
    });
}

TDbmProvider::~TDbmProvider()
{
    CloseConnection();
}

void TDbmProvider::SetParams(const TDbmConnectionProfile &connectionProfile)
{
    CloseConnection();
    FConnectionProfile = connectionProfile;
}

void TDbmProvider::OpenConnection()
{
    if (FHoldsSession && (NeedsTunnel() || !FConnection->Connected()))
        throw EDacMySqlError(CrServerLost, "Lost connection to server.", {});
    if (NeedsTunnel())
        OpenTunnel();
    if (!FConnection->Connected())
        Connect();
}

void TDbmProvider::CloseConnection()
{
    // Also when it is not connected: what a lost session had must not meet the next profile.
    FConnection->Disconnect();
    if (FSSHTunnel->Active())
        FSSHTunnel->Close();
    FHoldsSession = false;
    FConnection->SetRepeats(true);
}

void TDbmProvider::HoldSession()
{
    OpenConnection();
    FHoldsSession = true;
    FConnection->SetRepeats(false);
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
    if (FConnection->Connected())
        DropSession();

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

// A session through a tunnel that broke meanwhile leads nowhere.
void TDbmProvider::DropSession()
{
    const bool inTransaction = FConnection->LibraryConnection().InTransaction();
    FConnection->Drop();
    // What was done in it is gone; going on as if nothing had happened would hide that.
    if (inTransaction)
        throw EDacMySqlError(CrServerLost, "Lost connection to server during a transaction.", {});
}

void TDbmProvider::Connect()
{
    SetConnectionAddress();
    FConnection->SetUserName(FConnectionProfile.UserName);
    FConnection->SetPassword(FConnectionProfile.Password);
    FConnection->SetDatabase(FConnectionProfile.Database);
    FConnection->SetCharset(FConnectionProfile.Charset);
    FConnection->SetUseCompression(FConnectionProfile.UseCompression);
    SendMessage(TFormat::Format("Opening connection to %s:%u...",
                                {FConnection->Host(), static_cast<uint>(FConnection->Port())}));
    FConnection->Connect();
    FServerVersion = FConnection->ServerVersion();
}

void TDbmProvider::SetConnectionAddress()
{
    if (IsTunnelled()) {
        FConnection->SetAddress(FSSHTunnel->GetSourceTunnelHost(),
                                FSSHTunnel->GetSourceTunnelPort());
        return;
    }
    FConnection->SetAddress(ResolveIPv4Address(FConnectionProfile.HostName),
                            FConnectionProfile.Port);
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
