#include "sql/uDbmIndexColumnFormatters.h"

#include "sql/uDatasetUtils.h"
#include "sql/uDbmSqlStringFormatter.h"
#include "sql/uDbmTableDDLParser.h"
#include "support/uFormat.h"

QList<TDbmIndexColumnEntity>
TDbmIndexColumnFormatters::ParseFromTableDDL(const QString &database, const QString &ddl,
                                             const TDbmIndexEntity &index) const
{
    return TDbmTableDDLParser(FServerFeatures, database, ddl).ParseIndexColumns(index);
}

QString TDbmIndexColumnFormatters::FormatSelectOnDatabase(const QString &database) const
{
    return TFormat::Format("SELECT table_name, index_name, column_name, sub_part FROM "
                           "information_schema.statistics WHERE table_schema = '%s' "
                           "ORDER BY seq_in_index",
                           {TDbmSqlStringFormatter::Format(database)});
}

TDbmDatabaseIndexColumnEntity
TDbmIndexColumnFormatters::ParseSelectOnDatabaseRow(const TDataSet &row) const
{
    TDbmDatabaseIndexColumnEntity entity;
    entity.TableName = row.FieldByName("table_name").AsString();
    entity.IndexName = row.FieldByName("index_name").AsString();
    entity.ColumnName = row.FieldByName("column_name").AsString();
    entity.Position = TDatasetUtils::AsInteger(row, "seq_in_index", 0);
    entity.Length = TDatasetUtils::AsLargeint(row, "sub_part", 0);
    return entity;
}
