#include "jobs/uDbmCreateSqlDumpWorker.h"

#include "jobs/uDbmDumpNames.h"
#include "model/uDbmManager.h"
#include "support/uException.h"

#include <QDateTime>
#include <QLocale>

namespace {

constexpr char LineEnd[] = "\r\n";
constexpr char Utf8Mark[] = "\xEF\xBB\xBF";

// The user's short date and long time; the zone is not part of either.
QString CurrentTimeText()
{
    const QLocale locale = QLocale::system();
    const QDateTime now = QDateTime::currentDateTime();
    QString format = locale.timeFormat(QLocale::LongFormat);
    format = format.remove('t').simplified();
    return locale.toString(now.date(), QLocale::ShortFormat) + ' ' +
           locale.toString(now.time(), format);
}

// A comment as the last line would take the delimiter with it.
bool EndsInComment(const QString &text)
{
    const QString line = text.mid(text.lastIndexOf('\n') + 1).trimmed();
    return line.startsWith('#') || line.startsWith("--");
}

} // namespace

TDbmCreateSqlDumpWorker::TDbmCreateSqlDumpWorker()
    : FManager(TDbmManager::Create()), FDelimiter(";")
{}

TDbmCreateSqlDumpWorker::~TDbmCreateSqlDumpWorker()
{
    WaitForEnd();
}

void TDbmCreateSqlDumpWorker::Execute()
{
    TWorker::Execute();
    const TDbmDumpCloser closer(*FManager);
    OpenConnection();
    SendLog("Creating file \"%s\"", {FFileName});
    CreateFile();
    try {
        WriteHeader();
        WriteDatabase();
        LogLeftOut();
    } catch (...) {
        SendLog("Closing file");
        FStream.close();
        throw;
    }
    SendLog("Closing file");
    CloseFile();
}

void TDbmCreateSqlDumpWorker::OpenConnection()
{
    SendLog("Opening connection");
    TDbmConnectionProfile profile = FProfile;
    profile.Database = FDatabaseName;
    if (!FCharset.isEmpty())
        profile.Charset = FCharset;
    FManager->SetParams(profile);
    FManager->Connect();
    TDbmDumpSession::Prepare(*FManager);
    TDbmDumpSession::BeginSnapshot(*FManager);
    FManager->Commands().Charsets().ExecuteGetSessionCharset(FCurrentCharset);
    FDumpUtils.FManager = FManager.get();
    FDumpUtils.FFormatters = &FManager->Formatters();
    FDumpUtils.FFeatures = &FManager->Features();
    FDumpUtils.FSourceDatabaseName = FDatabaseName;
    // A dump names no database inside its statements, so that it loads under another name.
    FDumpUtils.FTargetDatabaseName.clear();
    FDumpUtils.FStopRequested = [this] { return StopRequest(); };
    FDumpUtils.WatchReads();
}

void TDbmCreateSqlDumpWorker::CreateFile()
{
    FStream.setFileName(FFileName);
    if (!FStream.open(QIODevice::WriteOnly | QIODevice::Truncate | QIODevice::Unbuffered))
        throw EException(
            TFormat::Format("Cannot create file \"%s\": %s.", {FFileName, FStream.errorString()}));
    Write(Utf8Mark);
}

void TDbmCreateSqlDumpWorker::CloseFile()
{
    FStream.close();
    if (FStream.error() != QFileDevice::NoError)
        throw EException(
            TFormat::Format("Cannot write file \"%s\": %s.", {FFileName, FStream.errorString()}));
}

void TDbmCreateSqlDumpWorker::WriteHeader()
{
    const TDbmConnectionProfile profile = FManager->ConnectionProfile();
    WriteLine("--");
    WriteLine("-- Date:           " + CurrentTimeText());
    WriteLine("-- Server version: " + FManager->ServerVersion());
    WriteLine("-- Host:           " + profile.HostName);
    WriteLine("-- Database:       " + FDatabaseName.simplified());
    WriteLine("-- User:           " + profile.UserName);
    WriteLine("--");
    WriteLine();
    WriteStatement(TFormat::Format("SET NAMES '%s'", {FCurrentCharset}));
}

void TDbmCreateSqlDumpWorker::WriteDatabase()
{
    const QString create = FDumpUtils.DumpCreateDatabase();
    if (create.isEmpty())
        return;
    SendLog("Writing database");
    WriteLine();
    WriteStatement(create);
    WriteLine();
    WriteStatement(TFormat::Format("USE `%s`", {TDbmDumpNames::Escaped(FDatabaseName)}));
    using TStep = void (TDbmCreateSqlDumpWorker::*)();
    for (const TStep step :
         {&TDbmCreateSqlDumpWorker::WriteTables, &TDbmCreateSqlDumpWorker::WriteRoutines,
          &TDbmCreateSqlDumpWorker::WriteViews, &TDbmCreateSqlDumpWorker::WriteEvents})
        if (!StopRequest())
            (this->*step)();
}

