#include "core/uServerProfile.h"
#include "jobs/uDbmCreateSqlDumpWorker.h"
#include "jobs/uDbmDumpSession.h"
#include "jobs/uDbmExecuteSqlDumpWorker.h"
#include "model/uDbmManager.h"
#include "support/uFileUtils.h"
#include "uDumpDatabase.h"
#include "uJobListener.h"
#include "uJobRuns.h"

#include <QFile>
#include <QTemporaryDir>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

using testing::HasSubstr;

class TDbmDumpTest : public TJobRunsTest
{
protected:
    QByteArray Text() const
    {
        QFile file(File());
        EXPECT_TRUE(file.open(QIODevice::ReadOnly));
        return file.readAll();
    }
    /// Gives the lines of the log; an error is a failure of the test.
    QStringList Dump(bool onlyStructure = false, const QString &charset = {})
    {
        TDbmCreateSqlDumpWorker worker;
        worker.FProfile = ServerProfile(Server());
        worker.FDatabaseName = Name();
        worker.FFileName = File();
        worker.FOnlyStructure = onlyStructure;
        worker.FCharset = charset;
        return Heard(worker);
    }
    QStringList Load()
    {
        TDbmExecuteSqlDumpWorker worker;
        worker.FProfile = ServerProfile(Server());
        worker.FFileName = File();
        return Heard(worker);
    }
    static QStringList Heard(TWorker &worker)
    {
        const TListener heard(worker);
        RunJob(worker);
        EXPECT_EQ(heard.Error.toStdString(), "");
        return heard.Lines;
    }
};

TEST_P(TDbmDumpTest, WhatWasDumpedComesBack)
{
    DumpDatabase::Fill(*FDatabase);
    const QStringList before = Contents();
    const QStringList log = Dump();
    Server().Exec("DROP DATABASE `" + Name() + '`');
    Load();
    ExpectSame(before, Contents());
    EXPECT_EQ(log.first(), "Opening connection");
    EXPECT_EQ(log.last(), "Closing file");
    if (HasFailure())
        std::fputs(Text().constData(), stderr);
}

