#pragma once

#include "jobs/uDbmStatementPipe.h"
#include "model/uDbmEntities.h"
#include "sql/uDbmRowFormatter.h"

#include <functional>
#include <optional>

class TDbmManager;
class TDbmTableItem;

/// Reads the rows of one table and makes statements of them, each just over 128 Ki characters.
///
/// Rows come in one order, so that none is lost or doubled between two fetches: in the order of the
/// primary key, each fetch behind the last key of the one before. A table whose key is missing or
/// cannot be told exactly by the text of its values is read as one unbuffered stream. Memory is
/// bounded by a few statements and the longest row. Statements are handed over one at a time and in
/// order, from the second on by a thread beside the one that reads, so the consumer must not use
/// the connection that is read.
class TDbmTableRows
{
public:
    using TConsumer = std::function<void(const TDbmRowsStatement &Statement)>;

    /// Not owned. Raises EException "Table "%s" not found.".
    TDbmTableRows(TDbmManager &manager, const QString &databaseName, const QString &tableName);

    qint64 FBytesPerFetch =
        1048576;          // raw bytes that a fetch is meant to bring, told by the average
    QString FTargetTable; // qualified and in backticks
    /// Character set of the session that reads the statements; empty for one that has everything.
    QString FStatementCharset;
    bool FIgnore = false, FDelayed = false, FReplace = false;
    bool FConsumesHere = false;           // statements are handed over on the caller's thread
    std::function<bool()> FStopRequested; // asked after each statement; true ends the walk

    /// Raises EDacMySqlError.
    void Run(const TConsumer &consumer);

private:
    void ReadFields();
    void ReadKey();
    bool HasExactOrder(const TDbmFieldEntity &field) const;
    void Fetch(TDbmStatementPipe &pipe);
    bool IsAtEnd() const;
    void AdaptLimit();
    QString FetchText() const;
    QString KeyCondition() const;
    void Open(const std::vector<TFieldInfo> &fields);
    bool Take(const TMyQuery::TRowView &row, TDbmStatementPipe &pipe);
    void KeepKey(const TMyQuery::TRowView &row);
    void HandOver(TDbmStatementPipe &pipe);
    QByteArray Head() const;

    TDbmManager &FManager;
    const QString FDatabaseName;
    const QString FTableName;
    std::shared_ptr<TDbmTableItem> FTable;
    QStringList FNames;      // all columns when the star would not bring all, else empty
    QStringList FFloatNames; // FLOAT columns
    QStringList FKeyNames;   // empty without a primary key
    bool FHasInvisible = false;

    bool FIsPaged = false;

    qint64 FLimit = -1;                     // rows a fetch, -1 for no limit
    qint64 FFetched = 0, FFetchedBytes = 0; // by the fetch at hand
    bool FIsCut = false;                    // the fetch at hand was ended ahead of its last row
    bool FIsStopped = false;
    std::vector<int> FKeyFields; // places of the key's columns in a row
    QStringList FLastKey;        // literals; empty ahead of the first row
    std::vector<TFieldInfo> FInfos;
    std::optional<TDbmRowFormatter> FFormatter;
    QByteArray FHead; // of each statement
    QByteArray FRows; // the statement at hand
    qint64 FProcessed = 0, FCount = 0, FBufferSize = 0;
};
