#pragma once

#include "core/uDbmCommand.h"
#include "core/uDbmProvider.h"
#include "core/uDbmScript.h"
#include "core/uDbmServerFeatures.h"
#include "model/uDbmCharsetList.h"
#include "model/uDbmDataPool.h"
#include "model/uDbmDatabaseList.h"
#include "model/uDbmEngineList.h"
#include "model/uDbmOperations.h"
#include "model/uDbmProcessList.h"
#include "model/uDbmStatusList.h"
#include "model/uDbmUserPrivilegesList.h"
#include "model/uDbmVariableList.h"
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

    /// Of the session while there is one, else of the last one; the first call connects.
    const TDbmServerFeatures &Features();
    QString ServerVersion();
    TDbmProvider &Provider();
    TDbmCommand &Command();
    TDbmFormatters &Formatters();
    TDbmCommands &Commands();
    TDbmConnectionProfile ConnectionProfile() const;

    TDbmOperations &Operations() { return *FOperations; }

    TDbmDatabaseList &Databases() { return *FDatabases; }
    TDbmUserPrivilegesList &UsersPrivileges() { return *FUsersPrivileges; }
    TDbmProcessList &Processes() { return *FProcesses; }
    TDbmEngineList &Engines() { return *FEngines; }
    TDbmVariableList &GlobalVariables() { return *FGlobalVariables; }
    TDbmVariableList &SessionVariables() { return *FSessionVariables; }
    TDbmStatusList &GlobalStatus() { return *FGlobalStatus; }
    TDbmStatusList &SessionStatus() { return *FSessionStatus; }
    TDbmCharsetList &Charsets() { return *FCharsets; }
    TDbmCollationList &Collations() { return *FCollations; }
    TDbmPluginList &Plugins() { return *FPlugins; }
    TDbmDataPool &DataPool() { return *FDataPool; }
    /// The item of the database that the connection is bound to. Raises EException when it is gone.
    std::shared_ptr<TDbmDatabaseItem> GetUsedDatabase();
    // False when the database or the object is missing.
    bool TryGetTable(const QString &databaseName, const QString &tableName,
                     std::shared_ptr<TDbmTableItem> &table);
    bool TryGetView(const QString &databaseName, const QString &viewName,
                    std::shared_ptr<TDbmViewItem> &view);
    bool TryGetRoutine(const QString &databaseName, const QString &routineName,
                       std::shared_ptr<TDbmRoutineItem> &routine);
    bool TryGetEvent(const QString &databaseName, const QString &eventName,
                     std::shared_ptr<TDbmEventItem> &event);
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
    std::shared_ptr<TDbmUserPrivilegesList> FUsersPrivileges;
    std::shared_ptr<TDbmProcessList> FProcesses;
    std::shared_ptr<TDbmEngineList> FEngines;
    std::shared_ptr<TDbmVariableList> FGlobalVariables;
    std::shared_ptr<TDbmVariableList> FSessionVariables;
    std::shared_ptr<TDbmStatusList> FGlobalStatus;
    std::shared_ptr<TDbmStatusList> FSessionStatus;
    std::shared_ptr<TDbmCharsetList> FCharsets;
    std::shared_ptr<TDbmCollationList> FCollations;
    std::shared_ptr<TDbmPluginList> FPlugins;
    std::shared_ptr<TDbmDataPool> FDataPool;
    std::unique_ptr<TDbmOperations> FOperations;

    TDbmManagerCommandBeforeExecuteEvent FOnCommandBeforeExecute;
    TDbmManagerCommandAfterExecuteEvent FOnCommandAfterExecute;
    TDbmManagerCommandExecuteErrorEvent FOnCommandExecuteError;
    TDbmManagerConnectionMessageEvent FOnConnectionMessage;
};
