#pragma once

#include "uTestServer.h"

#include <gtest/gtest.h>

/// A database with a name that nobody else has, made with the object and dropped with it.
class TTestDatabase
{
public:
    explicit TTestDatabase(TTestServer &server = TTestServer::Instance());
    ~TTestDatabase();
    TTestDatabase(const TTestDatabase &) = delete;
    TTestDatabase &operator=(const TTestDatabase &) = delete;

    TTestServer &Server() const { return FServer; }
    QString Name() const { return FName; }

    /// As in TTestServer, with this database as the current one.
    void Exec(const QString &sql) const { FServer.Exec(sql, FName); }
    QString Value(const QString &sql) const { return FServer.Value(sql, FName); }
    QByteArray Bytes(const QString &sql) const { return FServer.Bytes(sql, FName); }
    QList<QStringList> Rows(const QString &sql) const { return FServer.Rows(sql, FName); }

private:
    TTestServer &FServer;
    const QString FName;
};

/// Base of the test fixtures that need a server: the MariaDB of the run, unless they name another,
/// and a database of their own for each test.
class TServerTest : public ::testing::Test
{
protected:
    explicit TServerTest(TTestServer &server = TTestServer::Instance()) : FDatabase(server) {}

    TTestServer &Server() const { return FDatabase.Server(); }
    TTestDatabase &Database() { return FDatabase; }
    void Exec(const QString &sql) const { FDatabase.Exec(sql); }
    QString Value(const QString &sql) const { return FDatabase.Value(sql); }
    QByteArray Bytes(const QString &sql) const { return FDatabase.Bytes(sql); }
    QList<QStringList> Rows(const QString &sql) const { return FDatabase.Rows(sql); }

private:
    TTestDatabase FDatabase;
};
