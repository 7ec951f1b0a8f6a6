#include "sql/uDbmVariableFormatters.h"

#include "sql/uDatasetUtils.h"
#include "sql/uDbmSqlStringFormatter.h"
#include "sql/uDbmSqlValueUtils.h"
#include "support/uFormat.h"

namespace {

const char *TableName(TDbmVariableOption option)
{
    return option == svoGlobal ? "global_variables" : "session_variables";
}

const char *Scope(TDbmVariableOption option)
{
    return option == svoGlobal ? "GLOBAL" : "SESSION";
}

} // namespace

QString TDbmVariableFormatters::Schema() const
{
    // MySQL 8 moved these tables, with the same columns.
    return FServerFeatures->PSVariables ? "performance_schema" : "information_schema";
}

QString TDbmVariableFormatters::FormatSelect(TDbmVariableOption option) const
{
    if (!FServerFeatures->ISVariables)
        return TFormat::Format("SHOW %s VARIABLES", {Scope(option)});
    return TFormat::Format("SELECT * FROM %s.%s", {Schema(), TableName(option)});
}

QString TDbmVariableFormatters::FormatGetValue(const QString &name, TDbmVariableOption option) const
{
    const QString escaped = TDbmSqlStringFormatter::Format(name);
    if (!FServerFeatures->ISVariables)
        return TFormat::Format("SHOW %s VARIABLES LIKE '%s'", {Scope(option), escaped});
    return TFormat::Format("SELECT variable_value FROM %s.%s WHERE variable_name = '%s'",
                           {Schema(), TableName(option), escaped});
}

QString TDbmVariableFormatters::FormatSetValue(const QString &name, const TVariant &value,
                                               TDbmVariableOption option) const
{
    return TFormat::Format("SET %s %s = %s", {Scope(option), name,
                                              TDbmSqlValueUtils::FormatVariantValue(value, true)});
}

QString TDbmVariableFormatters::FormatSetNumber(const QString &name, const QString &number,
                                                TDbmVariableOption option) const
{
    return TFormat::Format("SET %s %s = %s", {Scope(option), name, number});
}

TDbmVariableEntity TDbmVariableFormatters::ParseSelectRow(const TDataSet &row) const
{
    TDbmVariableEntity entity;
    entity.Name = row.FieldByName("variable_name").AsString().toLower();
    entity.Value =
        TDatasetUtils::AsString(row, FServerFeatures->ISVariables ? "variable_value" : "value", {});
    return entity;
}

QString TDbmVariableFormatters::ParseGetValue(const TDataSet &row) const
{
    return row.FieldAt(FServerFeatures->ISVariables ? 0 : 1).AsString();
}
