#pragma once

#include "jobs/uDbmTableRows.h"

class TDbmFormatters;

/// Hands out the rows of a table as INSERT statements for another place.
class TDbmDumpDataUtils
{
public:
    TDbmManager *FManager = nullptr;             // of the source, not owned
    const TDbmFormatters *FFormatters = nullptr; // of the target, not owned
    QString FSourceDatabaseName, FTargetDatabaseName;
    QString FSourceTableName, FTargetTableName;
    QString FStatementCharset;         // see TDbmTableRows
    bool FExcludeDatabaseName = false; // statements name the table alone
    std::function<bool()> FStopRequested;

    /// Raises EException when the table is missing, EDacMySqlError.
    void DumpData(bool ignore, bool delayed, bool replace,
                  const TDbmTableRows::TConsumer &consumer) const;
};
