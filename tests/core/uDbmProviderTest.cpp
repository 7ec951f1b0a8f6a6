#include "core/uDbmProvider.h"
#include "uRelayTransport.h"
#include "uServerProfile.h"
#include "uTestSshServer.h"

#include <gmock/gmock.h>

namespace {

using ::testing::ElementsAre;
using ::testing::MatchesRegex;

const QString ChangedState = "USE mysql;\nSET NAMES cp1251;\nSET autocommit = 0;\n";

void Tunnel(TDbmConnectionProfile &profile, const QString &host, quint16 port,
            const QString &user = {})
{
    profile.ConnectionType = ctSSHTunnel;
    profile.SSHSettings.HostName = host;
    profile.SSHSettings.Port = port;
    profile.SSHSettings.UserName = user;
}

class TProvider : public TServerTest
{
protected:
    TProvider()
    {
        FProvider.SetOnConnectionMessage([this](TDbmProvider *, const QString &message) {
            FMessages.push_back(message.toStdString());
        });
    }

    TDbmConnectionProfile Profile() { return ServerProfile(Server()); }
    TDbmConnectionProfile TunnelProfile()
    {
        TDbmConnectionProfile profile = Profile();
        Tunnel(profile, "127.0.0.1", 2222);
        return profile;
    }
    std::string OpeningMessage(int port) const
    {
        return "Opening connection to 127.0.0.1:" + std::to_string(port) + "...";
    }
    /// What the server of the session answers, by the command.
    QString Ask(const QString &sql)
    {
        QString value;
        FProvider.Command().ExecuteQuery(
            sql, [&](TDataSet *query) { value = query->FieldAt(0).AsString(); });
        return value;
    }
    /// The message with which opening fails, and the text of an EDacMySqlError's statement.
    std::string OpenError()
    {
        try {
            FProvider.OpenConnection();
        } catch (const EDacMySqlError &e) {
            EXPECT_TRUE(e.CommandText().isEmpty());
            return "server: " + e.Message().toStdString();
        } catch (const EException &e) {
            return e.Message().toStdString();
        }
        return "no error";
    }

    /// Database, character set and autocommit of the session.
    std::string State()
    {
        return Ask("SELECT CONCAT_WS(' ', DATABASE(), @@character_set_client, @@autocommit + 0)")
            .toStdString();
    }

