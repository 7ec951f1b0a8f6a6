#pragma once

#include "client/uDataSet.h"
#include "client/uMyConnection.h"

#include <optional>

class TRowWriter;
struct TTableKey;

/// A statement and the rows that it gave. Rows stream unbuffered from the server into the arena.
class TMyQuery : public TDataSet
{
public:
    explicit TMyQuery(TMyConnection *connection); // not owned
    ~TMyQuery() override;

    TMyConnection *Connection() const { return FConnection; }
    /// Changes are sent at once: false is the only mode, and the switch is here for its callers.
    void SetCachedUpdates(bool value) { FCachedUpdates = value; }
    const QString &SQL() const { return FSQL; }
    void SetSQL(const QString &sql) { FSQL = sql; }
    /// Bytes that the rows may take at most; 0, the default, stands for what the machine has free.
    void SetMemoryLimit(qint64 bytes) { FArena.SetMemoryLimit(bytes); }

    /// What stands around the statements by which the dataset changes rows and learns of their key;
    /// without it they go to the connection as they are.
    struct TStatementHooks
    {
        std::function<void()> Open; // ahead of the first one
        std::function<void(const QString &sql, const std::function<void()> &run)> Run;
    };
    void SetStatementHooks(TStatementHooks hooks) { FHooks = std::move(hooks); }

    /// Runs the statement and reads every answer to the end (a CALL gives several); the rows of the
    /// last answer that has columns are kept. Not active afterwards when no answer had any.
    /// Raises EMyError. A statement that fails ahead of its first answer leaves the dataset as it
    /// was; one that fails later, or whose rows do not fit into memory (code 2008), leaves it
    /// closed. The session stays usable in both cases. Opens the session when it is closed.
    void Execute();
    void Refresh() override;
    void Close() override;
    QString ReadOnlyReason() const override;
    quint64 AffectedRows() const { return FAffectedRows; }

    /// Runs the statement and hands over each row of its first answer with columns without holding
    /// it; the view is valid during the call. The connection can run nothing else meanwhile.
    /// Returning false ends the walk. The dataset itself stays as it is.
    struct TRowView
    {
        const char *const *Cells;     // nullptr for NULL
        const unsigned long *Lengths; // bytes
        int Count;
    };
    using TStreamFields = std::function<void(const std::vector<TFieldInfo> &fields)>;
    using TStreamRow = std::function<bool(const TRowView &row)>;
    void Stream(const TStreamFields &onFields, const TStreamRow &onRow);

protected:
    void WriteUpdate(qint64 row, const TChanges &changes) override;
    void WriteInsert(qint64 row, const TChanges &changes) override;
    void WriteDelete(qint64 row) override;

private:
    struct TRun;

    void Run(TConnLostCause cause);
    void ReadAnswers(TRun &run);
    void ReadRows(TRun &run);
    [[noreturn]] void RaiseOutOfMemory(TRun &run);
    void WalkRows(const TStreamFields &onFields, const TStreamRow &onRow);
    std::vector<TFieldInfo> FieldInfos() const;
    const TTableKey &Key() const;
    void OpenConnection() const;
    void RunStatement(const QString &sql, const std::function<void()> &run) const;
    quint64 Change(const QString &sql);
    using TCells = std::vector<std::optional<QByteArray>>;
    TCells CellsAsSent(qint64 row, const TChanges &changes) const;
    bool TryReadBack(const QString &sql, const QList<int> &columns, TCells &cells);
    void StoreRow(qint64 row, const TRowWriter &writer, const QString &readBack,
                  const TChanges &changes);

    TMyConnection *FConnection;
    TStatementHooks FHooks;
    bool FCachedUpdates = false;
    QString FSQL;
    quint64 FAffectedRows = 0;
    QString FRowsSQL;                        // the statement that gave the rows
    mutable std::unique_ptr<TTableKey> FKey; // of this result; found when it is first asked for
};
