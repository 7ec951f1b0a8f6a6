#include "client/uSSHTransport.h"
#include "uBench.h"
#include "uTestSshServer.h"

#include <QFile>
#include <QTemporaryDir>
#include <arpa/inet.h>
#include <csignal>
#include <sys/socket.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

namespace {

constexpr qint64 Bytes = 512LL * 1024 * 1024;

int Listen(quint16 &port)
{
    const int listener = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t size = sizeof address;
    ::bind(listener, reinterpret_cast<sockaddr *>(&address), size);
    ::listen(listener, 4);
    ::getsockname(listener, reinterpret_cast<sockaddr *>(&address), &size);
    port = ntohs(address.sin_port);
    return listener;
}

int Connect(quint16 port)
{
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    address.sin_port = htons(port);
    for (int i = 0; i < 500; ++i) {
        const int client = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
        if (::connect(client, reinterpret_cast<sockaddr *>(&address), sizeof address) == 0)
            return client;
        ::close(client);
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
    qFatal("nobody serves the tunnel");
}

/// MiB a second that come through the port from a source behind it.
double Rate(int source, quint16 port)
{
    std::thread sender([source] {
        const int peer = ::accept(source, nullptr, nullptr);
        const QByteArray block(1 << 20, 'x');
        for (qint64 sent = 0; sent < Bytes;) {
            const ssize_t size = ::send(peer, block.constData(), block.size(), MSG_NOSIGNAL);
            if (size <= 0)
                break;
            sent += size;
        }
        ::close(peer);
    });
    const int client = Connect(port);
    QByteArray part(1 << 18, '\0');
    qint64 received = 0;
    const double seconds = TBench::Seconds([&] {
        for (ssize_t size; (size = ::recv(client, part.data(), part.size(), 0)) > 0;)
            received += size;
    });
    ::close(client);
    sender.join();
    return static_cast<double>(received) / 1048576 / seconds;
}

TTestSshServer &Server()
{
    static TTestSshServer server;
    return server;
}

QByteArray &Key()
{
    static QByteArray key = Server().NewKey({"-t", "ed25519"});
    return key;
}

double OwnRate()
{
    quint16 target = 0;
    quint16 local = 0;
    const int source = Listen(target);
    ::close(Listen(local));
    const auto transport = NewSSHTransport();
    TSSHTransportSettings settings;
    settings.HostName = "127.0.0.1";
    settings.Port = Server().Port();
    settings.UserName = Server().User();
    settings.Authentication = taPublicKey;
    settings.PrivateKey = Key();
    transport->Connect(settings);
    transport->ForwardPort(local, "127.0.0.1", target);
    const double rate = Rate(source, local);
    transport->Disconnect();
    ::close(source);
    return rate;
}

double PeerRate()
{
    quint16 target = 0;
    quint16 local = 0;
    const int source = Listen(target);
    ::close(Listen(local));
    QTemporaryDir folder;
    QFile key(folder.filePath("key"));
    if (!key.open(QIODevice::WriteOnly) || key.write(Key()) < 0 ||
        !key.setPermissions(QFile::ReadOwner))
        qFatal("cannot write the key");
    key.close();
    const QByteArray forward =
        "127.0.0.1:" + QByteArray::number(local) + ":127.0.0.1:" + QByteArray::number(target);
    const QByteArray port = QByteArray::number(Server().Port());
    const QByteArray keyFile = key.fileName().toUtf8();
    const QByteArray host = Server().User().toUtf8() + "@127.0.0.1";
    const pid_t pid = ::fork();
    if (pid == 0) {
        ::execlp("ssh", "ssh", "-F", "none", "-N", "-o", "StrictHostKeyChecking=no", "-o",
                 "UserKnownHostsFile=/dev/null", "-o", "LogLevel=ERROR", "-i", keyFile.constData(),
                 "-p", port.constData(), "-L", forward.constData(), host.constData(), nullptr);
        ::_exit(127);
    }
    const double rate = Rate(source, local);
    ::kill(pid, SIGTERM);
    ::waitpid(pid, nullptr, 0);
    ::close(source);
    return rate;
}

const TBenchRegistrar Rows([] {
    return std::vector<TBenchRow>{
        {.What = "throughput of the SSH tunnel",
         .PeerName = "ssh -L",
         .Unit = "MiB/s",
         .Goal = bgAtLeast,
         .Limit = 0.7,
         .Product = OwnRate,
         .Peer = PeerRate,
         .Rounds = 7},
    };
});

} // namespace
