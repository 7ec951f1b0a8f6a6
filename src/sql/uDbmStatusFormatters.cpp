#include "sql/uDbmStatusFormatters.h"

#include "sql/uDatasetUtils.h"

QString TDbmStatusFormatters::FormatSelect(TDbmStatusOption option) const
{
    // Where the tables moved to performance_schema, they lost the counters of statements.
    if (!FServerFeatures->ISStatus || FServerFeatures->PSVariables)
        return option == ssoGlobal ? "SHOW GLOBAL STATUS" : "SHOW SESSION STATUS";
    return option == ssoGlobal ? "SELECT * FROM information_schema.global_status"
                               : "SELECT * FROM information_schema.session_status";
}

TDbmStatusEntity TDbmStatusFormatters::ParseSelectRow(const TDataSet &row) const
{
    TDbmStatusEntity entity;
    entity.Name = row.FieldByName("variable_name").AsString().toLower();
    entity.Value =
        TDatasetUtils::AsString(row, FServerFeatures->PSVariables ? "value" : "variable_value", {});
    return entity;
}
