#pragma once

#include "support/uVariant.h"

#include <QString>
#include <functional>
#include <memory>

struct TDatasetExportTextOptions;
class QWidget;
class TAppProfile;
class TDbmCommand;
class TDbmFieldList;
class TDbmManager;

/// The objects that have a dialog to make and to change them.
enum TAppDialogKind {
    adkDatabase,
    adkTable,
    adkView,
    adkEvent,
    adkField,
    adkIndex,
    adkReference,
    adkTrigger,
    adkUser
};

/// The one place from which dialogs are opened: one operation per user intention. Each gives
/// whether the user confirmed; out arguments are set only then. Modal, main thread.
class TAppDialogs
{
public:
    /// A box with Yes and No; on Yes runs the action.
    static bool Execute(const QString &question, const std::function<void()> &action);
    /// Asks the question unless it is empty, then runs the text as a script. Gives whether it ran;
    /// raises EDacMySqlError.
    static bool ExecuteCommand(TDbmCommand &command, const QString &text, const QString &question);

    static bool OpenManagerFromProfiles(std::unique_ptr<TDbmManager> &manager, QString &profileName,
                                        QString &profileId);
    static bool OpenProfile(TAppProfile &profile);
    static bool CreateProfile(TAppProfile &profile);
    static bool UpdateProfile(const TAppProfile &profile, TAppProfile &newProfile);

    static bool OpenSqlFile(QString &fileName);
    static void About();
    static bool SelectDatabase(TDbmManager &manager, QString &name);
    // The dialogs of the jobs: each starts its job when it was closed by "Start". Without a name
    // the database is chosen in the dialog.
    static bool CreateSqlDump(TDbmManager &manager, const QString &databaseName = {});
    static bool ExecuteSqlDump(TDbmManager &manager, const QString &fileName = {});
    static bool MigrateDatabase(TDbmManager &manager, const QString &databaseName);
    static bool CloneDatabase(TDbmManager &manager, const QString &databaseName);
    /// What the copy does not have is shown in one message.
    static bool CloneTable(TDbmManager &manager, const QString &databaseName,
                           const QString &tableName);
    static bool ExportCSVOptions(TDatasetExportTextOptions &options);
    /// A table or a view of the database.
    static bool SelectDataObject(TDbmManager &manager, const QString &databaseName, QString &name);
    /// One column that is none of `excluded`.
    static bool SelectField(const QString &title, TDbmFieldList &fields,
                            const QStringList &excluded, QString &name);
    /// Several columns; `names` are those checked at the start, and the choice.
    static bool SelectFields(const QString &title, TDbmFieldList &fields, QStringList &names);
    static bool SelectCharset(TDbmManager &manager, QString &name);

    /// What a dialog of an object is opened for: to change `Name`, or to make one when that is
    /// empty. An account without a name is told from none by its host.
    struct TObjectTask
    {
        TDbmManager &Manager;
        QString DatabaseName = {};
        QString TableName = {}; // that a field, an index, a key or a trigger belongs to
        QString Name = {};
        QString HostName = {}; // of a user
        QString Position = {}; // of a new field; empty for the last
    };
    /// Does the work; gives the name that the object has then.
    using TObjectDialog = std::function<bool(const TObjectTask &task, QString &newName)>;
    /// Whether there is such a dialog: what leads to one that there is not is disabled.
    static bool Has(TAppDialogKind kind);
    static void SetObjectDialog(TAppDialogKind kind, TObjectDialog dialog); // unset: none

