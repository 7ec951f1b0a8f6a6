#include "uTcpProxy.h"
#include "uTestDatabase.h"
#include "uTestLoop.h"

#include <QElapsedTimer>
#include <QTcpSocket>

#include <stdexcept>

namespace {

class TTcpProxyTest : public testing::Test
{
protected:
    TTestServer &Server() const { return TTestServer::Instance(); }
    // A server speaks first, so a greeting shows that something is behind the port.
    void Connect(const TTcpProxy &proxy) { FSocket.connectToHost(proxy.Host(), proxy.Port()); }
    bool IsAccepted(const TTcpProxy &proxy)
    {
        return proxy.OpenCount() == 1 && FSocket.state() == QAbstractSocket::ConnectedState;
    }
    bool IsGreeted() { return FSocket.bytesAvailable() > 0; }
    bool IsReset()
    {
        return FSocket.state() == QAbstractSocket::UnconnectedState &&
               FSocket.error() == QAbstractSocket::RemoteHostClosedError;
    }

    TTcpProxy FProxy{Server().Host(), Server().Port()};
    QTcpSocket FSocket;
};

} // namespace

TEST_F(TTcpProxyTest, ForwardsAndCounts)
{
    {
        TTestSession session(FProxy.Host(), FProxy.Port());
        // Larger than all buffers on the way together.
        const QByteArray sent = QByteArray("0123456789abcdef").repeated(400000);
        EXPECT_EQ(session.Bytes("SELECT '" + QString::fromLatin1(sent) + "'"), sent);
        EXPECT_EQ(FProxy.OpenCount(), 1);
        EXPECT_GT(FProxy.BytesToServer(), sent.size());
        EXPECT_GT(FProxy.BytesToClient(), sent.size());
    }
    EXPECT_TRUE(TTestLoop::RunUntil([this] { return FProxy.OpenCount() == 0; }));
    EXPECT_EQ(FProxy.ConnectionCount(), 1);
}

TEST_F(TTcpProxyTest, CutsWhatIsOpenAndAcceptsAgain)
{
    TTestSession session(FProxy.Host(), FProxy.Port());
    FProxy.Cut();
    EXPECT_EQ(FProxy.OpenCount(), 0);
    EXPECT_THROW(session.Exec("SELECT 1"), std::runtime_error);
    EXPECT_EQ(TTestSession(FProxy.Host(), FProxy.Port()).Value("SELECT 1"), "1");
}

TEST_F(TTcpProxyTest, CutsInTheMiddleOfAnAnswer)
{
    TTestSession session(FProxy.Host(), FProxy.Port());
    const qint64 before = FProxy.BytesToClient();
    FProxy.CutAfter(1000);
    EXPECT_THROW(session.Exec("SELECT REPEAT('x', 100000)"), std::runtime_error);
    EXPECT_EQ(FProxy.BytesToClient() - before, 1000);
    FProxy.Resume();
    EXPECT_EQ(TTestSession(FProxy.Host(), FProxy.Port()).Value("SELECT LENGTH(REPEAT('x', 5000))"),
              "5000");
}

TEST_F(TTcpProxyTest, StallsUntilResumed)
{
    FProxy.Stall();
    Connect(FProxy);
    ASSERT_TRUE(TTestLoop::RunUntil([this] { return IsAccepted(FProxy); }));
    EXPECT_FALSE(FSocket.waitForReadyRead(200));
    FProxy.Resume();
    EXPECT_TRUE(TTestLoop::RunUntil([this] { return IsGreeted(); }));
}

TEST_F(TTcpProxyTest, ResetsAStalledConnection)
{
    FProxy.Stall();
    Connect(FProxy);
    ASSERT_TRUE(TTestLoop::RunUntil([this] { return IsAccepted(FProxy); }));
    FProxy.Cut();
    EXPECT_TRUE(TTestLoop::RunUntil([this] { return IsReset(); }));
}

TEST_F(TTcpProxyTest, RefusesUntilResumed)
{
    FProxy.Refuse();
    Connect(FProxy);
    EXPECT_TRUE(TTestLoop::RunUntil(
        [this] { return FSocket.error() == QAbstractSocket::ConnectionRefusedError; }));
    FProxy.Resume();
    Connect(FProxy);
    EXPECT_TRUE(TTestLoop::RunUntil([this] { return IsGreeted(); }));
}

TEST_F(TTcpProxyTest, DelaysEachDirection)
{
    TTestSession session(FProxy.Host(), FProxy.Port());
    FProxy.SetDelay(150);
    QElapsedTimer clock;
    clock.start();
    session.Exec("SELECT 1");
    EXPECT_GE(clock.elapsed(), 300) << "at least the delay, once there and once back";
}

TEST_F(TTcpProxyTest, BlackHoleAcceptsAndSaysNothing)
{
    const TBlackHole hole;
    Connect(hole);
    ASSERT_TRUE(TTestLoop::RunUntil([&] { return IsAccepted(hole); }));
    FSocket.write("anybody there?");
    EXPECT_FALSE(FSocket.waitForReadyRead(200));
    EXPECT_EQ(FSocket.state(), QAbstractSocket::ConnectedState);
}
