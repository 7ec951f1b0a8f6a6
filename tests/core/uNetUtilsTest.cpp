#include "core/uNetUtils.h"
#include "support/uException.h"
#include "uTestServer.h"

#include <QTcpServer>

#include <gtest/gtest.h>

namespace {

struct TAddressRow
{
    const char *Text;
    bool IsAddress;
};

const TAddressRow Addresses[] = {
    {"127.0.0.1", true},
    {"0.0.0.0", true},
    {"255.255.255.254", true},
    {"255.255.255.255", false},
    {"", false},
    {"localhost", false},
    {"127.0.0", false},
    {"1.2.3.256", false},
    {"1.2.3.4.5", false},
    {"::1", false},
    {" 127.0.0.1", false},
};

TEST(TNetUtilsTest, KnowsDottedAddresses)
{
    for (const TAddressRow &row : Addresses)
        EXPECT_EQ(TNetUtils::IsIPv4Address(row.Text), row.IsAddress) << row.Text;
}

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

TEST(TNetUtilsTest, TellsOpenPorts)
{
    QTcpServer server;
    ASSERT_TRUE(server.listen(QHostAddress::LocalHost));
    const quint16 port = server.serverPort();
    EXPECT_TRUE(TNetUtils::IsPortOpened("127.0.0.1", port));
    EXPECT_TRUE(TNetUtils::IsPortOpened2("127.0.0.1", port));
    server.close();
    EXPECT_FALSE(TNetUtils::IsPortOpened("127.0.0.1", port));
    EXPECT_FALSE(TNetUtils::IsPortOpened2("127.0.0.1", port));
    EXPECT_FALSE(TNetUtils::IsPortOpened2("no address", port));
}

TEST(TTcpPortHelperTest, GivesTheNextPortThatIsNotTaken)
{
    const quint16 first = TTcpPortHelper::FindFreePort("127.0.0.1");
    EXPECT_GE(first, 33825);
    QTcpServer taker;
    ASSERT_TRUE(taker.listen(QHostAddress::LocalHost, first));
    const quint16 second = TTcpPortHelper::FindFreePort("127.0.0.1");
    EXPECT_GT(second, first);
    EXPECT_LT(second, 65535);
}

TEST(TTcpPortHelperTest, RaisesWhenNoPortCanBeBound)
{
    try {
        TTcpPortHelper::FindFreePort("203.0.113.1"); // of no machine: kept for documents
        ADD_FAILURE();
    } catch (const EException &e) {
        EXPECT_EQ(e.Message().toStdString(), "Free port not found.");
    }
}

} // namespace
