#include "sql/uDbmCharsetFormatters.h"

#include "sql/uDatasetUtils.h"

QString TDbmCharsetFormatters::FormatSelect() const
{
    return "SELECT * FROM information_schema.character_sets";
}

TDbmCharsetEntity TDbmCharsetFormatters::ParseSelectRow(const TDataSet &row) const
{
    TDbmCharsetEntity entity;
    entity.Name = row.FieldByName("CHARACTER_SET_NAME").AsString();
    entity.DefaultCollate = TDatasetUtils::AsString(row, "DEFAULT_COLLATE_NAME", {});
    entity.Description = TDatasetUtils::AsString(row, "DESCRIPTION", {});
    entity.MaxLen = TDatasetUtils::AsInteger(row, "MAXLEN", 0);
    return entity;
}

QString TDbmCharsetFormatters::FormatGetSessionCharset() const
{
    return FVariables.FormatGetValue("character_set_results", svoSession);
}

QString TDbmCharsetFormatters::ParseGetSessionCharset(const TDataSet &row) const
{
    return FVariables.ParseGetValue(row);
}
