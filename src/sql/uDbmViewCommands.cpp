#include "sql/uDbmViewCommands.h"

QList<TDbmViewEntity> TDbmViewCommands::ExecuteSelect(const QString &database)
{
    const TDbmViewFormatters &formatters = FFormatters->Views();
    return SafeExecuteToList<TDbmViewEntity>(
        formatters.FormatSelect(database),
        [&](const TDataSet &row) { return formatters.ParseSelectRow(row); });
}

bool TDbmViewCommands::ExecuteSelectRow(const QString &database, const QString &view,
                                        TDbmViewEntity &entity)
{
    const TDbmViewFormatters &formatters = FFormatters->Views();
    return SafeTryExecuteToValue<TDbmViewEntity>(
        formatters.FormatSelectRow(database, view),
        [&](const TDataSet &row) { return formatters.ParseSelectRow(row); }, entity);
}

void TDbmViewCommands::Create(const QString &database, const TDbmViewEntity &entity,
                              bool orReplace) const
{
    ExecuteScript(
        FFormatters->Views().FormatCreate(database, entity, false, true, orReplace, QString()),
        ";");
}

void TDbmViewCommands::ExecuteCreate(const QString &database, const TDbmViewEntity &entity) const
{
    Create(database, entity, false);
}

void TDbmViewCommands::ExecuteUpdate(const QString &database, const QString &oldName,
                                     const TDbmViewEntity &entity)
{
    const TDbmViewFormatters &formatters = FFormatters->Views();
    TDbmViewEntity whole = entity;
    // A view whose tables are gone has no text to read; it has to be mended all the same.
    if (whole.Algorithm.isEmpty())
        whole.Algorithm = SafeExecuteToValue<QString>(
            formatters.FormatSelectDDL(database, oldName),
            [&](const TDataSet &row) { return formatters.ParseSelectAlgorithm(row); }, QString());
    const bool sameName = oldName == entity.ViewName;
    Create(database, whole, sameName);
    if (!sameName)
        ExecuteDelete(database, oldName);
}

void TDbmViewCommands::ExecuteDelete(const QString &database, const QString &name) const
{
    ExecuteScript(FFormatters->Views().FormatDelete(database, name, false), ";");
}

void TDbmViewCommands::ExecuteRename(const QString &database, const QString &oldName,
                                     const QString &newName) const
{
    ExecuteScript(FFormatters->Views().FormatRename(database, oldName, newName), ";");
}
