#include "sql/uDbmFieldFormatters.h"

#include "sql/uDatasetUtils.h"
#include "sql/uDbmColumnDefaults.h"
#include "sql/uDbmFieldUtils.h"
#include "sql/uDbmQuotedText.h"
#include "sql/uDbmSqlStringFormatter.h"
#include "sql/uDbmSqlValueUtils.h"
#include "support/uException.h"
#include "support/uFormat.h"
#include "support/uRegExUtils.h"
#include "support/uStringUtils.h"

namespace {

/// Typed line breaks fold into one line as those of the whole text do. A comment that came from the
/// server keeps them, escaped.
QString CommentClause(const TDbmFieldEntity &field)
{
    QString text = field.Comment;
    if (text != field.ServerText.Comment)
        text = TStringUtils::Compact('\'' + text + '\'').sliced(1).chopped(1);
    return "COMMENT '" + TDbmSqlStringFormatter::Format(text) + '\'';
}

/// Text that already holds blanks on purpose, each part behind one blank.
void Append(QString &text, const QString &part)
{
    if (!part.isEmpty())
        text += ' ' + part;
}

/// Whether the type is the one that was read. A collation stands behind it, whichever text it has.
bool HasServerType(const TDbmFieldEntity &field)
{
    TDbmFieldType parsed = field.ServerText.Parsed;
    parsed.Binary = field.FieldType.Binary;
    parsed.Collation = field.FieldType.Collation;
    return !field.ServerText.Type.isEmpty() && field.FieldType == parsed;
}

/// The server refuses the clause at most types, and a fraction that the type does not have.
QString OnUpdateClause(const TDbmFieldEntity &field)
{
    const TDbmFieldDataType type = field.FieldType.DataType;
    const QString &moment = field.ServerText.OnUpdate;
    if (moment.isEmpty())
        return {};
    if (HasServerType(field))
        return "ON UPDATE " + moment;
    const bool isTaken = type == fdtDateTime || type == fdtTimeStamp;
    return isTaken ? "ON UPDATE " + TDbmSqlValueUtils::FormatCurrentTimeStamp() : QString();
}

/// A reference system belongs to types that the model cannot give a column.
QString TrailingClauses(const TDbmFieldEntity &field)
{
    const QString &trailing = field.ServerText.Trailing;
    return HasServerType(field) ? trailing : TRegExUtils::Replace(trailing, " ?\\bSRID \\d+$", "");
}

QString FormatAlterTable(const QString &database, const QString &table, const QString &clause)
{
    return TFormat::Format("ALTER TABLE `%s`.`%s` %s", {database, table, clause});
}

} // namespace

QString TDbmFieldFormatters::FormatSelect(const QString &database, const QString &table) const
{
    return TFormat::Format(
        "SELECT * FROM information_schema.columns WHERE table_schema = '%s' "
        "AND table_name = '%s'",
        {TDbmSqlStringFormatter::Format(database), TDbmSqlStringFormatter::Format(table)});
}

TDbmFieldEntity TDbmFieldFormatters::ParseSelectRow(const TDataSet &row) const
{
    TDbmFieldEntity field;
    field.FieldName = row.FieldByName(QStringLiteral("COLUMN_NAME")).AsString();
    const QString collation = TDatasetUtils::AsString(row, QStringLiteral("COLLATION_NAME"), {});
    field.ServerText.Type = TDatasetUtils::AsString(row, QStringLiteral("COLUMN_TYPE"), {});
    try {
        TDbmFieldUtils::ParseType(field.ServerText.Type, field.FieldType, collation);
    } catch (const EException &) {
        // A type of a newer server must not take the other columns with it.
        field.FieldType = {};
        field.FieldType.Collation = collation;
    }
    field.ServerText.Parsed = field.FieldType;
    field.Nullable = TDatasetUtils::AsString(row, QStringLiteral("IS_NULLABLE"), {})
                         .compare(u"YES", Qt::CaseInsensitive) == 0;
    const QString extra = TDatasetUtils::AsString(row, QStringLiteral("EXTRA"), {});
    field.Autoincrement = extra.contains(u"auto_increment", Qt::CaseInsensitive);
    ParseDefault(row, field, extra);
    ParseExtra(row, field, extra);
    field.Comment = TDatasetUtils::AsString(row, QStringLiteral("COLUMN_COMMENT"), {});
    field.ServerText.Comment = field.Comment;
    field.Info.PosIndex = TDatasetUtils::AsInteger(row, QStringLiteral("ORDINAL_POSITION"), 0);
    return field;
}

void TDbmFieldFormatters::ParseDefault(const TDataSet &row, TDbmFieldEntity &field,
                                       const QString &extra) const
{
    const TField *column = row.FindField(QStringLiteral("COLUMN_DEFAULT"));
    if (column && !column->IsNull()) {
        const TDbmColumnDefaults defaults(*FServerFeatures);
        defaults.Parse(field.FieldType.DataType, column->AsString(),
                       extra.contains(u"DEFAULT_GENERATED", Qt::CaseInsensitive),
                       field.DefaultValue, field.ServerText.Default);
    }
    field.ServerText.ParsedDefault = field.DefaultValue;
}