TEST_P(TDbmDumpTest, TheFileIsLaidOutToTheByte)
{
    Exec("CREATE TABLE b (id INT NOT NULL PRIMARY KEY, a_id INT, t VARCHAR(20),"
         " KEY to_a (a_id)) ENGINE=InnoDB ROW_FORMAT=DYNAMIC");
    Exec("CREATE TABLE a (id INT NOT NULL PRIMARY KEY) ENGINE=InnoDB ROW_FORMAT=DYNAMIC");
    Exec("ALTER TABLE b ADD CONSTRAINT to_a FOREIGN KEY (a_id) REFERENCES a (id)"
         " ON DELETE CASCADE");
    Exec("INSERT INTO a VALUES (1)");
    Exec("INSERT INTO b VALUES (1, 1, 'it''s'), (2, NULL, NULL)");
    Exec("CREATE TRIGGER tr BEFORE INSERT ON a FOR EACH ROW SET @x = 1");
    Exec("CREATE SQL SECURITY INVOKER VIEW v AS SELECT 1 AS one");
    Exec("CREATE FUNCTION f () RETURNS INT DETERMINISTIC RETURN 1");
    const QStringList log = Dump();

    QStringList lines = QString::fromUtf8(Text()).split("\r\n");
    EXPECT_TRUE(Text().startsWith("\xEF\xBB\xBF--\r\n-- Date:           "));
    EXPECT_EQ(lines.value(2).left(19), "-- Server version: ");
    EXPECT_EQ(lines.value(3), "-- Host:           127.0.0.1");
    EXPECT_EQ(lines.value(4), "-- Database:       " + Name());
    EXPECT_EQ(lines.value(5), "-- User:           root");
    const bool isMySQL = GetParam() == skMySQL;
    const QString integer = isMySQL ? "INT" : "INT(11)";
    const QString collation =
        Server().Value("SELECT default_collation_name FROM information_schema.schemata WHERE"
                       " schema_name = '" +
                       Name() + '\'');
    const QString wanted =
        QString("--\n\nSET NAMES 'utf8mb4';\n\nCREATE SCHEMA `%1` COLLATE %2;\n\nUSE `%1`;\n\n"
                "CREATE TABLE `a`(\n  `id` %3 NOT NULL,\n  PRIMARY KEY (`id`)\n)\n"
                "ENGINE = InnoDB\nCOLLATE = %2\nROW_FORMAT = DYNAMIC;\n\n"
                "CREATE TABLE `b`(\n  `id` %3 NOT NULL,\n  `a_id` %3 DEFAULT NULL,\n"
                "  `t` VARCHAR(20) DEFAULT NULL,\n  PRIMARY KEY (`id`),\n"
                "  KEY `to_a` (`a_id`)\n)\nENGINE = InnoDB\nCOLLATE = %2\n"
                "ROW_FORMAT = DYNAMIC;\n\n"
                "ALTER TABLE `a` DISABLE KEYS;\n\nINSERT INTO `a` VALUES\n    (1);\n\n"
                "ALTER TABLE `a` ENABLE KEYS;\n\nALTER TABLE `b` DISABLE KEYS;\n\n"
                "INSERT INTO `b` VALUES\n    (1, 1, 'it\\'s'),\n    (2, NULL, NULL);\n\n"
                "ALTER TABLE `b` ENABLE KEYS;\n\n"
                "ALTER TABLE `b` %4 (`a_id`) REFERENCES `a` (`id`) ON DELETE CASCADE;\n\n"
                "DELIMITER $$\n\nCREATE TRIGGER `tr` BEFORE INSERT ON `a`\nFOR EACH ROW\n"
                "SET @x = 1$$\n\nCREATE FUNCTION `f` () RETURNS %5\nDETERMINISTIC\nRETURN 1$$\n\n"
                "DELIMITER ;\n\nCREATE\n  SQL SECURITY INVOKER\n  VIEW `v`\nAS\n%6;\n")
            .arg(Name(), collation, integer,
                 isMySQL ? "ADD CONSTRAINT `to_a` FOREIGN KEY" : "ADD FOREIGN KEY `to_a`",
                 integer.toLower(),
                 Server().Value("SELECT view_definition FROM information_schema.views WHERE"
                                " table_schema = '" +
                                Name() + '\''));
    EXPECT_EQ(lines.mid(6).join('\n').toStdString(), wanted.toStdString());
    EXPECT_EQ(log.mid(0, 5),
              (QStringList{"Opening connection", "Creating file \"" + File() + '"',
                           "Writing database", "Writing table \"a\"", "Writing table \"b\""}));
    for (const char *line :
         {"Writing data for \"b\" (0, 2)", "Writing reference \"to_a\" for \"b\"",
          "Writing trigger \"tr\" for \"a\"", "Writing routine \"f\"", "Writing view \"v\"",
          "Left out: definer root@% of trigger \"tr\""})
        EXPECT_EQ(log.count(line), QString(line).startsWith("Left") ? log.count(line) : 1) << line;
    EXPECT_THAT(log.join('\n').toStdString(), HasSubstr("of trigger \"tr\"\n"));

    Dump(true);
    EXPECT_THAT(Text().toStdString(), testing::Not(HasSubstr("DISABLE KEYS")));
    EXPECT_THAT(Text().toStdString(), HasSubstr("CREATE TRIGGER"));
}

