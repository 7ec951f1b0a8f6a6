#include "sql/uDbmDataCommands.h"

#include "sql/uVariantUtils.h"

qint64 TDbmDataCommands::SelectCount(const QString &statement)
{
    return SafeExecuteToValue<qint64>(
        statement, [](const TDataSet &row) { return TFieldReading::Int64(row.FieldAt(0)); }, 0);
}

qint64 TDbmDataCommands::ExecuteSelectRowCount(const QString &database, const QString &table)
{
    return SelectCount(FFormatters->Data().FormatSelectRowCount(database, table));
}

qint64 TDbmDataCommands::ExecuteSelectRowCount(const QString &database, const QString &table,
                                               const QString &whereText)
{
    return SelectCount(FFormatters->Data().FormatSelectRowCount(database, table, whereText));
}

bool TDbmDataCommands::ExecuteSelectRow(const QString &database, const QString &table,
                                        const TReader &reader, const TVariantList &values,
                                        const QStringList &fields)
{
    return SafeExecuteToValue<bool>(
        FFormatters->Data().FormatSelectRow(database, table, values, fields),
        [&](const TDataSet &row) { return row.RecordCount() == 1 && reader(row); }, false);
}

void TDbmDataCommands::ExecuteInsertRow(const QString &database, const QString &table,
                                        const TVariantList &values, const QStringList &fields) const
{
    ExecuteScript(FFormatters->Data().FormatInsertRow(database, table, values, fields), ";");
}

void TDbmDataCommands::ExecuteUpdateRow(const QString &database, const QString &table,
                                        const TVariantList &whereValues,
                                        const QStringList &whereFields, const TVariantList &values,
                                        const QStringList &fields) const
{
    ExecuteScript(FFormatters->Data().FormatUpdateRow(database, table, whereValues, whereFields,
                                                      values, fields),
                  ";");
}

void TDbmDataCommands::ExecuteDeleteRow(const QString &database, const QString &table,
                                        const TVariantList &whereValues,
                                        const QStringList &whereFields) const
{
    ExecuteScript(FFormatters->Data().FormatDeleteRow(database, table, whereValues, whereFields),
                  ";");
}
