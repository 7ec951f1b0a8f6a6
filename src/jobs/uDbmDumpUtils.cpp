#include "jobs/uDbmDumpUtils.h"

#include "jobs/uDbmDumpDataUtils.h"
#include "jobs/uDbmDumpNames.h"
#include "jobs/uDbmFileTexts.h"
#include "jobs/uDbmSqlModes.h"
#include "model/uDbmEventList.h"
#include "model/uDbmFieldList.h"
#include "model/uDbmManager.h"
#include "model/uDbmTableList.h"
#include "model/uDbmTriggerList.h"
#include "model/uDbmViewList.h"
#include "sql/uDatasetUtils.h"
#include "sql/uDbmPathUtils.h"
#include "sql/uDbmProgramTexts.h"
#include "sql/uDbmSqlStringFormatter.h"
#include "sql/uDbmSqlUtils.h"
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
    if (!check.isEmpty() && server.Generated.isEmpty())
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

QString TDbmDumpUtils::DumpCreateView(const QString &view)
{
    std::shared_ptr<TDbmViewItem> item;
    if (!FManager->TryGetView(FSourceDatabaseName, view, item))
        return {};
    TDbmViewEntity entity = item->Entity();
    CheckReads();
    NoteDefiner(entity.Definer, "view", view);
    if (entity.Definition.isEmpty())
        throw EException(TFormat::Format("The definition of view \"%s\" cannot be read.", {view}));
    if (entity.Algorithm.isEmpty())
        entity.Algorithm = FManager->Commands().Views().ExecuteSelectAlgorithm(
            Escaped(FSourceDatabaseName), Escaped(view));
    entity.ViewName = Escaped(entity.ViewName);
    return Carried(FFormatters->Views().FormatCreate(Target(), entity, true, false, false,
                                                     Escaped(FSourceDatabaseName)),
                   "view", view);
}

QString TDbmDumpUtils::DumpDropView(const QString &view, bool ifExists)
{
    return FFormatters->Views().FormatDelete(Target(), Escaped(view), ifExists);
}

QString TDbmDumpUtils::DumpCreateRoutine(const QString &routine, TDbmRoutineType type)
{
    const char *kind = type == rtFunction ? "function" : "procedure";
    for (TDbmRoutineEntity entity : Routines()) {
        if (entity.RoutineType != type || entity.RoutineName != routine)
            continue;
        NoteDefiner(entity.Definer, kind, routine);
        if (entity.Definition.isEmpty())
            throw EException(
                TFormat::Format("The definition of routine \"%s\" cannot be read.", {routine}));
        entity.RoutineName = Escaped(routine);
        const QString words = QString(kind).toUpper();
        // In brackets as in the statement: a comment ahead of the first one shares their line.
        const QString params = FitProgram('(' +
                                              FManager->Commands().Routines().ExecuteSelectWhole(
                                                  Escaped(FSourceDatabaseName), entity) +
                                              ')',
                                          words, routine);
        entity.Definition = FitProgram(entity.Definition, words, routine);
        const QString text =
            FFormatters->Routines().FormatCreate(Target(), entity, params.sliced(1).chopped(1));
        return Carried(FitComment(text, entity.Comment, words, routine), kind, routine);
    }
    return {};
}

QString TDbmDumpUtils::DumpDropRoutine(const QString &routine, TDbmRoutineType type, bool)
{
    return type == rtFunction
               ? FFormatters->Routines().FormatDeleteFunction(Target(), Escaped(routine))
               : FFormatters->Routines().FormatDeleteProcedure(Target(), Escaped(routine));
}

QString TDbmDumpUtils::DumpCreateEvent(const QString &event)
{
    std::shared_ptr<TDbmEventItem> item;
    if (!FManager->TryGetEvent(FSourceDatabaseName, event, item))
        return {};
    TDbmEventEntity entity = item->Entity();
    NoteDefiner(entity.Definer, "event", event);
    if (!FSessionZone.isEmpty() && !entity.TimeZone.isEmpty() && entity.TimeZone != FSessionZone)
        LeaveOut("time zone %s of event \"%s\"", {entity.TimeZone, event});
    entity.EventName = Escaped(event);
    entity.Definition = FitProgram(ExactBody("EVENT", event, entity.Definition), "EVENT", event);
    const QString text = FFormatters->Events().FormatCreate(Target(), entity, false);
    return Carried(FitComment(text, entity.Comment, "EVENT", event), "event", event);
}

