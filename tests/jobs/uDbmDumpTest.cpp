#include "jobs/uDbmDumpSession.h"
#include "jobs/uDbmTableRows.h"
#include "uJobRuns.h"
#include "uTestPrint.h"

namespace {

using testing::HasSubstr;

using TDbmDumpTest = TJobRunsTest;

TEST_P(TDbmDumpTest, TheFileIsLaidOutToTheByte)
{
    Exec("CREATE TABLE a (id INT NOT NULL PRIMARY KEY) ENGINE=InnoDB ROW_FORMAT=DYNAMIC");
    Exec("CREATE TABLE b (id INT NOT NULL PRIMARY KEY, a_id INT, t VARCHAR(20), KEY to_a (a_id),"
         " CONSTRAINT to_a FOREIGN KEY (a_id) REFERENCES a (id) ON DELETE CASCADE)"
         " ENGINE=InnoDB ROW_FORMAT=DYNAMIC");
    Exec("INSERT INTO a VALUES (1); INSERT INTO b VALUES (1, 1, 'it''s'), (2, NULL, NULL)");
    Exec("CREATE TRIGGER tr BEFORE INSERT ON a FOR EACH ROW SET @x = 1");
    Exec("CREATE SQL SECURITY INVOKER VIEW v AS SELECT 1 AS one");
    Exec("CREATE FUNCTION f () RETURNS INT DETERMINISTIC RETURN 1");
    const TJobRun run = Dump();
    EXPECT_EQ(run.Error, "");
    const QStringList &log = run.Lines;

    const QStringList lines = QString::fromStdString(Text()).split("\r\n");
    EXPECT_TRUE(Text().starts_with("\xEF\xBB\xBF--\r\n-- Date:           "));
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
          "Writing trigger \"tr\" for \"a\"", "Writing routine \"f\"", "Writing view \"v\""})
        EXPECT_EQ(log.count(line), 1) << line;
    EXPECT_THAT(log.join('\n').toStdString(), HasSubstr("of trigger \"tr\"\n"));

    Dump({}, [](auto &job) { job.FOnlyStructure = true; });
    EXPECT_THAT(Text(), testing::Not(HasSubstr("DISABLE KEYS")));
    EXPECT_THAT(Text(), HasSubstr("CREATE TRIGGER"));
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
    const TJobRun run = Dump();
    EXPECT_EQ(run.Error, "");
    Reload();
    ExpectSame(before, Contents());
    EXPECT_GT(run.Lines.filter("Writing data for \"pairs\" (").size(), 20);
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
    const auto manager = Workspace();
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

ON_BOTH_SERVERS(TDbmDumpTest);

} // namespace