    TDbmProvider FProvider;
    std::vector<std::string> FMessages;
};

TEST_F(TProvider, OpensADottedAddressWithOneMessageAndOnlyOnce)
{
    FProvider.SetParams(Profile());
    FProvider.OpenConnection();
    const QString session = Ask("SELECT CONNECTION_ID()");
    FProvider.OpenConnection();
    EXPECT_THAT(FMessages, ElementsAre(OpeningMessage(Server().Port())));
    EXPECT_EQ(Ask("SELECT CONNECTION_ID()"), session);
    FProvider.CloseConnection();
    FProvider.CloseConnection();
    EXPECT_NE(Ask("SELECT CONNECTION_ID()"), session);
    EXPECT_EQ(FMessages.size(), 2u);
}

struct TBadProfileRow
{
    const char *Name;
    void (*Spoil)(TDbmConnectionProfile &profile);
    const char *Error; // a regular expression
};

const TBadProfileRow BadProfiles[] = {
    {"Host", [](TDbmConnectionProfile &p) { p.HostName = "bad..name"; },
     "Cannot resolve IPv4 address\\."},
    {"Port", [](TDbmConnectionProfile &p) { p.Port = 1; },
     "server: \\(2002\\) Can't connect to server on '127\\.0\\.0\\.1' \\(11[15]\\)"},
    {"NoPort", [](TDbmConnectionProfile &p) { p.Port = 65536; },
     "server: \\(2003\\) Can't connect to server on '127\\.0\\.0\\.1': there is no port "
     "65536\\."},
    {"Password", [](TDbmConnectionProfile &p) { p.Password = "wrong"; },
     "server: \\(1045\\) Access denied for user 'root'@'localhost' \\(using password: YES\\)"},
    {"Database", [](TDbmConnectionProfile &p) { p.Database = "no_such_database"; },
     "server: \\(1049\\) Unknown database 'no_such_database'"},
    {"TunnelUser", [](TDbmConnectionProfile &p) { Tunnel(p, "127.0.0.1", 22); },
     "There is no user name for the SSH server\\."},
    {"NoSshServer", [](TDbmConnectionProfile &p) { Tunnel(p, "127.0.0.1", 1, "somebody"); },
     "Cannot connect to the SSH server 127\\.0\\.0\\.1:.+"},
};

TEST_F(TProvider, TellsWhatIsWrongWithAProfileAndTakesTheNextOne)
{
    for (const TBadProfileRow &row : BadProfiles) {
        TDbmConnectionProfile profile = Profile();
        row.Spoil(profile);
        FProvider.SetParams(profile);
        EXPECT_THAT(OpenError(), MatchesRegex(row.Error)) << row.Name;
        EXPECT_FALSE(FProvider.Connection().Connected()) << row.Name;

        FProvider.SetParams(Profile());
        EXPECT_EQ(OpenError(), "no error") << row.Name;
    }
}

TEST_F(TProvider, GivesUpOnAServerThatNeverAnswers)
{
    TBlackHole hole;
    FProvider.SetParams(ServerProfile(Server(), hole.Port()));
    int &timeout = FProvider.Connection().LibraryConnection().ConnectionTimeout;
    EXPECT_EQ(timeout, 15);
    timeout = 1;
    EXPECT_EQ(OpenError(), "server: (2013) Lost connection to server at 'handshake: reading "
                           "initial communication packet', system error: 110");
    FProvider.SetParams(Profile());
    EXPECT_EQ(OpenError(), "no error");
}

TEST_F(TProvider, ANewProfileClosesTheOldSession)
{
    TDbmConnectionProfile profile = Profile();
    FProvider.SetParams(profile);
    FProvider.OpenConnection();
    profile.Database = Database().Name();
    FProvider.SetParams(profile);
    EXPECT_FALSE(FProvider.Connection().Connected());
    EXPECT_TRUE(FProvider.IsDatabaseConnection());
    EXPECT_EQ(Ask("SELECT DATABASE()"), Database().Name());
    EXPECT_EQ(FProvider.ConnectionProfile(), profile);
}

TEST_F(TProvider, ASetCharsetDropsTheSessionAndGoesWithIt)
{
    FProvider.SetParams(Profile());
    FProvider.OpenConnection();
    FProvider.SetCharset("latin1");
    EXPECT_FALSE(FProvider.Connection().Connected());
    EXPECT_EQ(Ask("SELECT @@character_set_client").toStdString(), "utf8mb4");
}

TEST_F(TProvider, NothingOfALostSessionMeetsANewProfile)
{
    Exec("CREATE TABLE t (a INT) ENGINE = InnoDB");
    FProvider.SetParams(Profile());
    FProvider.Command().ExecScript(ChangedState + "INSERT INTO " + Database().Name() +
                                   ".t VALUES (1)");
    const QString id = Ask("SELECT CONNECTION_ID()");
    Exec("KILL " + id);
    while (Value("SELECT COUNT(*) FROM information_schema.processlist WHERE id = " + id) != "0")
        ;
    // The transaction keeps the loss from being repaired at once.
    EXPECT_THROW(Ask("SELECT 1"), EDacMySqlError);
    FProvider.SetParams(Profile());
    EXPECT_EQ(State(), "utf8mb4 1");
}

class TTunnelledProvider : public TProvider
{
protected:
    TTunnelledProvider() { FProvider.SetParams(TunnelProfile()); }
    ~TTunnelledProvider() override { FProvider.CloseConnection(); }

    TRelayTransport::TLog &Log() { return TRelayTransport::Log(); }

