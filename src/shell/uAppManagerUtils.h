#pragma once

#include "model/uDbmEntityTypes.h"

#include <QString>
#include <memory>

class TAppCodeCompleteUtils;
class TAppManagerPageUtils;
class TDbmManager;

/// The user-level operations of a workspace: each runs a dialog, then tells the bus what changed.
/// Those that give a result give whether the user went through with it.
class TAppManagerUtils
{
public:
    TAppManagerUtils(TDbmManager *manager, TAppManagerPageUtils *pageUtils); // not owned

    ~TAppManagerUtils();

    void SetParams(TDbmManager *manager);
    TAppCodeCompleteUtils &CodeComplete() { return *FCodeComplete; }

    void SelectCharset();
    void SelectSchema(const QString &databaseName);
    void OpenSchema();
    void NewQuery();
    void OpenQuery();
    /// A query page with the frame of a new routine. Without a name the database is asked for, here
    /// and below.
    bool CreateRoutine(TDbmRoutineType routineType, const QString &databaseName = {});
    bool CreateDatabase();
    bool UpdateDatabase(const QString &databaseName = {});
    bool DeleteDatabase(const QString &databaseName = {});
    // Making and changing: of what TAppDialogs::Has a dialog for. A new table or view is shown.
    bool CreateTable(const QString &databaseName = {});
    bool CreateView(const QString &databaseName = {});
    bool CreateEvent(const QString &databaseName = {});
    bool CreateField(const QString &databaseName, const QString &tableName);
    bool CreateIndex(const QString &databaseName, const QString &tableName);
    bool CreateReference(const QString &databaseName, const QString &tableName);
    bool CreateTrigger(const QString &databaseName, const QString &tableName);
    bool CreateUser();
    bool UpdateTable(const QString &databaseName, const QString &tableName);
    bool UpdateView(const QString &databaseName, const QString &viewName);
    bool UpdateEvent(const QString &databaseName, const QString &eventName);
    bool UpdateField(const QString &databaseName, const QString &tableName,
                     const QString &fieldName);
    bool UpdateIndex(const QString &databaseName, const QString &tableName,
                     const QString &indexName);
    bool UpdateReference(const QString &databaseName, const QString &tableName,
                         const QString &referenceName);
    bool UpdateTrigger(const QString &databaseName, const QString &tableName,
                       const QString &triggerName);
    bool UpdateUser(const QString &userName, const QString &hostName);
    /// The job that sums up the rows of a database.
    void ChecksumDatabase(const QString &databaseName = {});
    bool CreateSqlDump();
    bool ExecuteSqlDump();
    bool MigrateDatabase(const QString &databaseName = {});
    bool CloneDatabase(const QString &databaseName = {});
    bool CloneTable(const QString &databaseName, const QString &tableName);
    bool RenameTable(const QString &databaseName, const QString &tableName);
    bool RenameView(const QString &databaseName, const QString &viewName);
    bool RenameRoutine(const QString &databaseName, const QString &routineName);
    bool RenameEvent(const QString &databaseName, const QString &eventName);
    bool DeleteTable(const QString &databaseName, const QString &tableName);
    bool DeleteView(const QString &databaseName, const QString &viewName);
    bool DeleteRoutine(const QString &databaseName, const QString &routineName);
    bool DeleteEvent(const QString &databaseName, const QString &eventName);
    bool DeleteField(const QString &databaseName, const QString &tableName,
                     const QString &fieldName);
    bool DeleteIndex(const QString &databaseName, const QString &tableName,
                     const QString &indexName);
    bool DeleteReference(const QString &databaseName, const QString &tableName,
                         const QString &referenceName);
    bool DeleteTrigger(const QString &databaseName, const QString &tableName,
                       const QString &triggerName);
    bool DeleteUser(const QString &userName, const QString &hostName);

private:
    bool NeedDatabase(QString &databaseName);
    TDbmManager *FManager;
    TAppManagerPageUtils *FPageUtils;
    std::unique_ptr<TAppCodeCompleteUtils> FCodeComplete;
};
