#include "uTcpProxy.h"

#include "uTcpProxyPair.h"

#include <QByteArray>

#include <arpa/inet.h>
#include <cerrno>
#include <condition_variable>
#include <fcntl.h>
#include <functional>
#include <list>
#include <mutex>
#include <netinet/in.h>
#include <sys/socket.h>
#include <system_error>
#include <thread>
#include <unistd.h>
#include <vector>

namespace {

[[noreturn]] void Fail(const char *what)
{
    throw std::system_error(errno, std::generic_category(), what);
}

// The proxy keeps its port over Refuse() and Resume(); port 0 takes a free one.
int Listen(int port)
{
    const int listener = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0);
    const int on = 1;
    setsockopt(listener, SOL_SOCKET, SO_REUSEADDR, &on, sizeof on);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(uint16_t(port));
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    if (bind(listener, reinterpret_cast<sockaddr *>(&address), sizeof address) ||
        listen(listener, 64))
        Fail("proxy");
    return listener;
}

int PortOf(int listener)
{
    sockaddr_in address{};
    socklen_t size = sizeof address;
    getsockname(listener, reinterpret_cast<sockaddr *>(&address), &size);
    return ntohs(address.sin_port);
}

} // namespace

class TTcpProxy::TLoop
{
public:
    TLoop(const QString &host, int port);
    ~TLoop();

    /// Runs a change in the proxy's thread and returns when it is done.
    /// Runs this in the proxy's thread between two moves of data and returns when it is done, so
    /// a number that is asked for counts all that either side has seen by then.
    void Call(const std::function<void()> &work);
    template <class T>
    T Ask(const std::function<T()> &question);

    const QByteArray Host;
    const int ServerPort;
    int Port = 0;
    // The rest belongs to the thread.
    int Listener = -1;
    bool Stalled = false;
    std::chrono::milliseconds Delay{0};
    qint64 Limit = -1;
    std::list<TTcpProxyPair> Pairs;
    int Accepted = 0;
    qint64 ToServer = 0;
    qint64 ToClient = 0;

private:
    void Run();
    void RunCall();
    int Timeout() const;
    std::vector<pollfd> Watch() const;
    void Accept();
    void ConnectNew();
    bool Move(TTcpProxyPair &pair, const pollfd (&fds)[2]);

    int FWake[2] = {-1, -1};
    std::mutex FCallers;
    std::mutex FMutex;
    std::condition_variable FDone;
    std::function<void()> FCall;
    bool FEnding = false;
    std::thread FThread;
};

TTcpProxy::TLoop::TLoop(const QString &host, int port) : Host(host.toUtf8()), ServerPort(port)
{
    Listener = Listen(0);
    Port = PortOf(Listener);
    if (pipe2(FWake, O_CLOEXEC | O_NONBLOCK))
        Fail("pipe");
    FThread = std::thread([this] { Run(); });
}

TTcpProxy::TLoop::~TLoop()
{
    Call([this] { FEnding = true; });
    FThread.join();
    for (TTcpProxyPair &pair : Pairs)
        pair.Cut();
    for (const int fd : {Listener, FWake[0], FWake[1]})
        if (fd >= 0)
            close(fd);
}

void TTcpProxy::TLoop::Call(const std::function<void()> &work)
{
    const std::lock_guard caller(FCallers);
    std::unique_lock lock(FMutex);
    FCall = work;
    if (write(FWake[1], "x", 1) < 0)
        Fail("proxy");
    FDone.wait(lock, [this] { return !FCall; });
}

template <class T>
T TTcpProxy::TLoop::Ask(const std::function<T()> &question)
{
    T answer{};
    Call([&] { answer = question(); });
    return answer;
}

void TTcpProxy::TLoop::RunCall()
{
    char drained[16];
    while (read(FWake[0], drained, sizeof drained) > 0)
        ;
    const std::lock_guard lock(FMutex);
    if (FCall)
        FCall();
    FCall = nullptr;
    FDone.notify_all();
}

// Data that are due already wait for room in the socket, which poll() reports by itself.
int TTcpProxy::TLoop::Timeout() const
{
    const auto now = TTcpProxyPair::TClock::now();
    auto due = TTcpProxyPair::TClock::time_point::max();
    for (const TTcpProxyPair &pair : Pairs)
        due = std::min(due, pair.NextDue(now));
    if (Stalled || due == TTcpProxyPair::TClock::time_point::max())
        return -1;
    return int(std::chrono::ceil<std::chrono::milliseconds>(due - now).count());
}

