#include "sql/uDbmTriggerCommands.h"

#include "sql/uDbmSqlValueUtils.h"
#include "support/uException.h"

QList<TDbmTriggerEntity> TDbmTriggerCommands::ExecuteSelect(const QString &database,
                                                            const QString &table)
{
    const TDbmTriggerFormatters &formatters = FFormatters->Triggers();
    return SafeExecuteToList<TDbmTriggerEntity>(
        formatters.FormatSelect(database, table),
        [&](const TDataSet &row) { return formatters.ParseSelectRow(row); });
}

void TDbmTriggerCommands::ExecuteCreate(const QString &database, const QString &table,
                                        const TDbmTriggerEntity &entity) const
{
    ExecuteScript(FFormatters->Triggers().FormatCreate(database, table, entity), "$$");
}

void TDbmTriggerCommands::ExecuteRecreate(const QString &database, const QString &table,
                                          const TDbmTriggerEntity &entity,
                                          const QString &oldName) const
{
    const TDbmTriggerFormatters &formatters = FFormatters->Triggers();
    const QList<TDbmTriggerEntity> old = ExecuteToList<TDbmTriggerEntity>(
        formatters.FormatSelectRow(database, oldName),
        [&](const TDataSet &row) { return formatters.ParseSelectWholeRow(row); });
    ExecuteDelete(database, oldName);
    try {
        ExecuteCreate(database, table, entity);
    } catch (const EException &) {
        if (!old.isEmpty())
            Restore(database, table, old.first());
        throw;
    }
}

void TDbmTriggerCommands::Restore(const QString &database, const QString &table,
                                  const TDbmTriggerEntity &entity) const
{
    // Past the splitter of scripts, which would write the line ends of the text anew.
    TDacMySqlConnection &connection = FProvider->Connection();
    connection.Execute("SET @korvane_sql_mode = @@SESSION.sql_mode");
    connection.Execute("SET SESSION sql_mode = " +
                       TDbmSqlValueUtils::FormatString(entity.SQLMode, true));
    const QString back = "SET SESSION sql_mode = @korvane_sql_mode";
    try {
        connection.Execute(FFormatters->Triggers().FormatRestore(database, table, entity));
    } catch (const EException &) {
        connection.Execute(back);
        throw;
    }
    connection.Execute(back);
}

void TDbmTriggerCommands::ExecuteDelete(const QString &database, const QString &name) const
{
    ExecuteScript(FFormatters->Triggers().FormatDelete(database, name), ";");
}
