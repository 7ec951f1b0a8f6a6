#include "sql/uDbmDataFormatters.h"

#include "sql/uDbmPathUtils.h"
#include "sql/uDbmSelectFormatter.h"
#include "sql/uDbmStatementsFormatters.h"
#include "support/uFormat.h"

QString TDbmDataFormatters::FormatSelectRowCount(const QString &database,
                                                 const QString &table) const
{
    return "SELECT count(*) FROM " + TDbmPathUtils::FormatDbObject(database, table);
}

QString TDbmDataFormatters::FormatSelectRowCount(const QString &database, const QString &table,
                                                 const QString &whereText) const
{
    TDbmSelectFormatter select;
    select.FDatabaseName = database;
    select.FTableName = table;
    select.FWhereCommandText = whereText;
    QString sql;
    select.FormatRowCount(sql);
    return sql;
}

QString TDbmDataFormatters::FormatSelectRow(const QString &database, const QString &table,
                                            const TVariantList &values,
                                            const QStringList &fields) const
{
    TDbmSelectFormatter select;
    select.FDatabaseName = database;
    select.FTableName = table;
    select.FWhereFields = fields;
    select.FWhereValues = values;
    QString sql;
    select.Format(sql);
    return sql;
}

QString TDbmDataFormatters::FormatInsertRow(const QString &database, const QString &table,
                                            const TVariantList &values,
                                            const QStringList &fields) const
{
    return TFormat::Format("INSERT INTO %s (%s) VALUES (%s)",
                           {TDbmPathUtils::FormatDbObject(database, table),
                            TDbmStatementsFormatters::FormatFields(fields),
                            TDbmStatementsFormatters::FormatValues(values)});
}

QString TDbmDataFormatters::FormatUpdateRow(const QString &database, const QString &table,
                                            const TVariantList &whereValues,
                                            const QStringList &whereFields,
                                            const TVariantList &values,
                                            const QStringList &fields) const
{
    return TFormat::Format(
        "UPDATE %s %s %s %s",
        {TDbmPathUtils::FormatDbObject(database, table),
         TDbmStatementsFormatters::FormatSet(fields, values),
         TDbmStatementsFormatters::FormatWhere(whereFields, whereValues, QString()),
         TDbmStatementsFormatters::FormatLimit(-1, 1)});
}

QString TDbmDataFormatters::FormatDeleteRow(const QString &database, const QString &table,
                                            const TVariantList &whereValues,
                                            const QStringList &whereFields) const
{
    return TFormat::Format("DELETE FROM %s %s", {TDbmPathUtils::FormatDbObject(database, table),
                                                 TDbmStatementsFormatters::FormatWhere(
                                                     whereFields, whereValues, QString())});
}
