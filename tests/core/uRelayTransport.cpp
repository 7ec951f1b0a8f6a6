#include "uRelayTransport.h"

#include "core/uNetUtils.h"
#include "support/uException.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

namespace {

sockaddr_in Address(const QByteArray &host, quint16 port)
{
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(port);
    inet_pton(AF_INET, host.constData(), &address.sin_addr);
    return address;
}

bool Pump(int from, int to)
{
    char data[16384];
    const ssize_t got = recv(from, data, sizeof data, 0);
    return got > 0 && send(to, data, static_cast<size_t>(got), MSG_NOSIGNAL) == got;
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
    const sockaddr_in at = Address("127.0.0.1", sourcePort);
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
    FUnnoticed = false;
    if (FConnected)
        --Log().Connected;
    FConnected = false;
}

void TRelayTransport::Serve()
{
    pollfd handles[] = {{FWake[0], POLLIN, 0}, {FListener, POLLIN, 0}};
    while (poll(handles, 2, -1) > 0 && handles[0].revents == 0) {
        const int client = accept(FListener, nullptr, nullptr);
        Relay(client);
        close(client);
    }
}

void TRelayTransport::Relay(int client)
{
    const int server = socket(AF_INET, SOCK_STREAM, 0);
    const sockaddr_in at = Address(FDestHost, FDestPort);
    bool open = connect(server, reinterpret_cast<const sockaddr *>(&at), sizeof at) == 0;
    pollfd handles[] = {{FWake[0], POLLIN, 0}, {client, POLLIN, 0}, {server, POLLIN, 0}};
    while (open && poll(handles, 3, -1) > 0 && handles[0].revents == 0)
        open = (handles[1].revents == 0 || Pump(client, server)) &&
               (handles[2].revents == 0 || Pump(server, client));
    close(server);
}
