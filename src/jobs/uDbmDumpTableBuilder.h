#pragma once

#include "jobs/uDbmDumpSession.h"
#include "jobs/uDbmDumpUtils.h"

/// The statements that make a copy of one table beside it or in another database.
class TDbmDumpTableBuilder
{
public:
    using TConsumer = std::function<void(const QString &Statement)>;

    /// `manager` is not owned and outlives the builder; it gives structure and rows.
    void Initialize(TDbmManager &manager, const QString &databaseName,
                    const TDbmFormatters &formatters, const QString &tableName);

    bool FExcludeDatabaseName = false;       // statements name the table alone
    QString FNewDatabaseName, FNewTableName; // empty: the old ones

    QString DumpStructure();
    /// In the order of the list. A name that the database of the copy has already is left to the
    /// server.
    QStringList DumpReferences();
    /// Reads on a connection of its own, so that the consumer may use the manager's.
    void DumpData(bool ignore, bool delayed, bool replace, const TConsumer &consumer);
    /// What the copy will not have.
    const QStringList &LeftOut() const { return FDumpUtils.LeftOut(); }

private:
    QString NewDatabase() const;
    QString NewTable() const;
    bool IsTaken(const QString &reference) const;
    std::unique_ptr<TDbmManager> OpenReader() const;

    TDbmManager *FManager = nullptr;
    const TDbmFormatters *FFormatters = nullptr;
    QString FDatabaseName, FTableName;
    TDbmDumpUtils FDumpUtils;
    TDbmDumpModes FModes;
};
