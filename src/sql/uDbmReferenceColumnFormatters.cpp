#include "sql/uDbmReferenceColumnFormatters.h"

#include "sql/uDbmSqlStringFormatter.h"
#include "sql/uDbmTableDDLParser.h"
#include "sql/uVariantUtils.h"
#include "support/uFormat.h"

QString TDbmReferenceColumnFormatters::FormatSelectOnDatabase(const QString &database) const
{
    return TFormat::Format("SELECT ordinal_position, table_name, constraint_name, column_name, "
                           "referenced_column_name FROM information_schema.key_column_usage WHERE "
                           "table_schema = '%s' ORDER BY ordinal_position",
                           {TDbmSqlStringFormatter::Format(database)});
}

TDbmDatabaseReferenceColumnEntity
TDbmReferenceColumnFormatters::ParseSelectRowOnDatabase(const TDataSet &row) const
{
    TDbmDatabaseReferenceColumnEntity entity;
    entity.TableName = row.FieldByName("table_name").AsString();
    entity.ReferenceName = row.FieldByName("constraint_name").AsString();
    entity.Position =
        static_cast<qint32>(TFieldReading::Int64(row.FieldByName("ordinal_position")));
    entity.SrcColumnName = row.FieldByName("column_name").AsString();
    entity.RefColumnName = row.FieldByName("referenced_column_name").AsString();
    return entity;
}

QString TDbmReferenceColumnFormatters::FormatSelectOnForeignKey(const QString &database,
                                                                const QString &table,
                                                                const QString &name) const
{
    return TFormat::Format(
        "SELECT ordinal_position, column_name, referenced_column_name FROM "
        "information_schema.key_column_usage WHERE table_schema = '%s' AND table_name = '%s' "
        "AND constraint_name = '%s' ORDER BY ordinal_position",
        {TDbmSqlStringFormatter::Format(database), TDbmSqlStringFormatter::Format(table),
         TDbmSqlStringFormatter::Format(name)});
}

TDbmReferenceColumnEntity
TDbmReferenceColumnFormatters::ParseSelectRowOnForeignKey(const TDataSet &row) const
{
    TDbmReferenceColumnEntity entity;
    entity.Position =
        static_cast<qint32>(TFieldReading::Int64(row.FieldByName("ordinal_position")));
    entity.SrcColumnName = row.FieldByName("column_name").AsString();
    entity.RefColumnName = row.FieldByName("referenced_column_name").AsString();
    return entity;
}

QList<TDbmReferenceColumnEntity>
TDbmReferenceColumnFormatters::ParseFromTableDDL(const QString &database, const QString &ddl,
                                                 const QString &referenceName) const
{
    return TDbmTableDDLParser(FServerFeatures, database, ddl).ParseForeignKeyColumns(referenceName);
}
