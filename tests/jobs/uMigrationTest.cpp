#include "uJobRuns.h"
#include "uTestPrint.h"

namespace {

using TMigrationTest = TJobRunsTest;

TEST_P(TMigrationTest, RowsAreThoseOfOneMoment)
{
    Exec("CREATE TABLE a (id INT PRIMARY KEY); INSERT INTO a VALUES (1)");
    Exec("CREATE TABLE m (id INT); INSERT INTO m VALUES (1), (2)");
    Exec("CREATE TABLE z (id INT PRIMARY KEY, v INT); INSERT INTO z VALUES (1, 1), (2, 2)");
    const TAtLine change = [this](TWorker *, const QString &line) {
        if (line.startsWith("Writing data for \"a\"") ||
            line.startsWith("Inserting rows for \"a\""))
            Exec("INSERT INTO a VALUES (2); DELETE FROM m WHERE id = 1; UPDATE z SET v = 9 WHERE"
                 " id = 1; DELETE FROM z WHERE id = 2; INSERT INTO z VALUES (3, 3)");
    };
    const auto expectOld = [](const TTestDatabase &database) {
        EXPECT_EQ(database.Value("SELECT GROUP_CONCAT(id) FROM a"), "1");
        EXPECT_EQ(database.Value("SELECT GROUP_CONCAT(id ORDER BY id) FROM m"), "1,2");
        EXPECT_EQ(database.Value("SELECT GROUP_CONCAT(id, v ORDER BY id) FROM z"), "11,22");
    };
    EXPECT_EQ(Dump(change).Error, "");
    EXPECT_EQ(Value("SELECT COUNT(*) FROM a"), "2");
    Reload();
    expectOld(*FDatabase);
    const TTestDatabase target(Server());
    EXPECT_EQ(Migrate(target, change).Error, "");
    EXPECT_EQ(Value("SELECT COUNT(*) FROM a"), "2");
    expectOld(target);
}

TEST_P(TMigrationTest, WhatADumpOrAMigrationBringsIsTheSame)
{
    DumpDatabase::Fill(*FDatabase);
    const QStringList before = Contents(), sums = Checksum().Lines;
    EXPECT_TRUE(sums.last().startsWith("Database checksum = ")) << sums.join('\n').toStdString();
    EXPECT_GT(sums.size(), 10);
    const TTestDatabase copy(Server());
    Server().Exec("DROP DATABASE " + copy.Name());
    const TJobRun run = Migrate(copy);
    EXPECT_EQ(run.Error, "");
    EXPECT_EQ(run.Lines.mid(4, 4),
              (QStringList{"Getting the current charset on the source connection",
                           "Setting the charset to \"utf8mb4\" on the target connection",
                           "Checking the target database \"" + copy.Name() + '"',
                           "Creating database \"" + copy.Name() + '"'}));
    ExpectSame(before, Contents(copy));
    ExpectSame(sums, Checksum(copy).Lines);

    EXPECT_EQ(Dump().Error, "");
    Reload();
    ExpectSame(before, Contents());
    ExpectSame(sums, Checksum().Lines);

    // What is there is replaced, and what the source does not have stays.
    copy.Exec("CREATE TABLE own (id INT); DELETE FROM log_of");
    Exec("INSERT INTO log_of VALUES ('new')");
    EXPECT_EQ(Migrate(copy).Error, "");
    copy.Exec("DROP TABLE own");
    ExpectSame(Contents(), Contents(copy));
}

TEST_P(TMigrationTest, TheLogNamesWhatIsLeftOut)
{
    const TTestDatabase other(Server()), target(Server());
    other.Exec("CREATE TABLE p (id INT PRIMARY KEY)");
    Exec("CREATE TABLE f (id INT PRIMARY KEY, t TEXT, g POINT NOT NULL, o INT,"
         " CONSTRAINT positive CHECK (id > 0), FULLTEXT KEY words (t), SPATIAL KEY places (g),"
         " CONSTRAINT away FOREIGN KEY (o) REFERENCES " +
         other.Name() + ".p (id))");
    Exec("CREATE TABLE parts (id INT) PARTITION BY HASH (id) PARTITIONS 2");
    Exec("CREATE DEFINER=root@localhost VIEW v AS SELECT 1 AS one");
    Exec("CREATE DEFINER=root@localhost PROCEDURE p () SELECT 1");
    Exec("CREATE DEFINER=root@localhost FUNCTION fn () RETURNS INT DETERMINISTIC RETURN 1");
    Exec("CREATE DEFINER=root@localhost TRIGGER tr BEFORE INSERT ON f FOR EACH ROW SET @x = 1");
    Exec("CREATE DEFINER=root@localhost EVENT e ON SCHEDULE EVERY 1 DAY DISABLE DO SET @x = 1");
    QStringList wanted{"fulltext index \"words\" of table \"f\"",
                       "spatial index \"places\" of table \"f\"",
                       "check \"positive\" of table \"f\"", "partitions of table \"parts\"",
                       "foreign key \"away\" of table \"f\" into database \"" + other.Name() + '"'};
    for (const char *object :
         {"view \"v\"", "procedure \"p\"", "function \"fn\"", "trigger \"tr\"", "event \"e\""})
        wanted += QString("definer root@localhost of ") + object;
    if (GetParam() == skMariaDB) {
        Exec("CREATE SEQUENCE s");
        Exec("CREATE TABLE spans (a DATE, b DATE, PERIOD FOR span (a, b))");
        wanted += {"sequence \"s\"", "period \"span\" of table \"spans\""};
    }
    for (const TJobRun &run : {Migrate(target), Dump()}) {
        EXPECT_EQ(run.Error, "");
        EXPECT_THAT(run.LeftOut(), testing::UnorderedElementsAreArray(wanted));
    }
    Reload();
    EXPECT_EQ(Value("SELECT COUNT(*) FROM v"), "1");
}

/// The shape of a database as lines of cells, in which the two kinds of server write the same
/// thing in the same way.
QStringList Shape(const TTestDatabase &database)
{
    const QString queries[] = {
        "SELECT 'table', table_name, engine, table_collation, table_comment FROM"
        " information_schema.tables WHERE table_schema = '%1' AND table_type = 'BASE TABLE'",
        "SELECT 'column', c.table_name, column_name, column_type, is_nullable, column_default,"
        " extra, collation_name, column_comment FROM information_schema.columns AS c JOIN"
        " information_schema.tables AS t USING (table_schema, table_name) WHERE c.table_schema ="
        " '%1' AND table_type = 'BASE TABLE'",
        "SELECT 'key', table_name, index_name, non_unique, seq_in_index, column_name, sub_part,"
        " collation, index_type FROM information_schema.statistics WHERE table_schema = '%1'",
        "SELECT 'reference', k.table_name, k.constraint_name, ordinal_position, column_name,"
        " k.referenced_table_name, referenced_column_name, update_rule, delete_rule FROM"
        " information_schema.key_column_usage AS k JOIN information_schema.referential_constraints"
        " AS r ON r.constraint_schema = k.constraint_schema AND r.constraint_name ="
        " k.constraint_name AND r.table_name = k.table_name WHERE k.table_schema = '%1'",
        "SELECT 'view', table_name, check_option, security_type FROM information_schema.views WHERE"
        " table_schema = '%1'"};
    QStringList lines = DumpDatabase::Programs(database.Server(), database.Name());
    for (const QString &query : queries)
        for (QStringList cells : database.Rows(query.arg(database.Name()))) {
            if (cells[0] == u"column") {
                QString &value = cells[5], &extra = cells[6];
                if (value == u"NULL")
                    value.clear();
                if (value.startsWith('\'')) // MariaDB tells a default as it is written
                    value = value.mid(1).chopped(1).replace("''", "'");
                value.replace("current_timestamp()", "CURRENT_TIMESTAMP");
                extra.remove("DEFAULT_GENERATED")
                    .replace("current_timestamp()", "CURRENT_TIMESTAMP");
                extra = extra.trimmed();
            }
            lines += cells.join('|');
        }
    lines.sort();
    return lines;
}

// The types that the two kinds of server write differently, and those that one of them lacks.
const struct
{
    const char *OnMariaDB, *OnMySQL; // a whole cell
    bool Both = true;                // else only on the way from MySQL
} Differs[] = {
    {"tinyint(4)", "tinyint"},     {"tinyint(3) unsigned", "tinyint unsigned"},
    {"mediumint(9)", "mediumint"}, {"int(11)", "int"},
    {"bigint(20)", "bigint"},      {"bigint(20) unsigned", "bigint unsigned"},
    {"year(4)", "year"},           {"RESTRICT", "NO ACTION"},
    {"longtext", "json", false},   {"utf8mb4_unicode_520_ci", "utf8mb4_0900_ai_ci", false},
};

QString OnTheOther(const QString &cell, bool fromMySQL)
{
    for (const auto &type : Differs)
        if (cell == (fromMySQL ? type.OnMySQL : type.OnMariaDB) && (fromMySQL || type.Both))
            return fromMySQL ? type.OnMariaDB : type.OnMySQL;
    return cell;
}

TEST_P(TMigrationTest, EveryObjectCrossesToTheOtherKindOfServer)
{
    SKIP_WITHOUT_MYSQL9();
    const bool fromMySQL = GetParam() == skMySQL;
    DumpDatabase::Fill(*FDatabase);
    // UUID and INET6 are of one kind of server, VECTOR of the other.
    Exec(fromMySQL ? "DROP TABLE oracle" : "DROP TABLE maria");
    const TTestDatabase target(Server(fromMySQL ? skMariaDB : skMySQL));
    target.Server().Exec("DROP DATABASE " + target.Name());
    for (int run = 0; run < 2; ++run)
        EXPECT_EQ(Migrate(target).Error, "");
    ExpectSame(Contents().filter(": "), Contents(target).filter(": "));

    QStringList wanted = Shape(*FDatabase);
    for (QString &line : wanted) {
        QStringList cells = line.split('|');
        if (fromMySQL && cells.value(3) == u"json")
            cells[7] = "utf8mb4_bin"; // a text with a condition, where JSON is no type
        for (QString &cell : cells)
            cell = OnTheOther(cell, fromMySQL);
        line = cells.join('|');
    }
    wanted.sort();
    ExpectSame(wanted, Shape(target));
    for (const char *view : {"a_high", "b_low"})
        EXPECT_EQ(target.Rows(QString("SELECT * FROM %1 ORDER BY 1").arg(view)),
                  FDatabase->Rows(QString("SELECT * FROM %1 ORDER BY 1").arg(view)));
    ExpectSame(Checksum().Lines, Checksum(target).Lines);
}

ON_BOTH_SERVERS(TMigrationTest);

} // namespace
