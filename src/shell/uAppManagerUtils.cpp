#include "shell/uAppManagerUtils.h"

#include "jobs/uAppWorkers.h"
#include "model/uDbmManager.h"
#include "shell/uAppCodeCompleteUtils.h"
#include "shell/uAppDialogs.h"
#include "shell/uAppManagerPageUtils.h"
#include "shell/uAppMessages.h"

namespace {

/// Pages are renamed or closed by the time the redraw comes.
bool Redraw()
{
    TAppMessages::SendRedrawUI();
    return true;
}

} // namespace

TAppManagerUtils::TAppManagerUtils(TDbmManager *manager, TAppManagerPageUtils *pageUtils)
    : FManager(manager), FPageUtils(pageUtils),
      FCodeComplete(std::make_unique<TAppCodeCompleteUtils>(manager))
{}

TAppManagerUtils::~TAppManagerUtils() = default;

void TAppManagerUtils::SetParams(TDbmManager *manager)
{
    FManager = manager;
    FCodeComplete->SetParams(manager);
}

void TAppManagerUtils::SelectCharset()
{
    QString name;
    if (!TAppDialogs::SelectCharset(*FManager, name))
        return;
    FManager->SetCharset(name);
    TAppMessages::SendRedrawUI();
}

void TAppManagerUtils::SelectSchema(const QString &databaseName)
{
    TAppMessages::SendSelectSchema(FManager, databaseName);
}

void TAppManagerUtils::OpenSchema()
{
    QString name;
    if (TAppDialogs::SelectDatabase(*FManager, name))
        FPageUtils->ShowSchema(name, true);
}

void TAppManagerUtils::NewQuery()
{
    FPageUtils->ShowQueryFromText({}, {}, 0, true);
}

void TAppManagerUtils::OpenQuery()
{
    QString fileName;
    if (TAppDialogs::OpenSqlFile(fileName))
        FPageUtils->ShowQueryFromFile(fileName, {}, 0, true);
}

bool TAppManagerUtils::NeedDatabase(QString &databaseName)
{
    return !databaseName.isEmpty() || TAppDialogs::SelectDatabase(*FManager, databaseName);
}

bool TAppManagerUtils::CreateRoutine(TDbmRoutineType routineType, const QString &databaseName)
{
    QString database = databaseName;
    if (!NeedDatabase(database))
        return false;
    FPageUtils->ShowCreateRoutineQuery(database, routineType, true);
    return true;
}

bool TAppManagerUtils::CreateDatabase()
{
    QString name;
    if (!TAppDialogs::CreateDatabase(*FManager, name))
        return false;
    SelectSchema(name);
    return Redraw();
}

bool TAppManagerUtils::UpdateDatabase(const QString &databaseName)
{
    QString database = databaseName;
    return NeedDatabase(database) && TAppDialogs::UpdateDatabase(*FManager, database) && Redraw();
}

bool TAppManagerUtils::CreateTable(const QString &databaseName)
{
    QString database = databaseName, name;
    if (!NeedDatabase(database) || !TAppDialogs::CreateTable(*FManager, database, name))
        return false;
    Redraw();
    FPageUtils->ShowTable(database, name, true);
    return true;
}

bool TAppManagerUtils::CreateView(const QString &databaseName)
{
    QString database = databaseName, name;
    if (!NeedDatabase(database) || !TAppDialogs::CreateView(*FManager, database, name))
        return false;
    Redraw();
    FPageUtils->ShowTable(database, name, true);
    return true;
}

bool TAppManagerUtils::CreateEvent(const QString &databaseName)
{
    QString database = databaseName;
    return NeedDatabase(database) && TAppDialogs::CreateEvent(*FManager, database) && Redraw();
}

bool TAppManagerUtils::CreateField(const QString &databaseName, const QString &tableName)
{
    return TAppDialogs::CreateField(*FManager, databaseName, tableName, {}) && Redraw();
}

