#pragma once

#include "core/uDbmCommand.h"
#include "core/uDbmProvider.h"
#include "core/uDbmScript.h"
#include "core/uDbmServerFeatures.h"
#include "model/uDbmCharsetList.h"
#include "model/uDbmDatabaseList.h"
#include "sql/uDbmCommands.h"
#include "sql/uDbmFormatters.h"

/// Root of one workspace's object model: the session, the version gates, the statements and the
/// server-wide lists. Used by the thread that made it; every job makes one of its own.
class TDbmManager : public TDbmElement
{
public:
    using TDbmManagerCommandBeforeExecuteEvent =
        std::function<void(TDbmManager *Sender, const QString &CommandText)>;
    using TDbmManagerCommandAfterExecuteEvent = std::function<void(TDbmManager *Sender)>;
    using TDbmManagerCommandExecuteErrorEvent =
        std::function<void(TDbmManager *Sender, const EDacMySqlError &E)>;
    using TDbmManagerConnectionMessageEvent =
        std::function<void(TDbmManager *Sender, const QString &Message)>;

    static std::unique_ptr<TDbmManager> Create();
    ~TDbmManager() override;

    void SetParams(const TDbmConnectionProfile &profile);
    /// Opens the session and takes the server's features. Safe to repeat.
    void Connect();
    bool IsDatabaseConnection() const;
    /// Drops an open session; it comes back with the next statement. Everything becomes stale.
    void SetCharset(const QString &value);
    /// Marks everything stale; nothing is read.
    void RequestProcess();

    /// Connects first, so that every reader sees the features of a live session.
    const TDbmServerFeatures &Features();
    QString ServerVersion();
    TDbmProvider &Provider();
    TDbmCommand &Command();
    TDbmFormatters &Formatters();
    TDbmCommands &Commands();
    TDbmConnectionProfile ConnectionProfile() const;

    TDbmDatabaseList &Databases() { return *FDatabases; }
    TDbmCharsetList &Charsets() { return *FCharsets; }
    /// The item of the database that the connection is bound to. Raises EException when it is gone.
    std::shared_ptr<TDbmDatabaseItem> GetUsedDatabase();
    /// A plain script runner on the connection; the caller owns it.
    std::unique_ptr<TDbmScript> CreateScript();

    void SetOnCommandBeforeExecute(TDbmManagerCommandBeforeExecuteEvent event);
    void SetOnCommandAfterExecute(TDbmManagerCommandAfterExecuteEvent event);
    void SetOnCommandExecuteError(TDbmManagerCommandExecuteErrorEvent event);
    void SetOnConnectionMessage(TDbmManagerConnectionMessageEvent event);

private:
    struct TParts;
    explicit TDbmManager(std::unique_ptr<TParts> parts);
    void HookEvents();

    std::unique_ptr<TParts> FParts; // first: the lists refer to them
    std::shared_ptr<TDbmDatabaseList> FDatabases;
    std::shared_ptr<TDbmCharsetList> FCharsets;

    TDbmManagerCommandBeforeExecuteEvent FOnCommandBeforeExecute;
    TDbmManagerCommandAfterExecuteEvent FOnCommandAfterExecute;
    TDbmManagerCommandExecuteErrorEvent FOnCommandExecuteError;
    TDbmManagerConnectionMessageEvent FOnConnectionMessage;
};
