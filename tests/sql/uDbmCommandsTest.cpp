#include "uFamilies.h"

#include <gtest/gtest.h>

namespace {

/// Families on each kind of server.
class TFamiliesTest : public testing::TestWithParam<TTestServerKind>
{
protected:
    void SetUp() override
    {
        if (GetParam() == skMySQL)
            SKIP_WITHOUT_MYSQL9();
    }
    static TTestServer &Server()
    {
        return GetParam() == skMySQL ? *TTestServer::MySql9() : TTestServer::Instance();
    }
};

INSTANTIATE_TEST_SUITE_P(Servers, TFamiliesTest, testing::Values(skMariaDB, skMySQL),
                         [](const testing::TestParamInfo<TTestServerKind> &info) {
                             return info.param == skMySQL ? "MySQL9" : "MariaDB";
                         });

TEST_P(TFamiliesTest, ReadCharsetsAndVariables)
{
    TFamilies families(Server());
    QHash<QString, TDbmCharsetEntity> charsets;
    for (const TDbmCharsetEntity &each : families.Commands.Charsets().ExecuteSelect())
        charsets[each.Name] = each;
    EXPECT_EQ(charsets["utf8mb4"].MaxLen, 4);
    EXPECT_EQ(charsets["latin1"].DefaultCollate, "latin1_swedish_ci");
    QString session;
    families.Commands.Charsets().ExecuteGetSessionCharset(session);
    EXPECT_EQ(session, "utf8mb4");

    QString value;
    TDbmVariableCommands &variables = families.Commands.Variables();
    variables.ExecuteSetValue("sort_buffer_size", qint64(262144), svoSession);
    variables.ExecuteGetValue("sort_buffer_size", svoSession, value);
    EXPECT_EQ(value, "262144");
    EXPECT_TRUE(families.Failures.isEmpty()) << families.Failures.join('\n').toStdString();
}

TEST(TSafeReads, GiveAnEmptyAnswerAndOneEvent)
{
    TFamilies families(TTestServer::Instance());
    QString text = "not read";
    families.Commands.Tables().ExecuteSelectDDL("no such", "table", text);
    EXPECT_EQ(text, "");
    ASSERT_EQ(families.Failures.size(), 2);
    EXPECT_TRUE(families.Failures[0].startsWith("(1146) ")) << families.Failures[0].toStdString();
    EXPECT_EQ(families.Failures[1], "SHOW CREATE TABLE `no such`.`table`");
    EXPECT_FALSE(families.Commands.Databases().ExecuteSelect().isEmpty());
}

TEST_P(TFamiliesTest, FindNamesAndKeepCommentsWithQuotes)
{
    TTestServer &server = Server();
    TFamilies families(server);
    TDbmDatabaseEntity database;
    EXPECT_FALSE(families.Commands.Databases().ExecuteSelectRow("a'b", database));
    const QString name = QString("it's %1\\").arg(server.Port());
    server.Exec("CREATE DATABASE `" + name + "` COLLATE utf8mb4_bin");
    ASSERT_TRUE(families.Commands.Databases().ExecuteSelectRow(name, database));
    EXPECT_EQ(database.Collation, "utf8mb4_bin");
    server.Exec("CREATE TABLE `t'\"\\` (a int) COMMENT 'it''s \\\\ \"x\"\n'", name);
    TDbmTableEntity table;
    ASSERT_TRUE(families.Commands.Tables().ExecuteSelectRow(name, "t'\"\\", table));
    const QString comment = "SELECT HEX(table_comment) FROM information_schema.tables WHERE "
                            "table_schema = DATABASE()";
    const QString before = server.Value(comment, name);
    families.Commands.Tables().ExecuteUpdate(name, "t'\"\\", table);
    EXPECT_EQ(server.Value(comment, name), before);
    server.Exec("DROP DATABASE `" + name + '`');
    QString value;
    families.Commands.Variables().ExecuteGetValue("it's", svoGlobal, value);
    EXPECT_EQ(value, "");
    EXPECT_TRUE(families.Failures.isEmpty()) << families.Failures.join('\n').toStdString();
}

} // namespace
