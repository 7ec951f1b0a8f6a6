#include "sql/uDbmReferenceColumnCommands.h"

QList<TDbmDatabaseReferenceColumnEntity>
TDbmReferenceColumnCommands::ExecuteSelectOnDatabase(const QString &database)
{
    const TDbmReferenceColumnFormatters &formatters = FFormatters->ForeignKeyColumns();
    return SafeExecuteToList<TDbmDatabaseReferenceColumnEntity>(
        formatters.FormatSelectOnDatabase(database),
        [&](const TDataSet &row) { return formatters.ParseSelectRowOnDatabase(row); });
}

QList<TDbmReferenceColumnEntity>
TDbmReferenceColumnCommands::ExecuteSelectOnForeignKey(const QString &database,
                                                       const QString &table, const QString &name)
{
    const TDbmReferenceColumnFormatters &formatters = FFormatters->ForeignKeyColumns();
    return SafeExecuteToList<TDbmReferenceColumnEntity>(
        formatters.FormatSelectOnForeignKey(database, table, name),
        [&](const TDataSet &row) { return formatters.ParseSelectRowOnForeignKey(row); });
}
