#include "uJobRuns.h"
#include "uTestPrint.h"

namespace {

using testing::Contains;
using testing::HasSubstr;
using testing::Not;

using TJobExactnessTest = TJobRunsTest;

TEST_P(TJobExactnessTest, TextsOutsideTheCharsetOfASessionTravelWhole)
{
    Exec("CREATE TABLE `таблица` (id VARCHAR(20) CHARACTER SET utf8mb4 PRIMARY KEY COMMENT '東京',"
         " `имя` VARCHAR(20) CHARACTER SET utf8mb4 DEFAULT 'Ж', e ENUM('да', 'нет') CHARACTER SET"
         " utf8mb4) COMMENT 'Пример'");
    Exec("INSERT INTO `таблица` VALUES ('😀 東京', 'Пример', 'да'), ('caf\u00e9', 'it''s', NULL)");
    Exec("CREATE TABLE plain (v VARCHAR(20) CHARACTER SET utf8mb4)");
    Exec("INSERT INTO plain VALUES ('Пример'), ('caf\u00e9')");
    Exec("CREATE FUNCTION f () RETURNS VARCHAR(20) CHARACTER SET utf8mb4 DETERMINISTIC RETURN"
         " 'Пример'");
    const QStringList before = Contents();

    EXPECT_EQ(Dump({}, [](auto &job) { job.FCharset = "latin1"; }).Error, "");
    EXPECT_THAT(Text(), HasSubstr("--\r\n\r\nSET NAMES 'latin1';\r\n"));
    EXPECT_THAT(Text(), HasSubstr("    (_utf8mb4 0xD09FD180D0B8D0BCD0B5D180),\r\n"
                                  "    ('caf\u00e9');\r\n\r\nALTER"));
    EXPECT_THAT(Text(), HasSubstr("SET NAMES 'utf8mb4';\r\nCREATE TABLE `таблица`"));

    const TTestDatabase copy(Server());
    const TJobRun run = Migrate(copy, {}, [](auto &job) {
        job.FSourceProfile.Charset = job.FTargetProfile.Charset = "latin1";
    });
    EXPECT_EQ(run.Error, "");
    EXPECT_TRUE(run.Has("Setting the charset to \"latin1\" on the target connection"));
    ExpectSame(before, Contents(copy));

    const auto workspace = Workspace("latin1");
    Clone(*workspace, "plain", "plain_copy");
    EXPECT_EQ(Value("SELECT COUNT(*) FROM plain JOIN plain_copy USING (v)"), "2");
    Exec("DROP TABLE plain_copy");
    Reload();
    ExpectSame(before, Contents());
}

TEST_P(TJobExactnessTest, BodiesOfProgramsArriveAsTheyWere)
{
    Exec("CREATE TABLE t (id INT)");
    Exec("CREATE PROCEDURE odd () BEGIN\n  -- a comment\n  SELECT 'one \n\n# two\n-- three';\n"
         "  SELECT 1; # $$\n  SELECT 2;\nEND");
    Exec("CREATE FUNCTION `lines` () RETURNS VARCHAR(40) DETERMINISTIC RETURN 'one \n\n# two\n-- "
         "three'");
    Exec("CREATE TRIGGER tr BEFORE INSERT ON t FOR EACH ROW BEGIN\n\n  # none\n  SET @x = 'a\nb';\n"
         "END");
    Exec("SET sql_mode = 'ANSI_QUOTES,PIPES_AS_CONCAT,NO_BACKSLASH_ESCAPES';"
         " CREATE FUNCTION joined () RETURNS VARCHAR(20) DETERMINISTIC RETURN 'a\\' || 'b'");
    Exec("SET sql_mode = ''; CREATE PROCEDURE lenient () SELECT 1");
    Exec("CREATE FUNCTION quoted () RETURNS VARCHAR(40) DETERMINISTIC RETURN ''' OR '''");
    const QString binary = "SET collation_connection = 'utf8mb4_bin'; CREATE ";
    Exec(binary + "FUNCTION letters () RETURNS INT DETERMINISTIC RETURN 'a' = 'A'");
    Exec(binary + "VIEW letters AS SELECT 'a' = 'A' AS same");
    Exec("CREATE PROCEDURE said (\n  -- of what\n  a INT) SELECT a");
    const QString programs =
        "SELECT routine_name, routine_definition, sql_mode, collation_connection FROM"
        " information_schema.routines WHERE routine_schema = '%1' UNION ALL"
        " SELECT trigger_name, action_statement, sql_mode, collation_connection FROM"
        " information_schema.triggers WHERE trigger_schema = '%1' UNION ALL"
        " SELECT table_name, view_definition, '', collation_connection FROM"
        " information_schema.views WHERE table_schema = '%1' ORDER BY 1, 2";
    const TTestDatabase copy(Server());
    TJobRun run = Migrate(copy);
    EXPECT_EQ(run.Error, "");
    EXPECT_EQ(copy.Rows(programs.arg(copy.Name())), FDatabase->Rows(programs.arg(Name())));
    EXPECT_THAT(run.Lines.join('\n').toStdString(), Not(HasSubstr("comment lines")));

    run = Dump();
    EXPECT_EQ(run.Error, "");
    for (const char *line :
         {"comment lines of procedure \"odd\"", "comment lines of trigger \"tr\"",
          "comment lines of procedure \"said\"", "sql_mode \"\" of procedure \"lenient\"",
          "collation utf8mb4_bin of function \"letters\"",
          "collation utf8mb4_bin of view \"letters\""})
        EXPECT_THAT(run.LeftOut(), Contains(QString(line)));
    Reload();
    EXPECT_EQ(Value("SELECT joined()"), "a\\b");
    EXPECT_EQ(Value("SELECT quoted()"), "' OR '");
    EXPECT_EQ(Value("SELECT `lines`()"), "one \n\n# two\n-- three");
    EXPECT_EQ(Value("SET @x = ''; INSERT INTO t VALUES (1); SELECT @x"), "a\nb");
    EXPECT_EQ(Value("SELECT COUNT(*) FROM information_schema.routines WHERE routine_schema = '" +
                    Name() + '\''),
              "7");
}

TEST_P(TJobExactnessTest, WhatATableHasIsCarriedOrNamed)
{
    Exec("CREATE TABLE o (id INT) ENGINE=MyISAM MAX_ROWS=50 MIN_ROWS=5 AVG_ROW_LENGTH=7"
         " CHECKSUM=1 PACK_KEYS=1 DELAY_KEY_WRITE=1 COMMENT='MAX_ROWS=1 STATS_PERSISTENT=1'");
    Exec("CREATE TABLE c (v VARCHAR(20) CHARACTER SET utf8mb4 DEFAULT _utf8mb4 0x6101620C0A27"
         " COMMENT 'a\x02z', n VARCHAR(20) CHARACTER SET utf8mb4 DEFAULT _utf8mb4 0x610062)");
    const bool isMySQL = GetParam() == skMySQL;
    if (isMySQL)
        Exec("CREATE TABLE x (`a b` INT STORAGE DISK COLUMN_FORMAT FIXED COMMENT 'NOT SECONDARY',"
             " c INT SECONDARY_ENGINE_ATTRIBUTE '{\"x\": 1}', d INT NOT SECONDARY,"
             " e INT AS (c = 1))");
    else
        Exec("SET sql_mode = 'IGNORE_BAD_TABLE_OPTIONS'; CREATE TABLE x (`a b` INT COMMENT"
             " '`STORAGE`=' zoo='COLUMN_FORMAT', c INT WITHOUT SYSTEM VERSIONING, d INT,"
             " e INT AS (c = 1) CHECK (e < 9)) WITH SYSTEM VERSIONING");
    const TJobRun run = Dump();
    QStringList named{"option MAX_ROWS of table \"o\"", "option MIN_ROWS of table \"o\"",
                      "option AVG_ROW_LENGTH of table \"o\"",
                      "control characters in the definition of table \"c\""};
    named += isMySQL
                 ? QStringList{"option STORAGE of column \"a b\" of table \"x\"",
                               "option COLUMN_FORMAT of column \"a b\" of table \"x\"",
                               "option SECONDARY_ENGINE_ATTRIBUTE of column \"c\" of table \"x\"",
                               "option NOT SECONDARY of column \"d\" of table \"x\""}
                 : QStringList{"option zoo of column \"a b\" of table \"x\"",
                               "option WITHOUT SYSTEM VERSIONING of column \"c\" of table \"x\"",
                               "system versioning of table \"x\""};
    EXPECT_THAT(run.LeftOut(), testing::UnorderedElementsAreArray(named));
    Reload();
    EXPECT_EQ(FDatabase->Rows("SHOW CREATE TABLE x").value(0).value(1).contains("CHECK (`e` < 9)"),
              !isMySQL);
    Exec("INSERT INTO c VALUES (DEFAULT, DEFAULT)");
    EXPECT_EQ(FDatabase->Rows("SELECT HEX(v), HEX(n) FROM c").value(0),
              (QStringList{"6101620C0A27", "610062"}));
}

TEST_P(TJobExactnessTest, ACollationIsReplacedOnlyWhereItIsUnknown)
{
    const QString collation =
        GetParam() == skMySQL ? "utf8mb4_0900_as_cs" : "utf8mb4_uca1400_as_cs";
    Exec("CREATE TABLE t (v VARCHAR(20) COLLATE utf8mb4_bin, w VARCHAR(20)) COLLATE=" + collation);
    const TTestDatabase copy(Server());
    const TJobRun run = Migrate(copy);
    EXPECT_EQ(run.Error, "");
    EXPECT_EQ(run.LeftOut(), QStringList());
    ExpectSame(Contents(), Contents(copy));
}

TEST_P(TJobExactnessTest, ACopiedTableLeavesTheSessionOfTheWorkspaceAsItWas)
{
    Exec("SET sql_mode = ''; CREATE TABLE t (d DATE NOT NULL DEFAULT '0000-00-00',"
         " ts TIMESTAMP NULL DEFAULT NULL, v VARCHAR(20), n INT AUTO_INCREMENT PRIMARY KEY);"
         " INSERT INTO t VALUES (DEFAULT, '2024-01-01 12:00:00', 'it''s \\\\ \"', 5)");
    const auto workspace = Workspace();
    const QString mode = "STRICT_ALL_TABLES,NO_ZERO_IN_DATE,NO_ZERO_DATE,NO_BACKSLASH_ESCAPES,"
                         "ANSI_QUOTES";
    workspace->Command().ExecScript("SET SESSION sql_mode = '" + mode + '\'');
    workspace->Command().ExecScript("SET SESSION time_zone = '+02:00'");
    const auto session = [&] {
        QString text;
        workspace->Command().ExecuteQuery(
            "SELECT CONCAT(@@SESSION.sql_mode, ' ', @@SESSION.time_zone)",
            [&](TDataSet *rows) { text = rows->FieldAt(0).AsString(); });
        return text;
    };
    const QString before = session();
    Clone(*workspace, "t", "t_copy");
    EXPECT_EQ(Value("SELECT COUNT(*) FROM t JOIN t_copy USING (d, ts, v, n)"), "1");
    EXPECT_EQ(session(), before);
    EXPECT_ANY_THROW(Clone(*workspace, "t", "t_copy"));
    EXPECT_EQ(session(), before);
}

ON_BOTH_SERVERS(TJobExactnessTest);

/// A server of its own, in a time zone in which an hour comes twice, whose sessions read quotes and
/// backslashes in another way, and which keeps names in lower case.
class TOtherServerTest : public TJobRunsTest
{
protected:
    static void SetUpTestSuite()
    {
        qputenv("TZ", "CET-1CEST,M3.5.0,M10.5.0/3");
        Other = TTestServer::Start(
            {"--sql-mode=ANSI_QUOTES,NO_BACKSLASH_ESCAPES", "--lower-case-table-names=1"});
        qunsetenv("TZ");
    }
    static void TearDownTestSuite() { Other.reset(); }
    void SetUp() override
    {
        TMainThread::Initialize();
        FDatabase = std::make_unique<TTestDatabase>(*Other);
    }
    static inline std::unique_ptr<TTestServer> Other;
};

TEST_F(TOtherServerTest, AMomentStaysTheMomentThatItWas)
{
    Exec("CREATE TABLE t (ts TIMESTAMP NOT NULL DEFAULT '2024-07-01 12:00:00', UNIQUE KEY ts (ts));"
         " SET time_zone = '+00:00'; INSERT INTO t VALUES ('2024-10-27 00:30:00'),"
         " ('2024-10-27 01:30:00')");
    Exec("CREATE EVENT e ON SCHEDULE EVERY 1 DAY STARTS '2037-07-01 00:00:00' DISABLE DO SET @x ="
         " 1");
    const QString moments =
        "SELECT GROUP_CONCAT(UNIX_TIMESTAMP(ts) ORDER BY UNIX_TIMESTAMP(ts)) FROM t";
    const QString starts = "SELECT starts FROM information_schema.events WHERE event_schema = "
                           "DATABASE()";
    const QString before = Value(moments);
    EXPECT_EQ(before, "1729989000,1729992600");
    EXPECT_EQ(Dump().Error, "");
    EXPECT_THAT(Text(), HasSubstr("SET SESSION time_zone = '+00:00';\r\n\r\nCREATE TABLE `t`"));
    TTestServer &server = TTestServer::Instance();
    const QString copy = "moments_of_" + Name();
    server.Exec("DROP DATABASE IF EXISTS " + copy);
    for (const TTestServer *target : {&server, Other.get()}) {
        EXPECT_EQ(MigrateTo(*target, copy).Error, "");
        EXPECT_EQ(target->Value(moments, copy), before);
        EXPECT_EQ(target->Value(starts, copy), "2037-07-01 00:00:00");
        target->Exec("INSERT INTO t VALUES (DEFAULT)", copy);
        EXPECT_EQ(target->Value("SELECT UNIX_TIMESTAMP(MIN(ts)) FROM t", copy), "1719828000");
        target->Exec("DROP DATABASE " + copy);
    }
    const auto workspace = Workspace();
    Clone(*workspace, "t", "t_copy");
    EXPECT_EQ(Value(moments + "_copy"), before);
    EXPECT_EQ(LoadOn(server).Error, "");
    EXPECT_EQ(server.Value(moments, Name()), before);
    server.Exec("DROP DATABASE " + Name());
}

TEST_F(TOtherServerTest, QuotesAndBackslashesAreReadAsTheyWereWritten)
{
    Exec("CREATE TABLE t (v VARCHAR(40) PRIMARY KEY, e ENUM('a\\', 'it''s') DEFAULT 'it''s')"
         " COMMENT 'it''s \"\\n\"'");
    Exec("INSERT INTO t VALUES ('a\\', 1), ('it''s \"x\"', 2), ('\\''', NULL)");
    Exec("CREATE VIEW v AS SELECT v AS \"w\", 'it''s \\n' AS s FROM t");
    Exec("CREATE FUNCTION f () RETURNS VARCHAR(20) DETERMINISTIC COMMENT 'it''s \\' RETURN"
         " 'it''s\\n'");
    const QString values = "SELECT GROUP_CONCAT(HEX(v), e ORDER BY v) FROM t";
    const QString texts = "SELECT HEX(CONCAT(f(), MIN(s))) FROM v";
    const QString copy = Name() + "_copy";
    for (int run = 0; run < 2; ++run)
        EXPECT_EQ(MigrateTo(*Other, copy).Error, "");
    EXPECT_EQ(Other->Value(values, copy), Value(values));
    EXPECT_EQ(Other->Value(texts, copy), Value(texts));
    EXPECT_EQ(Other->Value("SELECT table_comment FROM information_schema.tables WHERE table_name ="
                           " 't' AND table_schema = DATABASE()",
                           copy),
              "it's \"\\n\"");
    const QString comment = "SELECT routine_comment FROM information_schema.routines WHERE"
                            " routine_schema = DATABASE()";
    EXPECT_EQ(Other->Value(comment, copy), "it's \\");
    Other->Exec("DROP DATABASE " + copy);
    EXPECT_EQ(Dump().Error, "");
    const TTestServer &server = TTestServer::Instance();
    EXPECT_EQ(LoadOn(server).Error, "");
    EXPECT_EQ(server.Value(texts, Name()), Value(texts));
    server.Exec("DROP DATABASE " + Name());
    const auto workspace = Workspace();
    Clone(*workspace, "t", "t_copy");
    EXPECT_EQ(Value("SELECT COUNT(*) FROM t JOIN t_copy USING (v)"), "3");
}

TEST_F(TOtherServerTest, NamesWithCapitalsAreReplacedInASecondRun)
{
    const TTestDatabase source(TTestServer::Instance());
    source.Exec("CREATE TABLE `Orders` (id INT PRIMARY KEY); CREATE TABLE `Lines` (o INT,"
                " FOREIGN KEY (o) REFERENCES `Orders` (id)); INSERT INTO `Orders` VALUES (1)");
    TDbmMigrateDatabaseWorker worker;
    worker.FSourceProfile = ServerProfile(source.Server());
    worker.FTargetProfile = ServerProfile(*Other);
    worker.FSourceDatabaseName = source.Name();
    worker.FTargetDatabaseName = Name().toUpper();
    for (int run = 0; run < 2; ++run)
        EXPECT_EQ(Run(worker).Error.toStdString(), "");
    EXPECT_EQ(Value("SELECT COUNT(*) FROM orders"), "1");
}

} // namespace
