#pragma once

#include <QString>
#include <memory>

class TDbmManager;
struct st_mysql;

/// The table of the measurements that read rows: a million of them with ten columns of mixed types,
/// in database bench of the private server.
class TBenchRows
{
public:
    static constexpr qint64 Count = 1000000;
    static constexpr int Columns = 10;

    /// Makes database and table unless they are there.
    static void Prepare();
    /// The database of 5,000 tables that the model is measured on; made once.
    static void PrepareTables();
    static QString Database() { return QStringLiteral("bench"); }
    static QString Select() { return QStringLiteral("SELECT * FROM mixed"); }

    /// A session over the plain client library.
    static st_mysql *Connect(const char *database);
    /// The same through the product.
    static std::unique_ptr<TDbmManager> ConnectManager();
    /// The bare loop that others are measured against: unbuffered, every cell copied into one
    /// buffer. Gives the bytes of all cells.
    static qint64 BareLoop(st_mysql *session);
};
