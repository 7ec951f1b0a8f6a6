#include "core/uSSHTunnel.h"
#include "core/uNetUtils.h"
#include "support/uException.h"
#include "uRelayTransport.h"
#include "uTestServer.h"

#include <gtest/gtest.h>
#include <sys/resource.h>

namespace {

/// While it lives no socket can be made, which to the search for a port is as if all were taken.
class TNoSockets
{
public:
    TNoSockets()
    {
        getrlimit(RLIMIT_NOFILE, &FOld);
        rlimit none = FOld;
        none.rlim_cur = 0;
        setrlimit(RLIMIT_NOFILE, &none);
    }
    ~TNoSockets() { setrlimit(RLIMIT_NOFILE, &FOld); }

private:
    rlimit FOld;
};

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

struct TLoginRow
{
    TSSHTunnelAuthentication Authentication;
    const char *Password;
    const char *PrivateKey;
    const char *PassPhrase;
};

const TLoginRow Logins[] = {
    {taPassword, "secret", "", ""},
    {taPublicKey, "", "key", ""},
    {taPublicKeyWithPassword, "", "key", "secret"},
};

TEST_F(TTunnel, HandsOverWhatTheAuthenticationNeeds)
{
    for (const TLoginRow &row : Logins) {
        TSSHTunnel tunnel;
        Aim(tunnel);
        tunnel.Authentication = row.Authentication;
        tunnel.Open();
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
    TSSHTunnel tunnel;
    Aim(tunnel);
    int opened = 0;
    int closed = 0;
    tunnel.SetOnAfterOpen([&](TSSHTunnel *) { ++opened; });
    tunnel.SetOnAfterClose([&](TSSHTunnel *) { ++closed; });
    EXPECT_FALSE(tunnel.Active());

    tunnel.Open();
    TSSHTunnel second;
    Aim(second);
    second.Open();
    EXPECT_NE(tunnel.GetSourceTunnelPort(), second.GetSourceTunnelPort());
    EXPECT_TRUE(tunnel.Active());
    EXPECT_EQ(tunnel.GetSourceTunnelHost().toStdString(), "127.0.0.1");
    EXPECT_TRUE(TNetUtils::IsPortOpened("127.0.0.1", tunnel.GetSourceTunnelPort()));

    tunnel.Close();
    EXPECT_FALSE(tunnel.Active());
    EXPECT_FALSE(TNetUtils::IsPortOpened("127.0.0.1", tunnel.GetSourceTunnelPort()));
    EXPECT_EQ(opened, 1);
    EXPECT_EQ(closed, 1);
}

TEST_F(TTunnel, TestingForwardsNothing)
{
    TSSHTunnel tunnel;
    Aim(tunnel);
    tunnel.TestConnection();
    EXPECT_EQ(TRelayTransport::Log().Connects.size(), 1);
    EXPECT_TRUE(TRelayTransport::Log().SourcePorts.isEmpty());
    EXPECT_FALSE(tunnel.Active());
}

TEST_F(TTunnel, WithoutAFreePortTheSessionStaysAndTheNextOpenWorks)
{
    TSSHTunnel tunnel;
    Aim(tunnel);
    try {
        const TNoSockets none;
        tunnel.Open();
        ADD_FAILURE();
    } catch (const EException &e) {
        EXPECT_EQ(e.Message().toStdString(), "Free port not found.");
    }
    EXPECT_TRUE(tunnel.Active());
    EXPECT_FALSE(tunnel.Forwarding());

    tunnel.Open();
    EXPECT_TRUE(tunnel.Forwarding());
    EXPECT_EQ(TRelayTransport::Log().Connected, 1);
}

} // namespace
