#include "client/uMyQuery.h"

#include "client/uFieldValue.h"
#include "client/uMySession.h"
#include "client/uRowWriter.h"
#include "client/uTableKey.h"
#include "support/uFormat.h"

#include <errmsg.h>
#include <new>

namespace {

// A value in the form in which the server would send it.
std::optional<QByteArray> SentBytes(const TFieldInfo &info, const TVariant &value)
{
    if (value.IsNull())
        return std::nullopt;
    if (value.IsBytes())
        return value.As<QByteArray>();
    QByteArray bytes;
    info.Codec->TryEncode(value.ToString(), bytes);
    return bytes;
}

} // namespace

struct TMyQuery::TRun
{
    TConnLostCause Cause;
    bool InTransaction;
    bool GotRows = false;
    quint64 Affected = 0;
};

TMyQuery::TMyQuery(TMyConnection *connection) : FConnection(connection) {}

TMyQuery::~TMyQuery() = default;

void TMyQuery::Execute()
{
    Run(clExecute);
}

void TMyQuery::Refresh()
{
    Run(clRefresh);
}

void TMyQuery::Close()
{
    FKey.reset();
    TDataSet::Close();
}

void TMyQuery::Run(TConnLostCause cause)
{
    FConnection->Connect();
    const qint64 row = cause == clRefresh ? RecNo() : 0;
    TRun run{.Cause = cause, .InTransaction = FConnection->InTransaction()};
    try {
        FConnection->Session().Query(FSQL);
        ReadAnswers(run);
    } catch (const std::bad_alloc &) {
        RaiseOutOfMemory(run);
    } catch (const EMyError &error) {
        // The old rows are gone by now, which the links have not heard yet.
        if (run.GotRows)
            Discard();
        FConnection->RaiseError(error, run.Cause, run.InTransaction);
    }
    FAffectedRows = run.Affected;
    FRowsSQL = FSQL;
    if (run.GotRows)
        Opened(row);
    else
        Close();
}

void TMyQuery::ReadAnswers(TRun &run)
{
    TMySession &session = FConnection->Session();
    do {
        if (session.HasColumns())
            ReadRows(run);
        else
            run.Affected = session.AffectedRows();
    } while (session.NextAnswer());
}

void TMyQuery::ReadRows(TRun &run)
{
    TMySession &session = FConnection->Session();
    std::vector<TFieldInfo> infos = session.OpenRows();
    // The old rows are given up only now, when the new ones are there.
    FKey.reset();
    Reset();
    SetFields(std::move(infos));
    run.GotRows = true;
    const TConnLostCause cause = std::exchange(run.Cause, clFetch);
    session.ReadRows(FArena);
    run.Cause = cause;
    run.Affected = static_cast<quint64>(RecordCount());
    session.CloseRows();
}

void TMyQuery::RaiseOutOfMemory(TRun &run)
{
    const QString text =
        TFormat::Format("Client run out of memory: the result is larger than the memory that is "
                        "free (%s read in %.0n rows).",
                        {TFormat::SizeText(FArena.MemoryBytes()), RecordCount()});
    // The rows go first, since ending the statement needs memory too.
    Reset();
    FConnection->Session().Abandon();
    Discard();
    FConnection->RaiseError(EMyError(CR_OUT_OF_MEMORY, text), run.Cause, run.InTransaction);
}

void TMyQuery::Stream(const TStreamFields &onFields, const TStreamRow &onRow)
{
    FConnection->Connect();
    const bool inTransaction = FConnection->InTransaction();
    TMySession &session = FConnection->Session();
    TConnLostCause cause = clExecute;
    try {
        session.QueryRows(FSQL);
        bool handed = false;
        do {
            if (!session.HasColumns())
                continue;
            cause = clFetch;
            if (handed) {
                session.OpenRows();
                session.CloseRows();
            } else {
                WalkRows(onFields, onRow);
            }
            handed = true;
        } while (session.NextAnswer());
    } catch (const EMyError &error) {
        FConnection->RaiseError(error, cause, inTransaction);
    }
}

void TMyQuery::WalkRows(const TStreamFields &onFields, const TStreamRow &onRow)
{
    TMySession &session = FConnection->Session();
    const std::vector<TFieldInfo> infos = session.OpenRows();
    try {
        if (onFields)
            onFields(infos);
        TRowView view{.Count = static_cast<int>(infos.size())};
        while (session.FetchRow(view.Cells, view.Lengths)) {
            if (!onRow(view)) {
                session.Abandon();
                return;
            }
        }
    } catch (...) {
        session.Abandon();
        throw;
    }
    session.CloseRows();
}

std::vector<TFieldInfo> TMyQuery::FieldInfos() const
{
    std::vector<TFieldInfo> infos;
    for (const auto &field : Fields())
        infos.push_back(field->Info());
    return infos;
}