void TDbmFieldFormatters::ParseExtra(const TDataSet &row, TDbmFieldEntity &field,
                                     const QString &extra) const
{
    if (!extra.isEmpty() && extra != u"auto_increment")
        ParseExtraWords(row, field, extra);
    QStringList trailing;
    if (extra.contains(u"INVISIBLE", Qt::CaseInsensitive))
        trailing.append("INVISIBLE");
    const QString srid = TDatasetUtils::AsString(row, QStringLiteral("SRS_ID"), {});
    if (!srid.isEmpty())
        trailing.append("SRID " + srid);
    field.ServerText.Trailing = trailing.join(' ');
}

void TDbmFieldFormatters::ParseExtraWords(const TDataSet &row, TDbmFieldEntity &field,
                                          const QString &extra) const
{
    const auto onUpdate = TRegExUtils::Match(extra, "on update ([\\w]+(?:\\(\\d*\\))?)",
                                             QRegularExpression::CaseInsensitiveOption);
    field.ServerText.OnUpdate = onUpdate.captured(1);

    const auto generated = TRegExUtils::Match(extra, "(VIRTUAL|STORED|PERSISTENT)( GENERATED)?",
                                              QRegularExpression::CaseInsensitiveOption);
    const QString expression =
        TDatasetUtils::AsString(row, QStringLiteral("GENERATION_EXPRESSION"), {});
    // The bounds of a versioned row are no expression. No ALTER can touch them where they are, and
    // a table without the versioning can have them as plain columns only.
    const bool isBound = TRegExUtils::IsMatch(expression, "^ROW (START|END)$");
    // Outside of the versioning a hidden column must have a default.
    if (isBound && extra.contains(u"INVISIBLE", Qt::CaseInsensitive))
        field.Nullable = true;
    if (generated.hasMatch() && !expression.isEmpty() && !isBound)
        field.ServerText.Generated = TFormat::Format(
            "GENERATED ALWAYS AS (%s) %s",
            {FServerFeatures->MarkedDefaults ? TDbmColumnDefaults::UnescapeExpression(expression)
                                             : expression,
             generated.captured(1).toUpper()});
}

QString TDbmFieldFormatters::ParseColumnCheck(const QString &tableDDL, const QString &name)
{
    const QString masked = TDbmQuotedText::Masked(tableDDL);
    // The second and third are what servers write that were told to quote otherwise or not at all.
    const QString spellings[] = {'`' + QString(name).replace('`', "``") + '`',
                                 '"' + QString(name).replace('"', "\"\"") + '"', name};
    for (const QString &spelling : spellings) {
        const qsizetype line = tableDDL.indexOf("\n  " + spelling + ' ');
        if (line < 0)
            continue;
        // The clause is the last of its line.
        const qsizetype end = masked.indexOf('\n', line + 1);
        const qsizetype check = masked.indexOf(" CHECK (", line);
        if (check < 0 || check > end)
            return {};
        const QString clause = tableDDL.mid(check, end - check).trimmed();
        return clause.endsWith(u',') ? clause.chopped(1) : clause;
    }
    throw EException(
        TFormat::Format("Column \"%s\" is not found in the definition of its table.", {name}));
}

QString TDbmFieldFormatters::FormatColumnType(const TDbmFieldEntity &field,
                                              const QString &tableCollation) const
{
    const TDbmFieldServerText &server = field.ServerText;
    TDbmFieldType type = field.FieldType;
    if (HasServerType(field) && !TDbmFieldUtils::IsExactType(type, server.Type)) {
        const QString charset = TDbmFieldUtils::FormatCharset(type, tableCollation);
        return charset.isEmpty() ? server.Type : server.Type + "\r\n" + charset;
    }
    if (!server.Type.isEmpty())
        type.Values = TDbmFieldUtils::WholeMembers(type.Values, server.Parsed.Values, server.Type);
    QString text;
    TDbmFieldUtils::FormatType(type, tableCollation, text);
    return text;
}

QString TDbmFieldFormatters::FormatDefault(const TDbmFieldEntity &field) const
{
    if (!field.Nullable && TDbmSqlValueUtils::IsNullValue(field.DefaultValue))
        return {};
    // A fraction of the current moment must be that of the type.
    const bool unedited = field.DefaultValue == field.ServerText.ParsedDefault &&
                          (field.DefaultValue.ValueType == vtValue || HasServerType(field));
    return "DEFAULT " + (unedited && !field.ServerText.Default.isEmpty()
                             ? field.ServerText.Default
                             : TDbmSqlValueUtils::FormatValue(field.DefaultValue, true));
}

