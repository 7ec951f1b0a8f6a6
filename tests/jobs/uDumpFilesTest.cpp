#include "support/uTextCoding.h"
#include "uJobRuns.h"
#include "uTestPrint.h"

#include <QProcess>

namespace {

using testing::HasSubstr;

using TDumpFilesTest = TJobRunsTest;

TEST_P(TDumpFilesTest, AFileOfAnyOriginRunsAsItLies)
{
    // The table x is there and empty; what it holds at the end, and the error.
    const struct
    {
        const char *Name;
        QByteArray Text;
        QString Rows;
        const char *Error;
    } files[] = {
        {"with a mark", "\xEF\xBB\xBFINSERT INTO x VALUES ('Gr\xC3\xBC\xC3\x9F\x65');", "Grüße",
         ""},
        {"in a code page", "INSERT INTO x VALUES ('\xCF\xF0\xE8\xEC\xE5\xF0');", "Пример", ""},
        {"comments", "-- one;\n  # two;\n--three;\nINSERT INTO x -- four\nVALUES ('a' /* ; */);",
         "a", ""},
        {"a broken statement",
         "INSERT INTO x VALUES ('a');\nINSERT INTO x VALUE S ('b');\nINSERT INTO x VALUES ('c');",
         "a", "(1064)"},
        {"a cut file", "INSERT INTO x VALUES ('a');\nINSERT INTO x VALUES ('b'), ('c", "a",
         "(1064)"},
    };
    Exec("CREATE TABLE x (v VARCHAR(20) CHARACTER SET utf8mb4)");
    TTextCoding::SetLegacyCodePage("windows-1251");
    for (const auto &file : files) {
        Exec("DELETE FROM x");
        const TJobRun run = LoadText(file.Text);
        EXPECT_EQ(run.Error.left(6), file.Error) << file.Name << ": " << run.Error.toStdString();
        EXPECT_EQ(Value("SELECT IFNULL(GROUP_CONCAT(v ORDER BY v), '') FROM x"), file.Rows)
            << file.Name;
    }
    TTextCoding::SetLegacyCodePage({});
}

TEST_P(TDumpFilesTest, ALoadSaysWhatItRunsAndWhatFailed)
{
    EXPECT_THAT(Load().Error.toStdString(), HasSubstr("dump.sql")) << "there is none";
    const TJobRun run = LoadText("# none\r\nCREATE TABLE x (\r\n  a INT\r\n);\n");
    EXPECT_EQ(run.Lines.value(0), "Opening connection\r\n---");
    EXPECT_TRUE(run.Has("CREATE TABLE x ( a INT )")) << run.Lines.join('\n').toStdString();

    const QString rows = QString("('%1'), ").arg(QString(3000, 'x')).repeated(3);
    const QString insert = Name() + ".gone VALUES " + rows + "(1)";
    EXPECT_EQ(LoadText("SET @a = 1;\nINSERT INTO\n" + insert.toUtf8() + ';').Statement,
              "INSERT INTO\r\n" + insert);
}

// The client's own tool writes tabs into texts as they are, a sandbox comment without a delimiter
// at its head, conditional comments over lines and delimiters of its own.
TEST_P(TDumpFilesTest, AFileOfTheServersOwnToolComesBackWhole)
{
    Exec("CREATE TABLE t (id INT PRIMARY KEY, v VARCHAR(200) CHARACTER SET utf8mb4, b BLOB)");
    Exec(R"(INSERT INTO t VALUES (1, 'a	b', NULL), (2, 'it''s \\ "x"\r\n-- no\n', x'00FF1A27'),
        (3, 'Пример 東京 😀', ''), (4, '/*M!999999\\- x */;', 'DELIMITER ;;'))");
    Exec("CREATE TABLE child (id INT, CONSTRAINT up FOREIGN KEY (id) REFERENCES t (id))");
    Exec("INSERT INTO child VALUES (4), (NULL)");
    Exec("CREATE VIEW v AS SELECT id, v FROM t WHERE id > 1");
    Exec("CREATE VIEW a_view AS SELECT v.id FROM v");
    Exec("CREATE TRIGGER tr BEFORE INSERT ON child FOR EACH ROW BEGIN\n  SET @a = ';';\n"
         "  SET @b = 'x;;';\nEND");
    Exec("CREATE PROCEDURE p (a INT) BEGIN\n  SELECT ';' AS s;\nEND");
    Exec("CREATE EVENT e ON SCHEDULE EVERY 1 DAY STARTS '2037-01-01 00:00:00' DISABLE DO SET @c ="
         " 1");
    QProcess tool;
    tool.setStandardOutputFile(File());
    tool.start("mariadb-dump", {"--no-defaults", "--host=" + Server().Host(),
                                "--port=" + QString::number(Server().Port()), "--user=root",
                                "--hex-blob", "--routines", "--events", Name()});
    ASSERT_TRUE(tool.waitForFinished() && tool.exitCode() == 0)
        << tool.readAllStandardError().toStdString();
    ASSERT_THAT(Text(), HasSubstr("enable the sandbox mode"));
    ASSERT_THAT(Text(), HasSubstr("a\tb"));

    const QStringList before = Contents();
    Server().Exec("DROP DATABASE " + Name() + "; CREATE DATABASE " + Name() +
                  " CHARACTER SET utf8mb4");
    EXPECT_EQ(LoadOn(Server(), Name()).Error, "");
    ExpectSame(before, Contents());
}

/// Names, texts and values that would be statements of their own wherever they are not escaped.
class TForeignTextTest : public TJobRunsTest
{
protected:
    void SetUp() override
    {
        TJobRunsTest::SetUp();
        if (!FDatabase)
            return;
        FVictim = std::make_unique<TTestDatabase>(Server());
        FVictim->Exec("CREATE TABLE victim (id INT)");
        Fill();
    }
    void TearDown() override
    {
        if (FVictim) {
            EXPECT_EQ(FVictim->Value("SHOW TABLES"), "victim");
        }
    }
    /// Ends whatever is open, drops the victim and makes the rest a comment.
    QString Attack(const QString &end) const
    {
        return end + ";DROP TABLE " + FVictim->Name() + ".victim;-- x";
    }
    static QString Literal(QString text)
    {
        return '\'' + text.replace('\\', "\\\\").replace('\'', "''").replace('\n', "\\n") + '\'';
    }
    static QString Quoted(QString name) { return '`' + name.replace('`', "``") + '`'; }
    void Fill() const
    {
        const QString name = Quoted(Attack("`"));
        const QString lines = "'\n" + Attack("\n;\n") + "\n$$\n" + Attack("\\'");
        Exec("CREATE TABLE " + name + " (" + Quoted(Attack("` INT)")) +
             " INT PRIMARY KEY COMMENT " + Literal(Attack("')")) + ", e ENUM(" +
             Literal(Attack("')")) + ", 'b') DEFAULT " + Literal(Attack("')")) + ", s SET(" +
             Literal(Attack("\\')")) + "), d VARCHAR(99)" + " DEFAULT " + Literal(Attack("\\'")) +
             ", t TEXT, KEY " + Quoted(Attack("`)")) + " (e)) COMMENT " + Literal(lines));
        Exec("INSERT INTO " + name + " VALUES (1, 1, 1, DEFAULT, " + Literal(lines) + ")");
        Exec("ALTER TABLE " + name + " ADD up INT, ADD CONSTRAINT " + Quoted(Attack("` f")) +
             " FOREIGN KEY (up) REFERENCES " + name + " (" + Quoted(Attack("` INT)")) + ")");
        Exec("CREATE VIEW " + Quoted(Attack("` v")) + " AS SELECT e AS " + Quoted(Attack("` e")) +
             ", " + Literal(Attack("'")) + " AS s FROM " + name);
        Exec("CREATE PROCEDURE " + Quoted(Attack("` p")) + " (" + Quoted(Attack("` a")) +
             " INT) COMMENT " + Literal(Attack("'")) + " SELECT " + Literal(Attack("'")));
        Exec("CREATE TRIGGER " + Quoted(Attack("` t")) + " BEFORE INSERT ON " + name +
             " FOR EACH ROW SET @x = " + Literal(Attack("'")));
        Exec("CREATE EVENT " + Quoted(Attack("` e")) +
             " ON SCHEDULE EVERY 1 DAY STARTS"
             " '2037-01-01 00:00:00' DISABLE COMMENT " +
             Literal(lines) + " DO SET @x = 1");
    }

