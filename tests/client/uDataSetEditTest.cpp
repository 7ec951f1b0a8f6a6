#include "uClientTools.h"

#include <gmock/gmock.h>

namespace {

using namespace Qt::StringLiterals;
using ::testing::HasSubstr;

class TDataSetEdit : public TClientTest
{
protected:
    void SetValue(TMyQuery &query, const QString &field, const TVariant &value)
    {
        query.FieldByName(field).SetValue(value);
    }
    void Change(TMyQuery &query, const QString &field, const TVariant &value)
    {
        query.Edit();
        SetValue(query, field, value);
        query.Post();
    }
    std::string Reason(const QString &sql) { return Open(sql)->ReadOnlyReason().toStdString(); }
};

TEST_F(TDataSetEdit, WritesOneRowByItsWholeKeyWhateverItsNamesAre)
{
    Exec("CREATE TABLE `t``x y` (`select` INT, b VARCHAR(9), `a``b` INT, "
         "PRIMARY KEY (`select`, b))");
    Exec("INSERT INTO `t``x y` VALUES (1, 'x', 0), (1, 'y', 0), (2, 'x', 0)");
    const auto query =
        Open("SELECT `select` AS a, b, `a``b` AS v FROM `t``x y` AS z ORDER BY a, b");
    const QString rows =
        "SELECT GROUP_CONCAT(`select`, b, `a``b` ORDER BY `select`, b) FROM `t``x y`";
    query->SetRecNo(1);
    Change(*query, "v", 5);
    EXPECT_EQ(Value(rows), u"1x0,1y5,2x0"_s);
    Change(*query, "b", "z"); // the key itself
    EXPECT_EQ(query->FieldByName("b").AsString(), u"z"_s);
    Change(*query, "v", 6);
    EXPECT_EQ(Value(rows), u"1x0,1z6,2x0"_s);
    query->Delete();
    EXPECT_EQ(Value(rows), u"1x0,2x0"_s);
    EXPECT_EQ(query->RecordCount(), 2);
    EXPECT_EQ(query->FieldByName("a").AsInteger(), 2);
}

// Types of keys whose literals are made in different ways, and three keys of each.
const std::pair<const char *, const char *> Keys[] = {
    {"BIGINT UNSIGNED", "18446744073709551615, 18446744073709551614, 1"},
    {"DECIMAL(30, 10)", "1.0000000001, 1.0000000002, 1"},
    {"DOUBLE", "0.1, 0.30000000000000004, 1e300"},
    {"VARCHAR(20)", "'O\\'Brien', 'back\\\\slash', ''"},
    {"VARBINARY(20)", "0x00FF, 0x5C27, ''"},
    {"BIT(64)", "0x8000000000000000, 1, 0"},
    {"DATETIME(6)", "'2010-01-01 00:00:00.000001', '2010-01-01', '1899-12-30 10:00:00'"},
    {"UUID", "'123e4567-e89b-12d3-a456-426655440000', UUID(), "
             "'00000000-0000-0000-0000-000000000000'"},
};

TEST_F(TDataSetEdit, FindsTheRowByAKeyOfAnyType)
{
    const QString news = u"it's \\ new\n я"_s;
    for (const auto &[type, literals] : Keys) {
        for (const char *mode : {"", "NO_BACKSLASH_ESCAPES"}) {
            SCOPED_TRACE(std::string(type) + ' ' + mode);
            Exec(QString("CREATE OR REPLACE TABLE t (k %1 PRIMARY KEY, v TEXT)").arg(type));
            for (const QString &literal : QString(literals).split(", "))
                Exec("INSERT INTO t VALUES (" + literal + ", 'old')");
            FConnection.Execute(QString("SET sql_mode = '%1'").arg(mode));
            const auto query = Open("SELECT * FROM t");
            for (qint64 row = 0; row < 3; ++row) {
                query->SetRecNo(row);
                Change(*query, "v", news + QString::number(row));
            }
            EXPECT_EQ(Value("SELECT COUNT(DISTINCT v) FROM t WHERE v LIKE 'it%'"), u"3"_s);
            for (qint64 row = 0; row < 3; ++row)
                EXPECT_EQ(query->FieldByName("v").AsStringAt(row), news + QString::number(row));
        }
    }
}

TEST_F(TDataSetEdit, ShowsWhatTheServerMadeOfIt)
{
    Exec("CREATE TABLE t (id INT AUTO_INCREMENT PRIMARY KEY, a VARCHAR(3), "
         "b INT NOT NULL DEFAULT 7, c INT AS (b * 2), u TIMESTAMP(6) DEFAULT NOW(6) "
         "ON UPDATE NOW(6))");
    Exec("INSERT INTO t (a) VALUES ('x')");
    FConnection.Execute("SET sql_mode = ''");
    const auto query = Open("SELECT a, id, b, c, u, LENGTH(a) AS a_length FROM t");
    Change(*query, "a", "abcdef"); // cut by the server
    EXPECT_EQ(query->FieldByName("a").AsString(), u"abc"_s);
    EXPECT_EQ(query->FieldByName("u").AsString(), Value("SELECT u FROM t"));
    EXPECT_EQ(query->FieldByName("a_length").AsString(), u"1"_s); // as it was read
    query->Append();
    SetValue(*query, "a", "new");
    query->Post();
    EXPECT_EQ(query->RecordCount(), 2);
    EXPECT_EQ(query->FieldByName("id").AsInteger(), 2);
    EXPECT_EQ(query->FieldByName("b").AsInteger(), 7);
    EXPECT_EQ(query->FieldByName("c").AsInteger(), 14);
    EXPECT_TRUE(query->FieldByName("a_length").IsNull());
}

TEST_F(TDataSetEdit, AppendsByAKeyThatHasADefaultOrIsGiven)
{
    Exec("CREATE TABLE t (k VARCHAR(9) DEFAULT 'dk' PRIMARY KEY, v INT DEFAULT 4)");
    const auto query = Open("SELECT * FROM t");
    query->Append();
    query->Post(); // of defaults alone
    EXPECT_EQ(query->FieldByName("k").AsString(), u"dk"_s);
    query->Append();
    SetValue(*query, "k", "o'k");
    SetValue(*query, "v", TVariant());
    EXPECT_EQ(query->FieldByName("k").DisplayText(), u"o'k"_s); // before it is posted
    query->Post();
    EXPECT_TRUE(query->FieldByName("v").IsNull());
    EXPECT_EQ(Value("SELECT GROUP_CONCAT(k ORDER BY k) FROM t"), u"dk,o'k"_s);
}

TEST_F(TDataSetEdit, ARowThatIsGoneIsAnErrorAndTheEditStaysOpen)
{
    Exec("CREATE TABLE t (id INT PRIMARY KEY, a INT UNIQUE)");
    Exec("INSERT INTO t VALUES (1, 1), (2, 2)");
    const auto query = Open("SELECT * FROM t ORDER BY id");
    query->Edit();
    SetValue(*query, "a", 2);
    EXPECT_EQ(ErrorOf([&] { query->Post(); }).ErrorCode(), 1062);
    EXPECT_EQ(query->State(), dsEdit);
    EXPECT_EQ(query->FieldByName("a").AsInteger(), 2);
    EXPECT_EQ(ErrorOf([&] { query->Next(); }).ErrorCode(), 1062); // leaving the row posts it
    EXPECT_EQ(query->RecNo(), 0);
    SetValue(*query, "a", 5);
    Exec("DELETE FROM t WHERE id = 1");
    EXPECT_EQ(MessageOf([&] { query->Post(); }),
              "The row was not changed: it does not exist any more.");
    query->Cancel();
    EXPECT_EQ(query->FieldByName("a").AsInteger(), 1);
    EXPECT_EQ(MessageOf([&] { query->Delete(); }),
              "The row was not deleted: it does not exist any more.");
    EXPECT_EQ(query->RecordCount(), 2);
}

TEST_F(TDataSetEdit, TheSameValueIsNoChangeAndAChangeToTheSameIsNoError)
{
    Exec("CREATE TABLE t (id INT PRIMARY KEY, a INT, "
         "u TIMESTAMP DEFAULT '2001-01-01' ON UPDATE NOW())");
    Exec("INSERT INTO t (id, a) VALUES (1, 1)");
    const auto query = Open("SELECT * FROM t");
    Change(*query, "a", "1");
    EXPECT_EQ(Value("SELECT YEAR(u) FROM t"), u"2001"_s);
    Exec("UPDATE t SET a = 9, u = '2001-01-01'"); // meanwhile, by somebody else
    Change(*query, "a", 9);
    EXPECT_EQ(query->State(), dsBrowse);
}

TEST_F(TDataSetEdit, TellsWhyAResultIsReadOnly)
{
    Exec("CREATE TABLE t (id INT PRIMARY KEY, a INT, b BLOB)");
    Exec("CREATE TABLE pair (x INT, y INT, v INT, PRIMARY KEY (x, y))");
    Exec("CREATE TABLE nokey (a INT, b INT, UNIQUE (a))");
    Exec("CREATE TABLE single (f FLOAT PRIMARY KEY, v INT)");
    // A part of the reason; empty when rows can be changed.
    const std::pair<const char *, std::string> cases[] = {
        {"SELECT * FROM t", ""},
        {"SELECT id, LENGTH(b) AS b FROM t AS x WHERE a IN (SELECT 1)", ""},
        {"SELECT 1", "does not show a table"},
        {"SELECT * FROM t JOIN pair", "more than one table"},
        {"SELECT x, v FROM pair", "does not show the key column \"y\" of \"pair\""},
        {"SELECT id + 0 AS id, a FROM t", "does not show the key column"},
        {"SELECT * FROM nokey", "\"nokey\" has no primary key"},
        {"SELECT * FROM single", "\"f\" of \"single\" is a FLOAT"},
        {"SELECT * FROM information_schema.schemata", "does not show a table"},
    };
    for (const auto &[sql, part] : cases) {
        const std::string reason = Reason(sql);
        EXPECT_EQ(reason.empty(), part.empty()) << sql << ": " << reason;
        EXPECT_THAT(reason, HasSubstr(part)) << sql;
    }
    const auto query = Open("SELECT a FROM t");
    const std::string reason = query->ReadOnlyReason().toStdString();
    EXPECT_THAT(reason, HasSubstr("does not show the key column \"id\" of \"t\""));
    EXPECT_EQ(MessageOf([&] { query->Edit(); }), reason);
    EXPECT_EQ(MessageOf([&] { query->Append(); }), reason);
    EXPECT_EQ(MessageOf([&] { query->Delete(); }), reason);
}

TEST_F(TDataSetEdit, ADerivedTableOfARealTablesNameIsNotTakenForIt)
{
    Exec("CREATE TABLE r (id INT PRIMARY KEY, a INT)");
    Exec("CREATE TABLE x (id INT PRIMARY KEY, a INT)");
    Exec("CREATE PROCEDURE p() WITH x AS (SELECT * FROM r) SELECT * FROM x");
    for (const char *sql : {
             "SELECT * FROM /* c */ ( SELECT * FROM r) AS x",
             "-- it's\n/* c */ WITH x AS (SELECT * FROM r) SELECT * FROM x",
             "/*!50000 WITH x AS (SELECT * FROM r) */ SELECT * FROM x",
             "SELECT x.* FROM r b JOIN r c ON (b.id = c.id AND b.a <> ')'), (SELECT * FROM r) x",
             "SELECT x.* FROM r b JOIN r c ON b.id IN (SELECT id FROM r WHERE 1), (SELECT * FROM "
             "r) x",
             "SELECT x.* FROM (r, (SELECT * FROM r) x)",
             "SELECT x.* FROM {OJ (SELECT * FROM r) x LEFT JOIN r ON r.id = x.id}",
         })
        EXPECT_THAT(Reason(sql), HasSubstr("subquery")) << sql;
    for (const char *sql : {"CALL p()", "EXECUTE IMMEDIATE 'SELECT * FROM (SELECT * FROM r) x'",
                            "/*!50000 CALL p() */"})
        EXPECT_THAT(Reason(sql), HasSubstr("not come from a SELECT")) << sql;
    for (const char *sql : {
             "SELECT * FROM x",
             "(/* c */ SELECT * FROM x)",
             "SELECT x.*, (SELECT COUNT(*) FROM r WHERE (r.id = x.id)) AS n, (SELECT 2) FROM x",
             "SELECT * FROM x WHERE id IN (0, (SELECT MAX(id) FROM (SELECT * FROM r) y))",
             "INSERT INTO x VALUES (1, 1) RETURNING *",
         })
        EXPECT_EQ(Reason(sql), "") << sql;
}

TEST_F(TDataSetEdit, WorksAfterTheSessionWasLost)
{
    Exec("CREATE TABLE t (id INT PRIMARY KEY, a INT)");
    Exec("INSERT INTO t VALUES (1, 1)");
    const auto query = Open("SELECT * FROM t");
    FConnection.Disconnect();
    Change(*query, "a", 2);
    EXPECT_EQ(Value("SELECT a FROM t"), u"2"_s);
    Exec("KILL " + QString::fromStdString(Ask("SELECT CONNECTION_ID()")));
    query->Edit();
    SetValue(*query, "a", 3);
    EXPECT_TRUE(ErrorOf([&] { query->Post(); }).IsLostConnection());
    EXPECT_EQ(query->State(), dsEdit);
    query->Post(); // once more, by the user
    EXPECT_EQ(Value("SELECT a FROM t"), u"3"_s);
}

TEST_F(TDataSetEdit, WorksOnMySql)
{
    SKIP_WITHOUT_MYSQL9();
    TTestDatabase database(*TTestServer::MySql9());
    database.Exec("CREATE TABLE t (id INT AUTO_INCREMENT PRIMARY KEY, j JSON, v VECTOR(2), "
                  "a INT DEFAULT 3)");
    TMyConnection connection;
    Aim(connection, *TTestServer::MySql9(), database.Name());
    TMyQuery query(&connection);
    query.SetSQL("SELECT * FROM t");
    query.Execute();
    query.Append();
    SetValue(query, "j", u"{\"a\": \"я\"}"_s);
    SetValue(query, "v", QByteArray::fromHex("0000803F00000040"));
    query.Post();
    EXPECT_EQ(query.FieldByName("id").AsInteger(), 1);
    EXPECT_EQ(query.FieldByName("j").AsString(), u"{\"a\": \"я\"}"_s);
    EXPECT_EQ(query.FieldByName("a").AsInteger(), 3);
    EXPECT_EQ(database.Value("SELECT VECTOR_TO_STRING(v) FROM t"), u"[1.00000e+00,2.00000e+00]"_s);
    query.Delete();
    EXPECT_EQ(database.Value("SELECT COUNT(*) FROM t"), u"0"_s);
}

} // namespace
