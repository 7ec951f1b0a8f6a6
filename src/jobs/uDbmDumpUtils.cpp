#include "jobs/uDbmDumpUtils.h"

#include "jobs/uDbmDumpDataUtils.h"
#include "jobs/uDbmDumpNames.h"
#include "jobs/uDbmFileTexts.h"
#include "model/uDbmFieldList.h"
#include "model/uDbmManager.h"
#include "model/uDbmTableList.h"
#include "sql/uDbmSqlStringFormatter.h"
#include "support/uException.h"
#include "support/uRegExUtils.h"
#include "support/uStringUtils.h"

namespace {

constexpr auto IgnoreCase = QRegularExpression::CaseInsensitiveOption;
constexpr qsizetype MostKept = 8 * 1024 * 1024; // characters of definitions

QString Escaped(const QString &name)
{
    return TDbmDumpNames::Escaped(name);
}

// What stands inside quotes may look like a clause.
QString WithoutTexts(const QString &text)
{
    QString outside = text;
    outside.replace(QRegularExpression("'(?:[^'\\\\]|''|\\\\.)*'"), "''");
    return outside;
}

// The line behind the columns and keys: options and partitions.
QString Tail(const QString &ddl)
{
    const qsizetype at = ddl.lastIndexOf("\n)");
    return at < 0 ? QString() : WithoutTexts(ddl.mid(at + 2));
}

// The line of options, without partitions and texts.
QString Options(const QString &ddl)
{
    return Tail(ddl).section(u'\n', 0, 0);
}

// Words of a column's definition outside of quotes and brackets, also those in the comments by
// which servers hide them from others. A name is one where a value is given to it.
QString ColumnWords(const QString &line)
{
    QString words;
    int depth = 0;
    TRegExUtils::ForEachMatch(line, "'(?:[^'\\\\]|''|\\\\.)*+'|`(?:[^`]|``)*+`(=?)|\\w+|[()]",
                              [&](const QRegularExpressionMatch &match) {
                                  const QChar first = line[match.capturedStart()];
                                  if (first == u'(' || first == u')')
                                      depth += first == u'(' ? 1 : -1;
                                  else if (depth == 0 && first != u'\'' &&
                                           (first != u'`' || match.capturedLength(1) > 0))
                                      words += match.captured() + ' ';
                              });
    return words;
}

bool IsLiteralDefault(const QString &text)
{
    return TRegExUtils::Match(text, "^(NULL|b'|'|-?\\d|0x|\\(|(CURRENT_TIMESTAMP|NOW)\\b)",
                              IgnoreCase)
        .hasMatch();
}

} // namespace

TDbmDumpUtils::~TDbmDumpUtils()
{
    if (FWatches)
        FManager->Commands().SetOnCommandNotExecuted({});
}

void TDbmDumpUtils::WatchReads()
{
    FWatches = true;
    FManager->Commands().SetOnCommandNotExecuted(
        [this](TDbmChildCommands *, const QString &message, const QString &command) {
            FReadError = message + "\r\n---\r\n" + command;
        });
}

void TDbmDumpUtils::CheckReads()
{
    if (!FReadError.isEmpty())
        throw EException(FReadError);
}

std::shared_ptr<TDbmDatabaseItem> TDbmDumpUtils::Database()
{
    std::shared_ptr<TDbmDatabaseItem> item;
    FManager->Databases().TryGetByName(FSourceDatabaseName, item);
    CheckReads();
    return item;
}

QString TDbmDumpUtils::Target() const
{
    return Escaped(FTargetDatabaseName);
}

TDbmDatabaseEntity TDbmDumpUtils::TargetDatabase()
{
    TDbmDatabaseEntity entity = Database()->Entity();
    entity.Collation = FitCollation(entity.Collation);
    entity.DatabaseName =
        Escaped(FTargetDatabaseName.isEmpty() ? entity.DatabaseName : FTargetDatabaseName);
    return entity;
}

QString TDbmDumpUtils::DumpCreateDatabase()
{
    return Database() ? FFormatters->Databases().FormatCreateDatabase(TargetDatabase()) : QString();
}