    std::unique_ptr<TTestDatabase> FVictim;
};

TEST_P(TForeignTextTest, IsOnlyTextInADumpAndInAMigration)
{
    const QStringList before = Contents();
    EXPECT_EQ(Dump().Error, "");
    const TTestDatabase copy(Server());
    EXPECT_EQ(Migrate(copy).Error, "");
    ExpectSame(before, Contents(copy));
    EXPECT_EQ(Migrate(copy).Error, "") << "with drops ahead";
    EXPECT_EQ(Checksum(copy).Lines, Checksum().Lines);
    Reload();
    ExpectSame(before, Contents());
}

TEST_P(TForeignTextTest, IsOnlyTextInTheCopyOfATable)
{
    Clone(*Workspace(), Attack("`"), Attack("`2"));
    EXPECT_EQ(Value("SELECT COUNT(*) FROM " + Quoted(Attack("`2"))), "1");
}

// In a file a line that is cut off would be a statement, or the rest of one.
TEST_P(TForeignTextTest, NamesWithLineEndsAreLeftOutAndNamed)
{
    const QString name = Quoted(Attack("a\n"));
    Exec("CREATE TABLE plain (" + name + " INT)");
    Exec("CREATE TABLE keyed (id INT, KEY " + name + " (id))");
    Exec("CREATE VIEW " + Quoted(Attack("v\n")) + " AS SELECT 1 AS one");
    Exec("CREATE VIEW below AS SELECT 1 AS " +
         Quoted("a;\nDROP TABLE " + FVictim->Name() + ".victim;\nb"));
    Exec("CREATE VIEW onto AS SELECT * FROM below");
    const TJobRun run = Dump();
    EXPECT_EQ(run.Error, "");
    for (const char *part : {"\"plain\"", "\"keyed\"", "view \"v", "columns of view \"below\""})
        EXPECT_THAT(run.LeftOut().join('\n').toStdString(), HasSubstr(part));
    Reload();
    EXPECT_EQ(Value("SELECT COUNT(*) FROM onto"), "1");
}

ON_BOTH_SERVERS(TDumpFilesTest);
ON_BOTH_SERVERS(TForeignTextTest);

} // namespace