QString TDbmDumpUtils::DumpDropEvent(const QString &event)
{
    return FFormatters->Events().FormatDelete(Target(), Escaped(event));
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

QString TDbmDumpUtils::DumpCreateTrigger(const QString &table, const QString &trigger)
{
    std::shared_ptr<TDbmTableItem> item;
    std::shared_ptr<TDbmTriggerItem> triggerItem;
    if (!TryGetTable(table, item) || !item->Triggers().TryGetByName(trigger, triggerItem))
        return {};
    TDbmTriggerEntity entity = triggerItem->Entity();
    NoteDefiner(entity.Definer, "trigger", trigger);
    // The list's text has other line ends than the trigger, also inside quotes.
    const QString listed = Program("TRIGGER", trigger).Body;
    const QString fitted = FitProgram(ExactBody("TRIGGER", trigger, listed), "TRIGGER", trigger);
    if (!FIntoFile || fitted != listed)
        entity.Body = fitted;
    entity.TriggerName = Escaped(trigger);
    return Carried(FFormatters->Triggers().FormatCreate(Target(), Escaped(table), entity),
                   "trigger", trigger);
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

// One statement tells of thousands of tables that they have none.
bool TDbmDumpUtils::MayHaveTriggers(const QString &table)
{
    if (!FTriggerTables) {
        FTriggerTables.emplace();
        FManager->Command().ExecuteQuery(
            TFormat::Format("SELECT DISTINCT event_object_table FROM information_schema.triggers "
                            "WHERE event_object_schema = '%s'",
                            {TDbmSqlStringFormatter::Format(FSourceDatabaseName)}),
            [this](TDataSet *rows) {
                for (; rows && !rows->Eof(); rows->Next())
                    FTriggerTables->insert(rows->FieldAt(0).AsString().toLower());
            });
    }
    return FTriggerTables->contains(table.toLower());
}

QStringList TDbmDumpUtils::Triggers(const QString &table)
{
    QStringList names;
    std::shared_ptr<TDbmTableItem> item;
    if (!FLeftTables.contains(table) && MayHaveTriggers(table) && TryGetTable(table, item))
        item->Triggers().ForEach([&](TDbmTriggerItem &trigger) {
            if (CanWrite("trigger", trigger.Entity().TriggerName))
                names += trigger.Entity().TriggerName;
        });
    CheckReads();
    return names;
}

// Not from the list of the tree, in which a function and a procedure of one name are one.
QList<TDbmRoutineEntity> TDbmDumpUtils::Routines()
{
    if (!FRoutines) {
        FRoutines.emplace();
        for (const TDbmRoutineEntity &entity :
             FManager->Commands().Routines().ExecuteSelect(FSourceDatabaseName))
            if (CanWrite("routine", entity.RoutineName))
                FRoutines->append(entity);
        CheckReads();
    }
    return *FRoutines;
}

QStringList TDbmDumpUtils::Views()
{
    QStringList names;
    if (!Database())
        return names;
    for (const auto &view : Database()->Views().ToDependencySortedArray())
        if (CanWrite("view", view->Entity().ViewName))
            names += view->Entity().ViewName;
    CheckReads();
    return names;
}

QStringList TDbmDumpUtils::Events()
{
    QStringList names;
    if (FManager->Features().Events && Database())
        Database()->Events().ForEach([&](TDbmEventItem &event) {
            if (CanWrite("event", event.Entity().EventName))
                names += event.Entity().EventName;
        });
    CheckReads();
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

TDbmDumpUtils::TProgram TDbmDumpUtils::Program(const QString &kind, const QString &name)
{
    if (!FPrograms) {
        FPrograms.emplace();
        const auto read = [&](const QString &columns, const char *table, const char *schema) {
            const QString sql = TFormat::Format(
                "SELECT %s FROM information_schema.%s WHERE %s = '%s'",
                {columns, table, schema, TDbmSqlStringFormatter::Format(FSourceDatabaseName)});
            FManager->Command().ExecuteQuery(sql, [&](TDataSet *rows) {
                for (; rows && !rows->Eof(); rows->Next())
                    FPrograms->insert(rows->FieldAt(0).AsString() + ' ' +
                                          rows->FieldAt(1).AsString(),
                                      {rows->FieldAt(2).AsString(), rows->FieldAt(3).AsString(),
                                       rows->FieldAt(4).AsString(), rows->FieldAt(5).AsString()});
            });
        };
        // Servers without events do not tell collations either.
        const bool isTold = FManager->Features().Events;
        const QString made = isTold ? "collation_connection, " : "'', ";
        const QString around = made + (isTold ? "database_collation" : "''");
        read("'TRIGGER', trigger_name, sql_mode, action_statement, " + around, "triggers",
             "trigger_schema");
        read("routine_type, routine_name, sql_mode, '', " + around, "routines", "routine_schema");
        read("'VIEW', table_name, '', '', " + made + "''", "views", "table_schema");
        if (FManager->Features().ISEvents)
            read("'EVENT', event_name, sql_mode, '', " + around, "events", "event_schema");
    }
    return FPrograms->value(kind + ' ' + name);
}

QString TDbmDumpUtils::ProgramMode(const QString &kind, const QString &name)
{
    const bool isOtherKind = FManager->Features().MarkedDefaults != FFeatures->MarkedDefaults;
    const TDbmSqlModes::TFit fit =
        TDbmSqlModes::Fit(Program(kind, name).Mode, FSessionMode, isOtherKind, FIntoFile);
    for (const QString &mode : fit.Lost)
        LeaveOut("sql_mode %s of %s \"%s\"", {mode, kind.toLower(), name});
    return fit.Mode;
}

QString TDbmDumpUtils::ProgramCollation(const QString &kind, const QString &name)
{
    const TProgram program = Program(kind, name);
    const QString &around = program.DatabaseCollation;
    if (!around.isEmpty() && Database() && around != Database()->Entity().Collation)
        LeaveOut("database collation %s of %s \"%s\"", {around, kind.toLower(), name});
    if (program.Collation.isEmpty() || program.Collation == FSessionCollation)
        return {};
    if (!FIntoFile && FTargetCollations.contains(program.Collation, Qt::CaseInsensitive))
        return program.Collation;
    LeaveOut("collation %s of %s \"%s\"", {program.Collation, kind.toLower(), name});
    return {};
}

// As it was written, whatever the lists tell.
QString TDbmDumpUtils::ExactBody(const QString &kind, const QString &name, const QString &listed)
{
    QString body;
    // Servers without events do not tell triggers so.
    if (FManager->Features().Events)
        FManager->Command().ExecuteQuery(
            "SHOW CREATE " + kind + ' ' +
                TDbmPathUtils::FormatDbObject(Escaped(FSourceDatabaseName), Escaped(name)),
            [&](TDataSet *rows) {
                if (rows && rows->RecordCount() > 0)
                    body = TDbmProgramTexts::ParseBody(kind, *rows);
            });
    return body.isEmpty() ? listed : body;
}

// Where backslashes do not escape, only a doubled quote does not end the text.
QString TDbmDumpUtils::FitComment(QString text, const QString &comment, const QString &kind,
                                  const QString &name)
{
    if (!comment.isEmpty() && Program(kind, name).Mode.contains("NO_BACKSLASH_ESCAPES"))
        text.replace("COMMENT '" + TDbmSqlStringFormatter::Format(comment) + '\'',
                     "COMMENT '" + QString(comment).replace('\'', "''") + '\'');
    return text;
}

QString TDbmDumpUtils::FitProgram(const QString &body, const QString &kind, const QString &name)
{
    if (!FIntoFile)
        return body;
    const bool hasEscapes = !Program(kind, name).Mode.contains("NO_BACKSLASH_ESCAPES");
    const QString fitted = TDbmFileTexts::Fitted(body, hasEscapes);
    for (const QString &loss : TDbmFileTexts::Losses(fitted))
        LeaveOut("%s of %s \"%s\"", {loss, kind.toLower(), name});
    return fitted;
}

// Gives the text, and names it when a file would lose something of it.
QString TDbmDumpUtils::Carried(const QString &text, const char *kind, const QString &name)
{
    if (FIntoFile && TDbmFileTexts::HasDropped(text))
        LeaveOut("control characters in the definition of %s \"%s\"", {kind, name});
    return text;
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

void TDbmDumpUtils::NoteDefiner(const QString &definer, const char *kind, const QString &name)
{
    if (!definer.isEmpty())
        LeaveOut("definer %s of %s \"%s\"", {definer, kind, name});
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
