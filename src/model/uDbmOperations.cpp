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
    database.Owner()->RequestProcess();
}

void TDbmOperations::UpdateTable(TDbmTableItem &table, const TDbmTableEntity &entity)
{
    const QString oldName = table.TableName();
    FCommands->Tables().ExecuteUpdate(table.DatabaseName(), oldName, entity);
    if (entity.TableName == oldName)
        table.RequestProcess();
    else
        table.Owner()->RequestProcess();
}

void TDbmOperations::UpdateView(TDbmViewItem &view, const TDbmViewEntity &entity)
{
    FCommands->Views().ExecuteUpdate(view.DatabaseName(), view.ViewName(), entity);
    view.Owner()->RequestProcess();
}

void TDbmOperations::UpdateEvent(TDbmEventItem &event, const TDbmEventEntity &entity)
{
    FCommands->Events().ExecuteUpdate(event.Database().Name(), event.Entity().EventName, entity);
    event.Owner()->RequestProcess();
}

void TDbmOperations::UpdateUser(TDbmUserPrivilegesItem &user,
                                const TDbmUserPrivilegesEntity &entity, bool changePassword,
                                const QString &password)
{
    FCommands->UsersPrivileges().ExecuteUpdate(user.Entity().UserName, user.Entity().HostName,
                                               password, changePassword, entity);
    user.Owner()->RequestProcess();
}

void TDbmOperations::DeleteDatabase(TDbmDatabaseItem &database)
{
    FCommands->Databases().ExecuteDelete(database.Name(), false);
    database.Owner()->RequestProcess();
}

void TDbmOperations::DeleteTable(TDbmTableItem &table)
{
    FCommands->Tables().ExecuteDelete(table.DatabaseName(), table.TableName());
    table.Owner()->RequestProcess();
}

void TDbmOperations::DeleteView(TDbmViewItem &view)
{
    FCommands->Views().ExecuteDelete(view.DatabaseName(), view.ViewName());
    view.Owner()->RequestProcess();
}

void TDbmOperations::DeleteRoutine(TDbmRoutineItem &routine)
{
    FCommands->Routines().ExecuteDelete(routine.Database().Name(), routine.Entity());
    routine.Owner()->RequestProcess();
}

void TDbmOperations::DeleteEvent(TDbmEventItem &event)
{
    FCommands->Events().ExecuteDelete(event.Database().Name(), event.Entity().EventName);
    event.Owner()->RequestProcess();
}

void TDbmOperations::DeleteUser(TDbmUserPrivilegesItem &user)
{
    FCommands->UsersPrivileges().ExecuteDelete(user.Entity().UserName, user.Entity().HostName);
    user.Owner()->RequestProcess();
}

void TDbmOperations::RenameTable(TDbmTableItem &table, const QString &newName)
{
    FCommands->Tables().ExecuteRename(table.DatabaseName(), table.TableName(), newName);
    table.Owner()->RequestProcess();
}

void TDbmOperations::RenameView(TDbmViewItem &view, const QString &newName)
{
    FCommands->Views().ExecuteRename(view.DatabaseName(), view.ViewName(), newName);
    view.Owner()->RequestProcess();
}

void TDbmOperations::RenameRoutine(TDbmRoutineItem &routine, const QString &newName)
{
    FCommands->Routines().ExecuteRename(routine.Database().Name(), routine.Entity(), newName,
                                        routine.Params().GetValue());
    routine.Owner()->RequestProcess();
}

void TDbmOperations::RenameEvent(TDbmEventItem &event, const QString &newName)
{
    FCommands->Events().ExecuteRename(event.Database().Name(), event.Entity().EventName, newName);
    event.Owner()->RequestProcess();
}