const TTableKey &TMyQuery::Key() const
{
    if (FKey)
        return *FKey;
    OpenConnection();
    const auto rows = [this](const QString &sql) {
        std::vector<QStringList> found;
        RunStatement(sql, [&] { found = FConnection->Session().Rows(sql); });
        return found;
    };
    FKey = std::make_unique<TTableKey>(TTableKey::Find(rows, FieldInfos(), FRowsSQL));
    return *FKey;
}

void TMyQuery::OpenConnection() const
{
    if (FHooks.Open)
        FHooks.Open();
    FConnection->Connect();
}

void TMyQuery::RunStatement(const QString &sql, const std::function<void()> &run) const
{
    const auto raising = [&] {
        const bool inTransaction = FConnection->InTransaction();
        try {
            run();
        } catch (const EMyError &error) {
            FConnection->RaiseError(error, clExecute, inTransaction);
        }
    };
    if (FHooks.Run)
        FHooks.Run(sql, raising);
    else
        raising();
}

QString TMyQuery::ReadOnlyReason() const
{
    if (!Active())
        return "The dataset is closed.";
    try {
        return Key().Reason;
    } catch (const EException &error) {
        return TFormat::Format("The keys of the table cannot be read: %s", {error.Message()});
    }
}

quint64 TMyQuery::Change(const QString &sql)
{
    quint64 affected = 0;
    RunStatement(sql, [&] {
        TMySession &session = FConnection->Session();
        session.Query(sql);
        affected = session.AffectedRows();
    });
    return affected;
}

void TMyQuery::WriteUpdate(qint64 row, const TChanges &changes)
{
    OpenConnection();
    const TRowWriter writer(Key(), *this, FConnection->Session().NoBackslashEscapes());
    if (Change(writer.UpdateText(row, changes)) == 0)
        throw EException("The row was not changed: it does not exist any more.");
    StoreRow(row, writer, writer.ReadBackText(row, changes), changes);
}

void TMyQuery::WriteInsert(qint64 row, const TChanges &changes)
{
    OpenConnection();
    const TRowWriter writer(Key(), *this, FConnection->Session().NoBackslashEscapes());
    if (Change(writer.InsertText(changes)) == 0)
        throw EException("The row was not added.");
    const quint64 insertId = FConnection->Session().InsertId();
    StoreRow(row, writer, writer.ReadBackText(changes, insertId), changes);
}

void TMyQuery::WriteDelete(qint64 row)
{
    OpenConnection();
    const TRowWriter writer(Key(), *this, FConnection->Session().NoBackslashEscapes());
    if (Change(writer.DeleteText(row)) == 0)
        throw EException("The row was not deleted: it does not exist any more.");
}

TMyQuery::TCells TMyQuery::CellsAsSent(qint64 row, const TChanges &changes) const
{
    TCells cells(Fields().size());
    for (int i = 0; i < FieldCount(); ++i) {
        if (!Arena().IsNull(row, i))
            cells[static_cast<size_t>(i)] = Arena().Cell(row, i).toByteArray();
    }
    for (const auto &[column, value] : changes)
        cells[static_cast<size_t>(column)] = SentBytes(FieldAt(column).Info(), value);
    return cells;
}

bool TMyQuery::TryReadBack(const QString &sql, const QList<int> &columns, TCells &cells)
{
    TMySession &session = FConnection->Session();
    try {
        TRowArena arena;
        arena.SetFieldCount(static_cast<int>(columns.size()));
        session.Query(sql);
        session.OpenRows();
        session.ReadRows(arena);
        session.CloseRows();
        if (arena.RowCount() != 1)
            return false;
        for (int i = 0; i < columns.size(); ++i)
            cells[static_cast<size_t>(columns[i])] =
                arena.IsNull(0, i) ? std::nullopt : std::optional(arena.Cell(0, i).toByteArray());
        return true;
    } catch (const std::exception &) {
        session.Abandon();
        return false;
    }
}

// The change is done by now, so a row that cannot be read back raises nothing: the caller would
// post it again. It then shows the values that were sent, as it does when a trigger has changed its
// key.
void TMyQuery::StoreRow(qint64 row, const TRowWriter &writer, const QString &readBack,
                        const TChanges &changes)
{
    TCells cells = CellsAsSent(row, changes);
    TryReadBack(readBack, writer.TableColumns(), cells);
    std::vector<const char *> data;
    std::vector<unsigned long> lengths;
    for (const auto &cell : cells) {
        data.push_back(cell ? cell->constData() : nullptr);
        lengths.push_back(cell ? static_cast<unsigned long>(cell->size()) : 0);
    }
    FArena.Replace(row, data.data(), lengths.data());
}
