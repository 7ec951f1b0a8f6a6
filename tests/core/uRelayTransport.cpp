#include "uRelayTransport.h"

#include "core/uNetUtils.h"
#include "support/uException.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

namespace {

sockaddr_in Loopback(const QByteArray &host, quint16 port)
{
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(port);
    inet_pton(AF_INET, host.constData(), &address.sin_addr);
    return address;
}

} // namespace

TRelayTransport::TLog &TRelayTransport::Log()
{
    static TLog log;
    return log;
}

TRelayTransport::TInstalled::TInstalled()
{
    Log() = {};
    TSSHTunnel::SetTransportFactory([] { return std::make_unique<TRelayTransport>(); });
}

TRelayTransport::TInstalled::~TInstalled()
{
    TSSHTunnel::SetTransportFactory(nullptr);
}

TRelayTransport::~TRelayTransport()
{
    Disconnect();
}

void TRelayTransport::Connect(const TSSHTransportSettings &settings)
{
    Log().Connects.append(settings);
    FConnected = true;
    ++Log().Connected;
}

void TRelayTransport::ForwardPort(quint16 sourcePort, const QString &destHost, quint16 destPort)
{
    Log().SourcePorts.append(sourcePort);
    Log().DestHost = destHost;
    Log().DestPort = destPort;
    QString address;
    if (!TNetUtils::TryResolveIPv4Address(destHost, address))
        throw EException("The relay does not know the destination.");
    FDestHost = address.toLatin1();
    FDestPort = destPort;

    FListener = socket(AF_INET, SOCK_STREAM, 0);
    const sockaddr_in at = Loopback("127.0.0.1", sourcePort);
    if (bind(FListener, reinterpret_cast<const sockaddr *>(&at), sizeof at) != 0 ||
        listen(FListener, 8) != 0 || pipe(FWake) != 0)
        throw EException("The relay cannot listen.");
    FThread = std::thread([this] { Serve(); });
}

void TRelayTransport::Disconnect()
{
    if (FThread.joinable()) {
        close(FWake[1]);
        FThread.join();
        close(FWake[0]);
    }
    if (FListener >= 0)
        close(FListener);
    FListener = -1;
    if (FConnected)
        --Log().Connected;
    FConnected = false;
}

void TRelayTransport::Serve()
{
    bool running = true;
    while (running) {
        std::vector<pollfd> handles = {{FWake[0], POLLIN, 0}, {FListener, POLLIN, 0}};
        for (const TPair &pair : FPairs) {
            handles.push_back({pair.Client, POLLIN, 0});
            handles.push_back({pair.Server, POLLIN, 0});
        }
        running = poll(handles.data(), handles.size(), -1) > 0 && handles[0].revents == 0;
        for (size_t i = 2; running && i < handles.size(); ++i) {
            const size_t other = i % 2 == 0 ? i + 1 : i - 1;
            if (handles[i].revents == 0 || Pump(handles[i].fd, handles[other].fd))
                continue;
            shutdown(handles[i].fd, SHUT_RDWR);
            shutdown(handles[other].fd, SHUT_RDWR);
            std::erase_if(FPairs, [&](const TPair &pair) {
                const bool ended = pair.Client == handles[i].fd || pair.Server == handles[i].fd;
                if (ended) {
                    close(pair.Client);
                    close(pair.Server);
                }
                return ended;
            });
            break; // the list of handles is of no use any more
        }
        if (running && handles[1].revents != 0)
            running = Accept();
    }
    for (const TPair &pair : FPairs) {
        close(pair.Client);
        close(pair.Server);
    }
    FPairs.clear();
}

bool TRelayTransport::Accept()
{
    const int client = accept(FListener, nullptr, nullptr);
    const int server = socket(AF_INET, SOCK_STREAM, 0);
    const sockaddr_in at = Loopback(FDestHost, FDestPort);
    if (client < 0 || connect(server, reinterpret_cast<const sockaddr *>(&at), sizeof at) != 0) {
        close(client);
        close(server);
        return client >= 0;
    }
    FPairs.push_back({client, server});
    return true;
}

bool TRelayTransport::Pump(int from, int to)
{
    char data[16384];
    const ssize_t got = recv(from, data, sizeof data, 0);
    if (got <= 0)
        return false;
    for (ssize_t done = 0; done < got;) {
        const ssize_t sent = send(to, data + done, static_cast<size_t>(got - done), MSG_NOSIGNAL);
        if (sent <= 0)
            return false;
        done += sent;
    }
    return true;
}
