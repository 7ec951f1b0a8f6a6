#include "shell/uAppDialogs.h"

#include "model/uDbmEventList.h"
#include "model/uDbmFieldList.h"
#include "model/uDbmIndexList.h"
#include "model/uDbmManager.h"
#include "model/uDbmReferenceList.h"
#include "model/uDbmRoutineList.h"
#include "model/uDbmTableList.h"
#include "model/uDbmTriggerList.h"
#include "model/uDbmViewList.h"
#include "pages/dialogs/uRenameDialogFrame.h"
#include "shell/uDialogForm.h"
#include "support/uFormat.h"

// Renaming and deleting: the object is looked up first, and what is not in its list any more is
// not asked about.

namespace {

bool Rename(QWidget *owner, const QString &title, const QString &name, QString &newName,
            const TRenameDialogFrame::TProcessAction &action)
{
    return TDialogForm::RunFrame<TRenameDialogFrame>(
        owner, [&](TRenameDialogFrame &frame) { frame.SetParams(title, name, action); },
        [&](TRenameDialogFrame &frame) { newName = frame.GetResultName(); });
}

bool Delete(const char *kind, const QString &name, const std::function<void()> &action)
{
    return TAppDialogs::Execute(
        TFormat::Format("Do you really want to delete %s \"%s\"?", {QString(kind), name}), action);
}

} // namespace

bool TAppDialogs::RenameTable(TDbmManager &manager, const QString &databaseName, QString &newName,
                              const QString &tableName)
{
    std::shared_ptr<TDbmTableItem> table;
    return manager.TryGetTable(databaseName, tableName, table) &&
           Rename(Owner(), "Rename table", tableName, newName,
                  [&](const QString &name) { manager.Operations().RenameTable(*table, name); });
}

bool TAppDialogs::RenameView(TDbmManager &manager, const QString &databaseName, QString &newName,
                             const QString &viewName)
{
    std::shared_ptr<TDbmViewItem> view;
    return manager.TryGetView(databaseName, viewName, view) &&
           Rename(Owner(), "Rename view", viewName, newName,
                  [&](const QString &name) { manager.Operations().RenameView(*view, name); });
}

bool TAppDialogs::RenameRoutine(TDbmManager &manager, const QString &databaseName, QString &newName,
                                const QString &routineName)
{
    std::shared_ptr<TDbmRoutineItem> routine;
    return manager.TryGetRoutine(databaseName, routineName, routine) &&
           Rename(Owner(), "Rename routine", routineName, newName,
                  [&](const QString &name) { manager.Operations().RenameRoutine(*routine, name); });
}

bool TAppDialogs::RenameEvent(TDbmManager &manager, const QString &databaseName, QString &newName,
                              const QString &eventName)
{
    std::shared_ptr<TDbmEventItem> event;
    return manager.TryGetEvent(databaseName, eventName, event) &&
           Rename(Owner(), "Rename event", eventName, newName,
                  [&](const QString &name) { manager.Operations().RenameEvent(*event, name); });
}

bool TAppDialogs::DeleteDatabase(TDbmManager &manager, const QString &databaseName)
{
    std::shared_ptr<TDbmDatabaseItem> database;
    return manager.Databases().TryGetByName(databaseName, database) &&
           Delete("database", databaseName,
                  [&] { manager.Operations().DeleteDatabase(*database); });
}

bool TAppDialogs::DeleteTable(TDbmManager &manager, const QString &databaseName,
                              const QString &tableName)
{
    std::shared_ptr<TDbmTableItem> table;
    return manager.TryGetTable(databaseName, tableName, table) &&
           Delete("table", tableName, [&] { manager.Operations().DeleteTable(*table); });
}

bool TAppDialogs::DeleteView(TDbmManager &manager, const QString &databaseName,
                             const QString &viewName)
{
    std::shared_ptr<TDbmViewItem> view;
    return manager.TryGetView(databaseName, viewName, view) &&
           Delete("view", viewName, [&] { manager.Operations().DeleteView(*view); });
}

bool TAppDialogs::DeleteRoutine(TDbmManager &manager, const QString &databaseName,
                                const QString &routineName)
{
    std::shared_ptr<TDbmRoutineItem> routine;
    return manager.TryGetRoutine(databaseName, routineName, routine) &&
           Delete("routine", routineName, [&] { manager.Operations().DeleteRoutine(*routine); });
}

bool TAppDialogs::DeleteEvent(TDbmManager &manager, const QString &databaseName,
                              const QString &eventName)
{
    std::shared_ptr<TDbmEventItem> event;
    return manager.TryGetEvent(databaseName, eventName, event) &&
           Delete("event", eventName, [&] { manager.Operations().DeleteEvent(*event); });
}

bool TAppDialogs::DeleteField(TDbmManager &manager, const QString &databaseName,
                              const QString &tableName, const QString &fieldName)
{
    std::shared_ptr<TDbmTableItem> table;
    std::shared_ptr<TDbmFieldItem> field;
    return manager.TryGetTable(databaseName, tableName, table) &&
           table->Fields().TryGetByName(fieldName, field) && Delete("field", fieldName, [&] {
               manager.Commands().Fields().ExecuteDelete(databaseName, tableName, fieldName);
               table->RequestProcess();
           });
}

bool TAppDialogs::DeleteIndex(TDbmManager &manager, const QString &databaseName,
                              const QString &tableName, const QString &indexName)
{
    std::shared_ptr<TDbmTableItem> table;
    std::shared_ptr<TDbmIndexItem> index;
    return manager.TryGetTable(databaseName, tableName, table) &&
           table->Indexes().TryGetByName(indexName, index) && Delete("index", indexName, [&] {
               manager.Commands().Indexes().ExecuteDelete(databaseName, tableName, indexName);
               table->RequestProcess();
           });
}

bool TAppDialogs::DeleteReference(TDbmManager &manager, const QString &databaseName,
                                  const QString &tableName, const QString &referenceName)
{
    std::shared_ptr<TDbmTableItem> table;
    std::shared_ptr<TDbmReferenceItem> reference;
    return manager.TryGetTable(databaseName, tableName, table) &&
           table->References().TryGetByName(referenceName, reference) &&
           Delete("foreign key", referenceName, [&] {
               manager.Commands().ForeignKeys().ExecuteDelete(databaseName, tableName,
                                                              referenceName);
               table->RequestProcess();
           });
}

bool TAppDialogs::DeleteTrigger(TDbmManager &manager, const QString &databaseName,
                                const QString &tableName, const QString &triggerName)
{
    std::shared_ptr<TDbmTableItem> table;
    std::shared_ptr<TDbmTriggerItem> trigger;
    return manager.TryGetTable(databaseName, tableName, table) &&
           table->Triggers().TryGetByName(triggerName, trigger) &&
           Delete("trigger", triggerName, [&] {
               manager.Commands().Triggers().ExecuteDelete(databaseName, triggerName);
               table->RequestProcess();
           });
}

bool TAppDialogs::DeleteUser(TDbmManager &manager, const QString &userName, const QString &hostName)
{
    std::shared_ptr<TDbmUserPrivilegesItem> user;
    return manager.UsersPrivileges().TryGetByNameAndHost(userName, hostName, user) &&
           Execute("Do you really want to delete this user?",
                   [&] { manager.Operations().DeleteUser(*user); });
}