bool TAppManagerUtils::CreateIndex(const QString &databaseName, const QString &tableName)
{
    return TAppDialogs::CreateIndex(*FManager, databaseName, tableName) && Redraw();
}

bool TAppManagerUtils::CreateReference(const QString &databaseName, const QString &tableName)
{
    return TAppDialogs::CreateReference(*FManager, databaseName, tableName) && Redraw();
}

bool TAppManagerUtils::CreateTrigger(const QString &databaseName, const QString &tableName)
{
    return TAppDialogs::CreateTrigger(*FManager, databaseName, tableName) && Redraw();
}

bool TAppManagerUtils::CreateUser()
{
    return TAppDialogs::CreateUser(*FManager) && Redraw();
}

bool TAppManagerUtils::UpdateTable(const QString &databaseName, const QString &tableName)
{
    QString newName;
    if (!TAppDialogs::UpdateTable(*FManager, databaseName, newName, tableName))
        return false;
    if (newName != tableName)
        TAppMessages::SendTableRenamed(FManager, databaseName, tableName, newName);
    return Redraw();
}

bool TAppManagerUtils::UpdateView(const QString &databaseName, const QString &viewName)
{
    QString newName;
    if (!TAppDialogs::UpdateView(*FManager, databaseName, newName, viewName))
        return false;
    if (newName != viewName)
        TAppMessages::SendViewRenamed(FManager, databaseName, viewName, newName);
    return Redraw();
}

bool TAppManagerUtils::UpdateEvent(const QString &databaseName, const QString &eventName)
{
    QString newName;
    if (!TAppDialogs::UpdateEvent(*FManager, databaseName, newName, eventName))
        return false;
    if (newName != eventName)
        TAppMessages::SendEventRenamed(FManager, databaseName, eventName, newName);
    return Redraw();
}

bool TAppManagerUtils::UpdateField(const QString &databaseName, const QString &tableName,
                                   const QString &fieldName)
{
    return TAppDialogs::UpdateField(*FManager, databaseName, tableName, fieldName) && Redraw();
}

bool TAppManagerUtils::UpdateIndex(const QString &databaseName, const QString &tableName,
                                   const QString &indexName)
{
    return TAppDialogs::UpdateIndex(*FManager, databaseName, tableName, indexName) && Redraw();
}

bool TAppManagerUtils::UpdateReference(const QString &databaseName, const QString &tableName,
                                       const QString &referenceName)
{
    return TAppDialogs::UpdateReference(*FManager, databaseName, tableName, referenceName) &&
           Redraw();
}

bool TAppManagerUtils::UpdateTrigger(const QString &databaseName, const QString &tableName,
                                     const QString &triggerName)
{
    return TAppDialogs::UpdateTrigger(*FManager, databaseName, tableName, triggerName) && Redraw();
}

bool TAppManagerUtils::UpdateUser(const QString &userName, const QString &hostName)
{
    return TAppDialogs::UpdateUser(*FManager, userName, hostName) && Redraw();
}

bool TAppManagerUtils::DeleteDatabase(const QString &databaseName)
{
    QString database = databaseName;
    if (!NeedDatabase(database) || !TAppDialogs::DeleteDatabase(*FManager, database))
        return false;
    return Redraw();
}

void TAppManagerUtils::ChecksumDatabase(const QString &databaseName)
{
    QString database = databaseName;
    if (NeedDatabase(database))
        TAppWorkers::Instance().ChecksumDatabase(FManager->ConnectionProfile(), database);
}

bool TAppManagerUtils::CreateSqlDump()
{
    return TAppDialogs::CreateSqlDump(*FManager);
}

bool TAppManagerUtils::ExecuteSqlDump()
{
    return TAppDialogs::ExecuteSqlDump(*FManager);
}

bool TAppManagerUtils::MigrateDatabase(const QString &databaseName)
{
    QString database = databaseName;
    return NeedDatabase(database) && TAppDialogs::MigrateDatabase(*FManager, database);
}

bool TAppManagerUtils::CloneDatabase(const QString &databaseName)
{
    QString database = databaseName;
    return NeedDatabase(database) && TAppDialogs::CloneDatabase(*FManager, database) && Redraw();
}

