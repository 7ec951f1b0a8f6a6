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

    TTcpProxy FProxy;
    std::vector<TConnLostCause> FCauses;
};

// How MariaDB's sessions are lost is seen in the layer above.
TEST_F(TLostConnection, AnIdleSessionThatMySqlEndsIsToldByTheSameCodes)
{
    SKIP_WITHOUT_MYSQL9();
    FConnection.Disconnect();
    Aim(FConnection, *TTestServer::MySql9());
    FConnection.Execute("SET wait_timeout = 1");
    Value("SELECT SLEEP(2.5)");
    const EMyError error = ErrorOf([&] { FConnection.Execute("SELECT 1"); });
    EXPECT_TRUE(error.IsLostConnection() && error.CanRepeat()) << error.ErrorCode();
    EXPECT_EQ(Ask("SELECT 1"), "1");
    EXPECT_THAT(FCauses, ElementsAre(clExecute));
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