QString TDbmFieldFormatters::FormatNullable(const TDbmFieldEntity &field) const
{
    return field.Nullable ? "NULL" : "NOT NULL";
}

QString TDbmFieldFormatters::FormatDefinition(const TDbmFieldEntity &field,
                                              const QString &tableCollation, bool isNew) const
{
    const TDbmFieldServerText &server = field.ServerText;
    QString text = TFormat::Format("`%s`", {field.FieldName});
    Append(text, TStringUtils::Compact(FormatColumnType(field, tableCollation)));
    if (!server.Generated.isEmpty()) {
        Append(text, server.Generated);
        // One of the two kinds of server takes no NULL word here.
        if (!field.Nullable && !FServerFeatures->QuotedDefaults)
            Append(text, FormatNullable(field));
    } else {
        if (!isNew || !field.Nullable)
            Append(text, FormatNullable(field));
        Append(text, FormatDefault(field));
        Append(text, OnUpdateClause(field));
    }
    // Deliberate: the blank stays where the word does not follow.
    text += field.Autoincrement ? " AUTO_INCREMENT" : " ";
    if (!isNew || !field.Comment.isEmpty())
        Append(text, CommentClause(field));
    Append(text, TrailingClauses(field));
    return TStringUtils::Compact(text);
}

QString TDbmFieldFormatters::FormatPosition(const TDbmFieldPosition &position) const
{
    switch (position.PositionType) {
    case fptFirst:
        return "FIRST";
    case fptAfter:
        return TFormat::Format("AFTER `%s`", {position.PositionField});
    case fptDefault:
        break;
    }
    return {};
}

QString TDbmFieldFormatters::FormatAddColumn(const TDbmFieldEntity &field,
                                             const TDbmFieldPosition &position,
                                             const QString &tableCollation) const
{
    return TStringUtils::Compact(
        TFormat::Format("ADD COLUMN %s %s",
                        {FormatDefinition(field, tableCollation, true), FormatPosition(position)}));
}

QString TDbmFieldFormatters::FormatModifyColumn(const TDbmFieldEntity &field,
                                                const TDbmFieldPosition &position,
                                                const QString &tableCollation) const
{
    return TStringUtils::Compact(
        TFormat::Format("MODIFY COLUMN %s %s", {FormatDefinition(field, tableCollation, false),
                                                FormatPosition(position)}));
}

QString TDbmFieldFormatters::FormatChangeColumn(const TDbmFieldEntity &field,
                                                const TDbmFieldPosition &position,
                                                const QString &newName,
                                                const QString &tableCollation) const
{
    const TDbmFieldServerText &server = field.ServerText;
    QString text = TFormat::Format("CHANGE COLUMN `%s` `%s`", {field.FieldName, newName});
    Append(text, TStringUtils::Compact(FormatColumnType(field, tableCollation)));
    if (server.Generated.isEmpty()) {
        Append(text, FormatNullable(field));
        Append(text, FormatDefault(field));
        Append(text, OnUpdateClause(field));
    } else {
        Append(text, server.Generated);
        if (!field.Nullable && !FServerFeatures->QuotedDefaults)
            Append(text, FormatNullable(field));
    }
    Append(text, field.Autoincrement ? "AUTO_INCREMENT" : "");
    Append(text, CommentClause(field));
    Append(text, TrailingClauses(field));
    Append(text, FormatPosition(position));
    return TStringUtils::Compact(text);
}

QString TDbmFieldFormatters::FormatDropColumn(const QString &name) const
{
    return TFormat::Format("DROP COLUMN `%s`", {name});
}

QString TDbmFieldFormatters::FormatAlterTableAddColumn(const QString &database,
                                                       const QString &table,
                                                       const TDbmFieldEntity &field,
                                                       const TDbmFieldPosition &position,
                                                       const QString &tableCollation) const
{
    return FormatAlterTable(database, table, FormatAddColumn(field, position, tableCollation));
}

QString TDbmFieldFormatters::FormatAlterTableModifyColumn(const QString &database,
                                                          const QString &table,
                                                          const TDbmFieldEntity &field,
                                                          const TDbmFieldPosition &position,
                                                          const QString &tableCollation) const
{
    return FormatAlterTable(database, table, FormatModifyColumn(field, position, tableCollation));
}

QString TDbmFieldFormatters::FormatAlterTableChangeColumn(
    const QString &database, const QString &table, const TDbmFieldEntity &field,
    const TDbmFieldPosition &position, const QString &newName, const QString &tableCollation) const
{
    return FormatAlterTable(database, table,
                            FormatChangeColumn(field, position, newName, tableCollation));
}

QString TDbmFieldFormatters::FormatAlterTableDropColumn(const QString &database,
                                                        const QString &table,
                                                        const QString &name) const
{
    return FormatAlterTable(database, table, FormatDropColumn(name));
}
