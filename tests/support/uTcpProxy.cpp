#include "uTcpProxy.h"

#include <QTcpSocket>

#include <algorithm>
#include <memory>
#include <sys/socket.h>

namespace {

constexpr qint64 Piece = 65536; // bytes that are held at most for an end that does not read

} // namespace

/// The two sockets of one forwarded connection. All of it happens in the proxy's thread.
class TTcpProxy::TPair
{
public:
    TPair(TTcpProxy &proxy, QTcpSocket *client);
    ~TPair() { Cut(); }

    void SetLimit(qint64 bytes) { FLimit = bytes; }
    /// Moves what can be moved.
    void Move();

private:
    bool Connect();
    qint64 Pass(QTcpSocket &from, QTcpSocket &to, qint64 most);
    void Cut();

    const TTcpProxy &FProxy;
    const std::unique_ptr<QTcpSocket> FClient;
    QTcpSocket FServer;
    qint64 FLimit; // bytes that may still go to the client; -1 is no limit
    bool FConnected = false;
    bool FCut = false;
};

TTcpProxy::TPair::TPair(TTcpProxy &proxy, QTcpSocket *client)
    : FProxy(proxy), FClient(client), FLimit(proxy.FLimit)
{
    const auto move = [this] { Move(); };
    for (QTcpSocket *socket : {client, &FServer}) {
        socket->setReadBufferSize(Piece);
        QObject::connect(socket, &QTcpSocket::readyRead, socket, move);
        QObject::connect(socket, &QTcpSocket::bytesWritten, socket, move);
        QObject::connect(socket, &QTcpSocket::disconnected, socket, move);
    }
}

// A stalled proxy accepts without a server behind, so the server's side is made when first needed.
bool TTcpProxy::TPair::Connect()
{
    FServer.connectToHost(FProxy.FHost, quint16(FProxy.FServerPort));
    FConnected = FServer.waitForConnected();
    // Pieces of a protocol are small; held back for each other they would look like a slow server.
    for (QTcpSocket *socket : {FClient.get(), &FServer})
        socket->setSocketOption(QTcpSocket::LowDelayOption, 1);
    return FConnected;
}

void TTcpProxy::TPair::Move()
{
    if (FCut || FProxy.FStalled)
        return;
    if (!FConnected && !Connect())
        return Cut();
    Pass(*FClient, FServer, Piece);
    if (FLimit < 0)
        Pass(FServer, *FClient, Piece);
    else if (FLimit > 0)
        FLimit -= Pass(FServer, *FClient, std::min(FLimit, Piece));
    else if (FClient->bytesToWrite() == 0)
        Cut();
}

qint64 TTcpProxy::TPair::Pass(QTcpSocket &from, QTcpSocket &to, qint64 most)
{
    if (to.bytesToWrite() > 0)
        return 0; // asked again when that is written
    const QByteArray bytes = from.read(most);
    if (bytes.isEmpty() && from.state() == QTcpSocket::UnconnectedState)
        to.disconnectFromHost();
    if (bytes.isEmpty())
        return 0;
    QThread::msleep(FProxy.FDelay); // all the others are late then too, which does no harm
    to.write(bytes);
    return bytes.size();
}

// Such that the other ends get a reset instead of an orderly end.
void TTcpProxy::TPair::Cut()
{
    FCut = true;
    const linger discard{1, 0};
    for (QTcpSocket *socket : {FClient.get(), &FServer}) {
        ::setsockopt(int(socket->socketDescriptor()), SOL_SOCKET, SO_LINGER, &discard,
                     sizeof discard);
        socket->abort();
    }
}

TTcpProxy::TTcpProxy(const QString &host, int port, int ownPort) : FHost(host), FServerPort(port)
{
    QObject::connect(&FListener, &QTcpServer::newConnection, &FListener, [this] {
        while (QTcpSocket *client = FListener.nextPendingConnection()) {
            ++FAccepted;
            FPairs.emplace_back(*this, client).Move();
        }
    });
    FListener.moveToThread(&FThread);
    FThread.start();
    Call([this, ownPort] { Listen(ownPort); });
    FPort = FListener.serverPort();
}

TTcpProxy::~TTcpProxy()
{
    Call([this] {
        FPairs.clear();
        FListener.close();
    });
    FThread.quit();
    FThread.wait();
}

// Done in the thread, between two moves of data.
void TTcpProxy::Call(const std::function<void()> &work)
{
    QMetaObject::invokeMethod(&FListener, work, Qt::BlockingQueuedConnection);
}

void TTcpProxy::Listen(int port)
{
    if (!FListener.listen(QHostAddress::LocalHost, quint16(port)))
        qFatal("The proxy cannot listen: %s", qPrintable(FListener.errorString()));
}

void TTcpProxy::Limit(qint64 bytes)
{
    FLimit = bytes;
    for (TPair &pair : FPairs)
        pair.SetLimit(bytes);
}

void TTcpProxy::Cut()
{
    Call([this] { FPairs.clear(); });
}

void TTcpProxy::CutAfter(qint64 bytesToClient)
{
    Call([=, this] { Limit(bytesToClient); });
}

void TTcpProxy::Stall()
{
    Call([this] { FStalled = true; });
}

void TTcpProxy::Resume()
{
    Call([this] {
        FStalled = false;
        Limit(-1);
        if (!FListener.isListening())
            Listen(FPort);
        for (TPair &pair : FPairs)
            pair.Move();
    });
}

void TTcpProxy::Refuse()
{
    Call([this] { FListener.close(); });
}

void TTcpProxy::SetDelay(int milliseconds)
{
    Call([=, this] { FDelay = ulong(milliseconds); });
}

int TTcpProxy::ConnectionCount()
{
    int count = 0;
    Call([&] { count = FAccepted; });
    return count;
}
