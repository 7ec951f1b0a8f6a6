#pragma once

#include <QString>
#include <QTcpServer>
#include <QThread>

#include <functional>
#include <list>

/// Stands on loopback between a client and a server and makes the faults of a network. Forwards
/// in a thread of its own, so the test may block meanwhile. All members may be called at any time.
class TTcpProxy
{
public:
    /// The host is an IPv4 address in figures. Takes a free port when it is told none.
    TTcpProxy(const QString &host, int port, int ownPort = 0);
    ~TTcpProxy();
    TTcpProxy(const TTcpProxy &) = delete;
    TTcpProxy &operator=(const TTcpProxy &) = delete;

    /// Where the client has to connect to.
    QString Host() const { return QStringLiteral("127.0.0.1"); }
    int Port() const { return FPort; }

    /// Resets all open connections (RST), both ways. New ones are still accepted. Done on return.
    void Cut();
    /// Resets each connection as soon as this many more bytes went to the client over it.
    void CutAfter(qint64 bytesToClient);
    /// Forwards nothing any more; connections are accepted and stay silent.
    void Stall();
    /// Ends Stall(), Refuse() and CutAfter(); what waited is forwarded.
    void Resume();
    /// New connections are refused; the open ones go on.
    void Refuse();
    /// To the client the server is gone.
    void Vanish()
    {
        Refuse();
        Cut();
    }
    /// Milliseconds that each piece of data waits on its way, in each direction.
    void SetDelay(int milliseconds);

    /// Connections accepted so far.
    int ConnectionCount();

private:
    class TPair;
    void Call(const std::function<void()> &work);
    void Listen(int port);
    void Limit(qint64 bytes);

    const QString FHost;
    const int FServerPort;
    int FPort = 0;
    // The rest belongs to the thread.
    bool FStalled = false;
    qint64 FLimit = -1;
    unsigned long FDelay = 0;
    int FAccepted = 0;
    std::list<TPair> FPairs; // those that are over as well
    QThread FThread;
    QTcpServer FListener;
};

/// A port that accepts connections and never answers.
class TBlackHole : public TTcpProxy
{
public:
    TBlackHole() : TTcpProxy(QString(), 0) { Stall(); }
};
