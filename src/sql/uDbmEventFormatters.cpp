#include "sql/uDbmEventFormatters.h"

#include "sql/uDatasetUtils.h"
#include "sql/uDbmIntervalUtils.h"
#include "sql/uDbmOtherUtils.h"
#include "sql/uDbmPathUtils.h"
#include "sql/uDbmSqlStringFormatter.h"
#include "sql/uDbmSqlValueUtils.h"
#include "support/uFormat.h"

namespace {

bool Is(const QString &text, QStringView word)
{
    return text.compare(word, Qt::CaseInsensitive) == 0;
}

TDbmEventStatus ParseStatus(const QString &text)
{
    if (Is(text, u"ENABLED"))
        return evsEnable;
    if (Is(text, u"DISABLED"))
        return evsDisable;
    // The second is what servers of today call it.
    if (Is(text, u"SLAVESIDE_DISABLED") || Is(text, u"REPLICA_SIDE_DISABLED"))
        return evsDisableOnSlave;
    return evsUnknown;
}

TDbmEventType ParseType(const QString &text)
{
    if (Is(text, u"ONE TIME"))
        return evtOneTime;
    return Is(text, u"RECURRING") ? evtRecurring : evtUnknown;
}

QString FormatSchedule(const TDbmEventEntity &entity)
{
    const auto time = [](TDateTime value) {
        return TDbmSqlValueUtils::FormatDateTime(value, true);
    };
    if (entity.EventType == evtOneTime)
        return "ON SCHEDULE AT " + time(entity.AtTimestamp);
    if (entity.EventType != evtRecurring)
        return {};
    QString text = "ON SCHEDULE EVERY " + TDbmIntervalUtils::FormatValue(entity.Interval) + ' ';
    if (!entity.StartsTimestamp.IsNull())
        text += "STARTS " + time(entity.StartsTimestamp) + ' ';
    if (!entity.EndsTimestamp.IsNull())
        text += "ENDS " + time(entity.EndsTimestamp);
    return text;
}

QString FormatDefiner(const QString &definer)
{
    return definer.isEmpty() ? QString() : "DEFINER = " + TDbmOtherUtils::FormatUser(definer);
}

QString FormatCompletion(bool preserve)
{
    return preserve ? "ON COMPLETION PRESERVE" : "ON COMPLETION NOT PRESERVE";
}

void AppendClause(QStringList &lines, const QString &clause)
{
    if (!clause.isEmpty())
        lines.append("  " + clause);
}

QString FormatComment(const QString &comment)
{
    return "COMMENT '" + TDbmSqlStringFormatter::Format(comment) + '\'';
}

} // namespace

QString TDbmEventFormatters::FormatSelect(const QString &database) const
{
    return TFormat::Format("SELECT * FROM information_schema.events WHERE event_schema = '%s'",
                           {TDbmSqlStringFormatter::Format(database)});
}

TDbmEventEntity TDbmEventFormatters::ParseSelectRow(const TDataSet &row) const
{
    const auto text = [&](const char *name) { return TDatasetUtils::AsString(row, name, {}); };
    const auto time = [&](const char *name) { return TDatasetUtils::AsDateTime(row, name, {}); };
    TDbmEventEntity entity;
    entity.EventName = row.FieldByName("EVENT_NAME").AsString();
    entity.Definer = text("DEFINER");
    entity.OnCompletionPreserve = Is(text("ON_COMPLETION"), u"PRESERVE");
    entity.Status = ParseStatus(text("STATUS"));
    entity.EventType = ParseType(text("EVENT_TYPE"));
    entity.AtTimestamp = time("EXECUTE_AT");
    entity.StartsTimestamp = time("STARTS");
    entity.EndsTimestamp = time("ENDS");
    entity.Comment = text("EVENT_COMMENT");
    entity.Created = time("CREATED");
    entity.LastAltered = time("LAST_ALTERED");
    entity.LastExecuted = time("LAST_EXECUTED");
    entity.TimeZone = text("TIME_ZONE");
    const QString interval = text("INTERVAL_VALUE");
    if (!interval.isEmpty())
        TDbmIntervalUtils::ParseValue(interval, text("INTERVAL_FIELD"), entity.Interval);
    // Deliberate: the flag of the body tells that the text stands in the other column.
    entity.Definition = text(FServerFeatures->ISEventsBody ? "EVENT_DEFINITION" : "EVENT_BODY");
    return entity;
}

QString TDbmEventFormatters::FormatSelectBody(const QString &database, const QString &name) const
{
    return "SHOW CREATE EVENT " + TDbmPathUtils::FormatDbObject(database, name);
}

QString TDbmEventFormatters::FormatStatus(TDbmEventStatus status) const
{
    switch (status) {
    case evsEnable:
        return "ENABLE";
    case evsDisable:
        return "DISABLE";
    case evsDisableOnSlave:
        return "DISABLE ON SLAVE"; // also what the newest servers take
    case evsUnknown:
        break;
    }
    return {};
}

QString TDbmEventFormatters::FormatCreate(const QString &database, const TDbmEventEntity &entity,
                                          bool withDefiner) const
{
    QStringList lines{"CREATE"};
    AppendClause(lines, withDefiner ? FormatDefiner(entity.Definer) : QString());
    AppendClause(lines, "EVENT " + TDbmPathUtils::FormatDbObject(database, entity.EventName));
    AppendClause(lines, FormatSchedule(entity));
    AppendClause(lines, FormatCompletion(entity.OnCompletionPreserve));
    AppendClause(lines, FormatStatus(entity.Status));
    AppendClause(lines, FormatComment(entity.Comment));
    lines.append("DO");
    lines.append(entity.Definition);
    return lines.join("\r\n").trimmed();
}

QString TDbmEventFormatters::FormatUpdate(const QString &database, const QString &oldName,
                                          const TDbmEventEntity &entity) const
{
    QStringList lines{"ALTER"};
    AppendClause(lines, FormatDefiner(entity.Definer));
    AppendClause(lines, "EVENT " + TDbmPathUtils::FormatDbObject(database, oldName));
    AppendClause(lines, FormatSchedule(entity));
    AppendClause(lines, FormatCompletion(entity.OnCompletionPreserve));
    if (oldName != entity.EventName)
        AppendClause(lines,
                     "RENAME TO " + TDbmPathUtils::FormatDbObject(database, entity.EventName));
    AppendClause(lines, FormatStatus(entity.Status));
    AppendClause(lines, FormatComment(entity.Comment));
    lines.append("DO");
    lines.append(entity.Definition);
    return lines.join("\r\n").trimmed();
}

QString TDbmEventFormatters::FormatRename(const QString &database, const QString &oldName,
                                          const QString &newName) const
{
    return TFormat::Format("ALTER EVENT %s RENAME TO %s",
                           {TDbmPathUtils::FormatDbObject(database, oldName),
                            TDbmPathUtils::FormatDbObject(database, newName)});
}

QString TDbmEventFormatters::FormatDelete(const QString &database, const QString &name) const
{
    return "DROP EVENT IF EXISTS " + TDbmPathUtils::FormatDbObject(database, name);
}
