#include "uClientTools.h"
#include "uTcpProxy.h"

#include <gmock/gmock.h>

namespace {

using ::testing::ElementsAre;

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
                mode = rmReconnectExecute;
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
    void ExpectTold(const std::function<void()> &lose)
    {
        lose();
        const EMyError error = ErrorOf([&] { FConnection.Execute("SELECT 1"); });
        EXPECT_TRUE(error.IsLostConnection() && error.CanRepeat())
            << error.ErrorCode() << error.what();
        EXPECT_FALSE(FConnection.Connected());
        EXPECT_EQ(Ask("SELECT 1"), "1");
        EXPECT_THAT(std::exchange(FCauses, {}), ElementsAre(clExecute));
    }

    TTcpProxy FProxy;
    std::vector<TConnLostCause> FCauses;
};

TEST_F(TLostConnection, IsToldByItsCodeWhicheverWayItIsLost)
{
    ExpectTold([this] { Kill(); });
    ExpectTold([this] { FProxy.Cut(); });
    ExpectTold([this] {
        FConnection.Execute("SET wait_timeout = 1");
        Value("SELECT SLEEP(2.5)");
    });
}

TEST_F(TLostConnection, OnMySqlIsToldByTheSameCodes)
{
    SKIP_WITHOUT_MYSQL9();
    const TTestServer &server = *TTestServer::MySql9();
    FConnection.Disconnect();
    Aim(FConnection, server);
    ExpectTold(
        [&] { server.Exec("KILL " + QString::fromStdString(Ask("SELECT CONNECTION_ID()"))); });
    ExpectTold([&] {
        FConnection.Execute("SET wait_timeout = 1");
        server.Value("SELECT SLEEP(2.5)");
    });
}

TEST_F(TLostConnection, ADatabaseThatIsGoneFailsOnceAndNotForEver)
{
    {
        const TTestDatabase other;
        FConnection.Execute("USE `" + other.Name() + '`');
        Kill();
        EXPECT_TRUE(ErrorOf([&] { FConnection.Execute("SELECT 1"); }).CanRepeat());
    }
    EXPECT_EQ(ErrorOf([&] { FConnection.Execute("SELECT 1"); }).ErrorCode(), 1049);
    EXPECT_EQ(Ask("SELECT DATABASE()"), Database().Name().toStdString());
}

TEST_F(TLostConnection, AKilledStatementIsNoLostSession)
{
    const QString id = QString::fromStdString(Ask("SELECT CONNECTION_ID()"));
    const EMyError error = ErrorOf([&] {
        FConnection.Execute("BEGIN NOT ATOMIC KILL QUERY " + id + "; SELECT SLEEP(5); END");
    });
    EXPECT_EQ(error.ErrorCode(), 1317);
    EXPECT_EQ(Ask("SELECT CONNECTION_ID()"), id.toStdString());
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

} // namespace
