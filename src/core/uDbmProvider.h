#pragma once

#include "core/uDacMySqlConnection.h"
#include "core/uDbmCommand.h"
#include "core/uDbmConnectionProfile.h"
#include "core/uSSHTunnel.h"

/// Turns a profile into a live session: tunnel, connection and command, opened on demand. Used by
/// one thread at a time.
class TDbmProvider
{
public:
    using TConnectionMessageEvent =
        std::function<void(TDbmProvider *Sender, const QString &Message)>;

    TDbmProvider();
    ~TDbmProvider(); // closes first
    TDbmProvider(const TDbmProvider &) = delete;
    TDbmProvider &operator=(const TDbmProvider &) = delete;

    /// Closes what is open and takes the profile for the next OpenConnection.
    void SetParams(const TDbmConnectionProfile &connectionProfile);
    /// Brings tunnel and connection up where they are down; safe to call at any time. Raises
    /// EException "Cannot resolve IPv4 address.", what the SSH layer raises, or EDacMySqlError.
    void OpenConnection();
    void CloseConnection();
    /// From here to CloseConnection no other session takes the place of the open one: its loss is
    /// an error, and OpenConnection raises it again. For work that needs what was set or locked in
    /// its session, such as a snapshot.
    void HoldSession();
    /// Lasts until OpenConnection connects anew with the profile's charset; an open session is
    /// dropped for it.
    void SetCharset(const QString &value);
    /// Whether the connection is bound to one database.
    bool IsDatabaseConnection() const { return !FConnectionProfile.Database.isEmpty(); }

    TDacMySqlConnection &Connection() { return *FConnection; }
    TDbmCommand &Command() { return *FCommand; }
    /// Connects first.
    QString ServerVersion();
    TDbmConnectionProfile ConnectionProfile() const { return FConnectionProfile; }

    /// Each step of OpenConnection as a text, on the calling thread.
    void SetOnConnectionMessage(TConnectionMessageEvent event)
    {
        FOnConnectionMessage = std::move(event);
    }

private:
    bool IsTunnelled() const { return FConnectionProfile.ConnectionType == ctSSHTunnel; }
    bool NeedsTunnel() const { return IsTunnelled() && !FSSHTunnel->Forwarding(); }
    void OpenTunnel();
    void DropSession();
    void Connect();
    void SetConnectionAddress();
    QString ResolveIPv4Address(const QString &hostName);
    void SendMessage(const QString &message);

    std::unique_ptr<TDacMySqlConnection> FConnection;
    std::unique_ptr<TDbmCommand> FCommand;
    QString FServerVersion; // empty until the first connect
    std::unique_ptr<TSSHTunnel> FSSHTunnel;
    TDbmConnectionProfile FConnectionProfile;
    bool FHoldsSession = false;
    TConnectionMessageEvent FOnConnectionMessage;
};
