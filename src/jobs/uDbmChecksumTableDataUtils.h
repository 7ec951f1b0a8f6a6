#pragma once

#include <QString>

class TDbmManager;

/// Has the server sum up the values of a table; the rows never leave it. The order of rows does
/// not matter, and values that moved between rows are not told apart.
class TDbmChecksumTableDataUtils
{
public:
    explicit TDbmChecksumTableDataUtils(TDbmManager &manager) : FManager(manager) {}

    /// 0 for a table without rows. Raises EException when there is no such table, EDacMySqlError
    /// when the server refuses.
    quint32 Calculate(const QString &database, const QString &table);

private:
    TDbmManager &FManager; // not owned
};
