#include "jobs/uDbmTableRows.h"
#include "model/uDbmTableList.h"
#include "uJobRuns.h"
#include "uTcpProxy.h"
#include "uTestPrint.h"

#include <csignal>
#include <sys/resource.h>

namespace {

using testing::ContainsRegex;
using testing::HasSubstr;

constexpr char Lost[] = "gone away|Lost connection|killed|interrupted";

/// Ends all sessions that have the database in use, as an administrator would.
void KillSessions(const TTestDatabase &database)
{
    TTestSession session(database.Server());
    for (const QStringList &row : session.Rows("SHOW PROCESSLIST"))
        if (row.value(3) == database.Name())
            session.Exec("KILL " + row.first());
}

TAtLine KillAt(const QString &start, const TTestDatabase &database)
{
    return [start, &database](TWorker *, const QString &line) {
        if (line.startsWith(start))
            KillSessions(database);
    };
}

class TJobFaultsTest : public TJobRunsTest
{
protected:
    void SetUp() override
    {
        TJobRunsTest::SetUp();
        if (!FDatabase)
            return;
        FTarget = std::make_unique<TTestDatabase>(Server());
        // Without keys, so that nothing but the job itself keeps a row from coming twice.
        Exec("CREATE TABLE a (v INT); INSERT INTO a VALUES (1), (2)");
        Exec("CREATE TABLE b (v INT); INSERT INTO b VALUES (3), (4)");
    }
    static QString Values(const TTestDatabase &database, const QString &table)
    {
        return database.Value("SELECT GROUP_CONCAT(v ORDER BY v) FROM " + table);
    }

