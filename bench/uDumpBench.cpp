#include "client/uField.h"
#include "client/uMyQuery.h"
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
#include <string>

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
    // A server may be used for several runs.
    st_mysql *session = TBenchRows::Connect("mysql");
    const bool filled = mysql_query(session, "DO (SELECT 1 FROM bench_ready.done)") == 0;
    mysql_close(session);
    if (filled)
        return;
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
    Query("CREATE DATABASE bench_ready");
    Query("CREATE TABLE bench_ready.done AS SELECT 1 AS yes");
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

void Configure(TMyConnection &connection)
{
    connection.Server = "127.0.0.1";
    connection.Port = TBench::ServerPort();
    connection.Username = "root";
    connection.Database = TBenchRows::Database();
    connection.Options.Charset = "utf8mb4";
    connection.Options.UseUnicode = true;
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

// The same rows by one statement, read by the client library and made into the same text.
double PagesPeer(const QString &table)
{
    const QString select = "SELECT * FROM bench." + table;
    TMyConnection connection;
    Configure(connection);
    TMyQuery query(&connection);
    query.SetSQL(select + " LIMIT 0");
    query.Execute();
    std::vector<TFieldInfo> fields;
    for (const auto &field : query.Fields())
        fields.push_back(field->Info());
    TDbmRowFormatter formatter(fields, std::vector<TDbmRowFormatter::TColumn>(fields.size()));
    QByteArray text;
    st_mysql *const session = TBenchRows::Connect("bench");
    const double seconds = TBench::Seconds([&] {
        Query(session, select);
        MYSQL_RES *const result = mysql_use_result(session);
        while (const MYSQL_ROW row = mysql_fetch_row(result)) {
            formatter.Append({row, mysql_fetch_lengths(result), static_cast<int>(fields.size())},
                             text);
            if (text.size() > 131072)
                text.resize(0);
        }
        mysql_free_result(result);
    });
    mysql_close(session);
    return seconds;
}

/// A million rows of ten columns, held twice: by the product and by the client library.
struct THeldRows
{
    THeldRows()
    {
        Prepare();
        Configure(Connection);
        Query.SetSQL(TBenchRows::Select());
        Query.Execute();
        Session = TBenchRows::Connect("bench");
        ::Query(Session, TBenchRows::Select());
        Result = mysql_store_result(Session);
    }
    ~THeldRows()
    {
        mysql_free_result(Result);
        mysql_close(Session);
    }

    TMyConnection Connection;
    TMyQuery Query{&Connection};
    st_mysql *Session;
    MYSQL_RES *Result;
};

std::unique_ptr<THeldRows> Held;

double FormatRows()
{
    const TMyQuery &rows = Held->Query;
    const auto count = static_cast<size_t>(rows.FieldCount());
    std::vector<TFieldInfo> fields;
    for (size_t i = 0; i < count; ++i)
        fields.push_back(rows.FieldAt(static_cast<int>(i)).Info());
    std::vector<const char *> cells(count);
    std::vector<unsigned long> lengths(count);
    QByteArray text;
    return 1e6 / TBench::Seconds([&] {
               TDbmRowFormatter formatter(fields, std::vector<TDbmRowFormatter::TColumn>(count));
               for (qint64 row = 0; row < rows.RecordCount(); ++row) {
                   for (size_t i = 0; i < count; ++i) {
                       const TField &field = rows.FieldAt(static_cast<int>(i));
                       const QByteArrayView cell = field.RawAt(row);
                       cells[i] = field.IsNullAt(row) ? nullptr : cell.data();
                       lengths[i] = static_cast<unsigned long>(cell.size());
                   }
                   if (text.size() > 131072)
                       text.resize(0);
                   formatter.Append({cells.data(), lengths.data(), static_cast<int>(count)}, text);
               }
           });
}

// What any program writes with the client library alone.
double FormatRowsPeer()
{
    MYSQL_RES *const result = Held->Result;
    const uint count = mysql_num_fields(result);
    const MYSQL_FIELD *const fields = mysql_fetch_fields(result);
    std::string text;
    return 1e6 / TBench::Seconds([&] {
               mysql_data_seek(result, 0);
               while (const MYSQL_ROW row = mysql_fetch_row(result)) {
                   const unsigned long *lengths = mysql_fetch_lengths(result);
                   if (text.size() > 131072)
                       text.clear();
                   for (uint i = 0; i < count; ++i) {
                       text += i == 0 ? "(" : ", ";
                       if (!row[i]) {
                           text += "NULL";
                       } else if (IS_NUM(fields[i].type)) {
                           text.append(row[i], lengths[i]);
                       } else {
                           const size_t start = text.size() + 1;
                           text.resize(start + lengths[i] * 2 + 1);
                           text[start - 1] = '\'';
                           text.resize(start + mysql_real_escape_string(Held->Session, &text[start],
                                                                        row[i], lengths[i]));
                           text += '\'';
                       }
                   }
                   text += ')';
               }
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
                    .Rounds = 5});
    rows.push_back({.What = "formatting INSERT rows from a dataset of 1,000,000 rows × 10 columns",
                    .PeerName = "a bare loop with mysql_real_escape_string",
                    .Unit = "rows/s",
                    .Goal = bgAtLeast,
                    .Limit = 1,
                    .Product = FormatRows,
                    .Peer = FormatRowsPeer,
                    .Prepare = [] { Held = std::make_unique<THeldRows>(); },
                    .Rounds = 5});
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
