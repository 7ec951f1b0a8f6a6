#include "uClientTools.h"
#include "uTcpProxy.h"

#include <gmock/gmock.h>

namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

/// A connection through a proxy, whose loss is answered as the layers above answer it.
class TLostConnection : public TClientTest
{
protected:
    TLostConnection() : FProxy(Server().Host(), Server().Port())
    {
        FConnection.Server = FProxy.Host();
        FConnection.Port = FProxy.Port();
        FConnection.SetOnConnectionLost(
            [this](TMyConnection *, TConnLostCause cause, TRetryMode &mode) {
                FCauses.push_back(cause);
                mode = FMode;
            });
        FConnection.Connect();
    }

    void Kill()
    {
        const QString id = QString::fromStdString(Ask("SELECT CONNECTION_ID()"));
        Exec("KILL " + id);
        while (Value("SELECT COUNT(*) FROM information_schema.processlist WHERE id = " + id) != "0")
            ;
    }
    EMyError Lose(const QString &sql = "SELECT 1")
    {
        Kill();
        return ErrorOf([&] { FConnection.Execute(sql); });
    }

    TTcpProxy FProxy;
    TRetryMode FMode = rmReconnectExecute;
    std::vector<TConnLostCause> FCauses;
};

TEST_F(TLostConnection, IsToldByItsCodeWhicheverWayItIsLost)
{
    const std::function<void()> ways[] = {[this] { Kill(); }, [this] { FProxy.Cut(); },
                                          [this] {
                                              FConnection.Execute("SET wait_timeout = 1");
                                              Value("SELECT SLEEP(2.5)");
                                          }};
    for (const auto &lose : ways) {
        lose();
        const EMyError error = ErrorOf([&] { FConnection.Execute("SELECT 1"); });
        EXPECT_TRUE(error.IsLostConnection()) << error.ErrorCode() << error.what();
        EXPECT_TRUE(error.CanRepeat());
        EXPECT_FALSE(FConnection.Connected());
        EXPECT_EQ(Ask("SELECT 1"), "1");
    }
    EXPECT_THAT(FCauses, ElementsAre(clExecute, clExecute, clExecute));
}

TEST_F(TLostConnection, OnMySqlIsToldByTheSameCodes)
{
    SKIP_WITHOUT_MYSQL9();
    TTestServer &server = *TTestServer::MySql9();
    TMyConnection connection;
    Aim(connection, server);
    connection.SetOnConnectionLost(
        [](TMyConnection *, TConnLostCause, TRetryMode &mode) { mode = rmReconnectExecute; });
    for (const bool idle : {false, true}) {
        TMyQuery query(&connection);
        query.SetSQL("SELECT CONNECTION_ID()");
        query.Execute();
        if (idle) {
            connection.Execute("SET wait_timeout = 1");
            server.Value("SELECT SLEEP(2.5)");
        } else {
            server.Exec("KILL " + query.FieldAt(0).AsString());
        }
        const EMyError error = ErrorOf([&] { connection.Execute("SELECT 1"); });
        EXPECT_TRUE(error.IsLostConnection() && error.CanRepeat())
            << error.ErrorCode() << error.what();
        connection.Execute("SELECT 1");
    }
}

TEST_F(TLostConnection, AnotherWayToTheServerKeepsWhatTheLostOneHad)
{
    TTestDatabase other;
    FConnection.Execute("USE `" + other.Name() + '`');
    FConnection.Drop();
    EXPECT_FALSE(FConnection.Connected());
    FConnection.Drop(); // is no second loss
    FConnection.SetAddress(Server().Host(), Server().Port());
    EXPECT_EQ(Ask("SELECT DATABASE()"), other.Name().toStdString());
    FConnection.Drop();
    FConnection.Port = FProxy.Port();
    EXPECT_EQ(Ask("SELECT DATABASE()"), Database().Name().toStdString());
}

TEST_F(TLostConnection, OtherParametersAndAnOwnDisconnectStartAfresh)
{
    TTestDatabase other;
    FConnection.Execute("USE `" + other.Name() + '`');
    Lose();
    FConnection.Disconnect();
    EXPECT_EQ(Ask("SELECT DATABASE()"), Database().Name().toStdString());
    FConnection.Execute("SET NAMES cp1251");
    Lose();
    FConnection.Database = other.Name();
    EXPECT_EQ(Ask("SELECT @@character_set_client"), "utf8mb4");
}

