#pragma once

#include <QTcpServer>
#include <QTcpSocket>

#include <functional>

/// A web server of the test's own. Answers each request with the next text of Answers, or by
/// Answer when there is one; an empty text leaves the client waiting.
class TTestHttpServer : public QTcpServer
{
public:
    TTestHttpServer()
    {
        listen(QHostAddress::LocalHost);
        connect(this, &QTcpServer::newConnection, this, [this] {
            while (QTcpSocket *socket = nextPendingConnection())
                connect(socket, &QTcpSocket::readyRead, socket,
                        [this, socket, received = QByteArray()]() mutable {
                            received += socket->readAll();
                            if (IsWhole(received))
                                Reply(socket, std::exchange(received, {}));
                        });
        });
    }
    QString Host() const { return "127.0.0.1:" + QString::number(serverPort()); }
    static QByteArray Ok(const QByteArray &body)
    {
        return "HTTP/1.1 200 OK\r\nConnection: close\r\nContent-Length: " +
               QByteArray::number(body.size()) + "\r\n\r\n" + body;
    }
    static QByteArray Redirect(const char *status, const char *address)
    {
        return QByteArray("HTTP/1.1 ") + status +
               "\r\nConnection: close\r\nContent-Length: 0\r\nLocation: " + address + "\r\n\r\n";
    }

    QStringList Requests; // head and body
    QByteArrayList Answers;
    std::function<QByteArray(const QString &request)> Answer;

private:
    static bool IsWhole(const QByteArray &request)
    {
        const qsizetype end = request.indexOf("\r\n\r\n");
        const qsizetype at = request.indexOf("Content-Length: ");
        const qsizetype length = at < 0 ? 0 : request.mid(at + 16).split('\r').first().toLongLong();
        return end >= 0 && request.size() >= end + 4 + length;
    }
    void Reply(QTcpSocket *socket, const QByteArray &request)
    {
        Requests += QString::fromUtf8(request);
        QByteArray answer;
        if (Answer)
            answer = Answer(Requests.last());
        else if (!Answers.isEmpty())
            answer = Answers.takeFirst();
        if (answer.isEmpty())
            return;
        socket->write(answer);
        socket->flush();
        socket->disconnectFromHost();
    }
};
