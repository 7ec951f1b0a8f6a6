#include "sql/uDbmRoutineCommands.h"

QList<TDbmRoutineEntity> TDbmRoutineCommands::ExecuteSelect(const QString &database)
{
    const TDbmRoutineFormatters &formatters = FFormatters->Routines();
    return SafeExecuteToList<TDbmRoutineEntity>(
        formatters.FormatSelect(database),
        [&](const TDataSet &row) { return formatters.ParseSelectRow(row); });
}

void TDbmRoutineCommands::ExecuteSelectParams(const QString &database, const QString &name,
                                              QString &params, TDbmRoutineType routineType)
{
    const TDbmRoutineFormatters &formatters = FFormatters->Routines();
    params = SafeExecuteToValue<QString>(
        formatters.FormatSelectParams(database, name, routineType),
        [&](const TDataSet &row) {
            QString text;
            formatters.ParseSelectParams(row, routineType, text);
            return text;
        },
        QString());
}

void TDbmRoutineCommands::ExecuteCreate(const QString &database, const TDbmRoutineEntity &entity,
                                        const QString &params) const
{
    ExecuteScript(FFormatters->Routines().FormatCreate(database, entity, params), "$$");
}

void TDbmRoutineCommands::ExecuteUpdate(const QString &database, const QString &name,
                                        const TDbmRoutineEntity &entity) const
{
    ExecuteScript(FFormatters->Routines().FormatUpdate(database, name, entity), "$$");
}

void TDbmRoutineCommands::ExecuteDelete(const QString &database,
                                        const TDbmRoutineEntity &entity) const
{
    ExecuteScript(FFormatters->Routines().FormatDelete(database, entity), ";");
}

void TDbmRoutineCommands::ExecuteDeleteProcedure(const QString &database, const QString &name) const
{
    ExecuteScript(FFormatters->Routines().FormatDeleteProcedure(database, name), ";");
}

void TDbmRoutineCommands::ExecuteDeleteFunction(const QString &database, const QString &name) const
{
    ExecuteScript(FFormatters->Routines().FormatDeleteFunction(database, name), ";");
}

void TDbmRoutineCommands::ExecuteRename(const QString &database, const TDbmRoutineEntity &entity,
                                        const QString &newName, const QString &params) const
{
    TDbmRoutineEntity copy = entity;
    copy.RoutineName = newName;
    ExecuteCreate(database, copy, params);
    ExecuteDelete(database, entity);
}
