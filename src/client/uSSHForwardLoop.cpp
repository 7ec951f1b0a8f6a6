#include "client/uSSHForwardLoop.h"

#include "support/uException.h"
#include "support/uFormat.h"

#include <arpa/inet.h>
#include <fcntl.h>
#include <libssh/server.h> // the keep-alive of both sides is declared there
#include <netinet/tcp.h>
#include <sys/socket.h>
#include <unistd.h>

namespace {

using namespace std::chrono_literals;

constexpr auto AliveInterval = 60s;
constexpr int MissedAnswers = 3; // as many as the field's other clients wait for
constexpr auto AcceptPause = 100ms;
constexpr size_t FirstRelay = 3; // behind the session, the listener and the pipe
constexpr int ListenBacklog = 32;
// Of bytes waiting in one direction of one connection.
constexpr qsizetype BufferSize = 256 * 1024;

[[noreturn]] void RaiseSystemError(const QString &what)
{
    throw EException(what + ": " + qt_error_string(errno) + '.');
}

void SetNonBlocking(int descriptor)
{
    ::fcntl(descriptor, F_SETFL, ::fcntl(descriptor, F_GETFL) | O_NONBLOCK);
}

bool WouldBlock()
{
    return errno == EAGAIN || errno == EWOULDBLOCK || errno == EINTR;
}

} // namespace

TSocket &TSocket::operator=(TSocket &&other) noexcept
{
    Close();
    FDescriptor = std::exchange(other.FDescriptor, -1);
    return *this;
}

void TSocket::Close()
{
    if (FDescriptor >= 0)
        ::close(FDescriptor);
    FDescriptor = -1;
}

TSSHForwardLoop::TSSHForwardLoop(ssh_session session, quint16 sourcePort,
                                 const QByteArray &destHost, quint16 destPort)
    : FSession(session), FDestHost(destHost), FDestPort(destPort)
{
    int pipe[2];
    if (::pipe2(pipe, O_CLOEXEC | O_NONBLOCK) != 0)
        RaiseSystemError("Cannot make a pipe");
    FWakeRead = TSocket(pipe[0]);
    FWakeWrite = TSocket(pipe[1]);
    Listen(sourcePort);
    ssh_set_blocking(FSession, 0);
    FEvent = ssh_event_new(); // once nothing can fail that would leave it behind
    ssh_event_add_session(FEvent, FSession);
}

TSSHForwardLoop::~TSSHForwardLoop()
{
    FRelays.clear();
    ssh_event_remove_session(FEvent, FSession);
    ssh_event_free(FEvent);
    ssh_set_blocking(FSession, 1);
}

void TSSHForwardLoop::Listen(quint16 sourcePort)
{
    FListener = TSocket(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0));
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    address.sin_port = htons(sourcePort);
    const int on = 1;
    ::setsockopt(FListener.Get(), SOL_SOCKET, SO_REUSEADDR, &on, sizeof on);
    if (::bind(FListener.Get(), reinterpret_cast<const sockaddr *>(&address), sizeof address) ||
        ::listen(FListener.Get(), ListenBacklog))
        RaiseSystemError(TFormat::Format("Cannot serve port %d", {sourcePort}));
}

void TSSHForwardLoop::Stop()
{
    FStopped = true;
    const char wake = 0;
    // A full pipe wakes as well.
    [[maybe_unused]] const auto written = ::write(FWakeWrite.Get(), &wake, 1);
}

void TSSHForwardLoop::CloseAll()
{
    FRelays.clear();
    FListener.Close();
}

void TSSHForwardLoop::Run()
{
    while (!FStopped && Wait()) {
        Accept();
        if (!StepRelays() || !KeepAlive())
            return;
    }
}

bool TSSHForwardLoop::Wait()
{
    FPolled.clear();
    const short sessionEvents =
        (ssh_get_poll_flags(FSession) & SSH_WRITE_PENDING) ? POLLIN | POLLOUT : POLLIN;
    FPolled.push_back({ssh_get_fd(FSession), sessionEvents, 0});
    // Without a free descriptor a waiting client would wake the loop over and over.
    FPolled.push_back({FCanAccept ? FListener.Get() : -1, POLLIN, 0});
    FPolled.push_back({FWakeRead.Get(), POLLIN, 0});
    // Those of the relays follow, from FirstRelay on.
    for (const TSSHRelay &relay : FRelays)
        FPolled.push_back({relay.Descriptor(), relay.Events(), 0});
    const std::chrono::milliseconds timeout = FMoved ? 0ms : FCanAccept ? 5s : AcceptPause;
    if (::poll(FPolled.data(), FPolled.size(), static_cast<int>(timeout.count())) < 0 &&
        errno != EINTR)
        return false;
    if (FPolled[0].revents & POLLIN)
        FLastAlive = TClock::now();
    return ssh_event_dopoll(FEvent, 0) != SSH_ERROR && ssh_is_connected(FSession);
}

