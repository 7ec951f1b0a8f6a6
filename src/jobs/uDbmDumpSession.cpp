#include "jobs/uDbmDumpSession.h"

#include "model/uDbmManager.h"
#include "sql/uDbmRowFormatter.h"

namespace {

// Seconds. A server gives a client up by default that does not read on for one minute, which the
// other side may need for one statement.
const QString Patience = QStringLiteral("86400");

const QString Mode = QStringLiteral("@@SESSION.sql_mode");

// Those that change what quotes and backslashes mean. Words that stand for several ones bring these
// back when they are set again. The longer names hold shorter ones, so they go first.
const QStringList QuoteModes{
    "ANSI_QUOTES", "NO_BACKSLASH_ESCAPES", "POSTGRESQL", "ORACLE", "MSSQL", "MAXDB", "ANSI", "DB2"};

QString Without(const QString &mode, const QStringList &words)
{
    QString text = mode;
    for (const QString &word : words)
        text = "REPLACE(" + text + ", '" + word + "', '')";
    return text;
}

void Run(TDbmManager &manager, const QString &statement)
{
    manager.Command().ExecScript(statement);
}

void Prepare(TDbmManager &manager)
{
    // In any other set the server puts question marks for characters that the set does not have.
    if (manager.Provider().Connection().LibraryConnection().CurrentCharset() != u"utf8mb4") {
        TDbmConnectionProfile profile = manager.ConnectionProfile();
        profile.Charset = "utf8mb4";
        manager.SetParams(profile);
        manager.Connect();
    }
    for (const char *name : {"net_write_timeout", "net_read_timeout", "wait_timeout"})
        Run(manager, QString("SET SESSION %1 = %2").arg(name, Patience));
}

} // namespace

void TDbmDumpSession::PrepareReader(TDbmManager &manager)
{
    Prepare(manager);
    // Two moments of the hour that comes twice in autumn have one text in most zones.
    Run(manager, "SET SESSION time_zone = '+00:00'");
    Run(manager, "SET SESSION sql_mode = ''");
    BeginSnapshot(manager);
    manager.Provider().HoldSession();
}

void TDbmDumpSession::PrepareWriter(TDbmManager &manager)
{
    Prepare(manager);
    if (ReadsQuotesOtherwise(manager))
        Run(manager, "SET SESSION sql_mode = " + Without(Mode, QuoteModes));
    manager.Provider().HoldSession();
}

void TDbmDumpSession::BeginSnapshot(TDbmManager &manager)
{
    Run(manager, "SET SESSION TRANSACTION ISOLATION LEVEL REPEATABLE READ");
    Run(manager, "START TRANSACTION WITH CONSISTENT SNAPSHOT");
}

bool TDbmDumpSession::ReadsQuotesOtherwise(TDbmManager &manager)
{
    const QStringList modes = Variable(manager, "sql_mode").split(u',');
    return std::any_of(QuoteModes.begin(), QuoteModes.end(),
                       [&](const QString &mode) { return modes.contains(mode); });
}

QString TDbmDumpSession::Variable(TDbmManager &manager, const QString &name)
{
    QString value;
    manager.Command().ExecuteQuery("SELECT @@SESSION." + name, [&](TDataSet *rows) {
        if (rows && rows->RecordCount() > 0)
            value = rows->FieldAt(0).AsString();
    });
    return value;
}

TDbmDumpCloser::~TDbmDumpCloser()
{
    FManager.Provider().CloseConnection();
}

QStringList TDbmDumpModes::Take(int needs)
{
    QStringList statements;
    const int missing = needs & ~FTaken;
    const bool isModeKept = (FTaken & ~rnUtcTimes) != 0;
    if ((missing & ~rnUtcTimes) && !isModeKept)
        statements += "SET @dump_sql_mode = " + Mode;
    if (missing & rnPlainQuotes)
        statements += "SET SESSION sql_mode = " + Without(Mode, QuoteModes);
    if (missing & rnZeroAutoIncrement)
        statements += "SET SESSION sql_mode = CONCAT(" + Mode + ", ',NO_AUTO_VALUE_ON_ZERO')";
    // The longer names hold the shorter ones of other modes, so they go first.
    if (missing & rnLaxDates)
        statements += "SET SESSION sql_mode = CONCAT(" +
                      Without(Mode, {"TRADITIONAL", "NO_ZERO_IN_DATE", "NO_ZERO_DATE"}) +
                      ", ',ALLOW_INVALID_DATES')";
    if (missing & rnLaxEnums)
        statements += "SET SESSION sql_mode = " +
                      Without(Mode, {"TRADITIONAL", "STRICT_TRANS_TABLES", "STRICT_ALL_TABLES"});
    if (missing & rnUtcTimes)
        statements +=
            {"SET @dump_time_zone = @@SESSION.time_zone", "SET SESSION time_zone = '+00:00'"};
    FTaken |= needs;
    return statements;
}

QStringList TDbmDumpModes::Restore()
{
    QStringList statements;
    if (FTaken & ~rnUtcTimes)
        statements += LeaveMode();
    if (FTaken & rnUtcTimes)
        statements += "SET SESSION time_zone = @dump_time_zone";
    FTaken = 0;
    return statements;
}

QStringList TDbmDumpModes::EnterMode(const QString &mode)
{
    return {"SET @dump_sql_mode = " + Mode, "SET SESSION sql_mode = '" + mode + '\''};
}

QStringList TDbmDumpModes::LeaveMode()
{
    return {"SET SESSION sql_mode = @dump_sql_mode"};
}