QString TDbmDumpUtils::DumpAlterDatabase()
{
    return Database() ? FFormatters->Databases().FormatAlterDatabaseFull(TargetDatabase())
                      : QString();
}

QString TDbmDumpUtils::DumpDropDatabase()
{
    return FFormatters->Databases().FormatDropDatabase(Target(), true);
}

bool TDbmDumpUtils::TryGetTable(const QString &table, std::shared_ptr<TDbmTableItem> &item)
{
    return FManager->TryGetTable(FSourceDatabaseName, table, item);
}

const QString &TDbmDumpUtils::DDL(const QString &table)
{
    if (FDDLTable == table && !FDDL.isEmpty())
        return FDDL;
    FDDLTable = table;
    FDDL = FDDLs.value(table);
    if (FDDL.isEmpty()) {
        FManager->Commands().Tables().ExecuteSelectDDL(Escaped(FSourceDatabaseName), Escaped(table),
                                                       FDDL);
        CheckReads();
        // A table without its keys is another table.
        if (FDDL.isEmpty())
            throw EException(
                TFormat::Format("The definition of table \"%s\" cannot be read.", {table}));
        if (FKeptSize + FDDL.size() <= MostKept) {
            FDDLs.insert(table, FDDL);
            FKeptSize += FDDL.size();
        }
    }
    FKeys = TDbmTableKeys::Parse(FSourceDatabaseName, FDDL);
    return FDDL;
}

const TDbmTableKeys &TDbmDumpUtils::Keys(const QString &table)
{
    DDL(table);
    return FKeys;
}

QString TDbmDumpUtils::DumpCreateTable(const QString &table, const QString &newName)
{
    std::shared_ptr<TDbmTableItem> item;
    if (!TryGetTable(table, item) || !CanWriteTable(table))
        return {};
    NoteTable(table);
    QList<TDbmFieldEntity> fields;
    item->Fields().ForEach([&](TDbmFieldItem &field) {
        fields.append(field.Entity());
        FitField(fields.last(), table);
    });
    CheckReads();
    if (fields.isEmpty())
        throw EException(TFormat::Format("The columns of table \"%s\" cannot be read.", {table}));
    QList<TDbmIndexEntity> indexes;
    QList<QList<TDbmIndexColumnEntity>> indexColumns;
    for (TDbmWholeIndex index : Keys(table).Indexes()) {
        const TDbmIndexKind kind = index.Index.IndexKind;
        if (!index.IsWhole || kind == ikFulltext || kind == ikSpatial)
            continue;
        FitIndex(index, table);
        index.Index.IndexName = Escaped(index.Index.IndexName);
        for (TDbmIndexColumnEntity &column : index.Columns)
            column.ColumnName = Escaped(column.ColumnName);
        indexes.append(index.Index);
        indexColumns.append(index.Columns);
    }
    TDbmTableEntity entity = item->Entity();
    entity.TableName = Escaped(newName.isEmpty() ? entity.TableName : newName);
    entity.Collation = FitCollation(entity.Collation);
    // The list of the server is read by a parser that misses the last one.
    const QString options = Options(DDL(table));
    entity.Checksum = TRegExUtils::IsMatch(options, "\\bCHECKSUM=1", IgnoreCase);
    entity.DelayKeyWrite = TRegExUtils::IsMatch(options, "\\bDELAY_KEY_WRITE=1", IgnoreCase);
    const auto packed = TRegExUtils::Match(options, "\\bPACK_KEYS=([01])", IgnoreCase);
    entity.PackKeys = !packed.hasMatch() ? pkDefault : packed.captured(1) == u"1" ? pkOn : pkOff;
    return Carried(FFormatters->Tables().FormatCreate(Target(), entity, FDefaultCollation,
                                                      indexColumns, indexes, fields),
                   "table", table);
}

// A line break in a name ends a line of the text, and no reader of lines finds the rest.
bool TDbmDumpUtils::CanWriteTable(const QString &table)
{
    if (FLeftTables.contains(table))
        return false;
    bool canWrite = true;
    TRegExUtils::ForEachMatch(DDL(table), "'(?:[^'\\\\]|''|\\\\.)*+'|`((?:[^`]|``)*+)`",
                              [&](const QRegularExpressionMatch &match) {
                                  canWrite = canWrite && TDbmDumpNames::CanWrite(match.captured(1));
                              });
    if (canWrite)
        return true;
    FLeftTables += table;
    LeaveOut("table \"%s\", which has a control character in the name of a column or key", {table});
    return false;
}

