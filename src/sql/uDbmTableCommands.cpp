#include "sql/uDbmTableCommands.h"

QList<TDbmTableEntity> TDbmTableCommands::ExecuteSelect(const QString &database)
{
    const TDbmTableFormatters &formatters = FFormatters->Tables();
    return SafeExecuteToList<TDbmTableEntity>(
        formatters.FormatSelect(database),
        [&](const TDataSet &row) { return formatters.ParseSelectRow(row); });
}

bool TDbmTableCommands::ExecuteSelectRow(const QString &database, const QString &table,
                                         TDbmTableEntity &entity)
{
    const TDbmTableFormatters &formatters = FFormatters->Tables();
    return SafeTryExecuteToValue<TDbmTableEntity>(
        formatters.FormatSelectRow(database, table),
        [&](const TDataSet &row) { return formatters.ParseSelectRow(row); }, entity);
}

void TDbmTableCommands::ExecuteSelectDDL(const QString &database, const QString &table,
                                         QString &ddl)
{
    const TDbmTableFormatters &formatters = FFormatters->Tables();
    ddl = SafeExecuteToValue<QString>(
        formatters.FormatSelectDDL(database, table),
        [&](const TDataSet &row) { return formatters.ParseSelectDDL(row); }, QString());
}

quint32 TDbmTableCommands::ExecuteChecksum(const QString &database, const QString &table)
{
    const TDbmTableFormatters &formatters = FFormatters->Tables();
    return SafeExecuteToValue<quint32>(
        formatters.FormatChecksum(database, table),
        [&](const TDataSet &row) { return static_cast<quint32>(formatters.ParseChecksum(row)); },
        0);
}

void TDbmTableCommands::ExecuteCreate(const QString &database, const TDbmTableEntity &entity) const
{
    ExecuteScript(FFormatters->Tables().FormatCreate(database, entity, QString()), ";");
}

void TDbmTableCommands::ExecuteCreate(const QString &database, const TDbmTableEntity &entity,
                                      const QList<TDbmFieldEntity> &fields,
                                      const QList<TDbmIndexEntity> &indexes,
                                      const QList<QList<TDbmIndexColumnEntity>> &indexColumns) const
{
    ExecuteScript(FFormatters->Tables().FormatCreate(database, entity, QString(), indexColumns,
                                                     indexes, fields),
                  ";");
}

void TDbmTableCommands::ExecuteUpdate(const QString &database, const QString &oldName,
                                      const TDbmTableEntity &entity) const
{
    ExecuteScript(FFormatters->Tables().FormatUpdate(database, oldName, entity), ";");
    if (oldName != entity.TableName)
        ExecuteRename(database, oldName, entity.TableName);
}

void TDbmTableCommands::ExecuteDelete(const QString &database, const QString &table) const
{
    ExecuteScript(FFormatters->Tables().FormatDelete(database, table), ";");
}

void TDbmTableCommands::ExecuteRename(const QString &database, const QString &oldName,
                                      const QString &newName) const
{
    ExecuteScript(FFormatters->Tables().FormatRename(database, oldName, newName), ";");
}

void TDbmTableCommands::ExecuteTruncate(const QString &database, const QString &table) const
{
    ExecuteScript(FFormatters->Tables().FormatTruncate(database, table), ";");
}

void TDbmTableCommands::ExecuteUpdateDisableKeys(const QString &database,
                                                 const QString &table) const
{
    ExecuteScript(FFormatters->Tables().FormatUpdateDisableKeys(database, table), ";");
}

void TDbmTableCommands::ExecuteUpdateEnableKeys(const QString &database, const QString &table) const
{
    ExecuteScript(FFormatters->Tables().FormatUpdateEnableKeys(database, table), ";");
}
