#include "sql/uDbmRoutineFormatters.h"

#include "sql/uDatasetUtils.h"
#include "sql/uDbmPathUtils.h"
#include "sql/uDbmProgramTexts.h"
#include "sql/uDbmQuotedText.h"
#include "sql/uDbmSqlStringFormatter.h"
#include "support/uFormat.h"
#include "support/uRegExUtils.h"

namespace {

constexpr auto IgnoreCase = Qt::CaseInsensitive;

bool Is(const QString &text, QStringView word)
{
    return text.compare(word, Qt::CaseInsensitive) == 0;
}

QString CommentLine(const QString &comment)
{
    return "COMMENT '" + TDbmSqlStringFormatter::Format(comment) + '\'';
}

QString CreateText(const TDataSet &row, TDbmRoutineType routineType)
{
    return TDatasetUtils::AsString(
        row, routineType == rtFunction ? "Create Function" : "Create Procedure", {});
}

// What stands behind the type of RETURNS where the server keeps it apart: without it the type would
// take the character set of the database in which the routine is created.
QString FormatCharset(const TDataSet &row)
{
    const QString charset = TDatasetUtils::AsString(row, "character_set_name", {});
    const QString type = TDatasetUtils::AsString(row, "dtd_identifier", {});
    if (charset.isEmpty() || Is(charset, u"binary") || type.contains(" charset ", IgnoreCase))
        return {};
    return TFormat::Format(" CHARSET %s COLLATE %s",
                           {charset, TDatasetUtils::AsString(row, "collation_name", {})});
}

} // namespace

QString TDbmRoutineFormatters::FormatSelect(const QString &database) const
{
    return TFormat::Format("SELECT * FROM information_schema.routines WHERE routine_schema = '%s'",
                           {TDbmSqlStringFormatter::Format(database)});
}

TDbmRoutineEntity TDbmRoutineFormatters::ParseSelectRow(const TDataSet &row) const
{
    const auto text = [&](const char *name) { return TDatasetUtils::AsString(row, name, {}); };
    TDbmRoutineEntity entity;
    entity.RoutineName = row.FieldByName("routine_name").AsString();
    entity.RoutineType =
        Is(row.FieldByName("routine_type").AsString(), u"FUNCTION") ? rtFunction : rtProcedure;
    entity.Definition = text("routine_definition");
    entity.Deterministic = Is(text("is_deterministic"), u"YES");
    entity.SecurityType = Is(text("security_type"), u"INVOKER") ? rsInvoker : rsDefiner;
    entity.Comment = text("routine_comment");
    entity.Definer = text("definer");
    entity.Returns = text("dtd_identifier") + FormatCharset(row);
    entity.Info.Created = TDatasetUtils::AsDateTime(row, "created", {});
    entity.Info.LastAltered = TDatasetUtils::AsDateTime(row, "last_altered", {});
    entity.DataAccess = text("sql_data_access");
    return entity;
}

void TDbmRoutineFormatters::RemoveDefaultCollation(TDbmRoutineEntity &entity,
                                                   const QList<TDbmCharsetEntity> &charsets)
{
    for (const TDbmCharsetEntity &charset : charsets) {
        const QString collation = " COLLATE " + charset.DefaultCollate;
        if (entity.Returns.endsWith(" CHARSET " + charset.Name + collation))
            entity.Returns.chop(collation.size());
    }
}

QString TDbmRoutineFormatters::FormatSelectParams(const QString &database, const QString &name,
                                                  TDbmRoutineType routineType) const
{
    return TFormat::Format(routineType == rtFunction ? "SHOW CREATE FUNCTION %s"
                                                     : "SHOW CREATE PROCEDURE %s",
                           {TDbmPathUtils::FormatDbObject(database, name)});
}

void TDbmRoutineFormatters::ParseSelectParams(const TDataSet &row, TDbmRoutineType routineType,
                                              QString &params) const
{
    params.clear();
    const QString text = CreateText(row, routineType);
    const qsizetype open = text.indexOf(u'(');
    if (open < 0)
        return;
    int depth = 0;
    for (qsizetype i = open + 1; i < text.size() - 1; ++i) {
        if (text[i] == u'(')
            --depth;
        else if (text[i] == u')')
            ++depth;
        if (depth == 1) {
            params = text.mid(open + 1, i - open - 1);
            return;
        }
    }
}