// What the clauses behind a key's columns are on the other kind of server.
void TDbmDumpUtils::FitIndex(TDbmWholeIndex &index, const QString &table)
{
    QString &options = index.Index.Options;
    if (options.isEmpty() || FManager->Features().MarkedDefaults == FFeatures->MarkedDefaults)
        return;
    QStringList kept;
    TRegExUtils::ForEachMatch(
        options,
        "USING \\w+|KEY_BLOCK_SIZE=\\d+|COMMENT '(?:[^'\\\\]|''|\\\\.)*+'|/\\*.*?\\*/|\\S+",
        [&](const QRegularExpressionMatch &match) {
            const QString clause = match.captured();
            const bool isShared = TRegExUtils::IsMatch(clause, "^(USING|KEY_BLOCK_SIZE|COMMENT)");
            if (isShared)
                kept += clause;
            else if (clause == u"IGNORED" && FFeatures->MarkedDefaults)
                kept += "INVISIBLE";
            else
                LeaveOut("option %s of index \"%s\" of table \"%s\"",
                         {clause, index.Index.IndexName, table});
        });
    options = kept.join(' ');
}

// What the text of a column needs to be taken by the server that runs it, and nothing else.
void TDbmDumpUtils::FitField(TDbmFieldEntity &field, const QString &table)
{
    TDbmFieldServerText &server = field.ServerText;
    // The CHECK of a column belongs to its type where JSON is a text with a condition.
    const QString check = TDbmFieldFormatters::ParseColumnCheck(DDL(table), field.FieldName);
    if (!check.isEmpty())
        server.Trailing = (server.Trailing + ' ' + check).trimmed();
    const QString fitted = FitCollation(field.FieldType.Collation);
    if (fitted != field.FieldType.Collation) {
        server.Parsed.Collation = fitted;
        field.FieldType.Collation = fitted;
    }
    field.FieldName = Escaped(field.FieldName);
    if (FFeatures->MarkedDefaults && !server.Default.isEmpty() && !IsLiteralDefault(server.Default))
        server.Default = '(' + server.Default + ')';
    FitDefault(field);
    static const QRegularExpression reference("\\bSRID \\d+");
    if (!FFeatures->MarkedDefaults && server.Trailing.contains(reference)) {
        LeaveOut("reference system of column \"%s\" of table \"%s\"", {field.FieldName, table});
        server.Trailing = server.Trailing.remove(reference).trimmed();
    }
}

void TDbmDumpUtils::FitDefault(TDbmFieldEntity &field)
{
    TDbmFieldServerText &server = field.ServerText;
    const QString text = field.DefaultValue.Value.ToString();
    const bool isLiteral = server.Default.isEmpty() || server.Default.startsWith(u'\'');
    if (FIntoFile && isLiteral && TDbmFileTexts::NeedsDigits(text))
        server.Default = TDbmFileTexts::HexLiteral(text);
}

// The nearest collation that the target knows.
QString TDbmDumpUtils::FitCollation(const QString &collation)
{
    if (collation.isEmpty() || FTargetCollations.isEmpty() ||
        FTargetCollations.contains(collation, Qt::CaseInsensitive))
        return collation;
    const QString charset = collation.section('_', 0, 0);
    QStringList nearest{charset + "_unicode_520_ci", charset + "_unicode_ci",
                        charset + "_general_ci", charset + "_bin"};
    if (collation.endsWith("_bin"))
        nearest.prepend(charset + "_bin");
    for (const QString &name : nearest) {
        if (!FTargetCollations.contains(name, Qt::CaseInsensitive))
            continue;
        LeaveOut("collation \"%s\", which the target does not know; \"%s\" takes its place",
                 {collation, name});
        return name;
    }
    return collation;
}

QString TDbmDumpUtils::DumpDropTable(const QString &table)
{
    return FFormatters->Tables().FormatDelete(Target(), Escaped(table));
}

