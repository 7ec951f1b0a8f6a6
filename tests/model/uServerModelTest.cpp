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

TEST_P(TServerModelTest, ThreadsAreKilledAndKeepTheirItems)
{
    const auto other = NewManager();
    const QString id = "SELECT CONNECTION_ID()";
    const qint64 own = OwnValue(*Manager, id).toLongLong(); // other tests come and go there
    const qint64 victim = OwnValue(*other, id).toLongLong();
    TDbmProcessList::TItemPtr item;
    const auto find = [&] {
        return Manager->Processes().TryFind(
            [&](TDbmProcessItem &process) { return process.Entity().Id == own; }, item);
    };
    ASSERT_TRUE(find());
    const auto before = item;
    Manager->Processes().RequestProcess();
    ASSERT_TRUE(find());
    EXPECT_EQ(item, before);
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
    variables.ExecuteSetValue("max_heap_table_size", 1024e12, svoSession);
    variables.ExecuteGetValue("max_heap_table_size", svoSession, value);
    EXPECT_EQ(value, "1024000000000000");
    for (const TVariant &number : {TVariant(1001), TVariant("1002"), TVariant(1003.0)}) {
        variables.ExecuteSetValue("max_sp_recursion_depth", 1, svoSession);
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
    const struct
    {
        const char *Variable, *Value, *Comment;
    } variables[] = {
        {"Innodb_autoextend_increment", "8", "8.0 MB"},
        {"max_join_size", "x", ""},
        {"max_join_size", "18446744073709551615", "16.0 EB"},
        {"sql_select_limit", "18446744073709551616", ""},
    };
    for (const auto &row : variables)
        EXPECT_EQ(TDbmVariableCommentFormatter::Format(row.Variable, row.Value), row.Comment);
    const struct
    {
        const char *Status, *Value, *Comment;
    } statuses[] = {
        {"com_select", "10000000000000000000", "10,000,000,000,000,000,000"},
        {"com_select", "-1", "-1"},
        {"com_select", "ON", ""},
        {"Bytes_sent", "1536", "1.5 KB"},
        {"uptime", "61", "00:01:01"},
    };
    for (const auto &row : statuses)
        EXPECT_EQ(TDbmStatusUtils::FormatComment(row.Status, row.Value), row.Comment);
    EXPECT_EQ(TDbmStatusUtils::FormatCounterValue("com_select", "7200", 60, 3600), "120");
    EXPECT_EQ(TDbmStatusUtils::FormatCounterValue("bytes_sent", "3600", 3600, 3600), "3.5 KB");
    EXPECT_EQ(TDbmStatusUtils::FormatCounterValue("com_select", "1", 60, 0), "");
    EXPECT_EQ(TDbmStatusUtils::FormatCounterValue("uptime", "1", 60, 1), "");
}

struct TOldServer
{
    const char *Version;
    int Events;
    QStringList Statements; // of threads, engines, variables, status and plugins
};

class TOldServerTest : public testing::TestWithParam<TOldServer>
{};

// What a server of another time is asked, for real: a server of today that says it is old.
TEST_P(TOldServerTest, ListsComeInTheFormsOfTheTime)
{
    const QString version = QString(GetParam().Version) + "-log";
    const auto server = TTestServer::Start({"--version=" + version});
    server->Exec("CREATE DATABASE old");
    server->Exec("CREATE TABLE p (id int PRIMARY KEY)", "old");
    server->Exec("CREATE TABLE t (id int PRIMARY KEY, s varchar(9) DEFAULT 'x',"
                 " CONSTRAINT fk FOREIGN KEY (id) REFERENCES p (id))",
                 "old");
    server->Exec("CREATE EVENT e ON SCHEDULE EVERY 1 DAY DO SELECT 1", "old");
    const auto manager = TDbmManager::Create();
    manager->SetParams(ServerProfile(*server));
    manager->Connect();
    QStringList statements;
    manager->SetOnCommandBeforeExecute(
        [&](TDbmManager *, const QString &text) { statements += text; });
    TDbmDatabaseItem &database = *manager->Databases().GetByName("old");
    statements.clear();
    ASSERT_EQ(database.Events().Count(), GetParam().Events);
    EXPECT_EQ(statements.size(), GetParam().Events) << "no events, no statement";
    if (database.Events().Count() > 0) {
        EXPECT_EQ(database.Events().ToArray().first()->Entity().Definition, "SQL")
            << "deliberate: below 5.1.12 the text is looked for in the column of the body";
    }
    TDbmTableList::TItemPtr table;
    ASSERT_TRUE(database.Tables().TryGetByName("t", table));
    EXPECT_EQ(table->Indexes().Count(), 1);
    EXPECT_EQ(table->References().Count(), 1);
    statements.clear();
    table->References().RequestProcess();
    EXPECT_EQ(table->References().Count(), 1);
    // Where the server has no table of foreign keys, a reload reads the table's text again.
    const bool hasConstraints = GetParam().Events > 0;
    EXPECT_EQ(statements.size(), hasConstraints ? 0 : 1);

    statements.clear();
    EXPECT_GT(manager->Processes().Count(), 0);
    EXPECT_GT(manager->Engines().Count(), 0);
    TDbmVariableList::TItemPtr variable;
    EXPECT_TRUE(manager->GlobalVariables().TryGetByName("version", variable));
    EXPECT_EQ(variable->Entity().Value, version);
    TDbmStatusList::TItemPtr status;
    EXPECT_TRUE(manager->SessionStatus().TryGetByName("uptime", status));
    EXPECT_EQ(status->Entity().Value, "") << "deliberate: the second column has another name";
    EXPECT_GT(manager->Plugins().Count(), 0);
    EXPECT_EQ(statements, GetParam().Statements);

    TDbmTableEntity entity;
    entity.TableName = "fresh";
    manager->Operations().CreateTable(database, entity);
    ASSERT_TRUE(database.Tables().TryGetByName("fresh", table));
    EXPECT_EQ(table->Fields().Count(), 1);
}

const QString OldPlugins = "SELECT * FROM INFORMATION_SCHEMA.PLUGINS";
const QStringList ShowForms = {"SHOW FULL PROCESSLIST", "SHOW ENGINES", "SHOW GLOBAL VARIABLES",
                               "SHOW SESSION STATUS", OldPlugins};
const QStringList MixedForms = {"SELECT * FROM INFORMATION_SCHEMA.PROCESSLIST", "SHOW ENGINES",
                                "SHOW GLOBAL VARIABLES", "SHOW SESSION STATUS", OldPlugins};

INSTANTIATE_TEST_SUITE_P(Versions, TOldServerTest,
                         testing::Values(TOldServer{"4.1.22", 0, ShowForms},
                                         TOldServer{"5.0.95", 0, ShowForms},
                                         TOldServer{"5.1.5", 0, ShowForms},
                                         TOldServer{"5.1.11", 1, MixedForms}),
                         [](const testing::TestParamInfo<TOldServer> &info) {
                             return QString(info.param.Version).replace('.', '_').toStdString();
                         });

} // namespace
