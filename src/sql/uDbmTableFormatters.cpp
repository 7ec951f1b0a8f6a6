#include "sql/uDbmTableFormatters.h"

#include "sql/uDatasetUtils.h"
#include "sql/uDbmPathUtils.h"
#include "sql/uDbmSqlStringFormatter.h"
#include "support/uFormat.h"

namespace {

struct TRowFormatText
{
    const char *Text;
    TDbmTableRowFormat Format;
};

constexpr TRowFormatText RowFormats[] = {
    {"DEFAULT", rfDefault},       {"FIXED", rfFixed},         {"DYNAMIC", rfDynamic},
    {"COMPRESSED", rfCompressed}, {"REDUNDANT", rfRedundant}, {"COMPACT", rfCompact},
};

TDbmTableRowFormat ParseRowFormat(const QString &text)
{
    for (const TRowFormatText &format : RowFormats)
        if (text.compare(QLatin1String(format.Text), Qt::CaseInsensitive) == 0)
            return format.Format;
    return rfUnknown;
}

QString RowFormatText(TDbmTableRowFormat rowFormat)
{
    for (const TRowFormatText &format : RowFormats)
        if (format.Format == rowFormat)
            return format.Text;
    return RowFormats[0].Text;
}

TDbmTableType ParseTableType(const QString &text)
{
    if (text.compare(u"temporary", Qt::CaseInsensitive) == 0)
        return tblTemporary;
    return text.compare(u"system view", Qt::CaseInsensitive) == 0 ? tblSystemView : tblTable;
}

// Deliberate: the last option of the text loses its last character, so that an option of one
// character reads as empty there.
QString ParseOption(const QString &options, const QString &name)
{
    if (options.isEmpty())
        return {};
    const QString text = options.toLower();
    const QString start = name.toLower() + '=';
    const qsizetype from = text.indexOf(start);
    if (from < 0)
        return {};
    const qsizetype blank = text.indexOf(u' ', from);
    const qsizetype end = blank < 0 ? text.size() - 1 : blank;
    return text.mid(from, end - from).remove(start);
}

TDbmTablePackKeys ParsePackKeys(const QString &text)
{
    if (text == u"1")
        return pkOn;
    return text == u"0" ? pkOff : pkDefault;
}

QString PackKeysText(TDbmTablePackKeys packKeys)
{
    switch (packKeys) {
    case pkOn:
        return "1";
    case pkOff:
        return "0";
    case pkDefault:
        break;
    }
    return "DEFAULT";
}

} // namespace

QString TDbmTableFormatters::FormatFetch(const QString &condition) const
{
    const QString select =
        "SELECT * FROM information_schema.tables WHERE " + condition + " AND table_type != 'VIEW'";
    // Such a server would tell row counts and AUTO_INCREMENT as they were up to a day ago.
    return FServerFeatures->CachedStatistics
               ? "SET SESSION information_schema_stats_expiry = 0;\r\n" + select
               : select;
}

QString TDbmTableFormatters::FormatSelect(const QString &database) const
{
    return FormatFetch(
        TFormat::Format("table_schema = '%s'", {TDbmSqlStringFormatter::Format(database)}));
}

QString TDbmTableFormatters::FormatSelectRow(const QString &database, const QString &table) const
{
    return FormatFetch(TFormat::Format(
        "table_schema = '%s' AND table_name = '%s'",
        {TDbmSqlStringFormatter::Format(database), TDbmSqlStringFormatter::Format(table)}));
}

TDbmTableEntity TDbmTableFormatters::ParseSelectRow(const TDataSet &row) const
{
    const auto text = [&](const QString &name) { return TDatasetUtils::AsString(row, name, {}); };
    const auto number = [&](const QString &name) {
        return TDatasetUtils::AsLargeint(row, name, 0);
    };
    const auto time = [&](const QString &name) { return TDatasetUtils::AsDateTime(row, name, {}); };

    TDbmTableEntity entity;
    entity.TableName = row.FieldByName(QStringLiteral("TABLE_NAME")).AsString();
    entity.Engine = text(QStringLiteral("ENGINE"));
    entity.RowFormat = ParseRowFormat(text(QStringLiteral("ROW_FORMAT")));
    entity.Collation = text(QStringLiteral("TABLE_COLLATION"));
    entity.Comment = text(QStringLiteral("TABLE_COMMENT"));
    entity.AutoIncrement = TDatasetUtils::AsVariant(row, QStringLiteral("AUTO_INCREMENT"), {});
    const QString options = text(QStringLiteral("CREATE_OPTIONS"));
    entity.Checksum = ParseOption(options, "checksum") == u"1";
    entity.PackKeys = ParsePackKeys(ParseOption(options, "pack_keys"));
    entity.DelayKeyWrite = ParseOption(options, "delay_key_write") == u"1";
    TDbmTableInfo &info = entity.Info;
    info.Version = text(QStringLiteral("VERSION"));
    info.Rows = number(QStringLiteral("TABLE_ROWS"));
    info.AvgRowLength = number(QStringLiteral("AVG_ROW_LENGTH"));
    info.DataLength = number(QStringLiteral("DATA_LENGTH"));
    info.MaxDataLength = number(QStringLiteral("MAX_DATA_LENGTH"));
    info.IndexLength = number(QStringLiteral("INDEX_LENGTH"));
    info.DataFree = number(QStringLiteral("DATA_FREE"));
    info.Checksum = number(QStringLiteral("CHECKSUM"));
    info.CreateTime = time(QStringLiteral("CREATE_TIME"));
    info.UpdateTime = time(QStringLiteral("UPDATE_TIME"));
    info.CheckTime = time(QStringLiteral("CHECK_TIME"));
    info.TableType = ParseTableType(text(QStringLiteral("TABLE_TYPE")));
    return entity;
}

