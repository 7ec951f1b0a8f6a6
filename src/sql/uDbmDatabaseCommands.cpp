#include "sql/uDbmDatabaseCommands.h"

QList<TDbmDatabaseEntity> TDbmDatabaseCommands::ExecuteSelect()
{
    const auto &formatters = FFormatters->Databases();
    return SafeExecuteToList<TDbmDatabaseEntity>(
        formatters.FormatFetchQuery({}),
        [&](const TDataSet &row) { return formatters.ParseFetchQueryRow(row); });
}

bool TDbmDatabaseCommands::ExecuteSelectRow(const QString &name, TDbmDatabaseEntity &entity)
{
    const auto &formatters = FFormatters->Databases();
    return SafeTryExecuteToValue<TDbmDatabaseEntity>(
        formatters.FormatFetchQuery(name),
        [&](const TDataSet &row) { return formatters.ParseFetchQueryRow(row); }, entity);
}

void TDbmDatabaseCommands::ExecuteCreate(const TDbmDatabaseEntity &entity) const
{
    ExecuteScript(FFormatters->Databases().FormatCreateDatabase(entity), ";");
}

void TDbmDatabaseCommands::ExecuteUpdate(const TDbmDatabaseEntity &oldEntity,
                                         const TDbmDatabaseEntity &newEntity) const
{
    ExecuteScript(FFormatters->Databases().FormatAlterDatabase(oldEntity, newEntity), ";");
}

void TDbmDatabaseCommands::ExecuteDelete(const QString &name, bool ifExists) const
{
    ExecuteScript(FFormatters->Databases().FormatDropDatabase(name, ifExists), ";");
}

void TDbmDatabaseCommands::ExecuteUse(const QString &name) const
{
    ExecuteScript(FFormatters->Databases().FormatUseDatabase(name), ";");
}