// A page ends behind a key; the last page may be empty, the average may be stale or absent.
TEST_P(TDbmDumpTest, NoRowIsLostOrDoubledBetweenFetches)
{
    const QString fill = " SELECT n, REPEAT(CHAR(65 + n % 26), 300) FROM (SELECT a.i + 10 * b.i +"
                         " 100 * c.i + 1000 * d.i AS n FROM ten a, ten b, ten c, ten d) AS all_n";
    Exec("CREATE TABLE ten (i INT)");
    Exec("INSERT INTO ten VALUES (0), (1), (2), (3), (4), (5), (6), (7), (8), (9)");
    Exec("CREATE TABLE keyed (n INT NOT NULL, t VARCHAR(300), PRIMARY KEY (n))");
    Exec("INSERT INTO keyed" + fill);
    Exec("CREATE TABLE pairs (a INT NOT NULL, b VARCHAR(10) NOT NULL, t VARCHAR(300),"
         " PRIMARY KEY (b, a))");
    Exec("INSERT INTO pairs SELECT n, CONCAT('k', n % 7), t FROM keyed");
    Exec("CREATE TABLE keyless (n INT, t VARCHAR(300))");
    Exec("INSERT INTO keyless SELECT n % 50, t FROM keyed");
    Exec("CREATE TABLE big_keys (u BIGINT UNSIGNED NOT NULL, d DECIMAL(30,2) NOT NULL,"
         " t VARCHAR(300), PRIMARY KEY (u, d))");
    Exec("INSERT INTO big_keys SELECT 18446744073709550000 + n % 20,"
         " 1234567890123456789012345678.00 + n / 100, t FROM keyed");
    Exec("CREATE TABLE members (e ENUM('z','b','a') NOT NULL, n INT NOT NULL, t VARCHAR(300),"
         " PRIMARY KEY (e, n))");
    Exec("INSERT INTO members SELECT n % 3 + 1, n, t FROM keyed");
    Exec("ANALYZE TABLE keyed, pairs, keyless, big_keys, members");
    const QStringList before = Contents();
    const QStringList log = Dump();
    Server().Exec("DROP DATABASE `" + Name() + '`');
    Load();
    ExpectSame(before, Contents());
    // Each statement is just over the mark, and they follow on each other.
    qint64 next = 0;
    int statements = 0;
    for (const QString &line : log) {
        const QString start = "Writing data for \"pairs\" (";
        if (!line.startsWith(start))
            continue;
        const QStringList numbers = line.mid(start.size()).chopped(1).split(", ");
        EXPECT_EQ(numbers[0].toLongLong(), next);
        next += numbers[1].toLongLong();
        ++statements;
    }
    EXPECT_EQ(next, 10000);
    EXPECT_GT(statements, 20);
}

// The server's average is of rows that were small.
TEST_P(TDbmDumpTest, AFetchEndsWhereItGrowsTooLarge)
{
    Exec("CREATE TABLE ten (i INT)");
    Exec("INSERT INTO ten VALUES (0), (1), (2), (3), (4), (5), (6), (7), (8), (9)");
    Exec("CREATE TABLE grown (id INT PRIMARY KEY, b LONGBLOB) ENGINE=InnoDB STATS_AUTO_RECALC=0");
    Exec("INSERT INTO grown SELECT a.i + 10 * b.i, 'x' FROM ten a, ten b WHERE b.i < 4");
    Exec("ANALYZE TABLE grown");
    Exec("UPDATE grown SET b = REPEAT(CHAR(65 + id % 26), 1048576)");
    const auto manager = TDbmManager::Create();
    manager->SetParams(ServerProfile(Server()));
    manager->Connect();
    TDbmDumpSession::BeginSnapshot(*manager);
    int fetches = 0;
    manager->SetOnCommandBeforeExecute([&](TDbmManager *, const QString &text) {
        fetches += text.startsWith("SELECT * FROM `" + Name() + "`.`grown`");
    });
    TDbmTableRows rows(*manager, Name(), "grown");
    rows.FTargetTable = "`t`";
    qint64 count = 0;
    rows.Run([&](const TDbmRowsStatement &statement) {
        EXPECT_EQ(statement.Offset, count);
        EXPECT_EQ(statement.Count, 1) << "a long row is a statement by itself";
        count += statement.Count;
    });
    EXPECT_EQ(count, 40);
    EXPECT_GE(fetches, 3);
    EXPECT_TRUE(manager->Provider().Connection().LibraryConnection().InTransaction())
        << "the snapshot has to last";
}

