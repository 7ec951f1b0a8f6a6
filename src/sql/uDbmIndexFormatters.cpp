#include "sql/uDbmIndexFormatters.h"

#include "sql/uDatasetUtils.h"
#include "sql/uDbmSqlStringFormatter.h"
#include "sql/uDbmTableDDLParser.h"
#include "support/uFormat.h"
#include "support/uStringUtils.h"

namespace {

QString KindWords(TDbmIndexKind kind)
{
    switch (kind) {
    case ikPrimary:
        return "PRIMARY KEY";
    case ikUnique:
        return "UNIQUE KEY";
    case ikIndex:
        return "KEY";
    case ikFulltext:
        return "FULLTEXT KEY";
    case ikSpatial:
        return "SPATIAL KEY";
    case ikNone:
        break;
    }
    return {};
}

QString FormatColumns(const QList<TDbmIndexColumnEntity> &columns)
{
    QStringList texts;
    for (const TDbmIndexColumnEntity &column : columns) {
        texts.append(column.Length > 0
                         ? TFormat::Format("`%s`(%d)", {column.ColumnName, column.Length})
                         : TFormat::Format("`%s`", {column.ColumnName}));
        if (column.Descending)
            texts.last() += " DESC";
    }
    return texts.join(", ");
}

QString FormatAlterTable(const QString &database, const QString &table, const QString &clause)
{
    return TFormat::Format("ALTER TABLE `%s`.`%s` %s", {database, table, clause});
}

} // namespace

QList<TDbmIndexEntity> TDbmIndexFormatters::ParseFromTableDDL(const QString &database,
                                                              const QString &ddl) const
{
    const TDbmTableDDLParser parser(FServerFeatures, database, ddl);
    QList<TDbmIndexEntity> indexes;
    TDbmIndexEntity primary;
    if (parser.TryParsePrimaryKey(primary))
        indexes.append(primary);
    return indexes + parser.ParseUniqueKeys() + parser.ParseKeys();
}

QString TDbmIndexFormatters::FormatSelect(const QString &database, const QString &table) const
{
    return TFormat::Format(
        "SELECT distinct index_name, table_name, non_unique, index_type FROM "
        "information_schema.statistics WHERE table_schema = '%s' AND table_name = '%s'",
        {TDbmSqlStringFormatter::Format(database), TDbmSqlStringFormatter::Format(table)});
}

TDbmIndexEntity TDbmIndexFormatters::ParseSelectRow(const TDataSet &row) const
{
    TDbmIndexEntity index;
    index.IndexName = row.FieldByName("index_name").AsString();
    const QString type = TDatasetUtils::AsString(row, "index_type", {});
    bool isNumber = false;
    const int nonUnique = TDatasetUtils::AsString(row, "non_unique", {}).toInt(&isNumber);
    if (isNumber && nonUnique != 1)
        index.IndexKind =
            index.IndexName.compare(u"PRIMARY", Qt::CaseInsensitive) == 0 ? ikPrimary : ikUnique;
    else
        index.IndexKind =
            type.compare(u"FULLTEXT", Qt::CaseInsensitive) == 0 ? ikFulltext : ikIndex;
    return index;
}

QString TDbmIndexFormatters::FormatDefinition(const TDbmIndexEntity &index,
                                              const QList<TDbmIndexColumnEntity> &columns) const
{
    QString text = KindWords(index.IndexKind);
    if (index.IndexKind != ikPrimary)
        text +=
            index.IndexName.isEmpty() ? QString(" ") : TFormat::Format(" `%s`", {index.IndexName});
    text = TStringUtils::Compact(text + " (" + FormatColumns(columns) + ')');
    return index.Options.isEmpty() ? text : text + ' ' + index.Options;
}

QString TDbmIndexFormatters::FormatAddIndex(const TDbmIndexEntity &index,
                                            const QList<TDbmIndexColumnEntity> &columns) const
{
    return "ADD " + FormatDefinition(index, columns);
}

QString TDbmIndexFormatters::FormatDropIndex(const QString &name) const
{
    return name == u"PRIMARY" ? QString("DROP PRIMARY KEY")
                              : TFormat::Format("DROP INDEX `%s`", {name});
}

QString
TDbmIndexFormatters::FormatAlterTableAddIndex(const QString &database, const QString &table,
                                              const TDbmIndexEntity &index,
                                              const QList<TDbmIndexColumnEntity> &columns) const
{
    return FormatAlterTable(database, table, FormatAddIndex(index, columns));
}

QString TDbmIndexFormatters::FormatAlterTableDropIndex(const QString &database,
                                                       const QString &table,
                                                       const QString &name) const
{
    return FormatAlterTable(database, table, FormatDropIndex(name));
}

QString TDbmIndexFormatters::FormatAlterTableReplaceIndex(
    const QString &database, const QString &table, const TDbmIndexEntity &index,
    const QList<TDbmIndexColumnEntity> &columns, const QString &oldName) const
{
    return FormatAlterTable(database, table,
                            FormatDropIndex(oldName) + ", " + FormatAddIndex(index, columns));
}
