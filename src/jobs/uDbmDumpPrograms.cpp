#include "jobs/uDbmDumpUtils.h"

#include "jobs/uDbmDumpNames.h"
#include "jobs/uDbmFileTexts.h"
#include "jobs/uDbmSqlModes.h"
#include "model/uDbmEventList.h"
#include "model/uDbmManager.h"
#include "model/uDbmTableList.h"
#include "model/uDbmTriggerList.h"
#include "model/uDbmViewList.h"
#include "sql/uDbmPathUtils.h"
#include "sql/uDbmProgramTexts.h"
#include "sql/uDbmSqlStringFormatter.h"
#include "support/uException.h"

// Views and stored programs; databases and tables are in uDbmDumpUtils.cpp.

namespace {

QString Escaped(const QString &name)
{
    return TDbmDumpNames::Escaped(name);
}

} // namespace

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
    // Views that stand on this one name the columns in the same way, so that they still fit.
    const QString fitted =
        FIntoFile ? TDbmFileTexts::FittedNames(entity.Definition) : entity.Definition;
    if (fitted != entity.Definition)
        LeaveOut("control characters in the names of columns of view \"%s\"; \"_\" takes their "
                 "place",
                 {view});
    entity.Definition = fitted;
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

void TDbmDumpUtils::NoteDefiner(const QString &definer, const char *kind, const QString &name)
{
    if (!definer.isEmpty())
        LeaveOut("definer %s of %s \"%s\"", {definer, kind, name});
}
