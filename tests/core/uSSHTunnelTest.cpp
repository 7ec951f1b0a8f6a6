#include "core/uSSHTunnel.h"
#include "core/uNetUtils.h"
#include "uRelayTransport.h"
#include "uTestServer.h"

#include <gtest/gtest.h>

namespace {

class TTunnel : public ::testing::Test
{
protected:
    static void Aim(TSSHTunnel &tunnel)
    {
        tunnel.HostName = "10.0.0.1";
        tunnel.Port = 2222;
        tunnel.UserName = "user";
        tunnel.Password = "secret";
        tunnel.PrivateKey = "key";
        tunnel.DestTunnelHost = "127.0.0.1";
        tunnel.DestTunnelPort = static_cast<quint16>(TTestServer::Instance().Port());
    }

    TRelayTransport::TInstalled FInstalled;
};

TEST_F(TTunnel, HandsOverWhatTheAuthenticationNeeds)
{
    const struct
    {
        TSSHTunnelAuthentication Authentication;
        const char *Password, *PrivateKey, *PassPhrase;
    } rows[] = {
        {taPassword, "secret", "", ""},
        {taPublicKey, "", "key", ""},
        {taPublicKeyWithPassword, "", "key", "secret"},
    };
    for (const auto &row : rows) {
        TSSHTunnel tunnel;
        Aim(tunnel);
        tunnel.Authentication = row.Authentication;
        tunnel.TestConnection();
        EXPECT_TRUE(TRelayTransport::Log().SourcePorts.isEmpty()) << "nothing is forwarded";
        EXPECT_FALSE(tunnel.Active());
        const TSSHTransportSettings settings = TRelayTransport::Log().Connects.last();
        EXPECT_EQ(settings.HostName.toStdString(), "10.0.0.1");
        EXPECT_EQ(settings.Port, 2222);
        EXPECT_EQ(settings.UserName.toStdString(), "user");
        EXPECT_EQ(settings.Authentication, row.Authentication);
        EXPECT_EQ(settings.Password.toStdString(), row.Password);
        EXPECT_EQ(settings.PrivateKey.toStdString(), row.PrivateKey);
        EXPECT_EQ(settings.PassPhrase.toStdString(), row.PassPhrase);
    }
}

TEST_F(TTunnel, ForwardsAPortWhileItIsOpen)
{
    TSSHTunnel tunnel, second;
    Aim(tunnel);
    Aim(second);
    int opened = 0;
    int closed = 0;
    tunnel.SetOnAfterOpen([&](TSSHTunnel *) { ++opened; });
    tunnel.SetOnAfterClose([&](TSSHTunnel *) { ++closed; });
    tunnel.Open();
    second.Open();
    const quint16 port = tunnel.GetSourceTunnelPort();
    EXPECT_NE(port, second.GetSourceTunnelPort());
    EXPECT_TRUE(TNetUtils::IsPortOpened(tunnel.GetSourceTunnelHost(), port));
    tunnel.Close();
    EXPECT_FALSE(tunnel.Active());
    EXPECT_FALSE(TNetUtils::IsPortOpened("127.0.0.1", port));
    EXPECT_EQ(opened, 1);
    EXPECT_EQ(closed, 1);
}

} // namespace
