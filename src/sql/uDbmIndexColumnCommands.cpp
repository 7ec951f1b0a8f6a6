#include "sql/uDbmIndexColumnCommands.h"

QList<TDbmDatabaseIndexColumnEntity>
TDbmIndexColumnCommands::ExecuteSelectOnDatabase(const QString &database)
{
    const TDbmIndexColumnFormatters &formatters = FFormatters->IndexColumns();
    return SafeExecuteToList<TDbmDatabaseIndexColumnEntity>(
        formatters.FormatSelectOnDatabase(database),
        [&](const TDataSet &row) { return formatters.ParseSelectOnDatabaseRow(row); });
}
