#include "client/uSSHTransport.h"
#include "uTestErrors.h"
#include "uTestSocket.h"
#include "uTestSshServer.h"

#include <gtest/gtest.h>
#include <libssh/server.h>
#include <memory>
#include <stdexcept>
#include <thread>

namespace {

constexpr char Password[] = "pass wörd";

/// An SSH server for one session that knows one password and asks for it in the ways it is told.
/// OpenSSH would need an account of the machine for that.
class TPasswordServer
{
public:
    explicit TPasswordServer(int methods) : FMethods(methods)
    {
        const QByteArray key = FFolder.filePath("key").toUtf8();
        TTestSshServer::Run("ssh-keygen", {"-q", "-t", "ed25519", "-N", "", "-f", key});
        ssh_bind_options_set(FBind.get(), SSH_BIND_OPTIONS_BINDADDR, "127.0.0.1");
        ssh_bind_options_set(FBind.get(), SSH_BIND_OPTIONS_HOSTKEY, key.constData());
        // A port of zero is one that the system picks.
        const uint any = 0;
        ssh_bind_options_set(FBind.get(), SSH_BIND_OPTIONS_BINDPORT, &any);
        if (ssh_bind_listen(FBind.get()) != SSH_OK)
            throw std::runtime_error(ssh_get_error(FBind.get()));
        FPort = TTestSocket::PortOf(ssh_bind_get_fd(FBind.get()));
        FThread = std::thread([this] { Serve(); });
    }
    ~TPasswordServer() { FThread.join(); }

    TSSHTransportSettings Settings(const QString &password) const
    {
        TSSHTransportSettings settings;
        settings.HostName = "127.0.0.1";
        settings.Port = FPort;
        settings.UserName = "someone";
        settings.Authentication = taPassword;
        settings.Password = password;
        return settings;
    }

private:
    void Serve()
    {
        const std::unique_ptr<ssh_session_struct, decltype(&ssh_free)> session(ssh_new(), ssh_free);
        if (ssh_bind_accept(FBind.get(), session.get()) != SSH_OK ||
            ssh_handle_key_exchange(session.get()) != SSH_OK)
            return;
        ssh_set_auth_methods(session.get(), FMethods);
        while (const ssh_message message = ssh_message_get(session.get())) {
            Answer(session.get(), message);
            ssh_message_free(message);
        }
        ssh_disconnect(session.get());
    }

    // The library has callbacks for passwords by now, but none for questions; this is for both.
    static std::string PasswordOf(ssh_message message)
    {
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wdeprecated-declarations"
        return ssh_message_auth_password(message);
#pragma GCC diagnostic pop
    }

    void Answer(ssh_session session, ssh_message message) const
    {
        const bool isAuth = ssh_message_type(message) == SSH_REQUEST_AUTH;
        const int method = isAuth ? ssh_message_subtype(message) & FMethods : 0;
        if (method == SSH_AUTH_METHOD_PASSWORD && PasswordOf(message) == Password) {
            ssh_message_auth_reply_success(message, 0);
            return;
        }
        if (method == SSH_AUTH_METHOD_INTERACTIVE) {
            if (!ssh_message_auth_kbdint_is_response(message)) {
                const char *prompts[] = {"Password: "};
                char echo[] = {0};
                ssh_message_auth_interactive_request(message, "", "", 1, prompts, echo);
                return;
            }
            const char *answer = ssh_userauth_kbdint_getanswer(session, 0);
            if (answer && std::string(answer) == Password) {
                ssh_message_auth_reply_success(message, 0);
                return;
            }
        }
        ssh_message_auth_set_methods(message, FMethods);
        ssh_message_reply_default(message);
    }

    const QTemporaryDir FFolder;
    const int FMethods;
    std::unique_ptr<ssh_bind_struct, decltype(&ssh_bind_free)> FBind{ssh_bind_new(), ssh_bind_free};
    quint16 FPort = 0;
    std::thread FThread;
};

TEST(TSSHPasswordTest, OnlyThePasswordOpensTheDoorWhicheverWayItIsAskedFor)
{
    for (const int methods : {SSH_AUTH_METHOD_PASSWORD, SSH_AUTH_METHOD_INTERACTIVE,
                              SSH_AUTH_METHOD_PASSWORD | SSH_AUTH_METHOD_INTERACTIVE}) {
        for (const bool isRight : {true, false}) {
            const TPasswordServer server(methods);
            const auto transport = NewSSHTransport();
            const auto settings = server.Settings(isRight ? QString::fromUtf8(Password) : "other");
            const std::string message = MessageOf([&] { transport->Connect(settings); });
            EXPECT_EQ(message.empty(), isRight) << methods << message;
            EXPECT_EQ(transport->Connected(), isRight) << methods;
            transport->Disconnect();
            EXPECT_FALSE(transport->Connected());
        }
    }
}

} // namespace
