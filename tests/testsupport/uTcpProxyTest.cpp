#include "uTcpProxy.h"
#include "uTestServer.h"

#include <QElapsedTimer>
#include <gtest/gtest.h>

// What the other faults of the proxy do is seen by the tests that ask for them.
TEST(TTcpProxyTest, DelaysEachDirectionAndLosesNothing)
{
    const TTestServer &server = TTestServer::Instance();
    TTcpProxy proxy(server.Host(), server.Port());
    TTestSession session(proxy.Host(), proxy.Port());
    // Larger than all buffers on the way together.
    const QByteArray sent = QByteArray("0123456789abcdef").repeated(400000);
    EXPECT_EQ(session.Bytes("SELECT '" + QString::fromLatin1(sent) + "'"), sent);
    proxy.SetDelay(150);
    QElapsedTimer clock;
    clock.start();
    session.Exec("SELECT 1");
    EXPECT_GE(clock.elapsed(), 300) << "at least the delay, once there and once back";
}