QString TDbmDumpUtils::DumpAlterTableAddForeignKey(const QString &table, const QString &reference)
{
    TDbmWholeReference key;
    if (!Keys(table).TryGetReference(reference, key))
        return {};
    key.Reference.ReferenceName = Escaped(key.Reference.ReferenceName);
    key.Reference.RefTableName = Escaped(key.Reference.RefTableName);
    key.Reference.RefDatabaseName.clear(); // beside the table that has the key
    for (TDbmReferenceColumnEntity &column : key.Columns) {
        column.SrcColumnName = Escaped(column.SrcColumnName);
        column.RefColumnName = Escaped(column.RefColumnName);
    }
    return FFormatters->ForeignKeys().FormatAlterTableAddForeignKey(
        Target(), Escaped(table), QString(), key.Columns, key.Reference);
}

void TDbmDumpUtils::DumpData(const QString &sourceTable, const QString &targetTable, bool ignore,
                             bool delayed, bool replace, const TConsumer &consumer)
{
    if (FLeftTables.contains(sourceTable))
        return;
    TDbmDumpDataUtils data;
    data.FManager = FManager;
    data.FFormatters = FFormatters;
    data.FSourceDatabaseName = FSourceDatabaseName;
    data.FTargetDatabaseName = FTargetDatabaseName;
    data.FSourceTableName = sourceTable;
    data.FTargetTableName = targetTable;
    data.FStatementCharset = FStatementCharset;
    data.FStopRequested = FStopRequested;
    data.DumpData(ignore, delayed, replace, consumer);
}

QStringList TDbmDumpUtils::Tables()
{
    QStringList names;
    if (!Database())
        return names;
    ReadSequences();
    Database()->Tables().ForEach([&](TDbmTableItem &item) {
        const QString name = item.Entity().TableName;
        if (FSequences->contains(name))
            return;
        if (CanWrite("table", name))
            names += name;
        else
            FLeftTables += name;
    });
    CheckReads();
    return names;
}

// A sequence stands among the tables of a server that has them, with one row in it.
void TDbmDumpUtils::ReadSequences()
{
    if (FSequences)
        return;
    FSequences.emplace();
    const QString sql = TFormat::Format(
        "SELECT table_name AS name FROM information_schema.tables WHERE table_schema = '%s' AND "
        "table_type = 'SEQUENCE'",
        {TDbmSqlStringFormatter::Format(FSourceDatabaseName)});
    FManager->Command().ExecuteQuery(sql, [&](TDataSet *rows) {
        for (; rows && !rows->Eof(); rows->Next()) {
            *FSequences += rows->FieldByName("name").AsString();
            LeaveOut("sequence \"%s\"", {FSequences->last()});
        }
    });
}

QStringList TDbmDumpUtils::References(const QString &table)
{
    QStringList names;
    if (FLeftTables.contains(table))
        return names;
    for (const TDbmWholeReference &key : Keys(table).References()) {
        const QString &database = key.Reference.RefDatabaseName;
        const bool isInside = database.isEmpty() || database == FSourceDatabaseName;
        if (isInside && FLeftTables.contains(key.Reference.RefTableName))
            LeaveOut("foreign key \"%s\" of table \"%s\", whose table is left out",
                     {key.Reference.ReferenceName, table});
        else if (isInside)
            names += key.Reference.ReferenceName;
        else
            LeaveOut("foreign key \"%s\" of table \"%s\" into database \"%s\"",
                     {key.Reference.ReferenceName, table, database});
    }
    return names;
}

int TDbmDumpUtils::TableNeeds(const QString &table)
{
    static const QRegularExpression zeroDate("DEFAULT '\\d{4}-(00-\\d\\d|\\d\\d-00)");
    static const QRegularExpression moment(
        "\n +`(?:[^`\n]|``)*+` timestamp\\b[^'\n]* DEFAULT '(?!0000)", IgnoreCase);
    return (DDL(table).contains(zeroDate) ? rnLaxDates : 0) |
           (DDL(table).contains(moment) ? rnUtcTimes : 0);
}