TEST_P(TDbmDumpTest, AStopRequestEndsTheJobBetweenTwoStatements)
{
    Exec("CREATE TABLE a (id INT PRIMARY KEY)");
    Exec("CREATE TABLE b (id INT PRIMARY KEY)");
    Exec("INSERT INTO a VALUES (1)");
    Exec("INSERT INTO b VALUES (1)");
    const auto stop = [](TWorker &worker, const QString &at) {
        QStringList lines;
        TWorkerEvents events;
        events.OnLog = [&](TWorker *sender, const QString &line, TWorkerLogType) {
            lines += line;
            if (line.startsWith(at))
                sender->Stop();
        };
        events.OnException = [](TWorker *, const std::exception &e) { ADD_FAILURE() << e.what(); };
        worker.SetEvents(events);
        RunJob(worker);
        return lines;
    };
    TDbmCreateSqlDumpWorker dump;
    dump.FProfile = ServerProfile(Server());
    dump.FDatabaseName = Name();
    dump.FFileName = File();
    const QStringList written = stop(dump, "Writing data for \"a\"");
    EXPECT_EQ(written.last(), "Closing file");
    EXPECT_FALSE(written.contains("Writing data for \"b\" (0, 1)"));

    Dump();
    Server().Exec("DROP DATABASE `" + Name() + '`');
    TDbmExecuteSqlDumpWorker load;
    load.FProfile = ServerProfile(Server());
    load.FFileName = File();
    stop(load, "USE ");
    EXPECT_EQ(Value("SHOW TABLES"), "");
}

TEST_P(TDbmDumpTest, RowsAreThoseOfOneMoment)
{
    Exec("CREATE TABLE a (id INT PRIMARY KEY)");
    Exec("CREATE TABLE z (id INT PRIMARY KEY)");
    Exec("INSERT INTO a VALUES (1)");
    Exec("INSERT INTO z VALUES (1)");
    TDbmCreateSqlDumpWorker worker;
    worker.FProfile = ServerProfile(Server());
    worker.FDatabaseName = Name();
    worker.FFileName = File();
    TWorkerEvents events;
    QString error;
    events.OnLog = [&](TWorker *, const QString &line, TWorkerLogType) {
        if (line.startsWith("Writing data for \"a\""))
            Exec("INSERT INTO z VALUES (2)");
    };
    events.OnException = [&](TWorker *, const std::exception &e) { error = ExceptionMessage(e); };
    worker.SetEvents(events);
    RunJob(worker);
    EXPECT_EQ(error, "");
    EXPECT_THAT(Text().toStdString(), HasSubstr("INSERT INTO `z` VALUES\r\n    (1);"));
}

TEST_P(TDbmDumpTest, WhatTheFileCannotCarryIsNamed)
{
    const TTestDatabase other(Server());
    other.Exec("CREATE TABLE p (id INT PRIMARY KEY)");
    Exec("CREATE TABLE f (id INT PRIMARY KEY, t TEXT, g POINT NOT NULL, o INT,"
         " CONSTRAINT positive CHECK (id > 0), FULLTEXT KEY words (t), SPATIAL KEY places (g),"
         " CONSTRAINT away FOREIGN KEY (o) REFERENCES `" +
         other.Name() + "`.p (id))");
    Exec("CREATE TABLE parts (id INT) PARTITION BY HASH (id) PARTITIONS 2");
    Exec("CREATE DEFINER=root@localhost VIEW v AS SELECT 1 AS one");
    QStringList wanted{"Left out: fulltext index \"words\" of table \"f\"",
                       "Left out: spatial index \"places\" of table \"f\"",
                       "Left out: check \"positive\" of table \"f\"",
                       "Left out: partitions of table \"parts\"",
                       "Left out: foreign key \"away\" of table \"f\" into database \"" +
                           other.Name() + '"',
                       "Left out: definer root@localhost of view \"v\"",
                       "Closing file"};
    if (GetParam() == skMariaDB) {
        Exec("CREATE SEQUENCE s");
        wanted.prepend("Left out: sequence \"s\"");
    }
    const QStringList log = Dump();
    EXPECT_THAT(log.mid(log.size() - wanted.size()), testing::UnorderedElementsAreArray(wanted));
    Server().Exec("DROP DATABASE `" + Name() + '`');
    Load();
    EXPECT_EQ(Value("SELECT COUNT(*) FROM v"), "1");
    Exec("DROP TABLE f");
}

