#include "model/uDbmManager.h"

#include "model/uDbmEventList.h"
#include "model/uDbmRoutineList.h"
#include "model/uDbmTableList.h"
#include "model/uDbmViewList.h"
#include "support/uException.h"

namespace {

template <typename TList>
bool TryGetObject(TDbmDatabaseList &databases, TList &(TDbmDatabaseItem::*list)(),
                  const QString &databaseName, const QString &name, typename TList::TItemPtr &item)
{
    std::shared_ptr<TDbmDatabaseItem> database;
    return databases.TryGetByName(databaseName, database) &&
           ((*database).*list)().TryGetByName(name, item);
}

} // namespace

// In this order: each stands on those before it.
struct TDbmManager::TParts
{
    TDbmProvider Provider;
    TDbmServerFeatures Features;
    TDbmFormatters Formatters{&Features};
    TDbmCommands Commands{&Provider, &Formatters};
};

std::unique_ptr<TDbmManager> TDbmManager::Create()
{
    return std::unique_ptr<TDbmManager>(new TDbmManager(std::make_unique<TParts>()));
}

TDbmManager::TDbmManager(std::unique_ptr<TParts> parts)
    : TDbmElement(&parts->Provider, &parts->Features, &parts->Formatters, &parts->Commands),
      FParts(std::move(parts))
{
    HookEvents();
    FDatabases = New<TDbmDatabaseList>(this);
    FUsersPrivileges = New<TDbmUserPrivilegesList>(this);
    FProcesses = New<TDbmProcessList>(this);
    FEngines = New<TDbmEngineList>(this);
    FGlobalVariables = New<TDbmVariableList>(this, svoGlobal);
    FSessionVariables = New<TDbmVariableList>(this, svoSession);
    FGlobalStatus = New<TDbmStatusList>(this, ssoGlobal);
    FSessionStatus = New<TDbmStatusList>(this, ssoSession);
    FCharsets = New<TDbmCharsetList>(this);
    FCollations = New<TDbmCollationList>(this);
    FPlugins = New<TDbmPluginList>(this);
    FDataPool = New<TDbmDataPool>(this);
    FOperations = std::make_unique<TDbmOperations>(&FParts->Commands);
}

TDbmManager::~TDbmManager()
{
    // The data before the tables: a dataset needs the connection that goes last.
    FDataPool.reset();
}

TDbmProvider &TDbmManager::Provider()
{
    return FParts->Provider;
}

TDbmCommand &TDbmManager::Command()
{
    return FParts->Provider.Command();
}

TDbmFormatters &TDbmManager::Formatters()
{
    return FParts->Formatters;
}

TDbmCommands &TDbmManager::Commands()
{
    return FParts->Commands;
}

TDbmConnectionProfile TDbmManager::ConnectionProfile() const
{
    return FParts->Provider.ConnectionProfile();
}

bool TDbmManager::IsDatabaseConnection() const
{
    return FParts->Provider.IsDatabaseConnection();
}

void TDbmManager::HookEvents()
{
    TDacMySqlConnection &connection = FParts->Provider.Connection();
    connection.SetOnBeforeExecute([this](TDacMySqlConnection *, const QString &commandText) {
        if (FOnCommandBeforeExecute)
            FOnCommandBeforeExecute(this, commandText);
    });
    connection.SetOnAfterExecute([this](TDacMySqlConnection *) {
        if (FOnCommandAfterExecute)
            FOnCommandAfterExecute(this);
    });
    connection.SetOnExecuteError([this](TDacMySqlConnection *, const EDacMySqlError &e) {
        if (FOnCommandExecuteError)
            FOnCommandExecuteError(this, e);
    });
    FParts->Provider.SetOnConnectionMessage([this](TDbmProvider *, const QString &message) {
        if (FOnConnectionMessage)
            FOnConnectionMessage(this, message);
    });
}

void TDbmManager::SetParams(const TDbmConnectionProfile &profile)
{
    FParts->Provider.SetParams(profile);
}

void TDbmManager::Connect()
{
    FParts->Provider.OpenConnection();
    FParts->Features.SetParams(FParts->Provider.ServerVersion());
}

void TDbmManager::SetCharset(const QString &value)
{
    FParts->Provider.SetCharset(value);
    RequestProcess();
}

void TDbmManager::RequestProcess()
{
    for (TDbmElement *element : std::initializer_list<TDbmElement *>{
             FDatabases.get(), FUsersPrivileges.get(), FProcesses.get(), FEngines.get(),
             FGlobalVariables.get(), FSessionVariables.get(), FGlobalStatus.get(),
             FSessionStatus.get(), FCharsets.get(), FCollations.get(), FPlugins.get(),
             FDataPool.get()})
        element->RequestProcess();
}

const TDbmServerFeatures &TDbmManager::Features()
{
    // While the server is away, what it can do is known from before: lists that cannot be read are
    // told in their own way, and this must not raise ahead of them.
    const bool isKnown = !FParts->Features.ServerVersion().isEmpty();
    if (!isKnown || FParts->Provider.Connection().Connected())
        Connect();
    return FParts->Features;
}

QString TDbmManager::ServerVersion()
{
    Connect();
    return FParts->Provider.ServerVersion();
}

std::shared_ptr<TDbmDatabaseItem> TDbmManager::GetUsedDatabase()
{
    std::shared_ptr<TDbmDatabaseItem> item;
    if (!FDatabases->TryGetByName(ConnectionProfile().Database, item))
        throw EException("Get used database error.");
    return item;
}

bool TDbmManager::TryGetTable(const QString &databaseName, const QString &tableName,
                              std::shared_ptr<TDbmTableItem> &table)
{
    return TryGetObject(*FDatabases, &TDbmDatabaseItem::Tables, databaseName, tableName, table);
}

bool TDbmManager::TryGetView(const QString &databaseName, const QString &viewName,
                             std::shared_ptr<TDbmViewItem> &view)
{
    return TryGetObject(*FDatabases, &TDbmDatabaseItem::Views, databaseName, viewName, view);
}

bool TDbmManager::TryGetRoutine(const QString &databaseName, const QString &routineName,
                                std::shared_ptr<TDbmRoutineItem> &routine)
{
    return TryGetObject(*FDatabases, &TDbmDatabaseItem::Routines, databaseName, routineName,
                        routine);
}

bool TDbmManager::TryGetEvent(const QString &databaseName, const QString &eventName,
                              std::shared_ptr<TDbmEventItem> &event)
{
    return TryGetObject(*FDatabases, &TDbmDatabaseItem::Events, databaseName, eventName, event);
}

std::unique_ptr<TDbmScript> TDbmManager::CreateScript()
{
    return std::make_unique<TDbmScript>(FParts->Provider.Connection());
}

void TDbmManager::SetOnCommandBeforeExecute(TDbmManagerCommandBeforeExecuteEvent event)
{
    FOnCommandBeforeExecute = std::move(event);
}

void TDbmManager::SetOnCommandAfterExecute(TDbmManagerCommandAfterExecuteEvent event)
{
    FOnCommandAfterExecute = std::move(event);
}

void TDbmManager::SetOnCommandExecuteError(TDbmManagerCommandExecuteErrorEvent event)
{
    FOnCommandExecuteError = std::move(event);
}

void TDbmManager::SetOnConnectionMessage(TDbmManagerConnectionMessageEvent event)
{
    FOnConnectionMessage = std::move(event);
}
