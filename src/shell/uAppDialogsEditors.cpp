#include "shell/uAppDialogs.h"

#include "support/uException.h"

#include <map>

// Making and changing objects: each kind has one dialog for both, which does the work itself.

namespace {

using TObjectDialogs = std::map<TAppDialogKind, TAppDialogs::TObjectDialog>;

TObjectDialogs &ObjectDialogs()
{
    static TObjectDialogs dialogs;
    return dialogs;
}

bool Run(TAppDialogKind kind, const TAppDialogs::TObjectTask &task, QString &newName)
{
    if (!TAppDialogs::Has(kind))
        throw EException("There is no dialog for objects of this kind.");
    return ObjectDialogs()[kind](task, newName);
}

bool Run(TAppDialogKind kind, const TAppDialogs::TObjectTask &task)
{
    QString ignored;
    return Run(kind, task, ignored);
}

} // namespace

bool TAppDialogs::Has(TAppDialogKind kind)
{
    const auto found = ObjectDialogs().find(kind);
    return found != ObjectDialogs().end() && found->second;
}

void TAppDialogs::SetObjectDialog(TAppDialogKind kind, TObjectDialog dialog)
{
    ObjectDialogs()[kind] = std::move(dialog);
}

bool TAppDialogs::CreateDatabase(TDbmManager &manager, QString &name)
{
    return Run(adkDatabase, {.Manager = manager}, name);
}

bool TAppDialogs::UpdateDatabase(TDbmManager &manager, const QString &databaseName)
{
    return Run(adkDatabase, {.Manager = manager, .Name = databaseName});
}

bool TAppDialogs::CreateTable(TDbmManager &manager, const QString &databaseName, QString &name)
{
    return Run(adkTable, {.Manager = manager, .DatabaseName = databaseName}, name);
}

bool TAppDialogs::UpdateTable(TDbmManager &manager, const QString &databaseName, QString &newName,
                              const QString &tableName)
{
    return Run(adkTable, {.Manager = manager, .DatabaseName = databaseName, .Name = tableName},
               newName);
}

bool TAppDialogs::CreateView(TDbmManager &manager, const QString &databaseName, QString &name)
{
    return Run(adkView, {.Manager = manager, .DatabaseName = databaseName}, name);
}

bool TAppDialogs::UpdateView(TDbmManager &manager, const QString &databaseName, QString &newName,
                             const QString &viewName)
{
    return Run(adkView, {.Manager = manager, .DatabaseName = databaseName, .Name = viewName},
               newName);
}

bool TAppDialogs::CreateEvent(TDbmManager &manager, const QString &databaseName)
{
    return Run(adkEvent, {.Manager = manager, .DatabaseName = databaseName});
}

bool TAppDialogs::UpdateEvent(TDbmManager &manager, const QString &databaseName, QString &newName,
                              const QString &eventName)
{
    return Run(adkEvent, {.Manager = manager, .DatabaseName = databaseName, .Name = eventName},
               newName);
}

bool TAppDialogs::CreateField(TDbmManager &manager, const QString &databaseName,
                              const QString &tableName, const QString &position)
{
    return Run(adkField, {.Manager = manager,
                          .DatabaseName = databaseName,
                          .TableName = tableName,
                          .Position = position});
}

bool TAppDialogs::UpdateField(TDbmManager &manager, const QString &databaseName,
                              const QString &tableName, const QString &fieldName)
{
    return Run(adkField, {.Manager = manager,
                          .DatabaseName = databaseName,
                          .TableName = tableName,
                          .Name = fieldName});
}

bool TAppDialogs::CreateIndex(TDbmManager &manager, const QString &databaseName,
                              const QString &tableName)
{
    return Run(adkIndex,
               {.Manager = manager, .DatabaseName = databaseName, .TableName = tableName});
}

bool TAppDialogs::UpdateIndex(TDbmManager &manager, const QString &databaseName,
                              const QString &tableName, const QString &indexName)
{
    return Run(adkIndex, {.Manager = manager,
                          .DatabaseName = databaseName,
                          .TableName = tableName,
                          .Name = indexName});
}

bool TAppDialogs::CreateReference(TDbmManager &manager, const QString &databaseName,
                                  const QString &tableName)
{
    return Run(adkReference,
               {.Manager = manager, .DatabaseName = databaseName, .TableName = tableName});
}

bool TAppDialogs::UpdateReference(TDbmManager &manager, const QString &databaseName,
                                  const QString &tableName, const QString &referenceName)
{
    return Run(adkReference, {.Manager = manager,
                              .DatabaseName = databaseName,
                              .TableName = tableName,
                              .Name = referenceName});
}

bool TAppDialogs::CreateTrigger(TDbmManager &manager, const QString &databaseName,
                                const QString &tableName)
{
    return Run(adkTrigger,
               {.Manager = manager, .DatabaseName = databaseName, .TableName = tableName});
}

bool TAppDialogs::UpdateTrigger(TDbmManager &manager, const QString &databaseName,
                                const QString &tableName, const QString &triggerName)
{
    return Run(adkTrigger, {.Manager = manager,
                            .DatabaseName = databaseName,
                            .TableName = tableName,
                            .Name = triggerName});
}

bool TAppDialogs::CreateUser(TDbmManager &manager)
{
    return Run(adkUser, {.Manager = manager});
}

bool TAppDialogs::UpdateUser(TDbmManager &manager, const QString &userName, const QString &hostName)
{
    return Run(adkUser, {.Manager = manager, .Name = userName, .HostName = hostName});
}
