#include "client/uSSHTransport.h"
#include "client/uSSHUtils.h"
#include "uTestErrors.h"
#include "uTestSocket.h"
#include "uTestSshServer.h"

#include <atomic>
#include <gmock/gmock.h>
#include <thread>

namespace {

/// A listening socket on a free port.
class TListener
{
public:
    ~TListener() { End(); }
    void End()
    {
        ::shutdown(FSocket, SHUT_RDWR);
        ::close(std::exchange(FSocket, -1));
    }
    int Accept() { return ::accept(FSocket, nullptr, nullptr); }
    quint16 Port() const { return TTestSocket::PortOf(FSocket); }

private:
    int FSocket = TTestSocket::Listen();
};

QByteArray ReadAll(int socket)
{
    QByteArray all;
    char part[65536];
    for (ssize_t size; (size = ::recv(socket, part, sizeof part, 0)) > 0;)
        all.append(part, size);
    return all;
}

bool WriteAll(int socket, const QByteArray &bytes)
{
    for (qsizetype at = 0; at < bytes.size();) {
        const ssize_t size =
            ::send(socket, bytes.constData() + at, bytes.size() - at, MSG_NOSIGNAL);
        if (size <= 0)
            return false;
        at += size;
    }
    return true;
}

/// Sends back what came once the client has sent all: only a half-closed connection gets there.
class TEcho
{
public:
    TEcho()
        : FThread([this] {
              for (int client; (client = FListener.Accept()) >= 0;)
                  FClients.emplace_back([client] {
                      WriteAll(client, ReadAll(client));
                      ::close(client);
                  });
          })
    {}
    ~TEcho()
    {
        FListener.End();
        FThread.join();
        for (std::thread &client : FClients)
            client.join();
    }
    quint16 Port() const { return FListener.Port(); }

private:
    TListener FListener;
    std::vector<std::thread> FClients;
    std::thread FThread;
};

class TSSHClientTest : public testing::Test
{
protected:
    static void SetUpTestSuite() { Server = std::make_unique<TTestSshServer>(); }
    static void TearDownTestSuite() { Server.reset(); }

    static TSSHTransportSettings Settings(const QByteArray &key, const QString &passPhrase = {})
    {
        TSSHTransportSettings settings;
        settings.HostName = "127.0.0.1";
        settings.Port = Server->Port();
        settings.UserName = Server->User();
        settings.Authentication = passPhrase.isEmpty() ? taPublicKey : taPublicKeyWithPassword;
        settings.PrivateKey = key;
        settings.PassPhrase = passPhrase;
        return settings;
    }
    std::string ErrorOf(const TSSHTransportSettings &settings)
    {
        const std::string message = MessageOf([&] { Transport->Connect(settings); });
        EXPECT_EQ(Transport->Connected(), message.empty());
        return message;
    }
    int Client() const
    {
        const int client = TTestSocket::New();
        EXPECT_TRUE(TTestSocket::Connect(client, FLocalPort));
        return client;
    }
    void ForwardTo(quint16 port)
    {
        Transport->Connect(Settings(Server->NewKey({"-t", "ed25519"})));
        TListener free;
        FLocalPort = free.Port();
        free.End();
        Transport->ForwardPort(FLocalPort, "localhost", port);
    }

