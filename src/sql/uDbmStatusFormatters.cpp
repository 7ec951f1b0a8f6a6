#include "sql/uDbmStatusFormatters.h"

#include "sql/uDatasetUtils.h"
#include "support/uFormat.h"

QString TDbmStatusFormatters::FormatSelect(TDbmStatusOption option) const
{
    if (!FServerFeatures->ISStatus)
        return option == ssoGlobal ? "SHOW GLOBAL STATUS" : "SHOW SESSION STATUS";
    return TFormat::Format(
        "SELECT * FROM %s.%s",
        {FServerFeatures->PSVariables ? "performance_schema" : "information_schema",
         option == ssoGlobal ? "global_status" : "session_status"});
}

TDbmStatusEntity TDbmStatusFormatters::ParseSelectRow(const TDataSet &row) const
{
    TDbmStatusEntity entity;
    entity.Name = row.FieldByName("variable_name").AsString().toLower();
    entity.Value = TDatasetUtils::AsString(row, "variable_value", {});
    return entity;
}
