#include "uModelFixture.h"

#include "sql/uDbmSqlValueUtils.h"
#include "support/uException.h"

namespace {

class TAccountModelTest : public TModelTest
{
protected:
    void SetUp() override
    {
        TModelTest::SetUp();
        if (FDatabase)
            User = "o'u\\_" + Name();
    }
    void TearDown() override
    {
        if (FDatabase)
            for (const char *host : {"'%'", "'localhost'"})
                Server().Exec("DROP USER IF EXISTS " + Quoted(User) + '@' + host);
        TModelTest::TearDown();
    }
    static QString Quoted(const QString &text)
    {
        return TDbmSqlValueUtils::FormatString(text, true);
    }
    QString Grants(const QString &host = "'%'") const
    {
        QStringList lines;
        for (const QStringList &row : Server().Rows("SHOW GRANTS FOR " + Quoted(User) + '@' + host))
            lines.append(row.first());
        return lines.join('\n');
    }
    TDbmUserPrivilegesList::TItemPtr Account(const QString &host = "%")
    {
        TDbmUserPrivilegesList::TItemPtr item;
        EXPECT_TRUE(Manager->UsersPrivileges().TryGetByNameAndHost(User, host, item));
        return item;
    }
    TDbmUserPrivilegesEntity Entity(const TDbmPrivileges &privileges) const
    {
        TDbmUserPrivilegesEntity entity;
        entity.UserName = User;
        entity.HostName = "%";
        entity.Privileges = privileges;
        return entity;
    }
    bool MayLogIn(const QString &password) const { return MayLogIn(Server(), password); }
    bool MayLogIn(const TTestServer &server, const QString &password) const
    {
        TDbmConnectionProfile profile = ServerProfile(server);
        profile.UserName = User;
        profile.Password = password;
        TDbmProvider provider;
        provider.SetParams(profile);
        try {
            provider.OpenConnection();
            return true;
        } catch (const EDacMySqlError &) {
            return false;
        }
    }

    QString User;
};

TEST_P(TAccountModelTest, PasswordsAreWhatWasTyped)
{
    const QStringList passwords{"plain", "it's", "a\\b", "\"'\\';", "tab\tä"};
    Manager->Operations().CreateUser(Manager->UsersPrivileges(), Entity({}), passwords.first());
    for (const QString &password : passwords) {
        Manager->Operations().UpdateUser(*Account(), Account()->Entity(), true, password);
        EXPECT_TRUE(MayLogIn(password)) << password.toStdString();
        EXPECT_FALSE(MayLogIn(password + '\\')) << password.toStdString();
    }
    Manager->Operations().UpdateUser(*Account(), Account()->Entity(), true, "");
    EXPECT_TRUE(MayLogIn(""));
}

TEST_P(TAccountModelTest, APasswordIsThereFromTheStartWhereTheServerWantsOne)
{
    // A server of its own: the demand counts for every account of a server, also those of tests
    // that run at the same time.
    const auto server = TTestServer::Start({}, IsMySQL() ? skMySQL : skMariaDB);
    Manager->SetParams(ServerProfile(*server));
    Manager->Connect();
    server->Exec(IsMySQL() ? "INSTALL COMPONENT 'file://component_validate_password'"
                           : "INSTALL SONAME 'simple_password_check'");
    const auto create = [&](const QString &password) {
        Manager->Operations().CreateUser(Manager->UsersPrivileges(), Entity({}), password);
    };
    EXPECT_THROW(create("poor"), EDacMySqlError);
    EXPECT_NO_THROW(create("Rich'1, and long"));
    EXPECT_TRUE(MayLogIn(*server, "Rich'1, and long"));
}

TEST_P(TAccountModelTest, AnAccountThatIsGoneIsNotMadeAnew)
{
    Manager->Operations().CreateUser(Manager->UsersPrivileges(), Entity({}), "x");
    const auto account = Account();
    Server().Exec("DROP USER " + Quoted(User) + "@'%'");
    EXPECT_THROW(Manager->Operations().UpdateUser(*account, Entity({privSelect}), false, {}),
                 EException);
    EXPECT_EQ(Server().Value("SELECT COUNT(*) FROM mysql.user WHERE user = " + Quoted(User)), "0");
}

TEST_P(TAccountModelTest, AccountsLiveThroughOperations)
{
    User = "u_" + Name();
    TDbmUserPrivilegesEntity entity =
        Entity({privSelect, privCreateTemporaryTables, privGrantOption});
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

TEST_P(TAccountModelTest, RightsBelowTheGlobalLevel)
{
    User = "u_" + Name();
    Exec("CREATE PROCEDURE p () SELECT 1");
    Server().Exec("CREATE USER '" + User + "'@'%'");
    const TDbmFormatters &formatters = Manager->Formatters();
    const auto run = [&](const QString &script) { Manager->Command().ExecScript(script); };
    const auto fill = [&](auto &entity) {
        entity.User = User;
        entity.Host = "%";
        entity.Database = Name();
    };

    TDbmDatabasePrivilegesEntity database;
    fill(database);
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

    TDbmRoutinePrivilegesEntity routine;
    fill(routine);
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

INSTANTIATE_ON_BOTH_SERVERS(TAccountModelTest);

} // namespace
