#include "uTcpProxy.h"

#include "uTestSocket.h"

#include <chrono>
#include <condition_variable>
#include <fcntl.h>
#include <functional>
#include <list>
#include <mutex>
#include <netinet/tcp.h>
#include <poll.h>
#include <sys/eventfd.h>
#include <thread>
#include <vector>

namespace {

[[noreturn]] void Fail(const char *what)
{
    throw std::system_error(errno, std::generic_category(), what);
}

// Such that the other end gets a reset instead of an orderly end.
void Reset(int socket)
{
    if (socket < 0)
        return;
    const linger discard{1, 0};
    ::setsockopt(socket, SOL_SOCKET, SO_LINGER, &discard, sizeof discard);
    ::close(socket);
}

bool IsForLater()
{
    return errno == EAGAIN || errno == EINTR;
}

enum TSide { sdClient, sdServer };

/// The two sockets of one forwarded connection. What comes from a side goes to the other one.
class TPair
{
public:
    TPair(int client, qint64 limit) : FSockets{client, -1}, FLimit(limit) {}

    bool IsConnected() const { return FSockets[sdServer] >= 0; }
    bool Connect(const QByteArray &host, int port);
    /// Bytes that may still go to the client before the connection is reset; -1 is no limit.
    void SetLimit(qint64 bytes) { FLimit = bytes; }
    /// What poll() is to wait for on this side.
    pollfd Watch(int side) const;
    /// Moves what can be moved. False when the connection is over and its sockets are closed.
    bool Move(const pollfd *fds, std::chrono::milliseconds delay);
    void Cut();

private:
    bool Read(int from, std::chrono::milliseconds delay);
    bool Write(int from);
    void PassEnd(int from);

    int FSockets[2];
    QByteArray FWaiting[2];              // read from this side, not yet written to the other
    bool FEnded[2] = {false, false};     // nothing more comes from this side
    bool FEndPassed[2] = {false, false}; // and the other one has been told
    qint64 FLimit;
};

bool TPair::Connect(const QByteArray &host, int port)
{
    const int server = TTestSocket::New();
    if (!TTestSocket::Connect(server, static_cast<quint16>(port), host)) {
        ::close(server);
        return false;
    }
    FSockets[sdServer] = server;
    // Pieces of a protocol are small; held back for each other they would look like a slow server.
    const int on = 1;
    for (const int socket : FSockets)
        ::setsockopt(socket, IPPROTO_TCP, TCP_NODELAY, &on, sizeof on);
    return true;
}

pollfd TPair::Watch(int side) const
{
    const bool wantsRead = !FEnded[side] && FWaiting[side].isEmpty();
    const bool wantsWrite = !FWaiting[1 - side].isEmpty();
    const int events = (wantsRead ? POLLIN : 0) | (wantsWrite ? POLLOUT : 0);
    // Asked for nothing, poll() still reports an end again and again; -1 leaves it out.
    return {events ? FSockets[side] : -1, static_cast<short>(events), 0};
}

bool TPair::Move(const pollfd *fds, std::chrono::milliseconds delay)
{
    for (const int side : {sdClient, sdServer}) {
        const bool isReady = fds[side].revents & (POLLIN | POLLHUP | POLLERR);
        if ((isReady && !Read(side, delay)) || !Write(side)) {
            Cut();
            return false;
        }
        PassEnd(side);
    }
    if (!FEndPassed[sdClient] || !FEndPassed[sdServer])
        return true;
    for (const int socket : FSockets)
        ::close(socket);
    return false;
}

bool TPair::Read(int from, std::chrono::milliseconds delay)
{
    QByteArray bytes(65536, Qt::Uninitialized);
    const ssize_t got = ::recv(FSockets[from], bytes.data(), bytes.size(), MSG_DONTWAIT);
    if (got < 0)
        return IsForLater();
    FEnded[from] = got == 0;
    FWaiting[from].append(bytes.constData(), got);
    std::this_thread::sleep_for(delay); // all the others are late then too, which does no harm
    return true;
}

bool TPair::Write(int from)
{
    QByteArray &waiting = FWaiting[from];
    if (waiting.isEmpty())
        return true;
    const bool isLimited = from == sdServer && FLimit >= 0;
    const qint64 wanted = isLimited ? std::min<qint64>(FLimit, waiting.size()) : waiting.size();
    const ssize_t sent =
        ::send(FSockets[1 - from], waiting.constData(), wanted, MSG_DONTWAIT | MSG_NOSIGNAL);
    if (sent < 0)
        return IsForLater();
    waiting.remove(0, sent);
    if (isLimited)
        FLimit -= sent;
    return !isLimited || FLimit > 0;
}

void TPair::PassEnd(int from)
{
    if (!FEnded[from] || FEndPassed[from] || !FWaiting[from].isEmpty())
        return;
    ::shutdown(FSockets[1 - from], SHUT_WR);
    FEndPassed[from] = true;
}

void TPair::Cut()
{
    for (const int socket : FSockets)
        Reset(socket);
}

} // namespace

class TTcpProxy::TLoop
{
public:
    TLoop(const QString &host, int port, int ownPort);
    ~TLoop();

    /// Runs this in the proxy's thread between two moves of data and returns when it is done.
    void Call(const std::function<void()> &work);
    void Listen(int port);
    void SetLimit(qint64 bytes);

