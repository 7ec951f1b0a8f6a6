#include "sql/uDbmReferenceFormatters.h"

#include "sql/uDatasetUtils.h"
#include "sql/uDbmPathUtils.h"
#include "sql/uDbmSqlStringFormatter.h"
#include "sql/uDbmTableDDLParser.h"
#include "support/uFormat.h"
#include "support/uStringUtils.h"

namespace {

struct TOptionText
{
    const char *Text;
    TDbmReferenceOption Option;
};

constexpr TOptionText Options[] = {{"RESTRICT", roRestrict},
                                   {"CASCADE", roCascade},
                                   {"SET NULL", roSetNull},
                                   {"NO ACTION", roNoAction}};

TDbmReferenceOption ParseRule(const QString &text)
{
    for (const TOptionText &option : Options)
        if (text.compare(QLatin1String(option.Text), Qt::CaseInsensitive) == 0)
            return option.Option;
    return roRestrict;
}

QString OptionClause(const QString &words, TDbmReferenceOption value)
{
    for (const TOptionText &option : Options)
        if (option.Option == value)
            return words + ' ' + option.Text;
    return {};
}

QString FormatColumns(const QList<TDbmReferenceColumnEntity> &columns,
                      QString TDbmReferenceColumnEntity::*name)
{
    QStringList names;
    for (const TDbmReferenceColumnEntity &column : columns)
        names.append(TFormat::Format("`%s`", {column.*name}));
    return names.join(", ");
}

QString FormatAlterTable(const QString &database, const QString &table, const QString &clause)
{
    return TFormat::Format("ALTER TABLE %s %s",
                           {TDbmPathUtils::FormatDbObject(database, table), clause});
}

} // namespace

QString TDbmReferenceFormatters::FormatSelectReferences(const QString &database,
                                                        const QString &table) const
{
    return TFormat::Format(
        "SELECT * FROM information_schema.referential_constraints WHERE constraint_schema = '%s' "
        "AND table_name = '%s'",
        {TDbmSqlStringFormatter::Format(database), TDbmSqlStringFormatter::Format(table)});
}

TDbmReferenceEntity TDbmReferenceFormatters::ParseSelectRow(const TDataSet &row) const
{
    TDbmReferenceEntity entity;
    entity.ReferenceName = row.FieldByName("constraint_name").AsString();
    entity.RefDatabaseName = TDatasetUtils::AsString(row, "unique_constraint_schema", {});
    entity.RefTableName = TDatasetUtils::AsString(row, "referenced_table_name", {});
    entity.OnUpdate = ParseRule(TDatasetUtils::AsString(row, "update_rule", {}));
    entity.OnDelete = ParseRule(TDatasetUtils::AsString(row, "delete_rule", {}));
    return entity;
}

QString TDbmReferenceFormatters::FormatSelectDependencies(const QString &database,
                                                          const QString &table) const
{
    return TFormat::Format(
        "SELECT * FROM information_schema.key_column_usage WHERE referenced_table_schema = '%s' "
        "AND referenced_table_name = '%s'",
        {TDbmSqlStringFormatter::Format(database), TDbmSqlStringFormatter::Format(table)});
}

TDbmDependencyEntity TDbmReferenceFormatters::ParseSelectDependenciesRow(const TDataSet &row) const
{
    TDbmDependencyEntity entity;
    entity.Name = row.FieldByName("constraint_name").AsString();
    entity.SrcDatabaseName = row.FieldByName("table_schema").AsString();
    entity.SrcTableName = row.FieldByName("table_name").AsString();
    return entity;
}

QList<TDbmReferenceEntity> TDbmReferenceFormatters::ParseFromTableDDL(const QString &database,
                                                                      const QString &ddl) const
{
    return TDbmTableDDLParser(FServerFeatures, database, ddl).ParseForeignKeys();
}

QString
TDbmReferenceFormatters::FormatAddForeignKey(const TDbmReferenceEntity &reference,
                                             const QList<TDbmReferenceColumnEntity> &columns,
                                             const QString &database) const
{
    const QString name = reference.ReferenceName.isEmpty()
                             ? QString()
                             : TFormat::Format("`%s`", {reference.ReferenceName});
    // A server that ignores the name behind FOREIGN KEY would make one up.
    const QString start = FServerFeatures->ConstraintNames && !name.isEmpty()
                              ? "ADD CONSTRAINT " + name + " FOREIGN KEY"
                              : "ADD FOREIGN KEY " + name;
    const QString refDatabase =
        reference.RefDatabaseName == database ? QString() : reference.RefDatabaseName;
    return TStringUtils::Compact(
        TFormat::Format("%s (%s) REFERENCES %s (%s) %s %s",
                        {start, FormatColumns(columns, &TDbmReferenceColumnEntity::SrcColumnName),
                         TDbmPathUtils::FormatDbObject(refDatabase, reference.RefTableName),
                         FormatColumns(columns, &TDbmReferenceColumnEntity::RefColumnName),
                         OptionClause("ON DELETE", reference.OnDelete),
                         OptionClause("ON UPDATE", reference.OnUpdate)}));
}

QString TDbmReferenceFormatters::FormatDropForeignKey(const QString &name) const
{
    return TFormat::Format("DROP FOREIGN KEY `%s`", {name});
}

QString TDbmReferenceFormatters::FormatAlterTableAddForeignKey(
    const QString &database, const QString &table, const QString &referenceDatabase,
    const QList<TDbmReferenceColumnEntity> &columns, const TDbmReferenceEntity &reference) const
{
    return FormatAlterTable(database, table,
                            FormatAddForeignKey(reference, columns, referenceDatabase));
}

QString TDbmReferenceFormatters::FormatAlterTableDropForeignKey(const QString &database,
                                                                const QString &table,
                                                                const QString &name) const
{
    return FormatAlterTable(database, table, FormatDropForeignKey(name));
}
