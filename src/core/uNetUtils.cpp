#include "core/uNetUtils.h"

#include "support/uException.h"

#include <QUrl>

#include <arpa/inet.h>
#include <cerrno>
#include <fcntl.h>
#include <netdb.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

namespace {

constexpr int FirstPort = 33825;
constexpr int PortLimit = 65535;         // itself never given
constexpr int QuickConnectTimeout = 200; // milliseconds

class TSocket
{
public:
    explicit TSocket(int flags = 0)
        : FHandle(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC | flags, 0))
    {}
    ~TSocket()
    {
        if (FHandle >= 0)
            ::close(FHandle);
    }
    TSocket(const TSocket &) = delete;
    TSocket &operator=(const TSocket &) = delete;

    int Handle() const { return FHandle; }
    bool Bind(const sockaddr_in &address) const
    {
        return ::bind(FHandle, reinterpret_cast<const sockaddr *>(&address), sizeof address) == 0;
    }
    bool Connect(const sockaddr_in &address) const
    {
        return ::connect(FHandle, reinterpret_cast<const sockaddr *>(&address), sizeof address) ==
               0;
    }
    bool WaitConnected(int milliseconds) const
    {
        pollfd handle{FHandle, POLLOUT, 0};
        if (::poll(&handle, 1, milliseconds) != 1)
            return false;
        int error = 0;
        socklen_t size = sizeof error;
        return ::getsockopt(FHandle, SOL_SOCKET, SO_ERROR, &error, &size) == 0 && error == 0;
    }

private:
    int FHandle;
};

bool TryParse(const QString &ipv4Address, in_addr &address)
{
    return ::inet_pton(AF_INET, ipv4Address.toLatin1().constData(), &address) == 1;
}

bool TryMakeAddress(const QString &ipv4Address, quint16 port, sockaddr_in &address)
{
    address = {};
    address.sin_family = AF_INET;
    address.sin_port = htons(port);
    return TryParse(ipv4Address, address.sin_addr);
}

QString AddressText(const in_addr &address)
{
    char text[INET_ADDRSTRLEN];
    return QString::fromLatin1(::inet_ntop(AF_INET, &address, text, sizeof text));
}

/// Names beyond ASCII are looked up in their ASCII form; a name that has none is left to the
/// lookup.
QByteArray LookupName(const QString &hostName)
{
    const QByteArray ace = QUrl::toAce(hostName);
    return ace.isEmpty() ? hostName.toUtf8() : ace;
}

bool TryLookup(const QByteArray &name, QString &resultValue)
{
    addrinfo hints{};
    hints.ai_family = AF_INET;
    hints.ai_socktype = SOCK_STREAM;
    addrinfo *found = nullptr;
    if (::getaddrinfo(name.constData(), nullptr, &hints, &found) != 0)
        return false;
    resultValue = AddressText(reinterpret_cast<const sockaddr_in *>(found->ai_addr)->sin_addr);
    ::freeaddrinfo(found);
    return true;
}

} // namespace

void TNetUtils::WSAExecute(const std::function<void()> &proc)
{
    proc();
}

bool TNetUtils::TryResolveIPv4Address(const QString &hostName, QString &resultValue)
{
    bool resolved = false;
    WSAExecute([&] {
        resolved =
            TryLookup(hostName.isEmpty() ? QByteArrayLiteral("127.0.0.1") : LookupName(hostName),
                      resultValue);
    });
    return resolved;
}

bool TNetUtils::IsIPv4Address(const QString &ipv4Address)
{
    in_addr address;
    return TryParse(ipv4Address, address) && address.s_addr != INADDR_BROADCAST;
}

bool TNetUtils::IsPortOpened(const QString &ipv4Address, quint16 port)
{
    bool opened = false;
    WSAExecute([&] {
        sockaddr_in address;
        opened = TryMakeAddress(ipv4Address, port, address) && TSocket().Connect(address);
    });
    return opened;
}

bool TNetUtils::IsPortOpened2(const QString &ipv4Address, quint16 port)
{
    sockaddr_in address;
    if (!TryMakeAddress(ipv4Address, port, address))
        return false;
    const TSocket socket(SOCK_NONBLOCK);
    if (socket.Connect(address))
        return true;
    return errno == EINPROGRESS && socket.WaitConnected(QuickConnectTimeout);
}

quint16 TTcpPortHelper::FindFreePort(const QString &ipv4Address)
{
    int port = FirstPort;
    TNetUtils::WSAExecute([&] {
        sockaddr_in address;
        while (port < PortLimit) {
            if (TryMakeAddress(ipv4Address, static_cast<quint16>(port), address) &&
                TSocket().Bind(address))
                return;
            ++port;
        }
        throw EException(QStringLiteral("Free port not found."));
    });
    return static_cast<quint16>(port);
}