    std::unique_ptr<TTestDatabase> FTarget;
};

TEST_P(TJobFaultsTest, AKilledDumpEndsWithItsCauseAndAClosedFile)
{
    const TJobRun run = Dump(KillAt("Writing data for \"a\"", *FDatabase));
    EXPECT_THAT(run.Error.toStdString(), ContainsRegex(Lost));
    EXPECT_EQ(run.Lines.last(), "Closing file");
    EXPECT_THAT(Text(), HasSubstr("INSERT INTO `a`"));
    EXPECT_THAT(Text(), testing::Not(HasSubstr("INSERT INTO `b`")));
}

TEST_P(TJobFaultsTest, AKilledLoadDoesNotGoOnInABareSession)
{
    Exec("CREATE TABLE t (v INT)");
    const TJobRun run = LoadText("SET @base = 10;\nINSERT INTO t VALUES (@base + 1);\n"
                                 "INSERT INTO t VALUES (@base + 2);\nINSERT INTO t VALUES (13);\n",
                                 KillAt("INSERT INTO t VALUES (@base + 2)", *FDatabase));
    EXPECT_THAT(run.Error.toStdString(), ContainsRegex(Lost));
    EXPECT_EQ(Value("SELECT GROUP_CONCAT(IFNULL(v, 'NULL')) FROM t"), "11");
}

// The row is in when the session dies, and no answer tells of it.
TEST_P(TJobFaultsTest, AStatementWhoseAnswerWasLostIsNotRunTwice)
{
    Exec("CREATE TABLE t (v INT)");
    Exec("CREATE PROCEDURE p () BEGIN INSERT INTO t VALUES (1); KILL CONNECTION_ID(); END");
    const TJobRun run = LoadText("CALL p();\nINSERT INTO t VALUES (2);\n");
    EXPECT_THAT(run.Error.toStdString(), ContainsRegex(Lost));
    EXPECT_EQ(Values(*FDatabase, "t"), "1");
}

TEST_P(TJobFaultsTest, AKilledMigrationLeavesTheSourceAndIsRunAgain)
{
    const QStringList before = Contents();
    TJobRun run = Migrate(*FTarget, KillAt("Inserting rows for \"b\"", *FTarget));
    EXPECT_THAT(run.Error.toStdString(), ContainsRegex(Lost));
    EXPECT_EQ(Values(*FTarget, "a"), "1,2");
    EXPECT_EQ(Values(*FTarget, "b"), QString());

    run = Migrate(*FTarget, KillAt("Inserting rows for \"a\"", *FDatabase),
                  [this](auto &job) { job.FSourceProfile.Database = Name(); });
    EXPECT_THAT(run.Error.toStdString(), ContainsRegex(Lost)) << "the snapshot is gone";
    EXPECT_EQ(Values(*FTarget, "b"), QString());

    EXPECT_EQ(Migrate(*FTarget).Error, "");
    ExpectSame(before, Contents());
    ExpectSame(before, Contents(*FTarget));
}

// A sum changes nothing and needs no snapshot, so it may be asked for again.
TEST_P(TJobFaultsTest, AKilledChecksumComesToTheSameSum)
{
    const TJobRun whole = Checksum();
    const TJobRun run = Checksum(KillAt("Table \"a\"", *FDatabase));
    EXPECT_EQ(run.Error, "");
    EXPECT_EQ(run.Lines, whole.Lines);
}

TEST_P(TJobFaultsTest, AFileThatCannotBeMadeIsNamedAndNothingIsClosed)
{
    QFile plain(FFolder.filePath("plain"));
    ASSERT_TRUE(plain.open(QIODevice::WriteOnly));
    // Modes do not stop an administrator, so the system's own folders stand for a read-only one.
    const QString paths[] = {"/proc/dump.sql", "/sys/dump.sql", plain.fileName() + "/dump.sql",
                             FFolder.path(), FFolder.filePath("missing/dump.sql")};
    for (const QString &path : paths) {
        const TJobRun run = Dump({}, [&](auto &job) { job.FFileName = path; });
        EXPECT_THAT(run.Error.toStdString(),
                    HasSubstr("Cannot create file \"" + path.toStdString() + "\": "));
        EXPECT_EQ(run.Lines.last(), "Creating file \"" + path + '"');
    }
}

TEST_P(TJobFaultsTest, AFullDiskEndsTheDumpWithItsCause)
{
    const TJobRun atOnce = Dump({}, [](auto &job) { job.FFileName = "/dev/full"; });
    EXPECT_EQ(atOnce.Error, "Cannot write file \"/dev/full\": " + qt_error_string(ENOSPC) + '.');
    EXPECT_EQ(atOnce.Lines.last(), "Closing file");

    Exec("CREATE TABLE c (t LONGTEXT)");
    for (int i = 0; i < 20; ++i)
        Exec("INSERT INTO c VALUES (REPEAT('x', 100000))");
    const auto old = std::signal(SIGXFSZ, SIG_IGN);
    rlimit before;
    getrlimit(RLIMIT_FSIZE, &before);
    const rlimit tight{1 << 20, before.rlim_max};
    setrlimit(RLIMIT_FSIZE, &tight);
    const TJobRun later = Dump();
    setrlimit(RLIMIT_FSIZE, &before);
    std::signal(SIGXFSZ, old);
    EXPECT_EQ(later.Error, "Cannot write file \"" + File() + "\": " + qt_error_string(EFBIG) + '.');
    EXPECT_EQ(later.Lines.last(), "Closing file");
    EXPECT_EQ(QFile(File()).size(), 1 << 20) << "what was written stays";
}

TEST_P(TJobFaultsTest, AMissingSourceIsNamedAndTheTargetStaysAsItWas)
{
    FTarget->Exec("CREATE TABLE own (v INT); INSERT INTO own VALUES (7)");
    Server().Exec("DROP DATABASE " + Name());
    const QString cause = "Database \"" + Name() + "\" not found.";
    EXPECT_EQ(Migrate(*FTarget).Error, cause);
    EXPECT_EQ(Values(*FTarget, "own"), "7");

    Server().Exec("DROP DATABASE " + FTarget->Name());
    EXPECT_EQ(Migrate(*FTarget).Error, cause);
    EXPECT_EQ(Server().Value("SHOW DATABASES LIKE '" + FTarget->Name() + '\''), QString());

    EXPECT_THAT(Checksum().Error.toStdString(), HasSubstr(Name().toStdString()));
    EXPECT_THAT(Dump().Error.toStdString(), HasSubstr(Name().toStdString()));
    EXPECT_FALSE(QFile::exists(File())) << "a connection that fails makes no file";
}

// One server is known by many names; through the proxy it has another port as well.
TEST_P(TJobFaultsTest, OneDatabaseByTwoHostsIsNotMigratedOntoItself)
{
    const TTcpProxy proxy(Server().Host(), Server().Port());
    const std::pair<QString, int> ways[] = {{"127.0.0.1", Server().Port()},
                                            {"localhost", Server().Port()},
                                            {"127.0.0.1", proxy.Port()}};
    for (const auto &[host, port] : ways) {
        const TJobRun run = Migrate(*FDatabase, {}, [&](auto &job) {
            job.FTargetProfile.HostName = host;
            job.FTargetProfile.Port = port;
        });
        EXPECT_EQ(run.Error, "Source and target are the same database \"" + Name() + "\".")
            << host.toStdString();
        EXPECT_EQ(Values(*FDatabase, "a"), "1,2");
    }
}

TEST_P(TJobFaultsTest, AStopEndsEachJobBeforeItsNextStep)
{
    Exec("ALTER TABLE a ADD PRIMARY KEY (v); ALTER TABLE b ADD KEY v (v), ADD COLUMN w INT");
    Exec("ALTER TABLE b ADD CONSTRAINT r1 FOREIGN KEY (w) REFERENCES a (v),"
         " ADD CONSTRAINT r2 FOREIGN KEY (w) REFERENCES a (v)");
    for (const auto &[number, time] : {std::pair("1", "BEFORE"), std::pair("2", "AFTER")}) {
        Exec(
            QString("CREATE TRIGGER t%1 %2 INSERT ON a FOR EACH ROW SET @x = 1").arg(number, time));
        Exec(QString("CREATE PROCEDURE p%1 () SELECT 1").arg(number));
        Exec(QString("CREATE VIEW v%1 AS SELECT 1 AS one").arg(number));
    }
    const struct
    {
        std::function<TJobRun(const TAtLine &)> Run;
        std::vector<std::pair<const char *, const char *>> Stops; // the last line, one behind it
    } jobs[] = {
        {[this](const TAtLine &atLine) { return Migrate(*FTarget, atLine); },
         {{"Opening source connection", "Opening target connection"},
          {"Setting the charset to \"utf8mb4\"", "Checking the target database"},
          {"Creating table \"a\"", "Creating table \"b\""},
          {"Inserting rows for \"a\" (0, 2)", "Inserting rows for \"b\" (0, 2)"},
          {"Creating reference \"r1\" for \"b\"", "Creating reference \"r2\" for \"b\""},
          {"Creating trigger \"t1\" for \"a\"", "Creating trigger \"t2\" for \"a\""},
          {"Creating routine \"p1\"", "Creating routine \"p2\""},
          {"Creating view \"v1\"", "Creating view \"v2\""}}},
        {[this](const TAtLine &atLine) { return Dump(atLine); },
         {{"Opening connection", "Creating file"},
          {"Writing data for \"a\"", "Writing data for \"b\""},
          {"Writing reference \"r1\" for \"b\"", "Writing reference \"r2\" for \"b\""},
          {"Writing trigger \"t1\" for \"a\"", "Writing trigger \"t2\" for \"a\""}}},
        {[this](const TAtLine &atLine) { return Checksum(atLine); },
         {{"Table \"a\" = ", "Table \"b\" = "}, {"Table \"b\" = ", "Database checksum = "}}},
        {[this](const TAtLine &atLine) {
             return LoadText("SET @one = 1;\nSET @two = 2;\n", atLine);
         },
         {{"Opening connection", "USE "}, {"USE ", "SET @one"}, {"SET @one = 1", "SET @two = 2"}}},
    };
    for (const auto &job : jobs) {
        const QString whole = job.Run({}).Lines.join('\n');
        for (const auto &[last, behind] : job.Stops) {
            EXPECT_TRUE(whole.contains(behind)) << "nothing to leave out: " << behind;
            const TJobRun run = job.Run([last = last](TWorker *worker, const QString &line) {
                if (line.startsWith(last))
                    worker->Stop();
            });
            EXPECT_EQ(run.Error, "") << last;
            EXPECT_TRUE(run.Lines.join('\n').contains(last));
            EXPECT_FALSE(run.Lines.join('\n').contains(behind)) << behind;
            EXPECT_EQ(run.Has("Closing file"), run.Has("Creating file \"" + File() + '"'));
        }
    }
}

// 40 short rows in fetches of 10: the fifth brings none, and all of them wait for it.
TEST_P(TJobFaultsTest, RowsAreHandedOverWhenTheLastFetchIsEmpty)
{
    Exec("CREATE TABLE k (id INT PRIMARY KEY)");
    for (int i = 0; i < 40; ++i)
        Exec("INSERT INTO k VALUES (" + QString::number(i) + ')');
    Exec("ANALYZE TABLE k");
    const auto manager = Workspace();
    std::shared_ptr<TDbmTableItem> item;
    ASSERT_TRUE(manager->TryGetTable(Name(), "k", item));
    ASSERT_GT(item->Entity().Info.AvgRowLength, 0);
    int fetches = 0;
    manager->SetOnCommandBeforeExecute([&](TDbmManager *, const QString &text) {
        fetches += text.contains("LIMIT") && text.contains("`k`");
    });
    TDbmTableRows rows(*manager, Name(), "k");
    rows.FTargetTable = "`k`";
    rows.FBytesPerFetch = item->Entity().Info.AvgRowLength * 10;
    QList<qint64> counts;
    rows.Run([&](const TDbmRowsStatement &statement) { counts += statement.Count; });
    EXPECT_EQ(fetches, 5);
    EXPECT_EQ(counts, QList<qint64>{40});
}

ON_BOTH_SERVERS(TJobFaultsTest);

/// Two servers of the test's own, since the limit is one of the whole server.
class TLongRowsTest : public TJobRunsTest
{
protected:
    static void SetUpTestSuite()
    {
        Roomy = TTestServer::Start({"--max-allowed-packet=256M"});
        Tight = TTestServer::Start({"--max-allowed-packet=1M"});
    }
    static void TearDownTestSuite()
    {
        Roomy.reset();
        Tight.reset();
    }
    void SetUp() override
    {
        TMainThread::Initialize();
        FDatabase = std::make_unique<TTestDatabase>(*Roomy);
        Exec("CREATE TABLE a (id INT); INSERT INTO a VALUES (1)");
        Exec("CREATE TABLE long_one (id INT PRIMARY KEY, t LONGTEXT)");
        Exec("INSERT INTO long_one VALUES (1, 'first'), (3, 'last')");
    }
    void Insert(int megabytes) const
    {
        Exec(QString("SET SESSION sql_mode = ''; REPLACE INTO long_one VALUES (2,"
                     " REPEAT('it''s \\\\ 16 bytes.', %1 * 65536))")
                 .arg(megabytes));
    }
    static inline std::unique_ptr<TTestServer> Roomy, Tight;
};

TEST_F(TLongRowsTest, ARowOf64MiBTravelsWhole)
{
    Insert(64);
    const QString sums = "SELECT GROUP_CONCAT(id, LENGTH(t), MD5(t) ORDER BY id) FROM long_one";
    const QString before = Value(sums);
    EXPECT_THAT(before.toStdString(), HasSubstr("267108864"));
    EXPECT_EQ(Dump().Error, "");
    const QString copy = Name() + "_copy";
    EXPECT_EQ(MigrateTo(*Roomy, copy).Error, "");
    EXPECT_EQ(Roomy->Value(sums, copy), before);
    Roomy->Exec("DROP DATABASE " + copy + "; DROP DATABASE " + Name());
    const TJobRun load = Load();
    EXPECT_EQ(load.Error, "");
    EXPECT_EQ(Value(sums), before);
    for (const QString &line : load.Lines)
        EXPECT_LE(line.size(), 1024);
}

// A little too much and far too much are told in different ways by server and client library.
TEST_F(TLongRowsTest, ARowThatIsTooLongForTheTargetIsSaidSo)
{
    for (const int megabytes : {2, 40}) {
        Insert(megabytes);
        EXPECT_EQ(Dump().Error, "");
        for (const bool loads : {true, false}) {
            const TJobRun run = loads ? LoadOn(*Tight) : MigrateTo(*Tight, Name());
            EXPECT_THAT(run.Error.toStdString(), HasSubstr("max_allowed_packet")) << megabytes;
            EXPECT_EQ(Tight->Value("SELECT COUNT(*) FROM a", Name()), "1");
            EXPECT_EQ(Tight->Value("SELECT COUNT(*) FROM long_one WHERE id = 2", Name()), "0");
            Tight->Exec("DROP DATABASE " + Name());
        }
    }
}

} // namespace
