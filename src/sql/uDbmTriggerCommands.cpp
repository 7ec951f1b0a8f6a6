#include "sql/uDbmTriggerCommands.h"

#include "sql/uDbmProgramTexts.h"

#include <algorithm>

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
    QList<TDbmWholeTrigger> triggers = ExecuteToList<TDbmWholeTrigger>(
        formatters.FormatSelect(database, table),
        [&](const TDataSet &row) { return formatters.ParseSelectWholeRow(row); });
    const auto old = std::find_if(triggers.begin(), triggers.end(), [&](const auto &trigger) {
        return trigger.Entity.TriggerName == oldName;
    });
    if (old != triggers.end())
        ReadBody(database, old->Entity);
    ExecuteDelete(database, oldName);
    if (old == triggers.end()) {
        ExecuteCreate(database, table, entity);
        return;
    }
    const QString oldText = formatters.FormatRestore(database, table, *old, triggers);
    const TDbmTextSettings settings{old->Entity.SQLMode, old->Entity.CharsetClient,
                                    old->Entity.CollationConnection};
    ExecuteOrPutBack([&] { ExecuteCreate(database, table, entity); },
                     [&] { ExecuteAsMade(oldText, settings); }, oldText);
}

void TDbmTriggerCommands::ReadBody(const QString &database, TDbmTriggerEntity &entity) const
{
    const QString statement =
        FFormatters->Triggers().FormatSelectBody(database, entity.TriggerName);
    if (statement.isEmpty())
        return;
    const QString body = ExecuteToList<QString>(statement, [](const TDataSet &row) {
                             return TDbmProgramTexts::ParseBody("TRIGGER", row);
                         }).value(0);
    if (!body.isEmpty())
        entity.Body = body;
}

void TDbmTriggerCommands::ExecuteDelete(const QString &database, const QString &name) const
{
    ExecuteScript(FFormatters->Triggers().FormatDelete(database, name), ";");
}
