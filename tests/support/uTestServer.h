#pragma once

#include "uTestSession.h"

#include <QByteArray>
#include <QList>
#include <QString>
#include <QStringList>

#include <memory>

class TTestSupervisor;

enum TTestServerKind { skMariaDB, skMySQL };

/// A real server on loopback that lives for the test run at most. The account is root with an
/// empty password; a second account is "korvane" with the password "secret" and all privileges.
/// TLS is offered. Under ctest the servers of Instance() and MySql9() are shared by all test
/// programs; a program run by hand gets its own, which end with it however it ends.
class TTestServer
{
public:
    /// The MariaDB of this run.
    static TTestServer &Instance();
    /// The MySQL 9 of this run, nullptr when there is none; MySql9Absence() then tells why.
    static TTestServer *MySql9();
    static QString MySql9Absence();
    /// A further server of the caller's own with arguments added to its command line, such as
    /// "--version=5.0.95-log". Ends with the object. Throws std::runtime_error when it does not
    /// come up, with the end of its log.
    static std::unique_ptr<TTestServer> Start(const QStringList &arguments = QStringList(),
                                              TTestServerKind kind = skMariaDB);
    ~TTestServer();
    TTestServer(const TTestServer &) = delete;
    TTestServer &operator=(const TTestServer &) = delete;

    TTestServerKind Kind() const { return FKind; }
    QString Host() const { return QStringLiteral("127.0.0.1"); }
    int Port() const { return FPort; }
    QString User() const { return QStringLiteral("root"); }
    QString Password() const { return QString(); }
    QString SecondUser() const { return QStringLiteral("korvane"); }
    QString SecondPassword() const { return QStringLiteral("secret"); }
    /// Process id of the server.
    qint64 Pid() const { return FPid; }

    /// As in TTestSession, each call in a session of its own.
    void Exec(const QString &sql, const QString &database = QString()) const;
    QString Value(const QString &sql, const QString &database = QString()) const;
    QByteArray Bytes(const QString &sql, const QString &database = QString()) const;
    QList<QStringList> Rows(const QString &sql, const QString &database = QString()) const;

    /// For servers made by Start() only: an end without warning (SIGKILL), and behind it a new
    /// start on the same port with the same data.
    void Kill();
    void Restart();

private:
    TTestServer();
    static std::unique_ptr<TTestServer> OfRun(TTestServerKind kind);
    void AwaitReady();

    TTestServerKind FKind = skMariaDB;
    int FPort = 0;
    qint64 FPid = 0;
    bool FOfRun = false;
    std::unique_ptr<TTestSupervisor> FSupervisor; // none when ctest looks after the server
};

/// Leaves the test as skipped, with the reason, where no MySQL 9 can be had.
#define SKIP_WITHOUT_MYSQL9()                                                                      \
    if (!TTestServer::MySql9())                                                                    \
    GTEST_SKIP() << TTestServer::MySql9Absence().toStdString()
