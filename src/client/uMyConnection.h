#pragma once

#include "client/uMyError.h"

#include <QString>
#include <functional>
#include <memory>

class TMySession;
struct TSessionParams;

enum TRetryMode { rmRaise, rmReconnect, rmReconnectExecute };
enum TConnLostCause { clExecute, clFetch, clRefresh };

struct TMyConnectionOptions
{
    QString Charset;         // character set of the session; empty is the widest Unicode
    bool UseUnicode = false; // texts and statements travel as UTF-8
    bool Compress = false;
    bool Direct = false;           // false: through the client library, the only way there is here
    bool DisconnectedMode = false; // false: the session stays open between statements
    bool LocalFailover = true;     // a lost session fires OnConnectionLost ahead of an error
};

/// One session with a server. Used by one thread at a time. Failures raise EMyError.
class TMyConnection
{
public:
    using TNotifyEvent = std::function<void(TMyConnection *Sender)>;
    using TErrorEvent = std::function<void(TMyConnection *Sender, const EMyError &E, bool &Fail)>;
    using TConnectionLostEvent =
        std::function<void(TMyConnection *Sender, TConnLostCause Cause, TRetryMode &RetryMode)>;

    TMyConnection();
    ~TMyConnection();
    TMyConnection(const TMyConnection &) = delete;
    TMyConnection &operator=(const TMyConnection &) = delete;

    QString Server, Database, Username, Password;
    int Port = 3306;
    int ConnectionTimeout = 15; // seconds, for connecting and the handshake
    TMyConnectionOptions Options;

    /// Opens the session; TLS whenever the server offers it, TCP keep-alive on. Does nothing when
    /// connected. After a lost session the new one gets that session's database, character set and
    /// autocommit mode, unless the values above were changed meanwhile.
    void Connect();
    /// What a lost session had is forgotten too.
    void Disconnect();
    /// Gives up a session whose way to the server is known to be broken. It counts as lost.
    void Drop();
    /// The same server by another way: unlike new values of Server and Port this keeps what a lost
    /// session had.
    void SetAddress(const QString &server, int port);
    bool Connected() const;
    /// As the server tells it, such as 5.5.30-log or 10.11.6-MariaDB; empty before the first
    /// connect.
    QString ServerVersion() const { return FServerVersion; }
    /// The session's TLS cipher; empty without TLS.
    QString TlsCipher() const;
    /// Whether the server's last status says that a transaction is open.
    bool InTransaction() const;
    /// The session's current database as far as the server has told.
    QString CurrentDatabase() const;
    /// The session's character set by the server's name.
    QString CurrentCharset() const;

    /// Runs text that may give any number of answers, reads them to the end and drops their rows.
    /// Opens the session when it is closed.
    void Execute(const QString &sql);

    /// Fired ahead of each connect, the one behind a lost session included; may set the values
    /// above, and what it raises ends the connect.
    void SetBeforeConnect(TNotifyEvent event) { FBeforeConnect = std::move(event); }
    void SetAfterConnect(TNotifyEvent event) { FAfterConnect = std::move(event); }
    void SetAfterDisconnect(TNotifyEvent event) { FAfterDisconnect = std::move(event); }
    /// Fired ahead of every error. The error is raised whatever becomes of Fail.
    void SetOnError(TErrorEvent event) { FOnError = std::move(event); }
    void SetOnConnectionLost(TConnectionLostEvent event) { FOnConnectionLost = std::move(event); }

    /// The session below; for the dataset layer only. Owned.
    TMySession &Session() { return *FSession; }
    /// Raises a failed operation's error after its events. A lost session is closed by then; its
    /// OnConnectionLost decides whether the error's CanRepeat holds, which it never does inside a
    /// transaction. Repeating is left to the caller, whose own events must tell of both tries; the
    /// repeat opens the new session.
    [[noreturn]] void RaiseError(EMyError error, TConnLostCause cause, bool wasInTransaction);

private:
    struct TLost;

    TSessionParams SessionParams() const;
    void OpenSession();
    void SessionLost();

    std::unique_ptr<TMySession> FSession;
    bool FOpened = false;         // by Connect, and not known to be closed since
    std::unique_ptr<TLost> FLost; // what the next connect has to bring back
    QString FServerVersion;
    TNotifyEvent FBeforeConnect, FAfterConnect, FAfterDisconnect;
    TErrorEvent FOnError;
    TConnectionLostEvent FOnConnectionLost;
};

/// A statement that gives no rows.
class TMyCommand
{
public:
    TMyConnection *Connection = nullptr; // not owned
    QString SQL;
    void Execute() { Connection->Execute(SQL); }
};
