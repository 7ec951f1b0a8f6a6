#include "sql/uDbmDatabasePrivilegesCommands.h"

QList<TDbmDatabasePrivilegesEntity>
TDbmDatabasePrivilegesCommands::ExecuteSelect(const QString &user, const QString &host)
{
    const TDbmDatabasePrivilegesFormatters &formatters = FFormatters->DatabasesPrivileges();
    return SafeExecuteToList<TDbmDatabasePrivilegesEntity>(
        formatters.FormatSelect(user, host),
        [&](const TDataSet &row) { return formatters.ParseSelectRow(row); });
}
