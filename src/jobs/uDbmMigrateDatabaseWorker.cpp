#include "jobs/uDbmMigrateDatabaseWorker.h"

#include "jobs/uDbmDumpNames.h"
#include "model/uDbmManager.h"
#include "model/uDbmTableList.h"
#include "sql/uDbmSqlStringFormatter.h"
#include "support/uException.h"

#include <QUuid>

namespace {

QString Value(TDbmManager &manager, const QString &sql)
{
    QString value;
    manager.Command().ExecuteQuery(sql, [&](TDataSet *rows) {
        if (rows && rows->RecordCount() > 0)
            value = rows->FieldAt(0).AsString();
    });
    return value;
}

} // namespace

TDbmMigrateDatabaseWorker::TDbmMigrateDatabaseWorker()
    : FSourceManager(TDbmManager::Create()), FTargetManager(TDbmManager::Create())
{
    FDumpUtils.FManager = FSourceManager.get();
    FDumpUtils.FStopRequested = [this] { return StopRequest(); };
}

TDbmMigrateDatabaseWorker::~TDbmMigrateDatabaseWorker()
{
    WaitForEnd();
}

void TDbmMigrateDatabaseWorker::Execute()
{
    TWorker::Execute();
    const TDbmDumpCloser source(*FSourceManager);
    const TDbmDumpCloser target(*FTargetManager);
    FDumpUtils.FSourceDatabaseName = FSourceDatabaseName;
    FDumpUtils.FTargetDatabaseName = FTargetDatabaseName;

    using TStep = void (TDbmMigrateDatabaseWorker::*)();
    for (const TStep step :
         {&TDbmMigrateDatabaseWorker::OpenSource, &TDbmMigrateDatabaseWorker::OpenTarget,
          &TDbmMigrateDatabaseWorker::SettleCharset, &TDbmMigrateDatabaseWorker::RequireSource,
          &TDbmMigrateDatabaseWorker::RefuseSameDatabase,
          &TDbmMigrateDatabaseWorker::PrepareSessions,
          &TDbmMigrateDatabaseWorker::CheckTargetDatabase,
          &TDbmMigrateDatabaseWorker::MigrateTables, &TDbmMigrateDatabaseWorker::CreateRoutines,
          &TDbmMigrateDatabaseWorker::CreateViews, &TDbmMigrateDatabaseWorker::CreateEvents})
        if (!StopRequest())
            (this->*step)();
    for (const QString &line : FDumpUtils.LeftOut())
        SendLog(line, wltWarning);
}

void TDbmMigrateDatabaseWorker::PrepareSessions()
{
    TDbmDumpSession::PrepareReader(*FSourceManager);
    TDbmDumpSession::PrepareWriter(*FTargetManager);
    FDumpUtils.FSessionMode = TDbmDumpSession::Variable(*FTargetManager, "sql_mode");
    FDumpUtils.FSessionZone = TDbmDumpSession::Variable(*FTargetManager, "time_zone");
    FDumpUtils.FSessionCollation =
        TDbmDumpSession::Variable(*FTargetManager, "collation_connection");
    FDumpUtils.WatchReads();
    FDumpUtils.FFormatters = &FTargetManager->Formatters();
    FDumpUtils.FFeatures = &FTargetManager->Features();
    FDumpUtils.FTargetCollations = TargetCollations();
}

void TDbmMigrateDatabaseWorker::OpenSource()
{
    SendLog("Opening source connection");
    FSourceManager->SetParams(FSourceProfile);
    FSourceManager->Connect();
    SendLog("%s (%s)", {FSourceProfile.GetDisplayString(), FSourceManager->ServerVersion()});
}

void TDbmMigrateDatabaseWorker::OpenTarget()
{
    SendLog("Opening target connection");
    FTargetManager->SetParams(FTargetProfile);
    FTargetManager->Connect();
    SendLog("Target: %s (%s)",
            {FTargetProfile.GetDisplayString(), FTargetManager->ServerVersion()});
    if (FTargetDatabaseName.isEmpty())
        return;
    // Deliberate: what comes of this probe is of no account.
    try {
        TDbmConnectionProfile profile = FTargetProfile;
        profile.Database = FTargetDatabaseName;
        const std::unique_ptr<TDbmManager> probe = TDbmManager::Create();
        probe->SetParams(profile);
        probe->Connect();
    } catch (const std::exception &) {
    }
}

void TDbmMigrateDatabaseWorker::SettleCharset()
{
    QString charset = FCharset;
    if (!charset.isEmpty()) {
        SendLog("Setting the charset to \"%s\" on the source connection", {charset});
    } else {
        SendLog("Getting the current charset on the source connection");
        FSourceManager->Commands().Charsets().ExecuteGetSessionCharset(charset);
    }
    SendLog("Setting the charset to \"%s\" on the target connection", {charset});
    // In a narrower set the source would send question marks, and the target would store them.
    if (charset != u"utf8mb4")
        SendLog("Texts travel in \"utf8mb4\", so that none is changed on the way");
}

