#include "model/uDbmOperations.h"

#include "model/uDbmDatabaseList.h"
#include "model/uDbmEventList.h"
#include "model/uDbmRoutineList.h"
#include "model/uDbmTableList.h"
#include "model/uDbmUserPrivilegesList.h"
#include "model/uDbmViewList.h"
#include "sql/uDbmCommands.h"

void TDbmOperations::CreateDatabase(TDbmDatabaseList &databaseList,
                                    const TDbmDatabaseEntity &entity)
{
    FCommands->Databases().ExecuteCreate(entity);
    databaseList.RequestProcess();
}

void TDbmOperations::CreateTable(TDbmDatabaseItem &database, const TDbmTableEntity &entity)
{
    FCommands->Tables().ExecuteCreate(database.Name(), entity);
    database.Tables().RequestProcess();
}

void TDbmOperations::CreateView(TDbmDatabaseItem &database, const TDbmViewEntity &entity)
{
    FCommands->Views().ExecuteCreate(database.Name(), entity);
    database.Views().RequestProcess();
}

void TDbmOperations::CreateEvent(TDbmDatabaseItem &database, const TDbmEventEntity &entity)
{
    FCommands->Events().ExecuteCreate(database.Name(), entity);
    database.Events().RequestProcess();
}

void TDbmOperations::CreateUser(TDbmUserPrivilegesList &userList,
                                const TDbmUserPrivilegesEntity &entity, const QString &password)
{
    FCommands->UsersPrivileges().ExecuteCreate(entity, password);
    userList.RequestProcess();
}

void TDbmOperations::UpdateDatabase(TDbmDatabaseItem &database, const TDbmDatabaseEntity &newEntity)
{
    FCommands->Databases().ExecuteUpdate(database.Entity(), newEntity);
    database.RequestProcessOfOwner();
}

void TDbmOperations::UpdateTable(TDbmTableItem &table, const TDbmTableEntity &entity)
{
    const QString oldName = table.TableName();
    FCommands->Tables().ExecuteUpdate(table.DatabaseName(), oldName, entity);
    if (entity.TableName == oldName)
        table.RequestProcess();
    else
        table.RequestProcessOfOwner();
}

void TDbmOperations::UpdateView(TDbmViewItem &view, const TDbmViewEntity &entity)
{
    FCommands->Views().ExecuteUpdate(view.DatabaseName(), view.ViewName(), entity);
    view.RequestProcessOfOwner();
}

void TDbmOperations::UpdateEvent(TDbmEventItem &event, const TDbmEventEntity &entity)
{
    const QString database = event.Database().Name();
    const QString oldName = event.Entity().EventName;
    TDbmEventEntity whole = entity;
    // Written back from the list, a body that nobody edited could become another one.
    const bool unedited = entity.Definition == event.Entity().Definition;
    const QString body =
        unedited ? FCommands->Events().ExecuteSelectBody(database, oldName) : QString();
    if (!body.isEmpty())
        whole.Definition = body;
    FCommands->Events().ExecuteUpdate(database, oldName, whole);
    event.RequestProcessOfOwner();
}

void TDbmOperations::UpdateUser(TDbmUserPrivilegesItem &user,
                                const TDbmUserPrivilegesEntity &entity, bool changePassword,
                                const QString &password)
{
    FCommands->UsersPrivileges().ExecuteUpdate(user.Entity().UserName, user.Entity().HostName,
                                               password, changePassword, entity);
    user.RequestProcessOfOwner();
}

void TDbmOperations::DeleteDatabase(TDbmDatabaseItem &database)
{
    FCommands->Databases().ExecuteDelete(database.Name(), false);
    database.RequestProcessOfOwner();
}

void TDbmOperations::DeleteTable(TDbmTableItem &table)
{
    FCommands->Tables().ExecuteDelete(table.DatabaseName(), table.TableName());
    table.RequestProcessOfOwner();
}

void TDbmOperations::DeleteView(TDbmViewItem &view)
{
    FCommands->Views().ExecuteDelete(view.DatabaseName(), view.ViewName());
    view.RequestProcessOfOwner();
}

void TDbmOperations::DeleteRoutine(TDbmRoutineItem &routine)
{
    FCommands->Routines().ExecuteDelete(routine.Database().Name(), routine.Entity());
    routine.RequestProcessOfOwner();
}

void TDbmOperations::DeleteEvent(TDbmEventItem &event)
{
    FCommands->Events().ExecuteDelete(event.Database().Name(), event.Entity().EventName);
    event.RequestProcessOfOwner();
}

void TDbmOperations::DeleteUser(TDbmUserPrivilegesItem &user)
{
    FCommands->UsersPrivileges().ExecuteDelete(user.Entity().UserName, user.Entity().HostName);
    user.RequestProcessOfOwner();
}

void TDbmOperations::RenameTable(TDbmTableItem &table, const QString &newName)
{
    FCommands->Tables().ExecuteRename(table.DatabaseName(), table.TableName(), newName);
    table.RequestProcessOfOwner();
}

void TDbmOperations::RenameView(TDbmViewItem &view, const QString &newName)
{
    FCommands->Views().ExecuteRename(view.DatabaseName(), view.ViewName(), newName);
    view.RequestProcessOfOwner();
}

void TDbmOperations::RenameRoutine(TDbmRoutineItem &routine, const QString &newName)
{
    const QString database = routine.Database().Name();
    TDbmRoutineEntity entity = routine.Entity();
    const QString params = FCommands->Routines().ExecuteSelectWhole(database, entity);
    FCommands->Routines().ExecuteRename(database, entity, newName, params);
    routine.RequestProcessOfOwner();
}

void TDbmOperations::RenameEvent(TDbmEventItem &event, const QString &newName)
{
    FCommands->Events().ExecuteRename(event.Database().Name(), event.Entity().EventName, newName);
    event.RequestProcessOfOwner();
}
