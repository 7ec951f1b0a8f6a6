#include "app/uHttpUtils.h"

#include "support/uException.h"

#include <QEventLoop>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QSet>
#include <QUrl>
#include <mutex>

namespace {

constexpr int TransferTimeout = 15000;        // milliseconds without a byte
constexpr qint64 LargestAnswer = 1024 * 1024; // bytes; who sends more is not who we asked

/// The event loops of requests under way, so that the end of the program can end them.
struct TRequests
{
    std::mutex Mutex;
    QSet<QEventLoop *> Loops;
    bool Closed = false;
};

TRequests &Requests()
{
    static TRequests requests;
    return requests;
}

class TRequestLoop : public QEventLoop
{
public:
    TRequestLoop()
    {
        const std::lock_guard lock(Requests().Mutex);
        if (Requests().Closed)
            throw EException("The program is ending.");
        Requests().Loops.insert(this);
    }
    ~TRequestLoop() override
    {
        const std::lock_guard lock(Requests().Mutex);
        Requests().Loops.remove(this);
    }
};

using TSend =
    std::function<QNetworkReply *(QNetworkAccessManager &manager, const QNetworkRequest &request)>;

QByteArray Run(const QString &address, const TSend &send)
{
    QNetworkAccessManager manager;
    QNetworkRequest request{QUrl(address)};
    request.setTransferTimeout(TransferTimeout);
    request.setAttribute(QNetworkRequest::RedirectPolicyAttribute,
                         QNetworkRequest::NoLessSafeRedirectPolicy);
    request.setHeader(QNetworkRequest::ContentTypeHeader, "application/x-www-form-urlencoded");
    TRequestLoop loop;
    const std::unique_ptr<QNetworkReply> reply(send(manager, request));
    QObject::connect(reply.get(), &QNetworkReply::finished, &loop, &QEventLoop::quit);
    QObject::connect(reply.get(), &QNetworkReply::downloadProgress, &loop,
                     [&](qint64 received, qint64) {
                         if (received > LargestAnswer)
                             reply->abort();
                     });
    if (!reply->isFinished())
        loop.exec();
    if (!reply->isFinished())
        throw EException("The program is ending.");
    if (reply->error() != QNetworkReply::NoError)
        throw EException(reply->errorString());
    return reply->readAll();
}

} // namespace

void THttpUtils::Post(const QString &address, const QStringList &fields)
{
    QByteArrayList form;
    for (const QString &field : fields) {
        const qsizetype at = field.indexOf(u'=');
        form += QUrl::toPercentEncoding(field.left(at)) + '=' +
                QUrl::toPercentEncoding(field.mid(at + 1));
    }
    const QByteArray body = form.join('&');
    Run(address, [&](QNetworkAccessManager &manager, const QNetworkRequest &request) {
        return manager.post(request, body);
    });
}

QByteArray THttpUtils::Get(const QString &address)
{
    return Run(address, [](QNetworkAccessManager &manager, const QNetworkRequest &request) {
        return manager.get(request);
    });
}

void THttpUtils::Abort()
{
    const std::lock_guard lock(Requests().Mutex);
    Requests().Closed = true;
    for (QEventLoop *loop : std::as_const(Requests().Loops))
        QMetaObject::invokeMethod(loop, "quit", Qt::QueuedConnection);
}

void THttpUtils::Resume()
{
    const std::lock_guard lock(Requests().Mutex);
    Requests().Closed = false;
}
