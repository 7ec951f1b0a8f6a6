#pragma once

#include "model/uDbmEntities.h"

class TDbmCommands;
class TDbmDatabaseItem;
class TDbmDatabaseList;
class TDbmEventItem;
class TDbmRoutineItem;
class TDbmTableItem;
class TDbmUserPrivilegesItem;
class TDbmUserPrivilegesList;
class TDbmViewItem;

/// Every change that a user makes to an object of the server: runs one command, then marks stale
/// exactly the part of the tree that it touched. What the command raises passes on, and nothing is
/// marked then.
class TDbmOperations
{
public:
    explicit TDbmOperations(TDbmCommands *commands) : FCommands(commands) {} // not owned

    void CreateDatabase(TDbmDatabaseList &databaseList, const TDbmDatabaseEntity &entity);
    void CreateTable(TDbmDatabaseItem &database, const TDbmTableEntity &entity);
    void CreateView(TDbmDatabaseItem &database, const TDbmViewEntity &entity);
    void CreateEvent(TDbmDatabaseItem &database, const TDbmEventEntity &entity);
    void CreateUser(TDbmUserPrivilegesList &userList, const TDbmUserPrivilegesEntity &entity,
                    const QString &password);

    void UpdateDatabase(TDbmDatabaseItem &database, const TDbmDatabaseEntity &newEntity);
    void UpdateTable(TDbmTableItem &table, const TDbmTableEntity &entity);
    void UpdateView(TDbmViewItem &view, const TDbmViewEntity &entity);
    void UpdateEvent(TDbmEventItem &event, const TDbmEventEntity &entity);
    void UpdateUser(TDbmUserPrivilegesItem &user, const TDbmUserPrivilegesEntity &entity,
                    bool changePassword, const QString &password);

    void DeleteDatabase(TDbmDatabaseItem &database);
    void DeleteTable(TDbmTableItem &table);
    void DeleteView(TDbmViewItem &view);
    void DeleteRoutine(TDbmRoutineItem &routine);
    void DeleteEvent(TDbmEventItem &event);
    void DeleteUser(TDbmUserPrivilegesItem &user);

    void RenameTable(TDbmTableItem &table, const QString &newName);
    void RenameView(TDbmViewItem &view, const QString &newName);
    void RenameRoutine(TDbmRoutineItem &routine, const QString &newName);
    void RenameEvent(TDbmEventItem &event, const QString &newName);

private:
    TDbmCommands *FCommands;
};