    TRelayTransport::TInstalled FInstalled;
};

TEST_F(TTunnelledProvider, ConnectsToTheTunnelsOwnPort)
{
    FProvider.OpenConnection();
    ASSERT_EQ(Log().SourcePorts.size(), 1);
    const int port = Log().SourcePorts.first();
    EXPECT_GE(port, 33825);
    EXPECT_THAT(FMessages,
                ElementsAre("Opening SSH tunnel to 127.0.0.1:2222...", OpeningMessage(port)));
    EXPECT_EQ(Log().DestPort, Server().Port());
    EXPECT_EQ(Ask("SELECT 1").toStdString(), "1");
}

TEST_F(TTunnelledProvider, LeavesTheServersNameToTheTunnel)
{
    TDbmConnectionProfile profile = TunnelProfile();
    profile.HostName = profile.SSHSettings.HostName = "localhost";
    FProvider.SetParams(profile);
    FProvider.OpenConnection();
    EXPECT_EQ(FMessages[0], "Resolving \"localhost\" IPv4 address...");
    EXPECT_EQ(Log().Connects.first().HostName.toStdString(), "127.0.0.1");
    EXPECT_EQ(Log().DestHost.toStdString(), "localhost");
}

TEST_F(TTunnelledProvider, ABrokenTunnelIsReopenedWithWhatTheSessionHad)
{
    FProvider.Command().ExecScript(ChangedState);
    const QString session = Ask("SELECT CONNECTION_ID()");
    Log().Last->Break();
    EXPECT_EQ(State(), "mysql cp1251 0");
    EXPECT_NE(Ask("SELECT CONNECTION_ID()"), session);
    EXPECT_EQ(Log().Connects.size(), 2);
    EXPECT_EQ(Log().Connected, 1);
}

TEST_F(TTunnelledProvider, ATransactionThatGoesWithItsTunnelIsAnErrorOnce)
{
    Exec("CREATE TABLE t (a INT) ENGINE = InnoDB");
    FProvider.Command().ExecScript("START TRANSACTION;\nINSERT INTO " + Database().Name() +
                                   ".t VALUES (1)");
    Log().Last->Break();
    EXPECT_EQ(OpenError(), "server: (2013) Lost connection to server during a transaction.");
    EXPECT_EQ(OpenError(), "no error");
    EXPECT_EQ(Value("SELECT COUNT(*) FROM t"), "0");
}

TEST_F(TTunnelledProvider, AChangeOfARowRepairsTheTunnelFirst)
{
    Exec("CREATE TABLE t (a INT PRIMARY KEY, b INT)");
    Exec("INSERT INTO t VALUES (1, 1)");
    FProvider.OpenConnection();
    const auto query = FProvider.Connection().CreateDataset();
    FProvider.Connection().ExecuteDataset("SELECT * FROM " + Database().Name() + ".t", *query);
    Log().Last->Break(); // the change reads the key as well
    query->Edit();
    query->FieldAt(1).SetValue(7);
    query->Post();
    EXPECT_EQ(Value("SELECT b FROM t"), "7");
    EXPECT_EQ(Log().Connects.size(), 2);
}

TEST_F(TProvider, ATunnelThroughARealSshServerIsRepaired)
{
    TTestSshServer server;
    TDbmConnectionProfile profile = Profile();
    Tunnel(profile, "127.0.0.1", server.Port(), server.User());
    profile.SSHSettings.Authentication = taPublicKey;
    profile.SSHSettings.PrivateKey = server.NewKey({"-t", "rsa"});
    FProvider.SetParams(profile);
    FProvider.Command().ExecScript("USE mysql");
    EXPECT_EQ(Ask("SELECT LENGTH(REPEAT('x', 3000000))"), "3000000");
    server.Kill();
    server.Start();
    // The statement that meets the loss may be its victim; the next one is not.
    try {
        Ask("SELECT 1");
    } catch (const EException &) {
    }
    EXPECT_EQ(Ask("SELECT DATABASE()"), "mysql");
    FProvider.CloseConnection();
}

} // namespace