bool TDbmRoutineFormatters::TryParseWholeParams(const TDataSet &row, TDbmRoutineType routineType,
                                                QString &params) const
{
    const QString text = CreateText(row, routineType);
    const QString masked = TDbmQuotedText::Masked(text);
    const qsizetype open = masked.indexOf(u'(');
    int depth = 0;
    for (qsizetype i = open; i >= 0 && i < masked.size(); ++i) {
        if (masked[i] == u'(')
            ++depth;
        else if (masked[i] == u')' && --depth == 0) {
            params = text.mid(open + 1, i - open - 1);
            return true;
        }
    }
    return false;
}

void TDbmRoutineFormatters::ParseSelectBody(const TDataSet &row, TDbmRoutineEntity &entity) const
{
    const QString body = TDbmProgramTexts::ParseBody(
        entity.RoutineType == rtFunction ? "FUNCTION" : "PROCEDURE", row);
    if (!body.isEmpty())
        entity.Definition = body;
}

QString TDbmRoutineFormatters::CreatePattern()
{
    const QString name = "(?:`(?:[^`]|``)*`|\"(?:[^\"]|\"\")*\"|'(?:[^']|'')*'|[^\\s@]+)";
    return "^\\s*CREATE\\s+(?:OR\\s+REPLACE\\s+)?(?:DEFINER\\s*=\\s*" + name + "(?:@" + name +
           ")?\\s+)?(?:AGGREGATE\\s+)?(PROCEDURE|FUNCTION)\\s+(?:IF\\s+NOT\\s+EXISTS\\s+)?";
}

TDbmRoutineText TDbmRoutineFormatters::ParseSelectText(const TDataSet &row, const QString &database,
                                                       TDbmRoutineType routineType) const
{
    const auto text = [&](const char *name) { return TDatasetUtils::AsString(row, name, {}); };
    QString statement = text(routineType == rtFunction ? "Create Function" : "Create Procedure");
    const auto start = TRegExUtils::Match(statement, CreatePattern());
    if (!start.hasMatch())
        return {};
    statement.insert(start.capturedEnd(), TFormat::Format("`%s`.", {database}));
    return {statement,
            {text("sql_mode"), text("character_set_client"), text("collation_connection")}};
}

QString TDbmRoutineFormatters::FormatCreate(const QString &database,
                                            const TDbmRoutineEntity &entity,
                                            const QString &params) const
{
    const QString name = TDbmPathUtils::FormatDbObject(database, entity.RoutineName);
    QStringList lines{
        entity.RoutineType == rtFunction
            ? TFormat::Format("CREATE FUNCTION %s (%s) RETURNS %s", {name, params, entity.Returns})
            : TFormat::Format("CREATE PROCEDURE %s (%s)", {name, params})};
    if (entity.Deterministic)
        lines.append("DETERMINISTIC");
    // What a routine has without the clause is not written.
    if (!entity.DataAccess.isEmpty() && !Is(entity.DataAccess, u"CONTAINS SQL"))
        lines.append(entity.DataAccess);
    if (entity.SecurityType == rsInvoker)
        lines.append("SQL SECURITY INVOKER");
    if (!entity.Comment.isEmpty())
        lines.append(CommentLine(entity.Comment));
    lines.append(entity.Definition);
    return lines.join("\r\n").trimmed();
}

QString TDbmRoutineFormatters::FormatUpdate(const QString &database, const QString & /*oldName*/,
                                            const TDbmRoutineEntity &entity) const
{
    const QString name = TFormat::Format("`%s`.`%s`", {database, entity.RoutineName});
    const QStringList lines{
        (entity.RoutineType == rtFunction ? "ALTER FUNCTION " : "ALTER PROCEDURE ") + name,
        entity.SecurityType == rsInvoker ? "  SQL SECURITY INVOKER" : "  SQL SECURITY DEFINER",
        "  " + CommentLine(entity.Comment)};
    return lines.join("\r\n");
}

QString TDbmRoutineFormatters::FormatDelete(const QString &database,
                                            const TDbmRoutineEntity &entity) const
{
    return entity.RoutineType == rtFunction ? FormatDeleteFunction(database, entity.RoutineName)
                                            : FormatDeleteProcedure(database, entity.RoutineName);
}

QString TDbmRoutineFormatters::FormatDeleteProcedure(const QString &database,
                                                     const QString &name) const
{
    return "DROP PROCEDURE IF EXISTS " + TDbmPathUtils::FormatDbObject(database, name);
}

QString TDbmRoutineFormatters::FormatDeleteFunction(const QString &database,
                                                    const QString &name) const
{
    return "DROP FUNCTION IF EXISTS " + TDbmPathUtils::FormatDbObject(database, name);
}
