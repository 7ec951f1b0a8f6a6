#include "sql/uDbmReferenceCommands.h"

#include "sql/uDbmTableKeys.h"
#include "support/uException.h"
#include "support/uFormat.h"

QList<TDbmReferenceEntity> TDbmReferenceCommands::ExecuteSelect(const QString &database,
                                                                const QString &table)
{
    const TDbmReferenceFormatters &formatters = FFormatters->ForeignKeys();
    return SafeExecuteToList<TDbmReferenceEntity>(
        formatters.FormatSelectReferences(database, table),
        [&](const TDataSet &row) { return formatters.ParseSelectRow(row); });
}

QList<TDbmDependencyEntity>
TDbmReferenceCommands::ExecuteSelectDependencies(const QString &database, const QString &table)
{
    const TDbmReferenceFormatters &formatters = FFormatters->ForeignKeys();
    return SafeExecuteToList<TDbmDependencyEntity>(
        formatters.FormatSelectDependencies(database, table),
        [&](const TDataSet &row) { return formatters.ParseSelectDependenciesRow(row); });
}

void TDbmReferenceCommands::ExecuteCreate(const QString &database, const QString &table,
                                          const QList<TDbmReferenceColumnEntity> &columns,
                                          const TDbmReferenceEntity &reference) const
{
    ExecuteScript(FFormatters->ForeignKeys().FormatAlterTableAddForeignKey(
                      database, table, database, columns, reference),
                  ";");
}

void TDbmReferenceCommands::ExecuteUpdate(const QString &database, const QString &table,
                                          const QList<TDbmReferenceColumnEntity> &columns,
                                          const TDbmReferenceEntity &reference,
                                          const QString &oldName) const
{
    // Names of constraints are blind to letter case.
    if (reference.ReferenceName.compare(oldName, Qt::CaseInsensitive) == 0) {
        ReplaceUnderItsName(database, table, columns, reference, oldName);
        return;
    }
    ExecuteCreate(database, table, columns, reference);
    ExecuteDelete(database, table, oldName);
}

void TDbmReferenceCommands::ReplaceUnderItsName(const QString &database, const QString &table,
                                                const QList<TDbmReferenceColumnEntity> &columns,
                                                const TDbmReferenceEntity &reference,
                                                const QString &oldName) const
{
    const TDbmTableFormatters &tables = FFormatters->Tables();
    const QStringList ddl =
        ExecuteToList<QString>(tables.FormatSelectDDL(database, table),
                               [&](const TDataSet &row) { return tables.ParseSelectDDL(row); });
    TDbmWholeReference old;
    if (!TDbmTableKeys::Parse(database, ddl.value(0)).TryGetReference(oldName, old))
        throw EException(TFormat::Format("The foreign key \"%s\" of table \"%s\" cannot be found.",
                                         {oldName, table}));
    ExecuteDelete(database, table, oldName);
    ExecuteOrPutBack([&] { ExecuteCreate(database, table, columns, reference); },
                     [&] { ExecuteCreate(database, table, old.Columns, old.Reference); },
                     FFormatters->ForeignKeys().FormatAlterTableAddForeignKey(
                         database, table, database, old.Columns, old.Reference));
}

void TDbmReferenceCommands::ExecuteDelete(const QString &database, const QString &table,
                                          const QString &name) const
{
    ExecuteScript(FFormatters->ForeignKeys().FormatAlterTableDropForeignKey(database, table, name),
                  ";");
}