TEST_P(TDbmDumpTest, OtherCharsetsAndAMissingDatabase)
{
    Exec("CREATE TABLE t (v VARCHAR(20) CHARACTER SET utf8mb4)");
    Exec("INSERT INTO t VALUES ('caf\u00e9')");
    Dump(false, "latin1");
    EXPECT_THAT(Text().toStdString(), HasSubstr("SET NAMES 'latin1'"));
    EXPECT_THAT(Text().toStdString(), HasSubstr("('caf\xC3\xA9')"));
    Server().Exec("DROP DATABASE `" + Name() + '`');
    const QStringList log = Load();
    EXPECT_EQ(log.value(0), "Opening connection\r\n---");
    EXPECT_EQ(log.value(1), "SET NAMES 'latin1'");
    EXPECT_EQ(Value("SELECT HEX(v) FROM t"), "636166C3A9");

    // Loaded again it fails at once and says where.
    TDbmExecuteSqlDumpWorker worker;
    worker.FProfile = ServerProfile(Server());
    worker.FFileName = File();
    const TListener heard(worker);
    RunJob(worker);
    EXPECT_THAT(heard.Error.toStdString(), HasSubstr(Name().toStdString()));
}

TEST_P(TDbmDumpTest, ADatabaseOfAnyNameIsDumpedAndUsed)
{
    const QString quoted = '`' + Name() + "  a``b`";
    Server().Exec("CREATE DATABASE " + quoted + "; CREATE TABLE " + quoted + ".t (id INT)");
    TDbmCreateSqlDumpWorker dump;
    dump.FProfile = ServerProfile(Server());
    dump.FDatabaseName = Name() + "  a`b";
    dump.FFileName = File();
    Heard(dump);
    EXPECT_THAT(Text().toStdString(),
                HasSubstr("-- Database:       " + dump.FDatabaseName.toStdString() + "\r\n"));
    Server().Exec("DROP TABLE " + quoted + ".t");
    QByteArray text = Text();
    TFileUtils::WriteBinary(File(), text.mid(text.indexOf("CREATE TABLE")));
    TDbmExecuteSqlDumpWorker load;
    load.FProfile = ServerProfile(Server());
    load.FDatabaseName = dump.FDatabaseName;
    load.FFileName = File();
    Heard(load);
    EXPECT_EQ(Server().Value("SELECT COUNT(*) FROM " + quoted + ".t"), "0");
    Server().Exec("DROP DATABASE " + quoted);
}

TEST_P(TDbmDumpTest, AFileOfAnyOriginRunsToItsFirstError)
{
    const auto run = [this](const QByteArray &text, const QString &database) {
        QFile file(File());
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(text);
        file.close();
        TDbmExecuteSqlDumpWorker worker;
        worker.FProfile = ServerProfile(Server());
        worker.FFileName = File();
        worker.FDatabaseName = database;
        worker.FCharset = "utf8mb4";
        const TListener heard(worker);
        RunJob(worker);
        return heard.Lines + QStringList{heard.Error};
    };
    EXPECT_EQ(run("", {}), (QStringList{"Opening connection\r\n---", ""}));
    const QStringList lines =
        run("# none\r\nCREATE TABLE x (\r\n  a INT\r\n);\n\nINSERT INTO x\nVALUES (1);\n"
            "INSERT INTO nowhere VALUES (1);\nINSERT INTO x VALUES (2);",
            Name());
    EXPECT_EQ(lines.value(2), "CREATE TABLE x ( a INT )");
    EXPECT_THAT(lines.last().toStdString(), HasSubstr("nowhere"));
    EXPECT_EQ(Value("SELECT GROUP_CONCAT(a) FROM x"), "1");
    run("INSERT INTO x VALUES (3)", Name());
    EXPECT_EQ(Value("SELECT GROUP_CONCAT(a ORDER BY a) FROM x"), "1,3");
    TDbmExecuteSqlDumpWorker worker;
    worker.FProfile = ServerProfile(Server());
    worker.FFileName = FFolder.filePath("missing.sql");
    const TListener heard(worker);
    RunJob(worker);
    EXPECT_THAT(heard.Error.toStdString(), HasSubstr("missing.sql"));
}

ON_BOTH_SERVERS(TDbmDumpTest);

} // namespace
