#include "sql/uDbmDatabaseFormatters.h"

#include "sql/uDatasetUtils.h"
#include "sql/uDbmSqlStringFormatter.h"
#include "support/uFormat.h"

namespace {

QString CollateClause(const QString &collation)
{
    return collation.isEmpty() ? QString() : " COLLATE " + collation;
}

} // namespace

QString TDbmDatabaseFormatters::FormatFetchQuery(const QString &name) const
{
    if (name.isEmpty())
        return "SELECT * FROM information_schema.schemata";
    return TFormat::Format("SELECT * FROM information_schema.schemata WHERE schema_name = '%s'",
                           {TDbmSqlStringFormatter::Format(name)});
}

TDbmDatabaseEntity TDbmDatabaseFormatters::ParseFetchQueryRow(const TDataSet &row) const
{
    TDbmDatabaseEntity entity;
    entity.DatabaseName = row.FieldByName("schema_name").AsString();
    entity.Collation = TDatasetUtils::AsString(row, "default_collation_name", {});
    return entity;
}

QString TDbmDatabaseFormatters::FormatCreateDatabase(const TDbmDatabaseEntity &entity) const
{
    return TFormat::Format("CREATE SCHEMA `%s`", {entity.DatabaseName}) +
           CollateClause(entity.Collation);
}

QString TDbmDatabaseFormatters::FormatAlterDatabase(const TDbmDatabaseEntity &oldEntity,
                                                    const TDbmDatabaseEntity &newEntity) const
{
    const bool changed = newEntity.Collation != oldEntity.Collation;
    return TFormat::Format("ALTER SCHEMA `%s`", {oldEntity.DatabaseName}) +
           CollateClause(changed ? newEntity.Collation : QString());
}

QString TDbmDatabaseFormatters::FormatAlterDatabaseFull(const TDbmDatabaseEntity &entity) const
{
    if (entity.Collation.isEmpty())
        return {};
    return TFormat::Format("ALTER SCHEMA `%s`", {entity.DatabaseName}) +
           CollateClause(entity.Collation);
}

QString TDbmDatabaseFormatters::FormatDropDatabase(const QString &name, bool ifExists) const
{
    return TFormat::Format("DROP SCHEMA%s `%s`", {ifExists ? " IF EXISTS" : "", name});
}

QString TDbmDatabaseFormatters::FormatUseDatabase(const QString &name) const
{
    return TFormat::Format("USE `%s`", {name});
}
