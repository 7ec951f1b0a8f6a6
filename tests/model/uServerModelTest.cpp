#include "uModelFixture.h"

#include "support/uException.h"

namespace {

class TServerModelTest : public TModelTest
{
protected:
    void SetUp() override
    {
        TModelTest::SetUp();
        if (!IsSkipped())
            User = "u_" + Name();
    }
    void TearDown() override
    {
        if (!User.isEmpty())
            for (const char *host : {"%", "localhost"})
                Server().Exec("DROP USER IF EXISTS '" + User + "'@'" + host + "'");
        TModelTest::TearDown();
    }
    QString Grants(const QString &host = "%") const
    {
        QStringList lines;
        for (const QStringList &row :
             Server().Rows("SHOW GRANTS FOR '" + User + "'@'" + host + '\''))
            lines.append(row.first());
        return lines.join('\n');
    }
    TDbmUserPrivilegesList::TItemPtr Account(const QString &host = "%")
    {
        TDbmUserPrivilegesList::TItemPtr item;
        EXPECT_TRUE(Manager->UsersPrivileges().TryGetByNameAndHost(User, host, item));
        return item;
    }

    QString User;
};

TEST_P(TServerModelTest, AccountsLiveThroughOperations)
{
    TDbmUserPrivilegesEntity entity;
    entity.UserName = User;
    entity.HostName = "%";
    entity.Privileges = {privSelect, privCreateTemporaryTables, privGrantOption};
    entity.MaxQueriesPerHour = 77;
    Manager->Operations().CreateUser(Manager->UsersPrivileges(), entity, "secret");
    EXPECT_TRUE(Account()->Entity().HavePassword);
    EXPECT_EQ(Account()->Entity().Privileges, entity.Privileges);
    EXPECT_EQ(Account()->Entity().MaxQueriesPerHour, 77);
    EXPECT_EQ(Account()->GetUserNameDisplayString(), User + "@%");

    // What the model does not know of the account.
    Exec("CREATE TABLE t (a int)");
    for (const QString &grant :
         {QString("GRANT INSERT, UPDATE ON `" + Name() + "`.* TO "),
          QString("GRANT SELECT (a) ON `" + Name() + "`.t TO "),
          QString(IsMySQL() ? "GRANT BACKUP_ADMIN ON *.* TO " : "GRANT BINLOG ADMIN ON *.* TO ")})
        Server().Exec(grant + '\'' + User + "'@'%'");
    if (!IsMySQL()) // which has no such limit
        Server().Exec("ALTER USER '" + User + "'@'%' WITH MAX_USER_CONNECTIONS -1");
    const QString before = Grants();
    Manager->UsersPrivileges().RequestProcess();
    Manager->Operations().UpdateUser(*Account(), Account()->Entity(), false, {});
    EXPECT_EQ(Grants().toStdString(), before.toStdString());

    TDbmUserPrivilegesEntity edited = Account()->Entity();
    edited.Privileges = {privSelect, privInsert};
    edited.MaxUpdatesPerHour = 5;
    edited.MaxConnectionsPerHour = 6;
    edited.MaxUserConnections = 7;
    Manager->Operations().UpdateUser(*Account(), edited, true, "");
    EXPECT_FALSE(Account()->Entity().HavePassword);
    EXPECT_EQ(Account()->Entity().Privileges, edited.Privileges);
    EXPECT_EQ(Server().Value("SELECT CONCAT_WS(' ', max_questions, max_updates, max_connections,"
                             " max_user_connections) FROM mysql.user WHERE user = '" +
                             User + '\''),
              "77 5 6 7");
    EXPECT_TRUE(Grants().contains("INSERT, UPDATE ON `" + Name() + "`.*"));
    edited.HostName = "localhost";
    Manager->Operations().UpdateUser(*Account(), edited, false, {});
    EXPECT_TRUE(Grants("localhost").contains("SELECT (`a`) ON `" + Name() + "`.`t`"));
    Manager->Operations().DeleteUser(*Account("localhost"));
    TDbmUserPrivilegesList::TItemPtr item;
    EXPECT_FALSE(Manager->UsersPrivileges().TryGetByNameAndHost(User, "localhost", item));
}

TEST_P(TServerModelTest, ARoleIsNoAccount)
{
    if (IsMySQL())
        GTEST_SKIP() << "roles are locked accounts there";
    const QString role = "role_" + Name();
    Server().Exec("CREATE ROLE `" + role + '`');
    TDbmUserPrivilegesList::TItemPtr item;
    ASSERT_TRUE(Manager->UsersPrivileges().TryGetByNameAndHost(role, "", item));
    EXPECT_TRUE(item->Entity().IsRole);
    EXPECT_THROW(Manager->Operations().UpdateUser(*item, item->Entity(), false, {}), EException);
    Manager->Operations().DeleteUser(*item);
    EXPECT_FALSE(Manager->UsersPrivileges().TryGetByNameAndHost(role, "", item));
}

TEST_P(TServerModelTest, RightsBelowTheGlobalLevel)
{
    Exec("CREATE TABLE t (a int)");
    Exec("CREATE PROCEDURE p () SELECT 1");
    Server().Exec("CREATE USER '" + User + "'@'%'");
    const TDbmFormatters &formatters = Manager->Formatters();
    const auto run = [&](const QString &script) { Manager->Command().ExecScript(script); };

    TDbmDatabasePrivilegesEntity database;
    database.User = User;
    database.Host = "%";
    database.Database = Name();
    database.Privs = {dpSelect, dpGrant, dpLockTable};
    run(formatters.DatabasesPrivileges().FormatCreate(database));
    auto databases = Manager->Commands().DatabasesPrivileges().ExecuteSelect(User, "%");
    ASSERT_EQ(databases.size(), 1);
    EXPECT_EQ(databases.first().Privs, database.Privs);
    run(formatters.DatabasesPrivileges().FormatUpdate(database, {dpSelect, dpEvent}));
    database.Privs = Manager->Commands().DatabasesPrivileges().ExecuteSelect(User, "%")[0].Privs;
    EXPECT_EQ(database.Privs, TDbmDatabasePrivs({dpSelect, dpEvent}));
    EXPECT_EQ(formatters.DatabasesPrivileges().FormatUpdate(database, database.Privs), "");
    run(formatters.DatabasesPrivileges().FormatDelete(database));

    TDbmTablePrivilegesEntity table;
    table.User = User;
    table.Host = "%";
    table.Database = Name();
    table.Table = "t";
    table.Privs = {tpCreateView, tpGrant};
    run(formatters.TablesPrivileges().FormatCreate(table));
    auto tables = Manager->Commands().TablesPrivileges().ExecuteSelect(User, "%");
    ASSERT_EQ(tables.size(), 1);
    EXPECT_EQ(tables.first().Privs, table.Privs);
    run(formatters.TablesPrivileges().FormatDelete(table));

    TDbmRoutinePrivilegesEntity routine;
    routine.User = User;
    routine.Host = "%";
    routine.Database = Name();
    routine.Routine = "p";
    routine.Privs = {rpExecute, rpAlterRoutine};
    run(formatters.RoutinesPrivileges().FormatCreate(routine));
    EXPECT_TRUE(Grants().contains("ON PROCEDURE `" + Name() + "`.`p`"));
    run(formatters.RoutinesPrivileges().FormatDelete(routine));
    EXPECT_EQ(Grants().count('\n'), 0);
    // Deliberate: this read is refused by the server.
    EXPECT_TRUE(Manager->Commands().RoutinesPrivileges().ExecuteSelect(User, "%").isEmpty());
    EXPECT_EQ(Failures.size(), 1);
    Failures.clear();
}

TEST_P(TServerModelTest, ListsOfTheServer)
{
    TDbmEngineList::TItemPtr engine;
    ASSERT_TRUE(Manager->Engines().TryGetDefaultEngine(engine));
    EXPECT_EQ(engine->Entity().EngineName, "InnoDB");
    EXPECT_TRUE(engine->Entity().Options.Contains(eoTransactions));
    EXPECT_GT(Manager->Plugins().Count(), 3);
    TDbmCollationList::TItemPtr collation;
    ASSERT_TRUE(Manager->Collations().TryGetByName("utf8mb4_bin", collation));
    EXPECT_EQ(collation->Entity().Charset, "utf8mb4");
    TDbmStatusList::TItemPtr status;
    ASSERT_TRUE(Manager->GlobalStatus().TryGetByName("Uptime", status));
    EXPECT_GT(Manager->SessionStatus().Count(), 100);
    EXPECT_GT(Manager->GlobalStatus().CalcAllQueries(), 0);
    TDbmVariableList::TItemPtr variable;
    ASSERT_TRUE(Manager->GlobalVariables().TryGetByName("wait_timeout", variable));
    EXPECT_EQ(variable->GetComment(), "08:00:00");
    EXPECT_GT(Manager->SessionVariables().Count(), 100);
}

TEST_P(TServerModelTest, ThreadsAreKilledAndKeepTheirItems)
{
    const auto other = NewManager();
    const auto idOf = [](TDbmManager &manager) {
        return manager.Command()
            .ExecQuery("SELECT CONNECTION_ID()")
            .Query->Fields()[0]
            ->Value()
            .ToInt();
    };
    const qint64 own = idOf(*Manager); // other tests come and go on the same server
    const qint64 victim = idOf(*other);
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
    EXPECT_EQ(TDbmVariableCommentFormatter::Format("Innodb_autoextend_increment", "8"), "8.0 MB");
    EXPECT_EQ(TDbmVariableCommentFormatter::Format("max_join_size", "x"), "");
    EXPECT_EQ(TDbmVariableCommentFormatter::Format("max_join_size", "18446744073709551615"),
              "16.0 EB");
    EXPECT_EQ(TDbmVariableCommentFormatter::Format("sql_select_limit", "18446744073709551616"), "");
    EXPECT_EQ(TDbmStatusUtils::FormatComment("com_select", "10000000000000000000"),
              "10,000,000,000,000,000,000");
    EXPECT_EQ(TDbmStatusUtils::FormatComment("com_select", "-1"), "-1");
    EXPECT_EQ(TDbmStatusUtils::FormatComment("Bytes_sent", "1536"), "1.5 KB");
    EXPECT_EQ(TDbmStatusUtils::FormatComment("com_select", "1234567"), "1,234,567");
    EXPECT_EQ(TDbmStatusUtils::FormatComment("uptime", "61"), "00:01:01");
    EXPECT_EQ(TDbmStatusUtils::FormatComment("com_select", "ON"), "");
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
