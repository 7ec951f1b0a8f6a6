#include "sql/uDbmStatementsFormatters.h"

#include "sql/uDbmPathUtils.h"
#include "sql/uDbmSqlValueUtils.h"
#include "support/uException.h"
#include "support/uFormat.h"

void TDbmStatementsFormatters::CheckPairs(const QStringList &fields, const TVariantList &values)
{
    if (values.size() < fields.size())
        throw EException("There are more columns than values.");
}

QString TDbmStatementsFormatters::FormatFields(const QStringList &names)
{
    QStringList quoted;
    for (const QString &name : names)
        quoted += u'`' + name + u'`';
    return quoted.join(u", ");
}

QString TDbmStatementsFormatters::FormatValues(const TVariantList &values)
{
    QStringList literals;
    for (const TVariant &value : values)
        literals += TDbmSqlValueUtils::FormatVariantValue(value, true);
    return literals.join(u", ");
}

QString TDbmStatementsFormatters::FormatSet(const QStringList &fields, const TVariantList &values)
{
    if (fields.isEmpty())
        return {};
    CheckPairs(fields, values);
    QStringList pairs;
    for (qsizetype i = 0; i < fields.size(); ++i)
        pairs += TFormat::Format(
            "`%s` = %s", {fields[i], TDbmSqlValueUtils::FormatVariantValue(values[i], true)});
    return "SET " + pairs.join(u", ");
}

QString TDbmStatementsFormatters::FormatOn(const QString &leftAlias, const QString &rightAlias,
                                           const QStringList &rightFields,
                                           const QStringList &leftFields)
{
    if (leftFields.isEmpty())
        return {};
    QStringList pairs;
    for (qsizetype i = 0; i < leftFields.size(); ++i)
        pairs += TDbmPathUtils::FormatDbObject(leftAlias, leftFields[i]) + " = " +
                 TDbmPathUtils::FormatDbObject(rightAlias, rightFields[i]);
    return "ON " + pairs.join(u" AND ");
}

QString TDbmStatementsFormatters::FormatWhere(const QStringList &fields, const TVariantList &values,
                                              const QString &commandText)
{
    CheckPairs(fields, values);
    QStringList tests;
    for (qsizetype i = 0; i < fields.size(); ++i)
        tests += values[i].IsNull()
                     ? TFormat::Format("`%s` IS NULL", {fields[i]})
                     : TFormat::Format(
                           "`%s` = %s",
                           {fields[i], TDbmSqlValueUtils::FormatVariantValue(values[i], true)});
    QString where = tests.join(u" AND ");
    if (!commandText.isEmpty())
        where = where.isEmpty() ? commandText : where + " AND (" + commandText + u')';
    return where.isEmpty() ? where : "WHERE " + where;
}

QString TDbmStatementsFormatters::FormatOrderBy(const QStringList &fields, bool ascending)
{
    if (fields.isEmpty())
        return {};
    return TFormat::Format("ORDER BY %s %s", {FormatFields(fields), ascending ? "ASC" : "DESC"});
}

QString TDbmStatementsFormatters::FormatLimit(qint64 offset, qint64 rowCount)
{
    if (offset >= 1)
        return TFormat::Format("LIMIT %d, %d", {offset, rowCount});
    if (rowCount == -1)
        return {};
    return TFormat::Format("LIMIT %d", {rowCount});
}