void TDbmMigrateDatabaseWorker::RequireSource()
{
    std::shared_ptr<TDbmDatabaseItem> database;
    if (!FSourceManager->Databases().TryGetByName(FSourceDatabaseName, database))
        throw EException(TFormat::Format("Database \"%s\" not found.", {FSourceDatabaseName}));
}

// Two profiles may reach one server by different names, so the servers are asked: a lock that one
// session holds is seen by all others of its server.
void TDbmMigrateDatabaseWorker::RefuseSameDatabase()
{
    const QString lock = QUuid::createUuid().toString(QUuid::WithoutBraces);
    Value(*FSourceManager, "SELECT GET_LOCK('" + lock + "', 0)");
    const bool isSameServer =
        !Value(*FTargetManager, "SELECT IS_USED_LOCK('" + lock + "')").isEmpty();
    Value(*FSourceManager, "SELECT RELEASE_LOCK('" + lock + "')");
    FTargetCase = Value(*FTargetManager, "SELECT @@lower_case_table_names") == u"0"
                      ? Qt::CaseSensitive
                      : Qt::CaseInsensitive;
    if (isSameServer && FSourceDatabaseName.compare(FTargetDatabaseName, FTargetCase) == 0)
        throw EException(TFormat::Format("Source and target are the same database \"%s\".",
                                         {FSourceDatabaseName}));
}

QStringList TDbmMigrateDatabaseWorker::TargetCollations()
{
    QStringList names;
    // One server lists some collations without their character set, which their names have
    // everywhere else.
    FTargetManager->Command().ExecuteQuery(
        "SELECT * FROM information_schema.collation_character_set_applicability",
        [&](TDataSet *rows) {
            for (; rows && !rows->Eof(); rows->Next()) {
                const TField *whole = rows->FindField("FULL_COLLATION_NAME");
                names += whole ? whole->AsString() : rows->FieldByName("COLLATION_NAME").AsString();
            }
        });
    return names;
}

void TDbmMigrateDatabaseWorker::CheckTargetDatabase()
{
    SendLog("Checking the target database \"%s\"", {FTargetDatabaseName});
    FIsDropDatabaseObjects = false;
    FTargetManager->Databases().ForEach([this](TDbmDatabaseItem &database) {
        if (database.Name().compare(FTargetDatabaseName, FTargetCase) == 0)
            FIsDropDatabaseObjects = true;
    });
    if (!FIsDropDatabaseObjects) {
        const QString create = FDumpUtils.DumpCreateDatabase();
        SendLog("Creating database \"%s\"", {FTargetDatabaseName});
        Exec(create);
    }
    FTargetManager->Commands().Databases().ExecuteUse(TDbmDumpNames::Escaped(FTargetDatabaseName));
}

void TDbmMigrateDatabaseWorker::MigrateTables()
{
    FTables = FDumpUtils.Tables();
    if (FIsDropDatabaseObjects)
        DropReferences();
    using TPass = void (TDbmMigrateDatabaseWorker::*)(const QString &table);
    const auto run = [this](TPass pass) {
        for (const QString &table : FTables)
            if (!StopRequest())
                (this->*pass)(table);
    };
    run(&TDbmMigrateDatabaseWorker::CreateTable);
    run(&TDbmMigrateDatabaseWorker::InsertRows);
    run(&TDbmMigrateDatabaseWorker::CreateReferences);
    for (const QString &statement : FModes.Restore())
        Exec(statement);
    run(&TDbmMigrateDatabaseWorker::CreateTriggers);
}

// A table cannot be dropped while a key of another one refers to it. The checks stay on, so that a
// table that is no part of the migration keeps its rows whole.
void TDbmMigrateDatabaseWorker::DropReferences()
{
    for (const QString &table : FTables)
        if (!StopRequest())
            DropReferencesOf(table);
}

void TDbmMigrateDatabaseWorker::DropReferencesOf(const QString &table)
{
    // Asked for without a look into the list, which may spell the name in lower case; empty for a
    // table that is not there.
    QString ddl;
    FTargetManager->Commands().Tables().ExecuteSelectDDL(
        TDbmDumpNames::Escaped(FTargetDatabaseName), TDbmDumpNames::Escaped(table), ddl);
    const TDbmTableKeys keys = TDbmTableKeys::Parse(FTargetDatabaseName, ddl);
    for (const TDbmWholeReference &key : keys.References()) {
        const TDbmReferenceEntity &reference = key.Reference;
        const bool isInside =
            reference.RefDatabaseName.isEmpty() ||
            reference.RefDatabaseName.compare(FTargetDatabaseName, FTargetCase) == 0;
        if (!isInside || !FTables.contains(reference.RefTableName, Qt::CaseInsensitive))
            continue;
        SendLog("Dropping reference \"%s\" for \"%s\"", {reference.ReferenceName, table});
        Exec(FTargetManager->Formatters().ForeignKeys().FormatAlterTableDropForeignKey(
            TDbmDumpNames::Escaped(FTargetDatabaseName), TDbmDumpNames::Escaped(table),
            TDbmDumpNames::Escaped(reference.ReferenceName)));
    }
}

