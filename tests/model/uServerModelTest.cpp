#include "uModelFixture.h"

namespace {

using TServerModelTest = TModelTest;

TEST_P(TServerModelTest, ListsOfTheServer)
{
    TDbmEngineList::TItemPtr engine;
    ASSERT_TRUE(Manager->Engines().TryGetDefaultEngine(engine));
    EXPECT_EQ(engine->Entity().EngineName, "InnoDB");
    EXPECT_TRUE(engine->Entity().Options.Contains(eoTransactions));
    EXPECT_GT(Manager->Plugins().Count(), 3);
    EXPECT_EQ(Named(Manager->Collations(), "utf8mb4_bin").Entity().Charset, "utf8mb4");
    EXPECT_NO_THROW(Named(Manager->GlobalStatus(), "Uptime"));
    EXPECT_GT(Manager->SessionStatus().Count(), 100);
    EXPECT_GT(Manager->GlobalStatus().CalcAllQueries(), 0);
    EXPECT_EQ(Named(Manager->GlobalVariables(), "wait_timeout").GetComment(), "08:00:00");
    EXPECT_GT(Manager->SessionVariables().Count(), 100);
}

TEST_P(TServerModelTest, ThreadsAreKilled)
{
    const auto other = NewManager();
    const qint64 victim = OwnValue(*other, "SELECT CONNECTION_ID()").toLongLong();
    EXPECT_THROW(Manager->Commands().Processes().ExecuteKillConnection(victim + 1000000),
                 EDacMySqlError);
    Manager->Commands().Processes().ExecuteKillConnection(victim);
    EXPECT_EQ(Server().Value(QString("SELECT COUNT(*) FROM information_schema.processlist WHERE "
                                     "id = %1 AND command <> 'Killed'")
                                 .arg(victim)),
              "0");
}

TEST_P(TServerModelTest, VariablesTakeNumbersHoweverTheyArrive)
{
    TDbmVariableCommands &variables = Manager->Commands().Variables();
    QString value;
    for (const TVariant &number : {TVariant(1001), TVariant("1002"), TVariant(1003.0)}) {
        variables.ExecuteSetValue("net_write_timeout", number, svoSession);
        variables.ExecuteGetValue("net_write_timeout", svoSession, value);
        EXPECT_EQ(value, number.ToString());
    }
    variables.ExecuteSetValue("sql_mode", "ANSI", svoSession);
    variables.ExecuteGetValue("sql_mode", svoSession, value);
    EXPECT_TRUE(value.contains("ANSI"));
    EXPECT_THROW(variables.ExecuteSetValue("sql_mode", "NONSENSE", svoSession), EDacMySqlError);
}

TEST_P(TServerModelTest, RowsAreWrittenByTheirKey)
{
    Exec("CREATE TABLE t (id int PRIMARY KEY, a varchar(9), b varbinary(9))");
    TDbmDataCommands &data = Manager->Commands().Data();
    data.ExecuteInsertRow(Name(), "t", {1, "it's", QByteArray("\0\xff", 2)}, {"id", "a", "b"});
    data.ExecuteInsertRow(Name(), "t", {2, TVariant(), TVariant()}, {"id", "a", "b"});
    data.ExecuteUpdateRow(Name(), "t", {2}, {"id"}, {"x;y"}, {"a"});
    QString read;
    const auto reader = [&](const TDataSet &row) {
        read = row.FieldByName("a").AsString();
        return true;
    };
    EXPECT_TRUE(data.ExecuteSelectRow(Name(), "t", reader, {2}, {"id"}));
    EXPECT_EQ(read, "x;y");
    EXPECT_TRUE(data.ExecuteSelectRow(Name(), "t", reader, {"it's"}, {"a"}));
    read.clear();
    EXPECT_FALSE(data.ExecuteSelectRow(Name(), "t", reader, {}, {})) << "two rows";
    EXPECT_EQ(read, "");
    data.ExecuteDeleteRow(Name(), "t", {1}, {"id"});
    EXPECT_EQ(data.ExecuteSelectRowCount(Name(), "t"), 1);
    EXPECT_EQ(data.ExecuteSelectRowCount(Name(), "t", "id > 2"), 0);
}

INSTANTIATE_ON_BOTH_SERVERS(TServerModelTest);

TEST(TStatusTextTest, CommentsAndRates)
{
    using TVariables = TDbmVariableCommentFormatter;
    EXPECT_EQ(TVariables::Format("Innodb_autoextend_increment", "8"), "8.0 MB");
    EXPECT_EQ(TVariables::Format("max_join_size", "18446744073709551615"), "16.0 EB");
    EXPECT_EQ(TVariables::Format("max_join_size", "x"), "");
    EXPECT_EQ(TDbmStatusUtils::FormatComment("com_select", "10000000000000000000"),
              "10,000,000,000,000,000,000");
    EXPECT_EQ(TDbmStatusUtils::FormatComment("com_select", "ON"), "");
    EXPECT_EQ(TDbmStatusUtils::FormatComment("uptime", "61"), "00:01:01");
    EXPECT_EQ(TDbmStatusUtils::FormatCounterValue("com_select", "7200", 60, 3600), "120");
    EXPECT_EQ(TDbmStatusUtils::FormatCounterValue("com_select", "1", 60, 0), "");
}

// What a server of another time is asked, for real: a server of today that says it is old.
TEST(TOldServerTest, ListsComeInTheFormsOfTheTime)
{
    const auto server = TTestServer::Start({"--version=5.1.11-log"});
    server->Exec("CREATE DATABASE old");
    server->Exec("CREATE EVENT e ON SCHEDULE EVERY 1 DAY DO SELECT 1", "old");
    const auto manager = TDbmManager::Create();
    manager->SetParams(ServerProfile(*server));
    manager->Connect();
    TDbmDatabaseItem &database = *manager->Databases().GetByName("old");
    ASSERT_EQ(database.Events().Count(), 1);
    EXPECT_EQ(database.Events().ToArray().first()->Entity().Definition, "SQL")
        << "deliberate: below 5.1.12 the text is looked for in the column of the body";
    QStringList statements;
    manager->SetOnCommandBeforeExecute(
        [&](TDbmManager *, const QString &text) { statements += text; });
    EXPECT_GT(manager->Processes().Count(), 0);
    EXPECT_GT(manager->Engines().Count(), 0);
    EXPECT_GT(manager->GlobalVariables().Count(), 0);
    TDbmStatusList::TItemPtr status;
    ASSERT_TRUE(manager->SessionStatus().TryGetByName("uptime", status));
    EXPECT_EQ(status->Entity().Value, "") << "deliberate: the second column has another name";
    EXPECT_GT(manager->Plugins().Count(), 0);
    EXPECT_EQ(statements,
              QStringList({"SELECT * FROM INFORMATION_SCHEMA.PROCESSLIST", "SHOW ENGINES",
                           "SHOW GLOBAL VARIABLES", "SHOW SESSION STATUS",
                           "SELECT * FROM INFORMATION_SCHEMA.PLUGINS"}));
}

} // namespace
