#include "uTestDatabase.h"

#include <QCoreApplication>

#include <atomic>

namespace {

// Test programs run side by side on one server, so the process number is part of the name.
QString FreshName()
{
    static std::atomic<int> counter = 0;
    return QStringLiteral("t_%1_%2").arg(QCoreApplication::applicationPid()).arg(++counter);
}

} // namespace

TTestDatabase::TTestDatabase(TTestServer &server) : FServer(server), FName(FreshName())
{
    // A process number comes back some day while a crashed test left its database behind.
    FServer.Exec("DROP DATABASE IF EXISTS " + FName + "; CREATE DATABASE " + FName +
                 " CHARACTER SET utf8mb4");
}

TTestDatabase::~TTestDatabase()
{
    try {
        FServer.Exec("DROP DATABASE IF EXISTS " + FName);
    } catch (const std::exception &e) {
        ADD_FAILURE() << "The database of the test stays: " << e.what();
    }
}
