#include "sql/uDbmCollationFormatters.h"

#include "sql/uDatasetUtils.h"

QString TDbmCollationFormatters::FormatSelect() const
{
    return "SELECT * FROM information_schema.collations";
}

TDbmCollationEntity TDbmCollationFormatters::ParseSelectRow(const TDataSet &row) const
{
    const auto isYes = [&](const char *name) {
        return TDatasetUtils::AsString(row, name, {}).compare(u"YES", Qt::CaseInsensitive) == 0;
    };
    TDbmCollationEntity entity;
    entity.Name = row.FieldByName("COLLATION_NAME").AsString();
    entity.Charset = TDatasetUtils::AsString(row, "CHARACTER_SET_NAME", {});
    entity.ID = TDatasetUtils::AsInteger(row, "ID", 0);
    entity.Default = isYes("IS_DEFAULT");
    entity.Compiled = isYes("IS_COMPILED");
    entity.SortLen = TDatasetUtils::AsInteger(row, "SORTLEN", 0);
    return entity;
}
