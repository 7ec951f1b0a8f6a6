#include "sql/uDbmTriggerCommands.h"

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
    const QList<TDbmWholeTrigger> triggers = ExecuteToList<TDbmWholeTrigger>(
        formatters.FormatSelect(database, table),
        [&](const TDataSet &row) { return formatters.ParseSelectWholeRow(row); });
    const auto old = std::find_if(triggers.begin(), triggers.end(), [&](const auto &trigger) {
        return trigger.Entity.TriggerName == oldName;
    });
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

void TDbmTriggerCommands::ExecuteDelete(const QString &database, const QString &name) const
{
    ExecuteScript(FFormatters->Triggers().FormatDelete(database, name), ";");
}
