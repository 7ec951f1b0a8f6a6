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
    OpenSource();
    OpenTarget();
    SettleCharset();
    RefuseSameDatabase();
    TDbmDumpSession::Prepare(*FSourceManager);
    TDbmDumpSession::Prepare(*FTargetManager);
    TDbmDumpSession::BeginSnapshot(*FSourceManager);
    FDumpUtils.WatchReads();
    FDumpUtils.FFormatters = &FTargetManager->Formatters();
    FDumpUtils.FFeatures = &FTargetManager->Features();
    FDumpUtils.FTargetCollations = TargetCollations();
    CheckTargetDatabase();

    using TStep = void (TDbmMigrateDatabaseWorker::*)();
    for (const TStep step :
         {&TDbmMigrateDatabaseWorker::MigrateTables, &TDbmMigrateDatabaseWorker::CreateRoutines,
          &TDbmMigrateDatabaseWorker::CreateViews, &TDbmMigrateDatabaseWorker::CreateEvents})
        if (!StopRequest())
            (this->*step)();
    for (const QString &line : FDumpUtils.LeftOut())
        SendLog(line, wltWarning);
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
        FSourceManager->SetCharset(charset);
    } else {
        SendLog("Getting the current charset on the source connection");
        FSourceManager->Commands().Charsets().ExecuteGetSessionCharset(charset);
    }
    SendLog("Setting the charset to \"%s\" on the target connection", {charset});
    FTargetManager->SetCharset(charset);
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
    const Qt::CaseSensitivity sensitivity =
        Value(*FTargetManager, "SELECT @@lower_case_table_names") == u"0" ? Qt::CaseSensitive
                                                                          : Qt::CaseInsensitive;
    if (isSameServer && FSourceDatabaseName.compare(FTargetDatabaseName, sensitivity) == 0)
        throw EException(TFormat::Format("Source and target are the same database \"%s\".",
                                         {FSourceDatabaseName}));
}

QStringList TDbmMigrateDatabaseWorker::TargetCollations()
{
    QStringList names;
    FTargetManager->Collations().ForEach(
        [&](TDbmCollationItem &item) { names += item.Entity().Name; });
    return names;
}

void TDbmMigrateDatabaseWorker::CheckTargetDatabase()
{
    SendLog("Checking the target database \"%s\"", {FTargetDatabaseName});
    std::shared_ptr<TDbmDatabaseItem> database;
    FIsDropDatabaseObjects =
        FTargetManager->Databases().TryGetByName(FTargetDatabaseName, database);
    if (FIsDropDatabaseObjects) {
        // What a table does not say of its collation comes from the database around it.
        FDumpUtils.FDefaultCollation = database->Entity().Collation;
    } else {
        const QString create = FDumpUtils.DumpCreateDatabase();
        if (create.isEmpty())
            throw EException(TFormat::Format("Database \"%s\" not found.", {FSourceDatabaseName}));
        SendLog("Creating database \"%s\"", {FTargetDatabaseName});
        Exec(create, ";");
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
        Exec(statement, ";");
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
    std::shared_ptr<TDbmTableItem> item;
    if (!FTargetManager->TryGetTable(FTargetDatabaseName, table, item))
        return;
    for (const TDbmWholeReference &key : item->DDL().Keys().References()) {
        const TDbmReferenceEntity &reference = key.Reference;
        const bool isInside =
            reference.RefDatabaseName.isEmpty() || reference.RefDatabaseName == FTargetDatabaseName;
        if (!isInside || !FTables.contains(reference.RefTableName, Qt::CaseInsensitive))
            continue;
        SendLog("Dropping reference \"%s\" for \"%s\"", {reference.ReferenceName, table});
        Exec(FTargetManager->Formatters().ForeignKeys().FormatAlterTableDropForeignKey(
                 TDbmDumpNames::Escaped(FTargetDatabaseName), TDbmDumpNames::Escaped(table),
                 TDbmDumpNames::Escaped(reference.ReferenceName)),
             ";");
    }
}

void TDbmMigrateDatabaseWorker::CreateTable(const QString &table)
{
    SendLog("Creating table \"%s\"", {table});
    for (const QString &statement : FModes.Take(FDumpUtils.TableNeeds(table)))
        Exec(statement, ";");
    const QString create = FDumpUtils.DumpCreateTable(table);
    if (FIsDropDatabaseObjects)
        Exec(FDumpUtils.DumpDropTable(table), ";");
    Exec(create, ";");
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
            Exec(statement, ";");
        SendLog("Inserting rows for \"%s\" (%d, %d)", {table, rows.Offset, rows.Count});
        Exec(QString::fromUtf8(rows.Text), ";");
    });
    if (keysDisabled)
        commands.ExecuteUpdateEnableKeys(database, name);
}

void TDbmMigrateDatabaseWorker::CreateReferences(const QString &table)
{
    for (const QString &reference : FDumpUtils.References(table)) {
        SendLog("Creating reference \"%s\" for \"%s\"", {reference, table});
        Exec(FDumpUtils.DumpAlterTableAddForeignKey(table, reference), ";");
    }
}

void TDbmMigrateDatabaseWorker::CreateTriggers(const QString &table)
{
    for (const QString &trigger : FDumpUtils.Triggers(table)) {
        SendLog("Creating trigger \"%s\" for \"%s\"", {trigger, table});
        Exec(FDumpUtils.DumpCreateTrigger(table, trigger), "$$");
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
            Exec(FDumpUtils.DumpDropRoutine(name, routine.RoutineType, true), ";");
        Exec(create, "$$");
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
            Exec(FDumpUtils.DumpDropView(view, true), ";");
        Exec(create, ";");
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
            Exec(FDumpUtils.DumpDropEvent(event), ";");
        Exec(create, "$$");
    }
}

void TDbmMigrateDatabaseWorker::Exec(const QString &text, const char *delimiter)
{
    FTargetManager->Command().ExecScript(text, {}, delimiter);
}
