#include "sql/uDbmRoutineCommands.h"

#include "support/uException.h"
#include "support/uFormat.h"

#include <algorithm>

QList<TDbmRoutineEntity> TDbmRoutineCommands::ExecuteSelect(const QString &database)
{
    const TDbmRoutineFormatters &formatters = FFormatters->Routines();
    QList<TDbmRoutineEntity> routines = SafeExecuteToList<TDbmRoutineEntity>(
        formatters.FormatSelect(database),
        [&](const TDataSet &row) { return formatters.ParseSelectRow(row); });
    const bool hasCollations =
        std::any_of(routines.begin(), routines.end(), [](const TDbmRoutineEntity &routine) {
            return routine.Returns.contains(" COLLATE ");
        });
    if (!hasCollations)
        return routines;
    const auto charsets = SafeExecuteToList<TDbmCharsetEntity>(
        FFormatters->Charsets().FormatSelect(),
        [&](const TDataSet &row) { return FFormatters->Charsets().ParseSelectRow(row); });
    for (TDbmRoutineEntity &routine : routines)
        TDbmRoutineFormatters::RemoveDefaultCollation(routine, charsets);
    return routines;
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

QString TDbmRoutineCommands::ExecuteSelectWhole(const QString &database,
                                                TDbmRoutineEntity &entity) const
{
    const TDbmRoutineFormatters &formatters = FFormatters->Routines();
    QString params;
    const QList<bool> found = ExecuteToList<bool>(
        formatters.FormatSelectParams(database, entity.RoutineName, entity.RoutineType),
        [&](const TDataSet &row) {
            formatters.ParseSelectBody(row, entity);
            return formatters.TryParseWholeParams(row, entity.RoutineType, params);
        });
    if (!found.value(0))
        throw EException(TFormat::Format("The parameters of routine \"%s\" cannot be read.",
                                         {entity.RoutineName}));
    return params;
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

TDbmRoutineText TDbmRoutineCommands::ExecuteSelectText(const QString &database, const QString &name,
                                                       TDbmRoutineType routineType) const
{
    const TDbmRoutineFormatters &formatters = FFormatters->Routines();
    const TDbmRoutineText text =
        ExecuteToList<TDbmRoutineText>(formatters.FormatSelectParams(database, name, routineType),
                                       [&](const TDataSet &row) {
                                           return formatters.ParseSelectText(row, database,
                                                                             routineType);
                                       })
            .value(0);
    if (text.Statement.isEmpty())
        throw EException(TFormat::Format("The text of routine \"%s\" cannot be read.", {name}));
    return text;
}

bool TDbmRoutineCommands::ExecuteExists(const QString &database, const QString &name,
                                        TDbmRoutineType routineType) const
{
    const TDbmRoutineFormatters &formatters = FFormatters->Routines();
    const auto routines = ExecuteToList<TDbmRoutineEntity>(
        formatters.FormatSelect(database),
        [&](const TDataSet &row) { return formatters.ParseSelectRow(row); });
    return std::any_of(routines.begin(), routines.end(), [&](const TDbmRoutineEntity &routine) {
        return routine.RoutineType == routineType &&
               routine.RoutineName.compare(name, Qt::CaseInsensitive) == 0;
    });
}

QString TDbmRoutineCommands::ExecuteSelectDatabase() const
{
    return ExecuteToList<QString>("SELECT DATABASE()",
                                  [](const TDataSet &row) { return row.FieldAt(0).AsString(); })
        .value(0);
}

void TDbmRoutineCommands::ExecuteRestore(const TDbmRoutineText &text) const
{
    ExecuteAsMade(text.Statement, text.Settings);
}

void TDbmRoutineCommands::ExecuteRecreate(const QString &database, const TDbmRoutineEntity &entity,
                                          const QString &params, const TDbmRoutineEntity &old) const
{
    const TDbmRoutineText text = ExecuteSelectText(database, old.RoutineName, old.RoutineType);
    ExecuteDelete(database, old);
    ExecuteOrPutBack([&] { ExecuteCreate(database, entity, params); },
                     [&] { ExecuteRestore(text); }, text.Statement);
}

void TDbmRoutineCommands::ExecuteRename(const QString &database, const TDbmRoutineEntity &entity,
                                        const QString &newName, const QString &params) const
{
    TDbmRoutineEntity copy = entity;
    copy.RoutineName = newName;
    ExecuteCreate(database, copy, params);
    ExecuteDelete(database, entity);
}
