#include "core/uNetUtils.h"
#include "uTestErrors.h"

#include <QTcpServer>

#include <gtest/gtest.h>

namespace {

TEST(TNetUtilsTest, ResolvesNames)
{
    QString address;
    EXPECT_TRUE(TNetUtils::TryResolveIPv4Address("localhost", address));
    EXPECT_TRUE(address.startsWith("127."));
    EXPECT_TRUE(TNetUtils::TryResolveIPv4Address("", address));
    EXPECT_EQ(address.toStdString(), "127.0.0.1");
    EXPECT_FALSE(TNetUtils::TryResolveIPv4Address("bad..name", address));
    EXPECT_FALSE(TNetUtils::TryResolveIPv4Address("::1", address));
}

TEST(TNetUtilsTest, TellsOpenPortsAndFindsOneThatIsNotTaken)
{
    const quint16 port = TTcpPortHelper::FindFreePort("127.0.0.1");
    EXPECT_GE(port, 33825);
    QTcpServer server;
    ASSERT_TRUE(server.listen(QHostAddress::LocalHost, port));
    EXPECT_GT(TTcpPortHelper::FindFreePort("127.0.0.1"), port);
    EXPECT_TRUE(TNetUtils::IsPortOpened("127.0.0.1", port));
    EXPECT_TRUE(TNetUtils::IsPortOpened2("127.0.0.1", port));
    server.close();
    EXPECT_FALSE(TNetUtils::IsPortOpened("127.0.0.1", port));
    EXPECT_FALSE(TNetUtils::IsPortOpened2("127.0.0.1", port));
    EXPECT_FALSE(TNetUtils::IsPortOpened2("no address", port));
}

TEST(TTcpPortHelperTest, RaisesWhenNoPortCanBeBound)
{
    const char *noMachine = "203.0.113.1"; // kept for documents
    EXPECT_EQ(MessageOf([&] { TTcpPortHelper::FindFreePort(noMachine); }), "Free port not found.");
}

} // namespace