void TDbmMigrateDatabaseWorker::CreateTable(const QString &table)
{
    SendLog("Creating table \"%s\"", {table});
    for (const QString &statement : FModes.Take(FDumpUtils.TableNeeds(table)))
        Exec(statement);
    const QString create = FDumpUtils.DumpCreateTable(table);
    if (create.isEmpty())
        return;
    if (FIsDropDatabaseObjects)
        Exec(FDumpUtils.DumpDropTable(table));
    Exec(create);
}

void TDbmMigrateDatabaseWorker::InsertRows(const QString &table)
{
    const QString database = TDbmDumpNames::Escaped(FTargetDatabaseName);
    const QString name = TDbmDumpNames::Escaped(table);
    TDbmTableCommands &commands = FTargetManager->Commands().Tables();
    bool keysDisabled = false;
    FDumpUtils.DumpData(table, table, false, false, false, [&](const TDbmRowsStatement &rows) {
        if (!keysDisabled)
            commands.ExecuteUpdateDisableKeys(database, name);
        keysDisabled = true;
        for (const QString &statement : FModes.Take(rows.Needs))
            Exec(statement);
        SendLog("Inserting rows for \"%s\" (%d, %d)", {table, rows.Offset, rows.Count});
        Exec(QString::fromUtf8(rows.Text));
    });
    if (keysDisabled)
        commands.ExecuteUpdateEnableKeys(database, name);
}

void TDbmMigrateDatabaseWorker::CreateReferences(const QString &table)
{
    for (const QString &reference : FDumpUtils.References(table)) {
        if (StopRequest())
            return;
        SendLog("Creating reference \"%s\" for \"%s\"", {reference, table});
        Exec(FDumpUtils.DumpAlterTableAddForeignKey(table, reference));
    }
}

void TDbmMigrateDatabaseWorker::CreateTriggers(const QString &table)
{
    for (const QString &trigger : FDumpUtils.Triggers(table)) {
        if (StopRequest())
            return;
        SendLog("Creating trigger \"%s\" for \"%s\"", {trigger, table});
        ExecProgram(FDumpUtils.DumpCreateTrigger(table, trigger), "TRIGGER", trigger);
    }
}

void TDbmMigrateDatabaseWorker::CreateRoutines()
{
    for (const TDbmRoutineEntity &routine : FDumpUtils.Routines()) {
        if (StopRequest())
            return;
        const QString &name = routine.RoutineName;
        SendLog("Creating routine \"%s\"", {name});
        const QString create = FDumpUtils.DumpCreateRoutine(name, routine.RoutineType);
        if (FIsDropDatabaseObjects)
            Exec(FDumpUtils.DumpDropRoutine(name, routine.RoutineType, true));
        ExecProgram(create, routine.RoutineType == rtFunction ? "FUNCTION" : "PROCEDURE", name);
    }
}

void TDbmMigrateDatabaseWorker::CreateViews()
{
    for (const QString &view : FDumpUtils.Views()) {
        if (StopRequest())
            return;
        SendLog("Creating view \"%s\"", {view});
        const QString create = FDumpUtils.DumpCreateView(view);
        if (FIsDropDatabaseObjects)
            Exec(FDumpUtils.DumpDropView(view, true));
        ExecWithCollation(create, "VIEW", view);
    }
}

void TDbmMigrateDatabaseWorker::CreateEvents()
{
    for (const QString &event : FDumpUtils.Events()) {
        if (StopRequest())
            return;
        SendLog("Creating event \"%s\"", {event});
        const QString create = FDumpUtils.DumpCreateEvent(event);
        if (FIsDropDatabaseObjects)
            Exec(FDumpUtils.DumpDropEvent(event));
        ExecProgram(create, "EVENT", event);
    }
}

// Past the reader of scripts, which drops lines that look like comments, also inside texts.
void TDbmMigrateDatabaseWorker::Exec(const QString &text)
{
    if (!text.isEmpty())
        FTargetManager->Command().ExecStatement(text);
}

void TDbmMigrateDatabaseWorker::ExecProgram(const QString &text, const char *kind,
                                            const QString &name)
{
    const QString mode = FDumpUtils.ProgramMode(kind, name);
    const QStringList none;
    for (const QString &statement : mode.isNull() ? none : TDbmDumpModes::EnterMode(mode))
        Exec(statement);
    ExecWithCollation(text, kind, name);
    for (const QString &statement : mode.isNull() ? none : TDbmDumpModes::LeaveMode())
        Exec(statement);
}

void TDbmMigrateDatabaseWorker::ExecWithCollation(const QString &text, const char *kind,
                                                  const QString &name)
{
    const QString collation = FDumpUtils.ProgramCollation(kind, name);
    const auto set = [&](const QString &value) {
        if (!collation.isNull())
            Exec("SET SESSION collation_connection = '" + value + '\'');
    };
    set(collation);
    Exec(text);
    set(FDumpUtils.FSessionCollation);
}
