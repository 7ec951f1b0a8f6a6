#include "sql/uDbmTriggerFormatters.h"

#include "sql/uDatasetUtils.h"
#include "sql/uDbmOtherUtils.h"
#include "sql/uDbmPathUtils.h"
#include "sql/uDbmSqlStringFormatter.h"
#include "support/uFormat.h"
#include "support/uStringUtils.h"

namespace {

struct TEventWords
{
    TDbmTriggerEvent Event;
    const char *Words;
};

constexpr TEventWords Events[] = {
    {teBeforeInsert, "BEFORE INSERT"}, {teBeforeUpdate, "BEFORE UPDATE"},
    {teBeforeDelete, "BEFORE DELETE"}, {teAfterInsert, "AFTER INSERT"},
    {teAfterUpdate, "AFTER UPDATE"},   {teAfterDelete, "AFTER DELETE"},
};

QString EventWords(TDbmTriggerEvent event)
{
    for (const TEventWords &words : Events)
        if (words.Event == event)
            return words.Words;
    return {};
}

TDbmTriggerEvent ParseEvent(const QString &text)
{
    for (const TEventWords &words : Events)
        if (text.compare(QLatin1String(words.Words), Qt::CaseInsensitive) == 0)
            return words.Event;
    return teUnknown;
}

QString ParseBody(const QString &statement)
{
    QStringList lines = TStringUtils::Lines(statement);
    if (lines.isEmpty())
        return {};
    QString &first = lines.first();
    while (!first.isEmpty() && first[0].isSpace())
        first.remove(0, 1);
    if (lines.last().trimmed().compare(u"end", Qt::CaseInsensitive) == 0)
        lines.last() = lines.last().trimmed();
    return lines.join("\r\n") + "\r\n";
}

QString FormatPlace(const TDbmWholeTrigger &trigger, const QList<TDbmWholeTrigger> &others)
{
    for (const TDbmWholeTrigger &other : others) {
        const qint64 distance = other.ActionOrder - trigger.ActionOrder;
        if (other.Entity.Event == trigger.Entity.Event && qAbs(distance) == 1)
            return TFormat::Format(distance < 0 ? "FOLLOWS `%s`\r\n" : "PRECEDES `%s`\r\n",
                                   {other.Entity.TriggerName});
    }
    return {};
}

} // namespace

QString TDbmTriggerFormatters::FormatSelect(const QString &database, const QString &table) const
{
    return TFormat::Format(
        "SELECT * FROM information_schema.triggers WHERE event_object_schema = '%s' AND "
        "event_object_table = '%s'",
        {TDbmSqlStringFormatter::Format(database), TDbmSqlStringFormatter::Format(table)});
}

TDbmTriggerEntity TDbmTriggerFormatters::ParseRow(const TDataSet &row, const QString &body) const
{
    const auto text = [&](const QString &name) { return TDatasetUtils::AsString(row, name, {}); };
    TDbmTriggerEntity entity;
    entity.TriggerName = row.FieldByName("trigger_name").AsString();
    entity.Event = ParseEvent(text(QStringLiteral("ACTION_TIMING")) + ' ' +
                              text(QStringLiteral("EVENT_MANIPULATION")));
    entity.Body = body;
    entity.Definer = text(QStringLiteral("DEFINER"));
    entity.Created = TDatasetUtils::AsDateTime(row, QStringLiteral("CREATED"), {});
    entity.SQLMode = text(QStringLiteral("SQL_MODE"));
    entity.CharsetClient = text(QStringLiteral("CHARACTER_SET_CLIENT"));
    entity.CollationConnection = text(QStringLiteral("COLLATION_CONNECTION"));
    entity.DatabaseCollation = text(QStringLiteral("DATABASE_COLLATION"));
    return entity;
}

TDbmTriggerEntity TDbmTriggerFormatters::ParseSelectRow(const TDataSet &row) const
{
    return ParseRow(
        row, ParseBody(TDatasetUtils::AsString(row, QStringLiteral("ACTION_STATEMENT"), {})));
}

TDbmWholeTrigger TDbmTriggerFormatters::ParseSelectWholeRow(const TDataSet &row) const
{
    return {ParseRow(row, TDatasetUtils::AsString(row, QStringLiteral("ACTION_STATEMENT"), {})),
            TDatasetUtils::AsLargeint(row, QStringLiteral("ACTION_ORDER"), 0)};
}

QString TDbmTriggerFormatters::FormatSelectBody(const QString &database, const QString &name) const
{
    if (!FServerFeatures->Events)
        return {};
    return "SHOW CREATE TRIGGER " + TDbmPathUtils::FormatDbObject(database, name);
}

QString TDbmTriggerFormatters::FormatCreate(const QString &database, const QString &table,
                                            const TDbmTriggerEntity &entity) const
{
    const QStringList lines{
        TFormat::Format("CREATE TRIGGER %s %s ON %s",
                        {TDbmPathUtils::FormatDbObject(database, entity.TriggerName),
                         EventWords(entity.Event), TDbmPathUtils::FormatDbObject(database, table)}),
        "FOR EACH ROW", entity.Body};
    return lines.join("\r\n").trimmed();
}

QString TDbmTriggerFormatters::FormatRestore(const QString &database, const QString &table,
                                             const TDbmWholeTrigger &trigger,
                                             const QList<TDbmWholeTrigger> &others) const
{
    TDbmTriggerEntity entity = trigger.Entity;
    entity.Body.prepend(FormatPlace(trigger, others));
    QString text = FormatCreate(database, table, entity);
    if (!entity.Definer.isEmpty())
        text.replace(0, qstrlen("CREATE"),
                     "CREATE DEFINER = " + TDbmOtherUtils::FormatUser(entity.Definer));
    return text;
}

QString TDbmTriggerFormatters::FormatDelete(const QString &database, const QString &name) const
{
    return TFormat::Format("DROP TRIGGER IF EXISTS `%s`.`%s`", {database, name});
}
