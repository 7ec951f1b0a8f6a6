#pragma once

#include <QByteArray>
#include <QList>
#include <QString>
#include <QStringList>

struct st_mysql;
class TTestServer;

/// A session of the test's own on a server, over the plain client library, so that what the
/// product did is checked by other code than the product's. Every call throws std::runtime_error
/// with the server's text. Use it where a session must live on (locks, transactions, KILL).
class TTestSession
{
public:
    explicit TTestSession(const TTestServer &server, const QString &database = QString());
    /// As root of whatever answers there, such as a proxy before a server.
    TTestSession(const QString &host, int port, const QString &database = QString());
    ~TTestSession();
    TTestSession(const TTestSession &) = delete;
    TTestSession &operator=(const TTestSession &) = delete;

    /// Runs one or more statements separated by semicolons; reads all their results away.
    void Exec(const QString &sql);
    /// First field of the first row; a null string for NULL and for no row.
    QString Value(const QString &sql);
    /// The same as the bytes that the server sent.
    QByteArray Bytes(const QString &sql);
    /// All rows of the first result, each field as text; NULL is a null string.
    QList<QStringList> Rows(const QString &sql);
    /// The server's number of this session, for KILL.
    qulonglong Id() const;

private:
    QList<QList<QByteArray>> Fetch(const QString &sql);
    [[noreturn]] void Fail(const QString &sql) const;

    st_mysql *FHandle = nullptr;
};
