#pragma once

#include "client/uMyConnection.h"
#include "client/uMyQuery.h"
#include "core/uDacMySqlError.h"

/// A session with a server: its parameters, single statements with one retry after a lost session,
/// and errors as EDacMySqlError. Used by one thread at a time.
class TDacMySqlConnection
{
public:
    using TNotifyEvent = std::function<void(TDacMySqlConnection *Sender)>;
    using TBeforeExecuteEvent =
        std::function<void(TDacMySqlConnection *Sender, const QString &CommandText)>;
    using TAfterExecuteEvent = std::function<void(TDacMySqlConnection *Sender)>;
    using TExecuteErrorEvent =
        std::function<void(TDacMySqlConnection *Sender, const EDacMySqlError &E)>;

    TDacMySqlConnection();
    ~TDacMySqlConnection();
    TDacMySqlConnection(const TDacMySqlConnection &) = delete;
    TDacMySqlConnection &operator=(const TDacMySqlConnection &) = delete;

    int Port() const { return FPort; }
    void SetPort(int value) { FPort = value; }
    const QString &Database() const { return FDatabase; }
    void SetDatabase(const QString &value) { FDatabase = value; }
    const QString &Password() const { return FPassword; }
    void SetPassword(const QString &value) { FPassword = value; }
    const QString &Host() const { return FHost; }
    void SetHost(const QString &value) { FHost = value; }
    const QString &UserName() const { return FUserName; }
    void SetUserName(const QString &value) { FUserName = value; }
    const QString &Charset() const { return FCharset; }
    void SetCharset(const QString &value) { FCharset = value; }
    bool UseCompression() const { return FUseCompression; }
    void SetUseCompression(bool value) { FUseCompression = value; }

    /// Opens the session with the parameters above. Raises EDacMySqlError without a command text.
    void Connect();
    void Disconnect();
    /// Gives up a session whose way to the server is broken, as one that was lost.
    void Drop();
    /// The same server by another way; unlike SetHost and SetPort this lets the next session have
    /// what a lost one had.
    void SetAddress(const QString &host, int port);
    bool Connected() const;
    /// Version text of the open session, such as 5.5.30-log.
    QString ServerVersion() const;
    /// Takes effect with the next Connect; an open session is closed for it.
    void ChangeCharset(const QString &charset);

    /// What its changes of rows raise is an EDacMySqlError, after the events of a statement. They
    /// are not repeated after a lost session: one whose answer was lost may have been done.
    std::unique_ptr<TMyQuery> CreateDataset();
    /// Runs a statement whose rows, if any, are dropped. A lost session is repeated once, unless a
    /// transaction was open in it; the repeat lies inside the first try and fires the before and
    /// after events again. Raises EDacMySqlError.
    void Execute(const QString &commandText);
    /// The same with a dataset that takes the rows. A dataset that still has its rows when the
    /// statement has failed has their statement too.
    void ExecuteDataset(const QString &commandText, TMyQuery &dataset);
    /// False: a lost session is the error of its statement, and nothing is repeated. For who needs
    /// what was set in the session, or cannot have a statement run twice whose answer was lost.
    void SetRepeats(bool value) { FRepeats = value; }
    /// Runs a statement and hands each row of its first answer over without holding it; see
    /// TMyQuery::Stream. Nothing is repeated after a lost session: rows would come twice.
    void Stream(const QString &commandText, const TMyQuery::TStreamFields &onFields,
                const TMyQuery::TStreamRow &onRow);
    /// Reads a dataset again with its own statement. On a closed session call
    /// TDbmProvider::OpenConnection first.
    void RefreshDataset(TMyQuery &dataset);

    /// While true, OnInit, OnAfterConnect and OnAfterDisconnect are not fired.
    void SetDisableConnectEvents(bool value) { FDisableConnectEvents = value; }
    bool DisableConnectEvents() const { return FDisableConnectEvents; }

    /// Ahead of each connect, the library's own reconnect included; may raise. For who has to make
    /// the way to the server first.
    void SetOnBeforeConnect(TNotifyEvent event) { FOnBeforeConnect = std::move(event); }
    /// Ahead of a change that a dataset makes; may raise. For who opens the connection.
    void SetOnBeforeChange(TNotifyEvent event) { FOnBeforeChange = std::move(event); }
    void SetOnAfterConnect(TNotifyEvent event) { FOnAfterConnect = std::move(event); }
    void SetOnAfterDisconnect(TNotifyEvent event) { FOnAfterDisconnect = std::move(event); }
    /// Fires behind each connect, the library's own reconnect included, ahead of OnAfterConnect.
    void SetOnInit(TNotifyEvent event) { FOnInit = std::move(event); }
    void SetOnBeforeExecute(TBeforeExecuteEvent event) { FOnBeforeExecute = std::move(event); }
    void SetOnAfterExecute(TAfterExecuteEvent event) { FOnAfterExecute = std::move(event); }
    void SetOnExecuteError(TExecuteErrorEvent event) { FOnExecuteError = std::move(event); }

    /// The library's connection below. Owned.
    TMyConnection &LibraryConnection() { return *FConnection; }

private:
    using TOperation = std::function<void()>;

    void HookLibraryEvents();
    void OpenForChange();
    void FireAfterConnect();
    void FireAfterDisconnect();
    void Execute(const QString &commandText, bool retry);
    void ExecuteDataset(const QString &commandText, TMyQuery &dataset, bool retry);
    /// Runs an operation between its events. An empty `onLost` makes a lost session the error.
    void Run(const QString &commandText, const TOperation &operation, const TOperation &onLost);
    void RunConverted(const QString &commandText, const TOperation &operation,
                      const TOperation &onLost);
    void FireBeforeExecute(const QString &commandText);
    void FireAfterExecute();

    int FPort = 0;
    QString FDatabase;
    QString FPassword;
    QString FHost;
    QString FUserName;
    QString FCharset;
    bool FUseCompression = false;
    std::unique_ptr<TMyConnection> FConnection;
    bool FDisableConnectEvents = false;
    bool FRepeats = true;
    TNotifyEvent FOnBeforeConnect;
    TNotifyEvent FOnBeforeChange;
    TNotifyEvent FOnAfterConnect;
    TNotifyEvent FOnAfterDisconnect;
    TNotifyEvent FOnInit;
    TBeforeExecuteEvent FOnBeforeExecute;
    TAfterExecuteEvent FOnAfterExecute;
    TExecuteErrorEvent FOnExecuteError;
};