    static bool CreateDatabase(TDbmManager &manager, QString &name);
    static bool UpdateDatabase(TDbmManager &manager, const QString &databaseName);
    static bool CreateTable(TDbmManager &manager, const QString &databaseName, QString &name);
    static bool UpdateTable(TDbmManager &manager, const QString &databaseName, QString &newName,
                            const QString &tableName);
    static bool CreateView(TDbmManager &manager, const QString &databaseName, QString &name);
    static bool UpdateView(TDbmManager &manager, const QString &databaseName, QString &newName,
                           const QString &viewName);
    static bool CreateEvent(TDbmManager &manager, const QString &databaseName);
    static bool UpdateEvent(TDbmManager &manager, const QString &databaseName, QString &newName,
                            const QString &eventName);
    static bool CreateField(TDbmManager &manager, const QString &databaseName,
                            const QString &tableName, const QString &position);
    static bool UpdateField(TDbmManager &manager, const QString &databaseName,
                            const QString &tableName, const QString &fieldName);
    static bool CreateIndex(TDbmManager &manager, const QString &databaseName,
                            const QString &tableName);
    static bool UpdateIndex(TDbmManager &manager, const QString &databaseName,
                            const QString &tableName, const QString &indexName);
    static bool CreateReference(TDbmManager &manager, const QString &databaseName,
                                const QString &tableName);
    static bool UpdateReference(TDbmManager &manager, const QString &databaseName,
                                const QString &tableName, const QString &referenceName);
    static bool CreateTrigger(TDbmManager &manager, const QString &databaseName,
                              const QString &tableName);
    static bool UpdateTrigger(TDbmManager &manager, const QString &databaseName,
                              const QString &tableName, const QString &triggerName);
    static bool CreateUser(TDbmManager &manager);
    static bool UpdateUser(TDbmManager &manager, const QString &userName, const QString &hostName);

    /// Rename and delete do the change; an object that is no longer there is not asked about.
    static bool RenameTable(TDbmManager &manager, const QString &databaseName, QString &newName,
                            const QString &tableName);
    static bool RenameView(TDbmManager &manager, const QString &databaseName, QString &newName,
                           const QString &viewName);
    static bool RenameRoutine(TDbmManager &manager, const QString &databaseName, QString &newName,
                              const QString &routineName);
    static bool RenameEvent(TDbmManager &manager, const QString &databaseName, QString &newName,
                            const QString &eventName);

    static bool DeleteDatabase(TDbmManager &manager, const QString &databaseName);
    static bool DeleteTable(TDbmManager &manager, const QString &databaseName,
                            const QString &tableName);
    static bool DeleteView(TDbmManager &manager, const QString &databaseName,
                           const QString &viewName);
    static bool DeleteRoutine(TDbmManager &manager, const QString &databaseName,
                              const QString &routineName);
    static bool DeleteEvent(TDbmManager &manager, const QString &databaseName,
                            const QString &eventName);
    static bool DeleteField(TDbmManager &manager, const QString &databaseName,
                            const QString &tableName, const QString &fieldName);
    static bool DeleteIndex(TDbmManager &manager, const QString &databaseName,
                            const QString &tableName, const QString &indexName);
    static bool DeleteReference(TDbmManager &manager, const QString &databaseName,
                                const QString &tableName, const QString &referenceName);
    static bool DeleteTrigger(TDbmManager &manager, const QString &databaseName,
                              const QString &tableName, const QString &triggerName);
    static bool DeleteUser(TDbmManager &manager, const QString &userName, const QString &hostName);

    // The rows of a table. `whereFields` and `whereValues` are the whole key of one row.
    static bool TextEditor(const QString &title, const QString &value, QString &result);
    /// `result` gets the bytes that the dialog had at last, confirmed or not; empty stands for
    /// NULL.
    static bool BlobEditor(const QString &title, const QByteArray &value, QByteArray &result);
    static bool CreateDataRecord(TDbmManager &manager, const QString &databaseName,
                                 const QString &tableName);
    static bool UpdateDataRecord(TDbmManager &manager, const QString &databaseName,
                                 const QStringList &whereFields, const TVariantList &whereValues,
                                 const QString &tableName);
    static bool DeleteDataRecord(TDbmManager &manager, const QString &databaseName,
                                 const QStringList &whereFields, const TVariantList &whereValues,
                                 const QString &tableName);
    static bool TruncateTable(TDbmManager &manager, const QString &databaseName,
                              const QString &tableName);

private:
    static QWidget *Owner();
};
