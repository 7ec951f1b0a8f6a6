#include "sql/uDbmSelectFormatter.h"

#include "sql/uDbmPathUtils.h"
#include "sql/uDbmStatementsFormatters.h"
#include "support/uFormat.h"

#include <algorithm>

namespace {

using TClauses = TDbmStatementsFormatters;

void AppendClause(QString &sql, const QString &clause)
{
    if (!clause.isEmpty())
        sql += u' ' + clause;
}

} // namespace

void TDbmSelectFormatter::Format(QString &sql) const
{
    sql = FLimitOffset > 0 && !FPrimaryFieldNames.isEmpty() ? KeyJoinForm() : PlainForm();
}

void TDbmSelectFormatter::FormatRowCount(QString &sql) const
{
    sql = "SELECT count(*) FROM " + TDbmPathUtils::FormatDbObject(FDatabaseName, FTableName);
    AppendClause(sql, TClauses::FormatWhere(FWhereFields, FWhereValues, FWhereCommandText));
    AppendClause(sql, TClauses::FormatLimit(FLimitOffset, FLimitRowCount));
}

QString TDbmSelectFormatter::PlainForm() const
{
    QString sql =
        TFormat::Format("SELECT %s FROM %s",
                        {Columns({}), TDbmPathUtils::FormatDbObject(FDatabaseName, FTableName)});
    AppendClause(sql, TClauses::FormatWhere(FWhereFields, FWhereValues, FWhereCommandText));
    AppendClause(sql, OrderBy(FTableName, false));
    AppendClause(sql, TClauses::FormatLimit(FLimitOffset, FLimitRowCount));
    return sql;
}

QString TDbmSelectFormatter::KeyJoinForm() const
{
    TDbmSelectFormatter keys;
    keys.FDatabaseName = FDatabaseName;
    keys.FTableName = FTableName;
    keys.FFieldNames = FPrimaryFieldNames;
    // Deliberate: FWhereValues stays unset, this form is used only with a condition text; with
    // columns it raises.
    keys.FWhereFields = FWhereFields;
    keys.FWhereCommandText = FWhereCommandText;
    keys.FOrderFields = FOrderFields.isEmpty() ? FPrimaryFieldNames : FOrderFields;
    keys.FOrderAscending = FOrderFields.isEmpty() || FOrderAscending;
    keys.FLimitOffset = FLimitOffset;
    keys.FLimitRowCount = FLimitRowCount;
    QString subquery;
    keys.Format(subquery);

    QString sql = TFormat::Format(
        "SELECT %s FROM %s AS t JOIN (%s) AS q",
        {Columns("t"), TDbmPathUtils::FormatDbObject(FDatabaseName, FTableName), subquery});
    AppendClause(sql, TClauses::FormatOn("t", "q", FPrimaryFieldNames, FPrimaryFieldNames));
    AppendClause(sql, OuterOrderBy());
    return sql;
}

QString TDbmSelectFormatter::OuterOrderBy() const
{
    // A column of the key that is not selected stands in both tables: the server finds it
    // ambiguous.
    const bool ambiguous =
        !FFieldNames.isEmpty() &&
        std::any_of(FOrderFields.begin(), FOrderFields.end(), [&](const QString &name) {
            return FPrimaryFieldNames.contains(name) && !FFieldNames.contains(name);
        });
    return OrderBy("t", ambiguous);
}

// A bare name would be that of the length, while the subquery knows the column alone: the first
// page would go by the lengths and the others by the texts, so that rows came twice or never.
QString TDbmSelectFormatter::OrderBy(const QString &alias, bool isQualified) const
{
    const auto isLength = [this](const QString &name) {
        return FFieldNames.contains(name) && ComesAsLength(name);
    };
    if (!isQualified && std::none_of(FOrderFields.begin(), FOrderFields.end(), isLength))
        return TClauses::FormatOrderBy(FOrderFields, FOrderAscending);
    QStringList fields;
    for (const QString &name : FOrderFields)
        fields += TDbmPathUtils::FormatDbObject(alias, name);
    return "ORDER BY " + fields.join(", ") + (FOrderAscending ? " ASC" : " DESC");
}

bool TDbmSelectFormatter::ComesAsLength(const QString &name) const
{
    return FTextFields.contains(name) || FBlobFields.contains(name);
}

QString TDbmSelectFormatter::Columns(const QString &alias) const
{
    if (FFieldNames.isEmpty())
        return alias.isEmpty() ? QString("*") : u'`' + alias + "`.*";
    QStringList columns;
    for (const QString &name : FFieldNames) {
        const QString qualified = TDbmPathUtils::FormatDbObject(alias, name);
        if (ComesAsLength(name))
            columns += TFormat::Format("length(%s) AS `%s`", {qualified, name});
        else if (FFloatFields.contains(name))
            columns += TFormat::Format("%s + 0e0 AS `%s`", {qualified, name});
        else
            columns += qualified;
    }
    return columns.join(u", ");
}