void TSSHForwardLoop::Accept()
{
    for (;;) {
        TSocket socket(::accept4(FListener.Get(), nullptr, nullptr, SOCK_CLOEXEC | SOCK_NONBLOCK));
        FCanAccept = socket.Get() >= 0 || WouldBlock();
        if (socket.Get() < 0)
            return;
        const int on = 1;
        ::setsockopt(socket.Get(), IPPROTO_TCP, TCP_NODELAY, &on, sizeof on);
        FRelays.emplace_back(FSession, std::move(socket), FDestHost, FDestPort);
    }
}

bool TSSHForwardLoop::StepRelays()
{
    constexpr short Broken = POLLERR | POLLNVAL;
    FMoved = false;
    size_t polled = FirstRelay;
    for (auto relay = FRelays.begin(); relay != FRelays.end(); ++polled) {
        const bool broken = polled < FPolled.size() && (FPolled[polled].revents & Broken);
        const bool goesOn = !broken && relay->Step();
        FMoved = FMoved || relay->Moved();
        relay = goesOn ? std::next(relay) : FRelays.erase(relay);
    }
    return ssh_is_connected(FSession);
}

bool TSSHForwardLoop::KeepAlive()
{
    const auto silence = TClock::now() - FLastAlive;
    // Asked again while an answer is due, the library only looks whether it has come.
    if (FAsked || silence >= AliveInterval)
        FAsked = ssh_send_keepalive(FSession) == SSH_AGAIN;
    return silence < AliveInterval * (MissedAnswers + 1);
}

TSSHRelay::TSSHRelay(ssh_session session, TSocket socket, const QByteArray &destHost,
                     quint16 destPort)
    : FChannel(ssh_channel_new(session)), FSocket(std::move(socket)), FDestHost(destHost),
      FDestPort(destPort)
{
    SetNonBlocking(FSocket.Get());
}

TSSHRelay::~TSSHRelay()
{
    if (FChannel)
        ssh_channel_free(FChannel);
}

short TSSHRelay::Events() const
{
    short events = 0;
    if (FOpen && !FLocalEnded && FToRemote.isEmpty())
        events |= POLLIN;
    if (!FToLocal.isEmpty())
        events |= POLLOUT;
    return events;
}

bool TSSHRelay::Step()
{
    FMoved = false;
    if (!FChannel)
        return false;
    if (!FOpen)
        return Open();
    if (!ReadLocal())
        return false;
    if (!WriteRemote())
        GiveUpRemote();
    if (!ReadRemote() || !WriteLocal())
        return false;
    return !(FEofSent && FShutdown);
}

bool TSSHRelay::Open()
{
    const int result =
        ssh_channel_open_forward(FChannel, FDestHost.constData(), FDestPort, "127.0.0.1", 0);
    FOpen = FMoved = result == SSH_OK;
    return result == SSH_OK || result == SSH_AGAIN;
}

bool TSSHRelay::ReadLocal()
{
    if (FLocalEnded || !FToRemote.isEmpty())
        return true;
    FToRemote.resize(BufferSize);
    const ssize_t size = ::recv(FSocket.Get(), FToRemote.data(), BufferSize, 0);
    FToRemote.resize(std::max<ssize_t>(size, 0));
    if (size == 0)
        FLocalEnded = true;
    return size >= 0 || WouldBlock();
}

bool TSSHRelay::WriteRemote()
{
    if (!FToRemote.isEmpty()) {
        const int size = ssh_channel_write(FChannel, FToRemote.constData(),
                                           static_cast<uint32_t>(FToRemote.size()));
        if (size == SSH_ERROR)
            return false;
        FMoved = FMoved || size > 0;
        FToRemote.remove(0, std::max(size, 0));
    }
    if (FLocalEnded && FToRemote.isEmpty() && !FEofSent) {
        FEofSent = true;
        return ssh_channel_send_eof(FChannel) != SSH_ERROR;
    }
    return true;
}

// A server that hung up may have said why: that still has to reach the client.
void TSSHRelay::GiveUpRemote()
{
    FToRemote.clear();
    FLocalEnded = true;
    FEofSent = true;
}

bool TSSHRelay::ReadRemote()
{
    if (FRemoteEnded || !FToLocal.isEmpty())
        return true;
    FToLocal.resize(BufferSize);
    const int size = ssh_channel_read_nonblocking(FChannel, FToLocal.data(), BufferSize, 0);
    FToLocal.resize(std::max(size, 0));
    if (size > 0)
        FMoved = true;
    else if (ssh_channel_is_eof(FChannel) || ssh_channel_is_closed(FChannel))
        FRemoteEnded = true;
    return size != SSH_ERROR || FRemoteEnded;
}

bool TSSHRelay::WriteLocal()
{
    if (!FToLocal.isEmpty()) {
        const ssize_t size =
            ::send(FSocket.Get(), FToLocal.constData(), FToLocal.size(), MSG_NOSIGNAL);
        if (size < 0)
            return WouldBlock();
        // What the channel holds by now makes no socket readable.
        FMoved = true;
        FToLocal.remove(0, size);
    }
    if (FRemoteEnded && FToLocal.isEmpty() && !FShutdown) {
        FShutdown = true;
        ::shutdown(FSocket.Get(), SHUT_WR);
        // A closed channel takes nothing more: then nothing is left to wait for.
        return !ssh_channel_is_closed(FChannel);
    }
    return true;
}
