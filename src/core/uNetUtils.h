#pragma once

#include <QString>
#include <functional>

/// Small socket operations on IPv4 addresses.
class TNetUtils
{
public:
    /// Runs `proc` with the platform's sockets ready. POSIX sockets need no start, so that here it
    /// is the one place where a platform that needs one has it.
    static void WSAExecute(const std::function<void()> &proc);
    /// Looks the name up and gives its first IPv4 address; false when it has none. The empty name
    /// is this machine.
    static bool TryResolveIPv4Address(const QString &hostName, QString &resultValue);
    /// Whether the text is four numbers with dots between; the broadcast address does not count.
    static bool IsIPv4Address(const QString &ipv4Address);
    /// A TCP connect that waits as long as the system does.
    static bool IsPortOpened(const QString &ipv4Address, quint16 port);
    /// A TCP connect that waits 200 milliseconds at most.
    static bool IsPortOpened2(const QString &ipv4Address, quint16 port);
};

/// Finds local ports to serve on.
class TTcpPortHelper
{
public:
    /// The first port from 33825 up to 65534 that can be bound at the address. It is not held, so
    /// that another program may take it. Raises EException "Free port not found.".
    static quint16 FindFreePort(const QString &ipv4Address);
};
