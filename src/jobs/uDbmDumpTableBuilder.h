#pragma once

#include "jobs/uDbmDumpSession.h"
#include "jobs/uDbmDumpUtils.h"

/// The statements that make a copy of one table beside it or in another database.
class TDbmDumpTableBuilder
{
public:
    using TConsumer = std::function<void(const QString &Statement)>;

    /// `manager` is not owned and outlives the builder. Structure and rows are read on a second
    /// connection to its server, so that the statements may be run on the manager's.
    TDbmDumpTableBuilder();
    ~TDbmDumpTableBuilder();
    void Initialize(TDbmManager &manager, const QString &databaseName,
                    const TDbmFormatters &formatters, const QString &tableName);

    bool FExcludeDatabaseName = false;       // statements name the table alone
    QString FNewDatabaseName, FNewTableName; // empty: the old ones

    /// What the session that runs the statements needs ahead of them.
    QStringList DumpNeeds();
    QString DumpStructure();
    /// In the order of the list. A name that the database of the copy has already is left to the
    /// server.
    QStringList DumpReferences();
    void DumpData(bool ignore, bool delayed, bool replace, const TConsumer &consumer);
    /// Brings the session back to what it was ahead of DumpNeeds; also behind a failure.
    QStringList Restore() { return FModes.Restore(); }
    /// What the copy will not have.
    const QStringList &LeftOut() const { return FDumpUtils.LeftOut(); }

private:
    QString NewDatabase() const;
    QString NewTable() const;
    bool IsTaken(const QString &reference) const;
    TDbmManager &Reader();

    TDbmManager *FManager = nullptr;
    const TDbmFormatters *FFormatters = nullptr;
    std::unique_ptr<TDbmManager> FReader; // opened with the first need
    QString FDatabaseName, FTableName;
    TDbmDumpUtils FDumpUtils;
    TDbmDumpModes FModes;
};
