#pragma once

#include <QtGlobal>

#include <cerrno>
#include <netinet/in.h>
#include <sys/socket.h>
#include <system_error>
#include <unistd.h>

/// Plain TCP sockets for the ends of a connection that a test plays itself.
class TTestSocket
{
public:
    static int New() { return ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0); }
    /// False when nobody listens there.
    static bool Connect(int socket, quint16 port)
    {
        const sockaddr_in address = Loopback(port);
        return ::connect(socket, reinterpret_cast<const sockaddr *>(&address), sizeof address) == 0;
    }
    /// A socket that listens on loopback; port 0 is any that is free.
    static int Listen(quint16 port = 0)
    {
        const int listener = New();
        const int on = 1;
        ::setsockopt(listener, SOL_SOCKET, SO_REUSEADDR, &on, sizeof on);
        const sockaddr_in address = Loopback(port);
        if (::bind(listener, reinterpret_cast<const sockaddr *>(&address), sizeof address) ||
            ::listen(listener, 64))
            throw std::system_error(errno, std::generic_category(), "listen");
        return listener;
    }
    static quint16 PortOf(int socket)
    {
        sockaddr_in address{};
        socklen_t size = sizeof address;
        ::getsockname(socket, reinterpret_cast<sockaddr *>(&address), &size);
        return ntohs(address.sin_port);
    }

private:
    static sockaddr_in Loopback(quint16 port)
    {
        sockaddr_in address{};
        address.sin_family = AF_INET;
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        address.sin_port = htons(port);
        return address;
    }
};
