#pragma once

#include <QStringList>

class TDbmManager;

/// Copies one table with its rows and foreign keys on the server of a manager. Runs on the calling
/// thread, which waits for the whole copy. Triggers are not copied.
class TDbmTableCloner
{
public:
    /// `manager` is not owned.
    void Initialize(TDbmManager &manager, const QString &srcDatabaseName,
                    const QString &dstTableName, const QString &dstDatabaseName,
                    const QString &srcTableName);
    /// Raises EDacMySqlError; a table that was made by then stays.
    void Execute();
    /// What the copy does not have, a line each; settled when Execute has run.
    const QStringList &LeftOut() const { return FLeftOut; }

private:
    TDbmManager *FManager = nullptr;
    QString FSrcDatabaseName, FSrcTableName, FDstDatabaseName, FDstTableName;
    QStringList FLeftOut;
};