    static std::unique_ptr<TTestSshServer> Server;
    std::unique_ptr<TSSHTransport> Transport = NewSSHTransport();
    quint16 FLocalPort = 0;
};

std::unique_ptr<TTestSshServer> TSSHClientTest::Server;

TEST_F(TSSHClientTest, EntersWithEveryKindOfKey)
{
    const struct
    {
        QStringList Arguments;
        QString PassPhrase;
        TSSHKeyAlgorithm Algorithm;
        int Bits;
    } rows[] = {
        {{"-t", "rsa", "-b", "3072"}, "", sshkaRSA, 3072},
        {{"-t", "rsa", "-b", "2048", "-m", "PEM"}, "pass phrase", sshkaRSA, 2048},
        {{"-t", "rsa", "-b", "2048", "-m", "PKCS8"}, "pass phrase", sshkaRSA, 2048},
        {{"-t", "ecdsa", "-b", "256"}, "", sshkaECDSA, 256},
        {{"-t", "ecdsa", "-b", "384", "-m", "PEM"}, "pass phrase", sshkaECDSA, 384},
        {{"-t", "ed25519"}, "päss", sshkaEd25519, 256},
    };
    for (const auto &row : rows) {
        const std::string name = row.Arguments.join(' ').toStdString();
        const QByteArray key = Server->NewKey(row.Arguments, row.PassPhrase);
        EXPECT_EQ(ErrorOf(Settings(key, row.PassPhrase)), "") << name;
        TSSHKeyInfo info;
        ASSERT_TRUE(TSSHUtils::TryGetKeyInfo(key, row.PassPhrase, info)) << name;
        EXPECT_EQ(info.Algorithm, row.Algorithm) << name;
        EXPECT_EQ(info.BitCount, row.Bits) << name;
        EXPECT_THAT(Server->Fingerprint("md5").toStdString(),
                    testing::HasSubstr("MD5:" + info.MD5FingerprintString.toStdString()))
            << name;
        EXPECT_EQ(TSSHUtils::TryGetKeyInfo(key, "wrong", info), row.PassPhrase.isEmpty()) << name;
    }
}

TEST_F(TSSHClientTest, TellsWhyItIsNotLetIn)
{
    using testing::StartsWith;
    EXPECT_THAT(ErrorOf(Settings(Server->NewKey({"-t", "ed25519"}, "right"), "wrong")),
                StartsWith("The private key cannot be read"));
    EXPECT_THAT(ErrorOf(Settings("-----BEGIN nonsense")),
                StartsWith("The private key cannot be read"));
    const std::string user = Server->User().toStdString();
    EXPECT_THAT(ErrorOf(Settings({})),
                StartsWith("The SSH server refused the key of user \"" + user + "\"."));
    TSSHTransportSettings password = Settings({});
    password.Authentication = taPassword;
    password.Password = "not the password";
    EXPECT_THAT(ErrorOf(password),
                StartsWith("The SSH server refused the password of user \"" + user + "\"."));
    TListener nobody;
    TSSHTransportSettings closed = Settings({});
    closed.Port = nobody.Port();
    nobody.End();
    EXPECT_THAT(ErrorOf(closed),
                testing::MatchesRegex("Cannot connect to the SSH server 127.0.0.1:[0-9]+. .+"));
}

TEST_F(TSSHClientTest, CarriesSeveralConnectionsWholeInBothDirections)
{
    TEcho echo;
    ForwardTo(echo.Port());
    std::atomic<int> whole = 0;
    std::vector<std::thread> clients;
    for (int i = 0; i < 4; ++i)
        clients.emplace_back([&, i] {
            QByteArray bytes(8 * 1024 * 1024 + i, char('a' + i));
            bytes[i * 1000] = '!';
            const int client = Client();
            WriteAll(client, bytes);
            ::shutdown(client, SHUT_WR);
            whole += ReadAll(client) == bytes;
            ::close(client);
        });
    for (std::thread &client : clients)
        client.join();
    EXPECT_EQ(whole, 4);
    EXPECT_TRUE(Transport->Forwarding());
}

TEST_F(TSSHClientTest, TheLastWordsOfAServerThatHangsUpArrive)
{
    TListener listener;
    const QByteArray words(1000, 'w');
    std::thread server([&] {
        const int client = listener.Accept();
        char first;
        ::recv(client, &first, 1, 0);
        WriteAll(client, words);
        ::close(client); // with all else unread
    });
    ForwardTo(listener.Port());
    const int client = Client();
    std::thread sender([&] { WriteAll(client, QByteArray(16 << 20, 'x')); });
    server.join();
    EXPECT_EQ(ReadAll(client).size(), words.size());
    ::shutdown(client, SHUT_RDWR);
    sender.join();
    ::close(client);
}

TEST_F(TSSHClientTest, ADestinationThatRefusesEndsTheConnectionAlone)
{
    TListener nobody;
    const quint16 port = nobody.Port();
    nobody.End();
    ForwardTo(port);
    const int client = Client();
    EXPECT_EQ(ReadAll(client), QByteArray());
    ::close(client);
    EXPECT_TRUE(Transport->Forwarding());
}

TEST_F(TSSHClientTest, ClosesWhileDataFlow)
{
    TListener flood;
    std::thread source([&] {
        const int client = flood.Accept();
        while (WriteAll(client, QByteArray(1 << 20, 'x'))) {
        }
        ::close(client);
    });
    ForwardTo(flood.Port());
    const int client = Client();
    char some[1000];
    EXPECT_GT(::recv(client, some, sizeof some, 0), 0);
    Transport->Disconnect();
    EXPECT_FALSE(Transport->Connected());
    ReadAll(client); // to its end, which has to come
    ::close(client);
    source.join();
}

} // namespace
