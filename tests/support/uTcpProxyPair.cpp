#include "uTcpProxyPair.h"

#include <algorithm>
#include <arpa/inet.h>
#include <cerrno>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/socket.h>
#include <unistd.h>

void TTcpProxyPair::Reset(int &socket)
{
    if (socket < 0)
        return;
    const linger discard{1, 0};
    setsockopt(socket, SOL_SOCKET, SO_LINGER, &discard, sizeof discard);
    close(socket);
    socket = -1;
}

bool TTcpProxyPair::Connect(const QByteArray &host, int port)
{
    int server = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(uint16_t(port));
    inet_pton(AF_INET, host.constData(), &address.sin_addr);
    if (connect(server, reinterpret_cast<sockaddr *>(&address), sizeof address)) {
        Reset(server);
        return false;
    }
    // Pieces of a protocol are small; held back for each other they would look like a slow server.
    const int on = 1;
    setsockopt(server, IPPROTO_TCP, TCP_NODELAY, &on, sizeof on);
    setsockopt(FToServer.From, IPPROTO_TCP, TCP_NODELAY, &on, sizeof on);
    FToServer.To = server;
    FToClient.From = server;
    return true;
}

void TTcpProxyPair::Ask(pollfd (&fds)[2]) const
{
    const TDirection *const reading[] = {&FToServer, &FToClient};
    const TDirection *const writing[] = {&FToClient, &FToServer};
    for (int i = 0; i < 2; ++i) {
        const int events =
            (reading[i]->WantsRead() ? POLLIN : 0) | (writing[i]->WantsWrite() ? POLLOUT : 0);
        // Asked for nothing, poll() still reports an end again and again; -1 leaves it out.
        fds[i] = {events ? reading[i]->From : -1, short(events), 0};
    }
}

TTcpProxyPair::TClock::time_point TTcpProxyPair::NextDue(TClock::time_point now) const
{
    auto due = TClock::time_point::max();
    for (const TDirection *direction : {&FToServer, &FToClient})
        if (!direction->Pieces.empty() && direction->Pieces.front().Due > now)
            due = std::min(due, direction->Pieces.front().Due);
    return due;
}

bool TTcpProxyPair::TDirection::Read(std::chrono::milliseconds delay)
{
    QByteArray bytes(16384, Qt::Uninitialized);
    const ssize_t got = recv(From, bytes.data(), size_t(bytes.size()), MSG_DONTWAIT);
    if (got < 0)
        return errno == EAGAIN || errno == EINTR;
    if (got == 0) {
        Ended = true;
        return true;
    }
    bytes.truncate(int(got));
    Pieces.push_back({TClock::now() + delay, bytes});
    return true;
}

bool TTcpProxyPair::TDirection::Write(qint64 &limit)
{
    TPiece &piece = Pieces.front();
    const qint64 wanted = limit < 0 ? piece.Bytes.size() : std::min(limit, piece.Bytes.size());
    const ssize_t sent =
        send(To, piece.Bytes.constData(), size_t(wanted), MSG_DONTWAIT | MSG_NOSIGNAL);
    if (sent < 0)
        return errno == EAGAIN || errno == EINTR;
    Moved += sent;
    if (limit >= 0)
        limit -= sent;
    piece.Bytes.remove(0, int(sent));
    if (piece.Bytes.isEmpty())
        Pieces.pop_front();
    return limit != 0;
}

void TTcpProxyPair::TDirection::PassEnd()
{
    if (!Ended || Shut || !Pieces.empty())
        return;
    shutdown(To, SHUT_WR);
    Shut = true;
}

bool TTcpProxyPair::Move(const pollfd (&fds)[2], std::chrono::milliseconds delay)
{
    qint64 noLimit = -1;
    bool ok = true;
    if (fds[0].revents & (POLLIN | POLLHUP | POLLERR))
        ok = ok && FToServer.Read(delay);
    if (fds[1].revents & (POLLIN | POLLHUP | POLLERR))
        ok = ok && FToClient.Read(delay);
    if (ok && FToServer.WantsWrite())
        ok = FToServer.Write(noLimit);
    if (ok && FToClient.WantsWrite())
        ok = FToClient.Write(FLimit);
    if (!ok) {
        Cut();
        return false;
    }
    FToServer.PassEnd();
    FToClient.PassEnd();
    if (!FToServer.Shut || !FToClient.Shut)
        return true;
    close(FToServer.From);
    close(FToServer.To);
    return false;
}

void TTcpProxyPair::Cut()
{
    Reset(FToServer.From);
    Reset(FToServer.To);
}
