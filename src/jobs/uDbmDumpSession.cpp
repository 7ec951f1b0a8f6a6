#include "jobs/uDbmDumpSession.h"

#include "model/uDbmManager.h"
#include "sql/uDbmRowFormatter.h"

namespace {

// Seconds. A server gives a client up by default that does not read on for one minute, which the
// other side may need for one statement.
const QString Patience = QStringLiteral("86400");

const QString Mode = QStringLiteral("@@SESSION.sql_mode");

QString Without(const QString &mode, const QStringList &words)
{
    QString text = mode;
    for (const QString &word : words)
        text = "REPLACE(" + text + ", '" + word + "', '')";
    return text;
}

} // namespace

void TDbmDumpSession::Prepare(TDbmManager &manager)
{
    for (const char *name : {"net_write_timeout", "net_read_timeout", "wait_timeout"})
        manager.Command().ExecScript(QString("SET SESSION %1 = %2").arg(name, Patience));
}

void TDbmDumpSession::BeginSnapshot(TDbmManager &manager)
{
    manager.Command().ExecScript("SET SESSION TRANSACTION ISOLATION LEVEL REPEATABLE READ");
    manager.Command().ExecScript("START TRANSACTION WITH CONSISTENT SNAPSHOT");
}

TDbmDumpCloser::~TDbmDumpCloser()
{
    FManager.Provider().CloseConnection();
}

QStringList TDbmDumpModes::Take(int needs)
{
    QStringList statements;
    const int missing = needs & ~FTaken;
    if (missing && !FTaken)
        statements += "SET @dump_sql_mode = " + Mode;
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
    FTaken |= needs;
    return statements;
}

QStringList TDbmDumpModes::Restore()
{
    if (!FTaken)
        return {};
    FTaken = 0;
    return {"SET SESSION sql_mode = @dump_sql_mode"};
}