// The keys and clauses of a table that its statement does not have.
void TDbmDumpUtils::NoteTable(const QString &table)
{
    for (const TDbmWholeIndex &index : Keys(table).Indexes()) {
        const QString &name = index.Index.IndexName;
        if (index.Index.IndexKind == ikFulltext)
            LeaveOut("fulltext index \"%s\" of table \"%s\"", {name, table});
        else if (index.Index.IndexKind == ikSpatial)
            LeaveOut("spatial index \"%s\" of table \"%s\"", {name, table});
        else if (!index.IsWhole)
            LeaveOut("index \"%s\" of table \"%s\", which is over an expression", {name, table});
    }
    for (const QString &line : TStringUtils::Lines(DDL(table))) {
        const auto check =
            TRegExUtils::Match(line, "^\\s*CONSTRAINT `((?:[^`]|``)*)` CHECK ", IgnoreCase);
        if (check.hasMatch())
            LeaveOut("check \"%s\" of table \"%s\"", {check.captured(1), table});
        const auto period =
            TRegExUtils::Match(line, "^\\s*PERIOD FOR `((?:[^`]|``)*)` ", IgnoreCase);
        if (period.hasMatch())
            LeaveOut("period \"%s\" of table \"%s\"", {period.captured(1), table});
    }
    const QString tail = Tail(DDL(table));
    if (tail.contains("PARTITION BY", Qt::CaseInsensitive))
        LeaveOut("partitions of table \"%s\"", {table});
    if (tail.contains("WITH SYSTEM VERSIONING", Qt::CaseInsensitive))
        LeaveOut("system versioning of table \"%s\"", {table});
    NoteOptions(table);
    NoteColumns(table);
}

void TDbmDumpUtils::NoteOptions(const QString &table)
{
    static const QStringList written{"ENGINE",    "AUTO_INCREMENT",  "CHARSET",
                                     "COLLATE",   "ROW_FORMAT",      "CHECKSUM",
                                     "PACK_KEYS", "DELAY_KEY_WRITE", "COMMENT"};
    TRegExUtils::ForEachMatch(
        Options(DDL(table)), "((?:DATA |INDEX )?\\w+)[`\"]?\\s*=|\\b(TABLESPACE|STORAGE)\\b",
        [&](const QRegularExpressionMatch &match) {
            const QString option = match.captured(1) + match.captured(2);
            if (!written.contains(option, Qt::CaseInsensitive))
                LeaveOut("option %s of table \"%s\"", {option, table});
        },
        IgnoreCase);
}

// What the lists of the server do not tell of a column.
void TDbmDumpUtils::NoteColumns(const QString &table)
{
    const QString attributes = "STORAGE|COLUMN_FORMAT|(?:SECONDARY_)?ENGINE_ATTRIBUTE|"
                               "NOT SECONDARY|WITHOUT SYSTEM VERSIONING";
    const QString pattern = "`((?:[^`]|``)*+)`=|\\b(" + attributes +
                            // In its type, by a word that the other kind of server passes over.
                            (FFeatures->MarkedDefaults ? "|COMPRESSED)\\b" : ")\\b");
    // Nearly no table has any, and columns are many.
    if (!TRegExUtils::IsMatch(DDL(table), pattern))
        return;
    for (const QString &line : TStringUtils::Lines(DDL(table))) {
        const auto name = TRegExUtils::Match(line, "^  `((?:[^`]|``)*+)` ");
        if (!name.hasMatch())
            continue;
        TRegExUtils::ForEachMatch(
            ColumnWords(line), pattern, [&](const QRegularExpressionMatch &match) {
                LeaveOut("option %s of column \"%s\" of table \"%s\"",
                         {match.captured(1) + match.captured(2), name.captured(1), table});
            });
    }
}

bool TDbmDumpUtils::CanWrite(const char *kind, const QString &name)
{
    if (TDbmDumpNames::CanWrite(name))
        return true;
    LeaveOut("%s \"%s\", which has a control character in its name", {kind, name.simplified()});
    return false;
}

void TDbmDumpUtils::LeaveOut(const QString &format, const QList<TFormat::TArgument> &args)
{
    const QString line = "Left out: " + TFormat::Format(format, args);
    if (!FLeftOut.contains(line))
        FLeftOut += line;
}
