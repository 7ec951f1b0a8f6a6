#include "sql/uDbmRoutinePrivilegesCommands.h"

QList<TDbmRoutinePrivilegesEntity> TDbmRoutinePrivilegesCommands::ExecuteSelect(const QString &user,
                                                                                const QString &host)
{
    const TDbmRoutinePrivilegesFormatters &formatters = FFormatters->RoutinesPrivileges();
    return SafeExecuteToList<TDbmRoutinePrivilegesEntity>(
        formatters.FormatSelect(user, host),
        [&](const TDataSet &row) { return formatters.ParseSelectRow(row); });
}
