#include "sql/uDbmSqlUtils.h"

#include "core/uDbmCommand.h"
#include "sql/uDbmPathUtils.h"
#include "sql/uDbmSqlStringFormatter.h"
#include "sql/uDbmSqlValueUtils.h"
#include "sql/uDbmStatementsFormatters.h"
#include "support/uFormat.h"

namespace {

QString KeyTest(const QStringList &keyFields, const QString &prefix)
{
    QStringList tests;
    for (const QString &field : keyFields)
        tests += TFormat::Format("(`%s` = :%s%s)", {field, prefix, field});
    return tests.join(u" AND ");
}

} // namespace

QString TDbmSqlUtils::FormatUserHost(const QString &user, const QString &host)
{
    return TFormat::Format("'%s'@'%s'",
                           {TDbmSqlStringFormatter::Format(user),
                            host.isEmpty() ? QString("%") : TDbmSqlStringFormatter::Format(host)});
}

QString TDbmSqlUtils::FormatWhere(const QStringList &fields, const TVariantList &values)
{
    TDbmStatementsFormatters::CheckPairs(fields, values);
    QStringList tests;
    for (qsizetype i = 0; i < fields.size(); ++i)
        tests += TFormat::Format(
            "(`%s` = %s)", {fields[i], TDbmSqlValueUtils::FormatVariantValue(values[i], true)});
    return tests.join(u" AND ");
}

QString TDbmSqlUtils::FormatGetFieldValue(const QString &database, const QString &table,
                                          const QStringList &keyFields,
                                          const TVariantList &keyValues, const QString &fieldName)
{
    return TFormat::Format("SELECT `%s` FROM %s WHERE %s",
                           {fieldName, TDbmPathUtils::FormatDbObject(database, table),
                            FormatWhere(keyFields, keyValues)});
}

QString TDbmSqlUtils::FormatSetFieldValue(const QString &database, const QString &table,
                                          const QStringList &keyFields,
                                          const TVariantList &keyValues, const QString &fieldName,
                                          const TVariant &value)
{
    return TFormat::Format("UPDATE %s SET `%s` = %s WHERE %s",
                           {TDbmPathUtils::FormatDbObject(database, table), fieldName,
                            TDbmSqlValueUtils::FormatVariantValue(value, true),
                            FormatWhere(keyFields, keyValues)});
}

TVariant TDbmSqlUtils::ExecuteGetFieldValue(TDbmCommand &command, const QString &database,
                                            const QString &table, const QStringList &keyFields,
                                            const TVariantList &keyValues, const QString &fieldName)
{
    TVariant value;
    command.ExecuteQuery(FormatGetFieldValue(database, table, keyFields, keyValues, fieldName),
                         [&value](TDataSet *rows) {
                             if (rows && !rows->IsEmpty())
                                 value = rows->FieldAt(0).ValueAt(0);
                         });
    return value;
}

void TDbmSqlUtils::ExecuteSetFieldValue(TDbmCommand &command, const QString &database,
                                        const QString &table, const QStringList &keyFields,
                                        const TVariantList &keyValues, const QString &fieldName,
                                        const TVariant &value)
{
    command.ExecScript(FormatSetFieldValue(database, table, keyFields, keyValues, fieldName, value),
                       {}, ";");
}

QString TDbmSqlUtils::FormatUpdateSQLInsert(const QString &database, const QString &table,
                                            const QStringList &fields)
{
    QStringList parameters;
    for (const QString &field : fields)
        parameters += u':' + field;
    return TFormat::Format("INSERT INTO %s (%s) VALUES (%s)",
                           {TDbmPathUtils::FormatDbObject(database, table),
                            TDbmStatementsFormatters::FormatFields(fields),
                            parameters.join(u", ")});
}

QString TDbmSqlUtils::FormatUpdateSQLUpdate(const QString &database, const QString &table,
                                            const QStringList &keyFields, const QStringList &fields)
{
    QStringList pairs;
    for (const QString &field : fields)
        pairs += TFormat::Format("`%s` = :%s", {field, field});
    return TFormat::Format("UPDATE %s SET %s WHERE %s",
                           {TDbmPathUtils::FormatDbObject(database, table), pairs.join(u", "),
                            KeyTest(keyFields, "OLD_")});
}

QString TDbmSqlUtils::FormatUpdateSQLDelete(const QString &database, const QString &table,
                                            const QStringList &keyFields)
{
    return TFormat::Format(
        "DELETE FROM %s WHERE %s",
        {TDbmPathUtils::FormatDbObject(database, table), KeyTest(keyFields, {})});
}