TEST_F(TLostConnection, ADatabaseThatIsGoneFailsOnceAndNotForEver)
{
    {
        TTestDatabase other;
        FConnection.Execute("USE `" + other.Name() + '`');
        Lose();
    }
    EXPECT_EQ(ErrorOf([&] { FConnection.Execute("SELECT 1"); }).ErrorCode(), 1049);
    EXPECT_EQ(Ask("SELECT DATABASE()"), Database().Name().toStdString());
}

TEST_F(TLostConnection, InsideATransactionIsNotRepeated)
{
    Exec("CREATE TABLE t (a INT) ENGINE = InnoDB");
    const char *const openers[] = {"BEGIN", "START TRANSACTION WITH CONSISTENT SNAPSHOT",
                                   "SET autocommit = 0"};
    for (const char *opener : openers) {
        FConnection.Execute(opener);
        FConnection.Execute("INSERT INTO t VALUES (1)");
        EXPECT_TRUE(FConnection.InTransaction()) << opener;
        const EMyError error = Lose("INSERT INTO t VALUES (2)");
        EXPECT_TRUE(error.IsLostConnection()) << opener;
        EXPECT_FALSE(error.CanRepeat()) << opener;
        EXPECT_EQ(Value("SELECT COUNT(*) FROM t"), "0") << opener;
        FConnection.Execute("SET autocommit = 1");
    }
}

TEST_F(TLostConnection, AnAnswerOfItsHandlerDecidesOnTheRepeat)
{
    for (const auto mode : {rmRaise, rmReconnect}) {
        FMode = mode;
        EXPECT_FALSE(Lose().CanRepeat());
        FConnection.Connect();
    }
    FConnection.Options.LocalFailover = false;
    FCauses.clear();
    EXPECT_FALSE(Lose().CanRepeat());
    EXPECT_THAT(FCauses, IsEmpty());
}

TEST_F(TLostConnection, AKilledStatementIsNoLostSessionButTheNextOneWorks)
{
    const QString id = QString::fromStdString(Ask("SELECT CONNECTION_ID()"));
    const EMyError error = ErrorOf([&] {
        FConnection.Execute("BEGIN NOT ATOMIC KILL QUERY " + id + "; SELECT SLEEP(5); END");
    });
    EXPECT_EQ(error.ErrorCode(), 1317);
    EXPECT_TRUE(FConnection.Connected());
    const EMyError ended = ErrorOf([&] { FConnection.Execute("KILL " + id); });
    EXPECT_FALSE(ended.CanRepeat()) << ended.ErrorCode();
    EXPECT_EQ(Ask("SELECT 1"), "1");
}

TEST_F(TLostConnection, InTheMiddleOfRowsClosesTheDatasetAndCanBeRepeated)
{
    struct TCounting : TDataLink
    {
        void ActiveChanged() override { ++Told; }
        int Told = 0;
    };
    TCounting link;
    TMyQuery query(&FConnection);
    query.AddLink(&link);
    query.SetSQL("SELECT 1");
    query.Execute();
    link.Told = 0;
    query.SetSQL("SELECT seq, REPEAT('x', 100) FROM seq_1_to_200000");
    FProxy.CutAfter(1000000);
    const EMyError error = ErrorOf([&] { query.Execute(); });
    FProxy.Resume();
    EXPECT_EQ(link.Told, 1) << "a grid must not go on showing rows that are gone";
    EXPECT_TRUE(error.IsLostConnection()) << error.ErrorCode();
    EXPECT_TRUE(error.CanRepeat());
    EXPECT_THAT(FCauses, ElementsAre(clFetch));
    EXPECT_FALSE(query.Active());
    query.Execute();
    EXPECT_EQ(query.RecordCount(), 200000);
    query.RemoveLink(&link);
}

TEST_F(TLostConnection, AServerThatDiesIsAnErrorUntilItIsBack)
{
    const auto server = TTestServer::Start();
    TMyConnection connection;
    Aim(connection, *server);
    connection.Connect();
    server->Kill();
    EXPECT_TRUE(ErrorOf([&] { connection.Execute("SELECT 1"); }).IsLostConnection());
    EXPECT_EQ(ErrorOf([&] { connection.Execute("SELECT 1"); }).ErrorCode(), 2002);
    server->Restart();
    EXPECT_EQ(ErrorOf([&] { connection.Execute("SELECT 1"); }).ErrorCode(), 0);
}

} // namespace
