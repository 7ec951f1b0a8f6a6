#include "uTestDatabase.h"
#include "uTestLoop.h"

#include <csignal>
#include <fcntl.h>
#include <mysql.h>
#include <set>
#include <stdexcept>
#include <sys/wait.h>
#include <unistd.h>

namespace {

bool IsAlive(qint64 pid)
{
    return kill(pid_t(pid), 0) == 0;
}

// A test program that dies at the worst moment: its server runs and nobody says goodbye.
qint64 PidOfServerOfCrashedProgram()
{
    int ends[2];
    if (pipe2(ends, O_CLOEXEC))
        throw std::runtime_error("pipe");
    const pid_t program = fork();
    if (program == 0) {
        const std::unique_ptr<TTestServer> server = TTestServer::Start();
        const qint64 pid = server->Pid();
        if (write(ends[1], &pid, sizeof pid) == sizeof pid)
            raise(SIGKILL);
        _exit(1);
    }
    close(ends[1]);
    qint64 pid = 0;
    const ssize_t got = read(ends[0], &pid, sizeof pid);
    close(ends[0]);
    waitpid(program, nullptr, 0);
    return got == sizeof pid ? pid : 0;
}

void CheckAccountsAndTls(const TTestServer &server)
{
    EXPECT_EQ(server.Value("SELECT CURRENT_USER()"), "root@localhost");
    MYSQL *second = mysql_init(nullptr);
    const my_bool enforced = 1;
    mysql_optionsv(second, MYSQL_OPT_SSL_ENFORCE, &enforced);
    EXPECT_TRUE(mysql_real_connect(
        second, qPrintable(server.Host()), qPrintable(server.SecondUser()),
        qPrintable(server.SecondPassword()), nullptr, unsigned(server.Port()), nullptr, 0))
        << mysql_error(second);
    EXPECT_NE(mysql_get_ssl_cipher(second), nullptr);
    mysql_close(second);
}

} // namespace

class TTestServerTest : public TServerTest
{};

TEST_F(TTestServerTest, AnswersWithWhatWasAsked)
{
    Exec("CREATE TABLE t (a INT, b VARCHAR(20), c VARBINARY(9)); INSERT INTO t VALUES "
         "(1, 'zażółć 日本', x'00FF'), (2, '', NULL)");
    EXPECT_EQ(Rows("SELECT a, b FROM t ORDER BY a"),
              (QList<QStringList>{{"1", QString::fromUtf8("zażółć 日本")}, {"2", ""}}));
    EXPECT_EQ(Bytes("SELECT c FROM t"), QByteArray::fromHex("00ff"));
    EXPECT_TRUE(Value("SELECT c FROM t WHERE a = 2").isNull());
    EXPECT_FALSE(Value("SELECT b FROM t WHERE a = 2").isNull());
    EXPECT_EQ(Value("SELECT DATABASE()"), Database().Name());
}

TEST_F(TTestServerTest, TellsErrorsOfEveryStatement)
{
    EXPECT_THROW(Exec("SELECT 1; SELECT nothing_like_this"), std::runtime_error);
    EXPECT_THROW(Server().Exec("SELECT 1", "no_such_database"), std::runtime_error);
    EXPECT_THROW(Server().Stop(), std::runtime_error) << "others still need the shared server";
}

TEST_F(TTestServerTest, DropsTheDatabaseAtItsEnd)
{
    std::set<QString> names;
    for (int i = 0; i < 2; ++i) {
        const TTestDatabase database;
        names.insert(database.Name());
        EXPECT_EQ(Server().Rows("SHOW DATABASES LIKE '" + database.Name() + "'").size(), 1);
    }
    for (const QString &name : names)
        EXPECT_EQ(Server().Rows("SHOW DATABASES LIKE '" + name + "'").size(), 0);
    EXPECT_EQ(names.size(), 2u);
}

TEST_F(TTestServerTest, SessionsAreKilledFromEachOther)
{
    TTestSession victim(Server());
    Exec(QStringLiteral("KILL %1").arg(victim.Id()));
    EXPECT_THROW(victim.Exec("SELECT 1"), std::runtime_error);
}

TEST_F(TTestServerTest, OffersAccountsAndTls)
{
    CheckAccountsAndTls(Server());
}

TEST(TMySqlServerTest, OffersAccountsAndTls)
{
    SKIP_WITHOUT_MYSQL9();
    CheckAccountsAndTls(*TTestServer::MySql9());
    EXPECT_GE(TTestServer::MySql9()->Value("SELECT VERSION()").section('.', 0, 0).toInt(), 9);
    const TTestDatabase database(*TTestServer::MySql9());
    EXPECT_EQ(database.Value("SELECT DATABASE()"), database.Name());
}

TEST(TPrivateServerTest, KeepsPortAndDataOverItsStops)
{
    const std::unique_ptr<TTestServer> server = TTestServer::Start({"--version=5.0.95-log"});
    EXPECT_EQ(server->Value("SELECT VERSION()"), "5.0.95-log");
    server->Exec("CREATE DATABASE kept");
    const int port = server->Port();
    for (void (TTestServer::*end)() : {&TTestServer::Stop, &TTestServer::Kill}) {
        const qint64 pid = server->Pid();
        (server.get()->*end)();
        EXPECT_FALSE(IsAlive(pid));
        EXPECT_THROW(server->Exec("SELECT 1"), std::runtime_error);
        server->Restart();
        EXPECT_EQ(server->Port(), port);
        EXPECT_EQ(server->Rows("SHOW DATABASES LIKE 'kept'").size(), 1);
    }
}

TEST(TPrivateServerTest, SaysWhyItDoesNotStart)
{
    try {
        TTestServer::Start({"--no-such-option"});
        FAIL() << "started";
    } catch (const std::runtime_error &e) {
        EXPECT_NE(std::string(e.what()).find("no-such-option"), std::string::npos) << e.what();
    }
}

TEST(TPrivateServerTest, DiesWithACrashedProgram)
{
    const qint64 pid = PidOfServerOfCrashedProgram();
    ASSERT_GT(pid, 0);
    EXPECT_TRUE(TTestLoop::RunUntil([pid] { return !IsAlive(pid); }));
}
