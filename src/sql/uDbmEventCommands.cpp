#include "sql/uDbmEventCommands.h"

#include "sql/uDbmProgramTexts.h"
#include "sql/uDbmSqlValueUtils.h"
#include "support/uException.h"

QList<TDbmEventEntity> TDbmEventCommands::ExecuteSelect(const QString &database)
{
    const TDbmEventFormatters &formatters = FFormatters->Events();
    return SafeExecuteToList<TDbmEventEntity>(
        formatters.FormatSelect(database),
        [&](const TDataSet &row) { return formatters.ParseSelectRow(row); });
}

QString TDbmEventCommands::ExecuteSelectBody(const QString &database, const QString &name) const
{
    return ExecuteToList<QString>(
               FFormatters->Events().FormatSelectBody(database, name),
               [](const TDataSet &row) { return TDbmProgramTexts::ParseBody("EVENT", row); })
        .value(0);
}

void TDbmEventCommands::ExecuteCreate(const QString &database, const TDbmEventEntity &entity) const
{
    ExecuteScript(FFormatters->Events().FormatCreate(database, entity, true), "$$");
}

void TDbmEventCommands::ExecuteUpdate(const QString &database, const QString &oldName,
                                      const TDbmEventEntity &entity) const
{
    // Split at its semicolons, a body's first statement would become the event and the others would
    // run at once.
    const QString delimiter = entity.Definition.contains(u';') ? "$$" : ";";
    const auto update = [&] {
        ExecuteScript(FFormatters->Events().FormatUpdate(database, oldName, entity), delimiter);
    };
    entity.TimeZone.isEmpty() ? update() : ExecuteInTimeZone(entity.TimeZone, update);
}

void TDbmEventCommands::ExecuteInTimeZone(const QString &timeZone,
                                          const std::function<void()> &action) const
{
    const QString own =
        ExecuteToList<QString>("SELECT @@SESSION.time_zone", [](const TDataSet &row) {
            return row.FieldAt(0).AsString();
        }).value(0);
    if (own == timeZone)
        return action();
    const auto set = [&](const QString &zone) {
        ExecuteScript("SET SESSION time_zone = " + TDbmSqlValueUtils::FormatString(zone, true),
                      ";");
    };
    set(timeZone);
    try {
        action();
    } catch (const EException &) {
        set(own);
        throw;
    }
    set(own);
}

void TDbmEventCommands::ExecuteDelete(const QString &database, const QString &name) const
{
    ExecuteScript(FFormatters->Events().FormatDelete(database, name), ";");
}

void TDbmEventCommands::ExecuteRename(const QString &database, const QString &oldName,
                                      const QString &newName) const
{
    ExecuteScript(FFormatters->Events().FormatRename(database, oldName, newName), ";");
}