void TDbmCreateSqlDumpWorker::WriteTables()
{
    // The order of the passes stands for what other dumps reach by switching checks off: keys that
    // refer to tables come when all rows are there, and triggers when nothing would fire them.
    using TPass = void (TDbmCreateSqlDumpWorker::*)(const QString &table);
    FTables = FDumpUtils.Tables();
    const auto run = [this](TPass pass) {
        for (const QString &table : FTables)
            if (!StopRequest())
                (this->*pass)(table);
    };
    run(&TDbmCreateSqlDumpWorker::WriteTable);
    if (!FOnlyStructure)
        run(&TDbmCreateSqlDumpWorker::WriteData);
    run(&TDbmCreateSqlDumpWorker::WriteReferences);
    for (const QString &statement : FModes.Restore())
        WriteBlock(";", statement);
    run(&TDbmCreateSqlDumpWorker::WriteTriggers);
}

void TDbmCreateSqlDumpWorker::WriteTable(const QString &table)
{
    SendLog("Writing table \"%s\"", {table});
    for (const QString &statement : FModes.Take(FDumpUtils.TableNeeds(table)))
        WriteBlock(";", statement);
    WriteBlock(";", FDumpUtils.DumpCreateTable(table));
}

void TDbmCreateSqlDumpWorker::WriteData(const QString &table)
{
    const TDbmTableFormatters &formatters = FManager->Formatters().Tables();
    const QString name = TDbmDumpNames::Escaped(table);
    bool keysDisabled = false;
    FDumpUtils.DumpData(table, table, false, false, false, [&](const TDbmRowsStatement &rows) {
        if (!keysDisabled)
            WriteBlock(";", formatters.FormatUpdateDisableKeys(QString(), name));
        keysDisabled = true;
        WriteRows(table, rows);
    });
    if (keysDisabled)
        WriteBlock(";", formatters.FormatUpdateEnableKeys(QString(), name));
}

void TDbmCreateSqlDumpWorker::WriteRows(const QString &table, const TDbmRowsStatement &rows)
{
    for (const QString &statement : FModes.Take(rows.Needs))
        WriteBlock(";", statement);
    SendLog("Writing data for \"%s\" (%d, %d)", {table, rows.Offset, rows.Count});
    SetDelimiter(";");
    Write(LineEnd);
    Write(rows.Text);
    Write(";\r\n");
}

void TDbmCreateSqlDumpWorker::WriteReferences(const QString &table)
{
    const QStringList references = FDumpUtils.References(table);
    if (references.isEmpty())
        return;
    SetDelimiter(";");
    WriteLine();
    for (const QString &reference : references) {
        SendLog("Writing reference \"%s\" for \"%s\"", {reference, table});
        WriteStatement(FDumpUtils.DumpAlterTableAddForeignKey(table, reference));
    }
}

void TDbmCreateSqlDumpWorker::WriteTriggers(const QString &table)
{
    for (const QString &trigger : FDumpUtils.Triggers(table)) {
        SendLog("Writing trigger \"%s\" for \"%s\"", {trigger, table});
        WriteBlock("$$", FDumpUtils.DumpCreateTrigger(table, trigger));
    }
}

void TDbmCreateSqlDumpWorker::WriteRoutines()
{
    for (const TDbmRoutineEntity &routine : FDumpUtils.Routines()) {
        if (StopRequest())
            return;
        SendLog("Writing routine \"%s\"", {routine.RoutineName});
        WriteBlock("$$", FDumpUtils.DumpCreateRoutine(routine.RoutineName, routine.RoutineType));
    }
}

void TDbmCreateSqlDumpWorker::WriteViews()
{
    for (const QString &view : FDumpUtils.Views()) {
        if (StopRequest())
            return;
        SendLog("Writing view \"%s\"", {view});
        WriteBlock(";", FDumpUtils.DumpCreateView(view));
    }
}

void TDbmCreateSqlDumpWorker::WriteEvents()
{
    for (const QString &event : FDumpUtils.Events()) {
        if (StopRequest())
            return;
        SendLog("Writing event \"%s\"", {event});
        WriteBlock("$$", FDumpUtils.DumpCreateEvent(event));
    }
}

void TDbmCreateSqlDumpWorker::LogLeftOut()
{
    for (const QString &line : FDumpUtils.LeftOut())
        SendLog(line, wltWarning);
}

void TDbmCreateSqlDumpWorker::Write(const QByteArray &bytes)
{
    if (FStream.write(bytes) != bytes.size())
        throw EException(
            TFormat::Format("Cannot write file \"%s\": %s.", {FFileName, FStream.errorString()}));
}

void TDbmCreateSqlDumpWorker::WriteLine(const QString &text)
{
    Write(text.toUtf8() + LineEnd);
}

void TDbmCreateSqlDumpWorker::WriteStatement(const QString &text)
{
    WriteLine(text + (EndsInComment(text) ? LineEnd : "") + FDelimiter);
}

void TDbmCreateSqlDumpWorker::WriteBlock(const char *delimiter, const QString &text)
{
    SetDelimiter(delimiter);
    WriteLine();
    WriteStatement(text);
}

void TDbmCreateSqlDumpWorker::SetDelimiter(const QString &delimiter)
{
    if (delimiter == FDelimiter)
        return;
    FDelimiter = delimiter;
    WriteLine();
    WriteLine("DELIMITER " + delimiter);
}
