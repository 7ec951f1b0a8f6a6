#include "jobs/uDbmCreateSqlDumpWorker.h"

#include "client/uCharsetCodec.h"
#include "jobs/uDbmDumpNames.h"
#include "jobs/uDbmFileTexts.h"
#include "model/uDbmManager.h"
#include "support/uException.h"
#include "support/uLocaleFormats.h"
#include "support/uRegExUtils.h"

#include <QDateTime>
#include <QLocale>

namespace {

constexpr char LineEnd[] = "\r\n";
constexpr char Utf8Mark[] = "\xEF\xBB\xBF";

// The user's short date and long time.
QString CurrentTimeText()
{
    const QLocale locale = QLocale::system();
    const QDateTime now = QDateTime::currentDateTime();
    return locale.toString(now.date(), QLocale::ShortFormat) + ' ' +
           locale.toString(now.time(), TLocaleFormats::LongTime(locale));
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
    // What the file has had so far is not given up for a job that is to end.
    if (StopRequest())
        return;
    SendLog("Creating file \"%s\"", {FFileName});
    CreateFile();
    try {
        Write(Utf8Mark);
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
    FManager->Commands().Charsets().ExecuteGetSessionCharset(FCurrentCharset);
    FDumpUtils.FSessionMode = TDbmDumpSession::Variable(*FManager, "sql_mode");
    FDumpUtils.FSessionZone = TDbmDumpSession::Variable(*FManager, "time_zone");
    // As the file's first statement has it.
    FManager->Command().ExecScript("SET NAMES '" + FCurrentCharset + '\'');
    FDumpUtils.FSessionCollation = TDbmDumpSession::Variable(*FManager, "collation_connection");
    // Rows are read in the widest set, whatever set the file is in.
    TDbmDumpSession::PrepareReader(*FManager);
    if (FCurrentCharset != u"utf8mb4") {
        FCodec = TCharsetCodec::Create(FCurrentCharset.toLatin1());
        FDumpUtils.FStatementCharset = FCurrentCharset;
    }
    FDumpUtils.FIntoFile = true;
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
    WriteLine("-- Database:       " +
              // A line end in the name would begin a line that is no comment.
              TRegExUtils::Replace(FDatabaseName, "[\\x00-\\x1F]", " "));
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
    const bool fits = !FCodec || Fits(QString::fromUtf8(rows.Text));
    EnterWideSet(fits);
    Write(rows.Text);
    Write(";\r\n");
    LeaveWideSet(fits);
}

void TDbmCreateSqlDumpWorker::WriteReferences(const QString &table)
{
    const QStringList references = FDumpUtils.References(table);
    if (references.isEmpty())
        return;
    SetDelimiter(";");
    WriteLine();
    for (const QString &reference : references) {
        if (StopRequest())
            return;
        SendLog("Writing reference \"%s\" for \"%s\"", {reference, table});
        WriteStatement(FDumpUtils.DumpAlterTableAddForeignKey(table, reference));
    }
}

void TDbmCreateSqlDumpWorker::WriteTriggers(const QString &table)
{
    for (const QString &trigger : FDumpUtils.Triggers(table)) {
        if (StopRequest())
            return;
        SendLog("Writing trigger \"%s\" for \"%s\"", {trigger, table});
        WriteProgram(FDumpUtils.DumpCreateTrigger(table, trigger), "TRIGGER", trigger);
    }
}

void TDbmCreateSqlDumpWorker::WriteRoutines()
{
    for (const TDbmRoutineEntity &routine : FDumpUtils.Routines()) {
        if (StopRequest())
            return;
        const QString &name = routine.RoutineName;
        SendLog("Writing routine \"%s\"", {name});
        WriteProgram(FDumpUtils.DumpCreateRoutine(name, routine.RoutineType),
                     routine.RoutineType == rtFunction ? "FUNCTION" : "PROCEDURE", name);
    }
}

void TDbmCreateSqlDumpWorker::WriteViews()
{
    for (const QString &view : FDumpUtils.Views()) {
        if (StopRequest())
            return;
        SendLog("Writing view \"%s\"", {view});
        FDumpUtils.ProgramCollation("VIEW", view);
        WriteBlock(";", FDumpUtils.DumpCreateView(view));
    }
}

void TDbmCreateSqlDumpWorker::WriteEvents()
{
    for (const QString &event : FDumpUtils.Events()) {
        if (StopRequest())
            return;
        SendLog("Writing event \"%s\"", {event});
        WriteProgram(FDumpUtils.DumpCreateEvent(event), "EVENT", event);
    }
}

void TDbmCreateSqlDumpWorker::WriteProgram(const QString &text, const char *kind,
                                           const QString &name)
{
    FDumpUtils.ProgramCollation(kind, name);
    const QByteArray delimiter = TDbmFileTexts::Delimiter(text).toLatin1();
    const QString mode = FDumpUtils.ProgramMode(kind, name);
    const QStringList none;
    for (const QString &statement : mode.isNull() ? none : TDbmDumpModes::EnterMode(mode))
        WriteBlock(delimiter.constData(), statement);
    WriteBlock(delimiter.constData(), text);
    for (const QString &statement : mode.isNull() ? none : TDbmDumpModes::LeaveMode())
        WriteBlock(delimiter.constData(), statement);
}

void TDbmCreateSqlDumpWorker::LogLeftOut()
{
    for (const QString &line : FDumpUtils.LeftOut())
        SendLog(line, wltWarning);
}

void TDbmCreateSqlDumpWorker::Write(const QByteArray &bytes)
{
    // A disk that fills up takes a part, and tells the cause only when it is offered the rest.
    for (QByteArrayView rest = bytes; !rest.isEmpty();) {
        const qint64 written = FStream.write(rest.data(), rest.size());
        if (written <= 0)
            throw EException(TFormat::Format("Cannot write file \"%s\": %s.",
                                             {FFileName, FStream.errorString()}));
        rest = rest.sliced(written);
    }
}

void TDbmCreateSqlDumpWorker::WriteLine(const QString &text)
{
    Write(text.toUtf8() + LineEnd);
}

void TDbmCreateSqlDumpWorker::WriteStatement(const QString &text)
{
    const bool fits = !FCodec || Fits(text);
    EnterWideSet(fits);
    WriteLine(text + (EndsInComment(text) ? LineEnd : "") + FDelimiter);
    LeaveWideSet(fits);
}

bool TDbmCreateSqlDumpWorker::Fits(const QString &text) const
{
    QByteArray encoded;
    return FCodec->TryEncode(text, encoded);
}

// What has no digits to stand for it, such as a name or a comment, is read in another set.
void TDbmCreateSqlDumpWorker::EnterWideSet(bool fits)
{
    if (!fits)
        WriteLine("SET NAMES 'utf8mb4'" + FDelimiter);
}

void TDbmCreateSqlDumpWorker::LeaveWideSet(bool fits)
{
    if (!fits)
        WriteLine("SET NAMES '" + FCurrentCharset + '\'' + FDelimiter);
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
