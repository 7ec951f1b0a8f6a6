#include "sql/uDbmTablePrivilegesCommands.h"

QList<TDbmTablePrivilegesEntity> TDbmTablePrivilegesCommands::ExecuteSelect(const QString &user,
                                                                            const QString &host)
{
    const TDbmTablePrivilegesFormatters &formatters = FFormatters->TablesPrivileges();
    return SafeExecuteToList<TDbmTablePrivilegesEntity>(
        formatters.FormatSelect(user, host),
        [&](const TDataSet &row) { return formatters.ParseSelectRow(row); });
}