std::vector<pollfd> TTcpProxy::TLoop::Watch() const
{
    std::vector<pollfd> fds{{FWake[0], POLLIN, 0}, {Listener, POLLIN, 0}};
    for (const TTcpProxyPair &pair : Pairs) {
        pollfd two[2] = {{-1, 0, 0}, {-1, 0, 0}};
        if (!Stalled)
            pair.Ask(two);
        fds.insert(fds.end(), {two[0], two[1]});
    }
    return fds;
}

void TTcpProxy::TLoop::Run()
{
    while (!FEnding) {
        if (!Stalled)
            ConnectNew();
        const int timeout = Timeout(); // first, so that what falls due meanwhile is in Watch()
        std::vector<pollfd> fds = Watch();
        if (poll(fds.data(), fds.size(), timeout) < 0 && errno != EINTR)
            Fail("poll");
        size_t i = 2;
        for (auto pair = Pairs.begin(); pair != Pairs.end() && !Stalled; i += 2)
            pair = Move(*pair, {fds[i], fds[i + 1]}) ? std::next(pair) : Pairs.erase(pair);
        if (fds[1].revents)
            Accept();
        if (fds[0].revents)
            RunCall();
    }
}

void TTcpProxy::TLoop::Accept()
{
    const int client = accept4(Listener, nullptr, nullptr, SOCK_CLOEXEC);
    if (client < 0)
        return;
    Pairs.emplace_back(client).SetLimit(Limit);
    ++Accepted;
}

// A stalled proxy accepts without a server behind, so the server's side is made when first needed.
void TTcpProxy::TLoop::ConnectNew()
{
    std::erase_if(Pairs, [this](TTcpProxyPair &pair) {
        if (pair.IsConnected() || pair.Connect(Host, ServerPort))
            return false;
        pair.Cut();
        return true;
    });
}

bool TTcpProxy::TLoop::Move(TTcpProxyPair &pair, const pollfd (&fds)[2])
{
    const bool alive = pair.Move(fds, Delay);
    ToServer += pair.TakeBytesToServer();
    ToClient += pair.TakeBytesToClient();
    return alive;
}

TTcpProxy::TTcpProxy(const QString &host, int port) : FLoop(std::make_unique<TLoop>(host, port)) {}

TTcpProxy::~TTcpProxy() = default;

int TTcpProxy::Port() const
{
    return FLoop->Port;
}

void TTcpProxy::Cut()
{
    FLoop->Call([this] {
        for (TTcpProxyPair &pair : FLoop->Pairs)
            pair.Cut();
        FLoop->Pairs.clear();
    });
}

void TTcpProxy::CutAfter(qint64 bytesToClient)
{
    FLoop->Call([this, bytesToClient] {
        FLoop->Limit = bytesToClient;
        for (TTcpProxyPair &pair : FLoop->Pairs)
            pair.SetLimit(bytesToClient);
    });
}

void TTcpProxy::Stall()
{
    FLoop->Call([this] { FLoop->Stalled = true; });
}

void TTcpProxy::Resume()
{
    FLoop->Call([this] {
        FLoop->Stalled = false;
        FLoop->Limit = -1;
        for (TTcpProxyPair &pair : FLoop->Pairs)
            pair.SetLimit(-1);
        if (FLoop->Listener < 0)
            FLoop->Listener = Listen(FLoop->Port);
    });
}

void TTcpProxy::Refuse()
{
    FLoop->Call([this] {
        if (FLoop->Listener >= 0)
            close(FLoop->Listener);
        FLoop->Listener = -1;
    });
}

void TTcpProxy::SetDelay(int milliseconds)
{
    FLoop->Call([this, milliseconds] { FLoop->Delay = std::chrono::milliseconds(milliseconds); });
}

int TTcpProxy::ConnectionCount() const
{
    return FLoop->Ask<int>([this] { return FLoop->Accepted; });
}

int TTcpProxy::OpenCount() const
{
    return FLoop->Ask<int>([this] { return int(FLoop->Pairs.size()); });
}

qint64 TTcpProxy::BytesToServer() const
{
    return FLoop->Ask<qint64>([this] { return FLoop->ToServer; });
}

qint64 TTcpProxy::BytesToClient() const
{
    return FLoop->Ask<qint64>([this] { return FLoop->ToClient; });
}