QString TDbmTableFormatters::FormatSelectDDL(const QString &database, const QString &table) const
{
    return TFormat::Format("SHOW CREATE TABLE `%s`.`%s`", {database, table});
}

QString TDbmTableFormatters::ParseSelectDDL(const TDataSet &row) const
{
    return TDatasetUtils::AsString(row, "Create Table", {});
}

QStringList TDbmTableFormatters::FormatOptions(const TDbmTableEntity &entity,
                                               const QString &defaultCollation, bool isNew) const
{
    const auto option = [](bool isWritten, const char *format, const QString &value) {
        return isWritten ? TFormat::Format(format, {value}) : QString();
    };
    const auto flag = [](bool value) { return value ? QString("1") : QString("0"); };
    QStringList lines = {
        option(!entity.Engine.isEmpty(), "ENGINE = %s", entity.Engine),
        option(!entity.AutoIncrement.IsNull(), "AUTO_INCREMENT = %s",
               entity.AutoIncrement.ToString()),
        option(!entity.Collation.isEmpty() && !(isNew && entity.Collation == defaultCollation),
               "COLLATE = %s", entity.Collation),
        option(true, "ROW_FORMAT = %s", RowFormatText(entity.RowFormat)),
        option(!isNew || entity.Checksum, "CHECKSUM = %s", flag(entity.Checksum)),
        option(!isNew || entity.PackKeys != pkDefault, "PACK_KEYS = %s",
               PackKeysText(entity.PackKeys)),
        option(!isNew || entity.DelayKeyWrite, "DELAY_KEY_WRITE = %s", flag(entity.DelayKeyWrite)),
        option(!isNew || !entity.Comment.isEmpty(), "COMMENT = '%s'",
               TDbmSqlStringFormatter::Format(entity.Comment)),
    };
    lines.removeAll(QString());
    return lines;
}

QString TDbmTableFormatters::FormatCreate(const QString &database, const TDbmTableEntity &entity,
                                          const QString &defaultCollation,
                                          const QList<QList<TDbmIndexColumnEntity>> &indexColumns,
                                          const QList<TDbmIndexEntity> &indexes,
                                          const QList<TDbmFieldEntity> &fields) const
{
    QStringList members;
    for (const TDbmFieldEntity &field : fields)
        members.append("  " + FFields.FormatDefinition(field, entity.Collation, true));
    for (qsizetype i = 0; i < indexes.size(); ++i)
        if (indexes[i].IndexKind != ikNone)
            members.append("  " + FIndexes.FormatDefinition(indexes[i], indexColumns.value(i)));

    QStringList lines{TFormat::Format("CREATE TABLE %s(",
                                      {TDbmPathUtils::FormatDbObject(database, entity.TableName)})};
    if (!members.isEmpty())
        lines.append(members.join(",\r\n"));
    lines.append(")");
    lines += FormatOptions(entity, defaultCollation, true);
    return lines.join("\r\n").trimmed();
}

QString TDbmTableFormatters::FormatCreate(const QString &database, const TDbmTableEntity &entity,
                                          const QString &defaultCollation) const
{
    TDbmFieldEntity field;
    field.FieldName = "id";
    field.FieldType.DataType = fdtInt;
    field.FieldType.Unsigned = true;
    field.Autoincrement = true;
    TDbmIndexEntity index;
    index.IndexName = "PRIMARY";
    index.IndexKind = ikPrimary;
    TDbmIndexColumnEntity column;
    column.ColumnName = field.FieldName;
    return FormatCreate(database, entity, defaultCollation, {{column}}, {index}, {field});
}

QString TDbmTableFormatters::FormatUpdate(const QString &database, const QString &table,
                                          const TDbmTableEntity &entity) const
{
    QStringList lines{
        TFormat::Format("ALTER TABLE %s", {TDbmPathUtils::FormatDbObject(database, table)})};
    lines += FormatOptions(entity, QString(), false);
    return lines.join("\r\n") + "\r\n";
}

QString TDbmTableFormatters::FormatDelete(const QString &database, const QString &table) const
{
    return TFormat::Format("DROP TABLE IF EXISTS %s",
                           {TDbmPathUtils::FormatDbObject(database, table)});
}

QString TDbmTableFormatters::FormatRename(const QString &database, const QString &oldName,
                                          const QString &newName) const
{
    return TFormat::Format("RENAME TABLE %s TO %s",
                           {TDbmPathUtils::FormatDbObject(database, oldName),
                            TDbmPathUtils::FormatDbObject(database, newName)});
}

QString TDbmTableFormatters::FormatTruncate(const QString &database, const QString &table) const
{
    return TFormat::Format("TRUNCATE TABLE %s", {TDbmPathUtils::FormatDbObject(database, table)});
}

QString TDbmTableFormatters::FormatChecksum(const QString &database, const QString &table) const
{
    return TFormat::Format("CHECKSUM TABLE %s", {TDbmPathUtils::FormatDbObject(database, table)});
}

qint64 TDbmTableFormatters::ParseChecksum(const TDataSet &row) const
{
    return TDatasetUtils::AsLargeint(row, QStringLiteral("Checksum"), 0);
}

QString TDbmTableFormatters::FormatUpdateDisableKeys(const QString &database,
                                                     const QString &table) const
{
    return TFormat::Format("ALTER TABLE %s DISABLE KEYS",
                           {TDbmPathUtils::FormatDbObject(database, table)});
}

QString TDbmTableFormatters::FormatUpdateEnableKeys(const QString &database,
                                                    const QString &table) const
{
    return TFormat::Format("ALTER TABLE %s ENABLE KEYS",
                           {TDbmPathUtils::FormatDbObject(database, table)});
}
