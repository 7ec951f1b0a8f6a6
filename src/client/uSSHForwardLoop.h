#pragma once

#include "client/uSSHForwarder.h"

#include <QByteArray>
#include <chrono>
#include <list>
#include <poll.h>
#include <vector>

/// A descriptor that closes itself.
class TSocket
{
public:
    explicit TSocket(int descriptor = -1) : FDescriptor(descriptor) {}
    TSocket(TSocket &&other) noexcept : FDescriptor(std::exchange(other.FDescriptor, -1)) {}
    TSocket &operator=(TSocket &&other) noexcept;
    ~TSocket() { Close(); }

    int Get() const { return FDescriptor; }
    void Close();

private:
    int FDescriptor;
};

/// One local connection and its channel.
class TSSHRelay
{
public:
    TSSHRelay(ssh_session session, TSocket socket, const QByteArray &destHost, quint16 destPort);
    ~TSSHRelay();
    TSSHRelay(const TSSHRelay &) = delete;
    TSSHRelay &operator=(const TSSHRelay &) = delete;

    /// Moves what can be moved without waiting. False when the connection is over.
    bool Step();
    /// What there is to wait for at the local socket.
    short Events() const;
    int Descriptor() const { return FSocket.Get(); }
    /// Whether a step moved bytes that may let the other side move on at once.
    bool Moved() const { return FMoved; }

private:
    bool Open();
    bool ReadLocal();
    bool WriteRemote();
    void GiveUpRemote();
    bool ReadRemote();
    bool WriteLocal();

    ssh_channel FChannel;
    TSocket FSocket;
    QByteArray FDestHost;
    quint16 FDestPort;
    bool FOpen = false;
    bool FMoved = false;
    QByteArray FToRemote;
    QByteArray FToLocal;
    bool FLocalEnded = false;  // the client sends no more
    bool FEofSent = false;     // and the server was told
    bool FRemoteEnded = false; // the server sends no more
    bool FShutdown = false;    // and the client was told
};

/// What the serving thread does.
class TSSHForwardLoop
{
public:
    TSSHForwardLoop(ssh_session session, quint16 sourcePort, const QByteArray &destHost,
                    quint16 destPort);
    ~TSSHForwardLoop();

    void Run();  // until Stop, or until the SSH server is gone
    void Stop(); // any thread
    void CloseAll();

private:
    using TClock = std::chrono::steady_clock;

    void Listen(quint16 sourcePort);
    bool Wait();
    void Accept();
    bool StepRelays();
    bool KeepAlive();

    ssh_session FSession;
    ssh_event FEvent = nullptr;
    QByteArray FDestHost;
    quint16 FDestPort;
    TSocket FListener;
    TSocket FWakeRead;
    TSocket FWakeWrite;
    std::list<TSSHRelay> FRelays;
    std::vector<pollfd> FPolled;
    std::atomic<bool> FStopped{false};
    bool FMoved = false;
    bool FCanAccept = true;
    bool FAsked = false; // a keep-alive awaits its answer
    TClock::time_point FLastAlive = TClock::now();
};
