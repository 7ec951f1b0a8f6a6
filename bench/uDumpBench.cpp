#include "jobs/uDbmChecksumTableDataUtils.h"
#include "jobs/uDbmCreateSqlDumpWorker.h"
#include "jobs/uDbmExecuteSqlDumpWorker.h"
#include "jobs/uDbmMigrateDatabaseWorker.h"
#include "model/uDbmManager.h"
#include "support/uMainThread.h"
#include "uBench.h"
#include "uBenchRows.h"

#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <mysql.h>

namespace {

const QString Wide = QStringLiteral("bench_dump");   // a million rows of mixed columns
const QString Large = QStringLiteral("bench_texts"); // few rows with large texts and blobs
const QString Copy = QStringLiteral("bench_copy");   // the target of what is loaded

void Query(st_mysql *session, const QString &sql)
{
    const QByteArray text = sql.toUtf8();
    if (mysql_real_query(session, text.constData(), static_cast<unsigned long>(text.size())))
        qFatal("%s\n%s", mysql_error(session), text.constData());
}

void Query(const QString &sql)
{
    st_mysql *session = TBenchRows::Connect("mysql");
    Query(session, sql);
    mysql_close(session);
}

void Prepare()
{
    static bool ready = false;
    if (std::exchange(ready, true))
        return;
    TMainThread::Initialize();
    TBenchRows::Prepare();
    Query("CREATE DATABASE " + Wide);
    Query("CREATE TABLE " + Wide + ".mixed ENGINE = InnoDB AS SELECT * FROM bench.mixed");
    Query("ALTER TABLE " + Wide + ".mixed ADD PRIMARY KEY (id)");
    Query("CREATE DATABASE " + Large);
    Query("CREATE TABLE " + Large +
          ".texts (id INT PRIMARY KEY, t TEXT, b BLOB) ENGINE = InnoDB AS SELECT seq AS id,"
          " REPEAT(CONCAT('line ', seq, ' with \\'quotes\\' and more\\n'), 60) AS t,"
          " REPEAT(UNHEX(SHA1(seq)), 100) AS b FROM seq_1_to_50000");
    for (const int millions : {1, 4})
        Query("CREATE TABLE bench.paged" + QString::number(millions) +
              " (id BIGINT PRIMARY KEY, a INT, t VARCHAR(60)) ENGINE = InnoDB AS SELECT seq AS id,"
              " seq % 1000 AS a, CONCAT('some text of row ', seq) AS t FROM seq_1_to_" +
              QString::number(millions * 1000000));
    Query("ANALYZE TABLE bench.paged1, bench.paged4, " + Wide + ".mixed, " + Large + ".texts");
}

TDbmConnectionProfile Profile()
{
    TDbmConnectionProfile profile;
    profile.HostName = "127.0.0.1";
    profile.Port = TBench::ServerPort();
    profile.UserName = "root";
    return profile;
}

std::unique_ptr<TDbmManager> Connect()
{
    auto manager = TDbmManager::Create();
    manager->SetParams(Profile());
    manager->Connect();
    return manager;
}

double Run(TWorker &worker)
{
    TWorkerEvents events;
    events.OnException = [](TWorker *, const std::exception &e) { qFatal("%s", e.what()); };
    worker.SetEvents(events);
    return TBench::Seconds([&] {
        worker.Start();
        worker.Finish();
    });
}

/// Where files of a run are written; gone with the program.
QString File(const QString &name)
{
    static const QTemporaryDir folder;
    return folder.filePath(name);
}

double Shell(const QString &command)
{
    const QString client =
        "--protocol=tcp -h 127.0.0.1 -u root -P " + QString::number(TBench::ServerPort());
    const QString line = QString(command).replace("@", client);
    return TBench::Seconds([&] {
        if (QProcess::execute("sh", {"-c", line}) != 0)
            qFatal("failed: %s", qPrintable(line));
    });
}

double Rate(const QString &fileName, double seconds)
{
    return static_cast<double>(QFile(fileName).size()) / 1e6 / seconds;
}

void DumpTo(const QString &database, const QString &fileName, bool onlyStructure, double &seconds)
{
    TDbmCreateSqlDumpWorker worker;
    worker.FProfile = Profile();
    worker.FDatabaseName = database;
    worker.FFileName = fileName;
    worker.FOnlyStructure = onlyStructure;
    seconds = Run(worker);
}

double Dump(const QString &database)
{
    double seconds;
    const QString fileName = File(database + ".sql");
    DumpTo(database, fileName, false, seconds);
    return Rate(fileName, seconds);
}

double DumpPeer(const QString &database)
{
    const QString fileName = File(database + ".peer.sql");
    return Rate(fileName, Shell("mariadb-dump @ --single-transaction --hex-blob " + database +
                                " > " + fileName));
}

double DumpMemory(const QString &database)
{
    return TBench::PeakGrowth([&](const std::function<void()> &mark) {
               mark();
               double seconds;
               DumpTo(database, "/dev/null", false, seconds);
           }) /
           1048576;
}

// The files name the database that they are loaded into.
QString LoadFile()
{
    const QString fileName = File("load.sql");
    if (!QFile::exists(fileName)) {
        double seconds;
        DumpTo(Wide, File("whole.sql"), false, seconds);
        Shell("sed 's/`" + Wide + "`/`" + Copy + "`/' " + File("whole.sql") + " > " + fileName);
    }
    return fileName;
}

double Load()
{
    LoadFile();
    Query("DROP DATABASE IF EXISTS " + Copy);
    TDbmExecuteSqlDumpWorker worker;
    worker.FProfile = Profile();
    worker.FFileName = LoadFile();
    return Rate(LoadFile(), Run(worker));
}

double LoadPeer()
{
    LoadFile();
    Query("DROP DATABASE IF EXISTS " + Copy);
    return Rate(LoadFile(), Shell("mariadb @ < " + LoadFile()));
}

double Migrate()
{
    Query("DROP DATABASE IF EXISTS " + Copy);
    TDbmMigrateDatabaseWorker worker;
    worker.FSourceProfile = worker.FTargetProfile = Profile();
    worker.FSourceDatabaseName = Wide;
    worker.FTargetDatabaseName = Copy;
    return 1 / Run(worker);
}

double MigratePeer()
{
    Query("DROP DATABASE IF EXISTS " + Copy);
    Query("CREATE DATABASE " + Copy);
    return 1 / Shell("mariadb-dump @ --single-transaction " + Wide + " | mariadb @ " + Copy);
}

double Structure()
{
    double seconds;
    DumpTo("bench_model", File("structure.sql"), true, seconds);
    return seconds;
}

double StructurePeer()
{
    return Shell("mariadb-dump @ --no-data --single-transaction bench_model > " +
                 File("structure.peer.sql"));
}

double Pages(const QString &table)
{
    const auto manager = Connect();
    TDbmTableRows rows(*manager, "bench", table);
    rows.FTargetTable = table;
    return TBench::Seconds([&] { rows.Run([](const TDbmRowsStatement &) {}); });
}

// The same rows by one statement, made into the same text.
double PagesPeer(const QString &table)
{
    const auto manager = Connect();
    std::unique_ptr<TDbmRowFormatter> formatter;
    QByteArray text;
    return TBench::Seconds([&] {
        manager->Provider().Connection().Stream(
            "SELECT * FROM bench." + table,
            [&](const std::vector<TFieldInfo> &fields) {
                formatter = std::make_unique<TDbmRowFormatter>(
                    fields, std::vector<TDbmRowFormatter::TColumn>(fields.size()));
            },
            [&](const TMyQuery::TRowView &row) {
                formatter->Append(row, text);
                if (text.size() > 131072)
                    text.resize(0);
                return true;
            });
    });
}

double Checksum()
{
    const auto manager = Connect();
    TDbmChecksumTableDataUtils utils(*manager);
    return TBench::Seconds([&] { utils.Calculate(Wide, "mixed"); });
}

double ChecksumPeer()
{
    const auto manager = Connect();
    QStringList sums;
    manager->Command().ExecuteQuery(
        "SELECT column_name AS name FROM information_schema.columns WHERE table_schema = '" + Wide +
            "' AND table_name = 'mixed' ORDER BY ordinal_position",
        [&](TDataSet *rows) {
            for (; !rows->Eof(); rows->Next())
                sums += "sum(ifnull(crc32(`" + rows->FieldByName("name").AsString() + "`), 0))";
        });
    return Shell("mariadb @ -e 'SELECT ifnull(crc32(" + sums.join(" + ") + "), 0) FROM " + Wide +
                 ".mixed' > /dev/null");
}

const TBenchRegistrar Rows([] {
    const auto named = [](const QString &database) {
        return database == Wide ? QString("1,000,000 rows × 10 columns")
                                : QString("50,000 rows with long texts and blobs");
    };
    std::vector<TBenchRow> rows;
    for (const QString &database : {Wide, Large}) {
        rows.push_back({.What = "writing a dump of " + named(database),
                        .PeerName = "mariadb-dump --single-transaction --hex-blob",
                        .Unit = "MB/s",
                        .Goal = bgAtLeast,
                        .Limit = 1.4,
                        .Product = [=] { return Dump(database); },
                        .Peer = [=] { return DumpPeer(database); },
                        .Prepare = Prepare,
                        .Rounds = 3});
        rows.push_back({.What = "writing a dump of " + named(database) + ", memory",
                        .PeerName = "64 MiB",
                        .Unit = "MiB",
                        .Product = [=] { return DumpMemory(database); },
                        .Peer = [] { return 64.0; },
                        .Prepare = Prepare,
                        .Rounds = 1});
    }
    rows.push_back({.What = "executing that dump",
                    .PeerName = "mariadb < the same file",
                    .Unit = "MB/s",
                    .Goal = bgAtLeast,
                    .Limit = 0.95,
                    .Product = Load,
                    .Peer = LoadPeer,
                    .Prepare = Prepare,
                    .Rounds = 3});
    rows.push_back({.What = "migration of 1,000,000 rows × 10 columns",
                    .PeerName = "mariadb-dump piped into mariadb",
                    .Unit = "1/s",
                    .Goal = bgAtLeast,
                    .Limit = 1,
                    .Product = Migrate,
                    .Peer = MigratePeer,
                    .Prepare = Prepare,
                    .Rounds = 3});
    rows.push_back({.What = "structure-only dump of 5,000 tables",
                    .PeerName = "mariadb-dump --no-data --single-transaction",
                    .Unit = "s",
                    .Limit = 1,
                    .Product = Structure,
                    .Peer = StructurePeer,
                    .Prepare =
                        [] {
                            Prepare();
                            TBenchRows::PrepareTables();
                        },
                    .Rounds = 3});
    for (const int millions : {1, 4}) {
        const QString table = "paged" + QString::number(millions);
        rows.push_back({.What = "reading " + QString::number(millions) +
                                ",000,000 rows in pages behind their key",
                        .PeerName = "one streaming SELECT, made into the same text",
                        .Unit = "s",
                        .Limit = 1.15,
                        .Product = [=] { return Pages(table); },
                        .Peer = [=] { return PagesPeer(table); },
                        .Prepare = Prepare,
                        .Rounds = 3});
    }
    rows.push_back({.What = "checksum of 1,000,000 rows × 10 columns",
                    .PeerName = "its own SELECT in the mariadb client",
                    .Unit = "s",
                    .Limit = 1.05,
                    .Product = Checksum,
                    .Peer = ChecksumPeer,
                    .Prepare = Prepare,
                    .Rounds = 3});
    return rows;
});

} // namespace