bool TAppManagerUtils::CloneTable(const QString &databaseName, const QString &tableName)
{
    return TAppDialogs::CloneTable(*FManager, databaseName, tableName) && Redraw();
}

bool TAppManagerUtils::RenameTable(const QString &databaseName, const QString &tableName)
{
    QString newName;
    if (!TAppDialogs::RenameTable(*FManager, databaseName, newName, tableName))
        return false;
    TAppMessages::SendTableRenamed(FManager, databaseName, tableName, newName);
    return Redraw();
}

bool TAppManagerUtils::RenameView(const QString &databaseName, const QString &viewName)
{
    QString newName;
    if (!TAppDialogs::RenameView(*FManager, databaseName, newName, viewName))
        return false;
    TAppMessages::SendViewRenamed(FManager, databaseName, viewName, newName);
    return Redraw();
}

bool TAppManagerUtils::RenameRoutine(const QString &databaseName, const QString &routineName)
{
    QString newName;
    if (!TAppDialogs::RenameRoutine(*FManager, databaseName, newName, routineName))
        return false;
    TAppMessages::SendRoutineRenamed(FManager, databaseName, routineName, newName);
    return Redraw();
}

bool TAppManagerUtils::RenameEvent(const QString &databaseName, const QString &eventName)
{
    QString newName;
    if (!TAppDialogs::RenameEvent(*FManager, databaseName, newName, eventName))
        return false;
    TAppMessages::SendEventRenamed(FManager, databaseName, eventName, newName);
    return Redraw();
}

bool TAppManagerUtils::DeleteTable(const QString &databaseName, const QString &tableName)
{
    if (!TAppDialogs::DeleteTable(*FManager, databaseName, tableName))
        return false;
    TAppMessages::SendTableDeleted(FManager, databaseName, tableName);
    return Redraw();
}

bool TAppManagerUtils::DeleteView(const QString &databaseName, const QString &viewName)
{
    if (!TAppDialogs::DeleteView(*FManager, databaseName, viewName))
        return false;
    TAppMessages::SendViewDeleted(FManager, databaseName, viewName);
    return Redraw();
}

bool TAppManagerUtils::DeleteRoutine(const QString &databaseName, const QString &routineName)
{
    if (!TAppDialogs::DeleteRoutine(*FManager, databaseName, routineName))
        return false;
    TAppMessages::SendRoutineDeleted(FManager, databaseName, routineName);
    return Redraw();
}

bool TAppManagerUtils::DeleteEvent(const QString &databaseName, const QString &eventName)
{
    if (!TAppDialogs::DeleteEvent(*FManager, databaseName, eventName))
        return false;
    TAppMessages::SendEventDeleted(FManager, databaseName, eventName);
    return Redraw();
}

bool TAppManagerUtils::DeleteField(const QString &databaseName, const QString &tableName,
                                   const QString &fieldName)
{
    return TAppDialogs::DeleteField(*FManager, databaseName, tableName, fieldName) && Redraw();
}

bool TAppManagerUtils::DeleteIndex(const QString &databaseName, const QString &tableName,
                                   const QString &indexName)
{
    return TAppDialogs::DeleteIndex(*FManager, databaseName, tableName, indexName) && Redraw();
}

bool TAppManagerUtils::DeleteReference(const QString &databaseName, const QString &tableName,
                                       const QString &referenceName)
{
    return TAppDialogs::DeleteReference(*FManager, databaseName, tableName, referenceName) &&
           Redraw();
}

bool TAppManagerUtils::DeleteTrigger(const QString &databaseName, const QString &tableName,
                                     const QString &triggerName)
{
    return TAppDialogs::DeleteTrigger(*FManager, databaseName, tableName, triggerName) && Redraw();
}

bool TAppManagerUtils::DeleteUser(const QString &userName, const QString &hostName)
{
    return TAppDialogs::DeleteUser(*FManager, userName, hostName) && Redraw();
}