    int Port = 0;
    // The rest belongs to the thread.
    int Listener = -1;
    bool Stalled = false;
    std::chrono::milliseconds Delay{0};
    std::list<TPair> Pairs;
    int Accepted = 0;

private:
    void Run();
    void RunCall();
    std::vector<pollfd> Watch() const;
    void Accept();
    void ConnectNew();

    const QByteArray FHost;
    const int FServerPort;
    const int FWake = ::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK);
    qint64 FLimit = -1;
    std::mutex FCallers;
    std::mutex FMutex;
    std::condition_variable FDone;
    std::function<void()> FCall;
    bool FEnding = false;
    std::thread FThread;
};

TTcpProxy::TLoop::TLoop(const QString &host, int port, int ownPort)
    : FHost(host.toUtf8()), FServerPort(port)
{
    Listen(ownPort);
    Port = TTestSocket::PortOf(Listener);
    FThread = std::thread([this] { Run(); });
}

TTcpProxy::TLoop::~TLoop()
{
    Call([this] { FEnding = true; });
    FThread.join();
    for (TPair &pair : Pairs)
        pair.Cut();
    ::close(FWake);
    if (Listener >= 0)
        ::close(Listener);
}

void TTcpProxy::TLoop::Listen(int port)
{
    Listener = TTestSocket::Listen(static_cast<quint16>(port));
    ::fcntl(Listener, F_SETFL, O_NONBLOCK);
}

void TTcpProxy::TLoop::SetLimit(qint64 bytes)
{
    FLimit = bytes;
    for (TPair &pair : Pairs)
        pair.SetLimit(bytes);
}

void TTcpProxy::TLoop::Call(const std::function<void()> &work)
{
    const std::lock_guard caller(FCallers);
    std::unique_lock lock(FMutex);
    FCall = work;
    ::eventfd_write(FWake, 1);
    FDone.wait(lock, [this] { return !FCall; });
}

void TTcpProxy::TLoop::RunCall()
{
    eventfd_t calls = 0;
    ::eventfd_read(FWake, &calls);
    const std::lock_guard lock(FMutex);
    if (FCall)
        FCall();
    FCall = nullptr;
    FDone.notify_all();
}

void TTcpProxy::TLoop::Run()
{
    while (!FEnding) {
        if (!Stalled)
            ConnectNew();
        std::vector<pollfd> fds = Watch();
        if (::poll(fds.data(), fds.size(), -1) < 0 && errno != EINTR)
            Fail("poll");
        const pollfd *two = fds.data() + 2;
        for (auto pair = Pairs.begin(); pair != Pairs.end() && !Stalled; two += 2)
            pair = pair->Move(two, Delay) ? std::next(pair) : Pairs.erase(pair);
        if (fds[1].revents)
            Accept();
        if (fds[0].revents)
            RunCall();
    }
}

std::vector<pollfd> TTcpProxy::TLoop::Watch() const
{
    std::vector<pollfd> fds{{FWake, POLLIN, 0}, {Listener, POLLIN, 0}};
    const pollfd nothing{-1, 0, 0};
    for (const TPair &pair : Pairs)
        for (const int side : {sdClient, sdServer})
            fds.push_back(Stalled ? nothing : pair.Watch(side));
    return fds;
}

void TTcpProxy::TLoop::Accept()
{
    const int client = ::accept4(Listener, nullptr, nullptr, SOCK_CLOEXEC);
    if (client < 0)
        return;
    Pairs.emplace_back(client, FLimit);
    ++Accepted;
}

// A stalled proxy accepts without a server behind, so the server's side is made when first needed.
void TTcpProxy::TLoop::ConnectNew()
{
    std::erase_if(Pairs, [this](TPair &pair) {
        if (pair.IsConnected() || pair.Connect(FHost, FServerPort))
            return false;
        pair.Cut();
        return true;
    });
}

TTcpProxy::TTcpProxy(const QString &host, int port, int ownPort)
    : FLoop(std::make_unique<TLoop>(host, port, ownPort))
{}

TTcpProxy::~TTcpProxy() = default;

int TTcpProxy::Port() const
{
    return FLoop->Port;
}

void TTcpProxy::Cut()
{
    FLoop->Call([this] {
        for (TPair &pair : FLoop->Pairs)
            pair.Cut();
        FLoop->Pairs.clear();
    });
}

void TTcpProxy::CutAfter(qint64 bytesToClient)
{
    FLoop->Call([this, bytesToClient] { FLoop->SetLimit(bytesToClient); });
}

void TTcpProxy::Stall()
{
    FLoop->Call([this] { FLoop->Stalled = true; });
}

void TTcpProxy::Resume()
{
    FLoop->Call([this] {
        FLoop->Stalled = false;
        FLoop->SetLimit(-1);
        if (FLoop->Listener < 0)
            FLoop->Listen(FLoop->Port);
    });
}

void TTcpProxy::Refuse()
{
    FLoop->Call([this] {
        if (FLoop->Listener >= 0)
            ::close(FLoop->Listener);
        FLoop->Listener = -1;
    });
}

void TTcpProxy::SetDelay(int milliseconds)
{
    FLoop->Call([this, milliseconds] { FLoop->Delay = std::chrono::milliseconds(milliseconds); });
}

int TTcpProxy::ConnectionCount() const
{
    int count = 0;
    FLoop->Call([&] { count = FLoop->Accepted; });
    return count;
}
