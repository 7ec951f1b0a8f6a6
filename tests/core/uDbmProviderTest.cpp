#include "core/uDbmProvider.h"
#include "core/uNetUtils.h"
#include "uRelayTransport.h"
#include "uServerProfile.h"
#include "uTcpProxy.h"
#include "uTestSshServer.h"

#include <gmock/gmock.h>

namespace {

using ::testing::ElementsAre;
using ::testing::MatchesRegex;

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
        profile.ConnectionType = ctSSHTunnel;
        profile.SSHSettings.HostName = "127.0.0.1";
        profile.SSHSettings.Port = 2222;
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

    TDbmProvider FProvider;
    std::vector<std::string> FMessages;
};

TEST_F(TProvider, OpensADottedAddressWithOneMessageAndOnlyOnce)
{
    FProvider.SetParams(Profile());
    FProvider.OpenConnection();
    EXPECT_THAT(FMessages, ElementsAre(OpeningMessage(Server().Port())));
    const QString session = Ask("SELECT CONNECTION_ID()");

    FProvider.OpenConnection();
    EXPECT_EQ(FMessages.size(), 1u);
    EXPECT_EQ(Ask("SELECT CONNECTION_ID()"), session);
}

TEST_F(TProvider, ResolvesANameFirst)
{
    TDbmConnectionProfile profile = Profile();
    profile.HostName = "localhost";
    FProvider.SetParams(profile);
    FProvider.OpenConnection();
    EXPECT_THAT(FMessages, ElementsAre("Resolving \"localhost\" IPv4 address...",
                                       OpeningMessage(Server().Port())));
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
    {"Port", [](TDbmConnectionProfile &p) { p.Port = 1; }, "server: \\(200[23]\\) .+"},
    {"Password", [](TDbmConnectionProfile &p) { p.Password = "wrong"; },
     "server: \\(1045\\) Access denied for user .+"},
    {"Database", [](TDbmConnectionProfile &p) { p.Database = "no_such_database"; },
     "server: \\(1049\\) Unknown database 'no_such_database'"},
    {"NeverSet", [](TDbmConnectionProfile &p) { p = {}; }, "server: .+"},
    {"TunnelHost",
     [](TDbmConnectionProfile &p) {
         p.ConnectionType = ctSSHTunnel;
         p.SSHSettings.HostName = "bad..gate";
     },
     "Cannot resolve IPv4 address\\."},
    {"TunnelUser",
     [](TDbmConnectionProfile &p) {
         p.ConnectionType = ctSSHTunnel;
         p.SSHSettings.HostName = "127.0.0.1";
     },
     "There is no user name for the SSH server\\."},
    {"NoSshServer",
     [](TDbmConnectionProfile &p) {
         p.ConnectionType = ctSSHTunnel;
         p.SSHSettings.HostName = "127.0.0.1";
         p.SSHSettings.Port = 1;
         p.SSHSettings.UserName = "somebody";
     },
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
    FProvider.Connection().LibraryConnection().ConnectionTimeout = 1;
    EXPECT_THAT(OpenError(), MatchesRegex("server: \\(20..\\) .+"));
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

TEST_F(TProvider, TheNextRunFindsAClosedSessionOpen)
{
    FProvider.SetParams(Profile());
    const QString session = Ask("SELECT CONNECTION_ID()");
    FProvider.CloseConnection();
    FProvider.CloseConnection();
    EXPECT_NE(Ask("SELECT CONNECTION_ID()"), session);
    EXPECT_EQ(FMessages.size(), 2u);
}

TEST_F(TProvider, ASetCharsetDropsTheSessionAndGoesWithIt)
{
    FProvider.SetParams(Profile());
    FProvider.OpenConnection();
    FProvider.SetCharset("latin1");
    EXPECT_FALSE(FProvider.Connection().Connected());
    EXPECT_EQ(Ask("SELECT @@character_set_client").toStdString(), "utf8mb4");
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
    profile.HostName = "localhost";
    profile.SSHSettings.HostName = "localhost";
    FProvider.SetParams(profile);
    FProvider.OpenConnection();
    EXPECT_EQ(FMessages[0], "Resolving \"localhost\" IPv4 address...");
    EXPECT_EQ(Log().Connects.first().HostName.toStdString(), "127.0.0.1");
    EXPECT_EQ(Log().DestHost.toStdString(), "localhost");
}

TEST_F(TTunnelledProvider, AFailedConnectLeavesTheTunnelForTheNextTry)
{
    TDbmConnectionProfile profile = TunnelProfile();
    profile.Password = "wrong";
    FProvider.SetParams(profile);
    EXPECT_THAT(OpenError(), MatchesRegex("server: \\(1045\\) .+"));
    EXPECT_EQ(Log().Connected, 1);
    OpenError();
    EXPECT_EQ(Log().Connects.size(), 1);

    FProvider.SetParams(TunnelProfile());
    EXPECT_EQ(Log().Connected, 0);
    EXPECT_EQ(OpenError(), "no error");
}

TEST_F(TTunnelledProvider, ABrokenTunnelIsReopenedByTheNextRun)
{
    FProvider.OpenConnection();
    const QString session = Ask("SELECT CONNECTION_ID()");
    FProvider.Command().ExecScript("USE mysql");
    Log().Last->Break();
    EXPECT_NE(Ask("SELECT CONNECTION_ID()"), session);
    EXPECT_EQ(Ask("SELECT DATABASE()"), "mysql");
    EXPECT_EQ(Log().Connects.size(), 2);
    EXPECT_EQ(Log().Connected, 1);
}

TEST_F(TProvider, ATunnelThroughARealSshServerIsRepaired)
{
    TTestSshServer server;
    TDbmConnectionProfile profile = Profile();
    profile.ConnectionType = ctSSHTunnel;
    profile.SSHSettings.HostName = "127.0.0.1";
    profile.SSHSettings.Port = server.Port();
    profile.SSHSettings.UserName = server.User();
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
