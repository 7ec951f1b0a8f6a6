#include "client/uMySession.h"

#include "client/uBinaryRow.h"
#include "client/uRowArena.h"
#include "support/uFormat.h"

#include <QStringList>
#include <algorithm>
#include <chrono>
#include <errmsg.h>
#include <mysql.h>
#include <mysqld_error.h>
#include <numeric>
#include <sys/ioctl.h>
#include <thread>

// Statements and their answers; the session itself is in uMySession.cpp.

namespace {

// A server of the same machine is slowed down by a reader that sleeps until each packet: it pays
// for every wake. So a reader that has nearly caught up lets some packets gather first. Nothing is
// lost when the rows come slower than that, and a full buffer is never waited for. A page of rows
// is over before that would pay.
constexpr qint64 BytesBeforeRests = 8 * 1024 * 1024;
constexpr qint64 BytesBetweenRests = 32 * 1024;
constexpr int FewBytes = 64 * 1024;
constexpr std::chrono::microseconds Rest{200};

void LetRowsGather(st_mysql *session)
{
    int waiting = 0;
    if (::ioctl(int(mysql_get_socket(session)), FIONREAD, &waiting) == 0 && waiting < FewBytes)
        std::this_thread::sleep_for(Rest);
}

bool HasNoBinaryForm(int code)
{
    switch (code) {
    case ER_UNSUPPORTED_PS:
    case ER_MAX_PREPARED_STMT_COUNT_REACHED:
        return true;
    default:
        return false;
    }
}

} // namespace

void TMySession::Query(const QString &sql)
{
    if (!IsOpen())
        throw EMyError(CR_SERVER_GONE_ERROR, "Server has gone away");
    const QByteArray bytes = Encode(sql);
    if (mysql_real_query(FHandle.get(), bytes.constData(), static_cast<ulong>(bytes.size())) != 0) {
        const EMyError error = LastError();
        if (EndsSession(error.ErrorCode()))
            RaiseIfTooLarge(bytes.size());
        Fail(error);
    }
    NoteAnswer();
    NoteDatabase(sql);
}

// A server that gets more than it takes tells so only if the rest is short; else it just closes.
void TMySession::RaiseIfTooLarge(qsizetype size)
{
    constexpr qsizetype Doubtful = 16 * 1024; // below, no usual limit is the reason
    qint64 limit = 0;
    try {
        TMySession other;
        if (size >= Doubtful) {
            other.Open(FParams);
            limit = other.Rows("SELECT @@max_allowed_packet").at(0).at(0).toLongLong();
        }
    } catch (const EMyError &) {
        // The server does not answer at all: the loss tells it.
    }
    if (limit > 0 && size >= limit)
        Fail(EMyError(ER_NET_PACKET_TOO_LARGE,
                      TFormat::Format("Got a packet bigger than 'max_allowed_packet' bytes: the "
                                      "statement has %d bytes, the server takes %d at most.",
                                      {size, limit})));
}

void TMySession::QueryRows(const QString &sql)
{
    if (!IsOpen())
        throw EMyError(CR_SERVER_GONE_ERROR, "Server has gone away");
    if (TryQueryBinary(Encode(sql)))
        NoteAnswer();
    else
        Query(sql);
}

bool TMySession::TryQueryBinary(const QByteArray &sql)
{
    FStatement.reset(mysql_stmt_init(FHandle.get()));
    if (!FStatement)
        Fail();
    st_mysql_stmt *const statement = FStatement.get();
    if (mariadb_stmt_execute_direct(statement, sql.constData(), static_cast<size_t>(sql.size())) !=
        0) {
        const EMyError error = LastStatementError();
        // A question mark is an error of the statement, and not a place for a value.
        const bool hasParameters = mysql_stmt_param_count(statement) > 0;
        FStatement.reset();
        if (!hasParameters && !HasNoBinaryForm(error.ErrorCode()))
            Fail(error);
        return false;
    }
    FResult.reset(mysql_stmt_result_metadata(statement));
    const uint count = FResult ? mysql_num_fields(FResult.get()) : 0;
    const MYSQL_FIELD *fields = FResult ? mysql_fetch_fields(FResult.get()) : nullptr;
    if (!std::all_of(fields, fields + count, TBinaryRow::CanShow)) {
        FResult.reset();
        FStatement.reset();
        return false;
    }
    FBinaryRow = std::make_unique<TBinaryRow>(fields, count);
    mysql_stmt_attr_set(statement, STMT_ATTR_CB_USER_DATA, FBinaryRow.get());
    const ps_result_callback take = [](void *row, uint column, uchar **at) {
        const uchar *end = static_cast<TBinaryRow *>(row)->Take(column, at ? *at : nullptr);
        if (at)
            *at = const_cast<uchar *>(end);
    };
    mysql_stmt_attr_set(statement, STMT_ATTR_CB_RESULT, reinterpret_cast<const void *>(take));
    return true;
}

bool TMySession::HasColumns() const
{
    if (FStatement)
        return true;
    return mysql_field_count(FHandle.get()) > 0;
}

std::vector<TFieldInfo> TMySession::OpenRows()
{
    if (!FStatement)
        FResult.reset(mysql_use_result(FHandle.get()));
    if (!FResult)
        Fail();
    return TFieldInfo::Read({mysql_fetch_fields(FResult.get()), mysql_num_fields(FResult.get())},
                            *FCodec, [this](uint collation) { return CodecOfColumn(collation); });
}

bool TMySession::FetchRow(const char *const *&cells, const unsigned long *&lengths)
{
    if (FStatement)
        return FetchBinaryRow(cells, lengths);
    cells = mysql_fetch_row(FResult.get());
    if (!cells) {
        if (mysql_errno(FHandle.get()) != 0)
            Fail();
        return false;
    }
    lengths = mysql_fetch_lengths(FResult.get());
    return true;
}

bool TMySession::FetchBinaryRow(const char *const *&cells, const unsigned long *&lengths)
{
    FBinaryRow->Start();
    switch (mysql_stmt_fetch(FStatement.get())) {
    case 0:
        cells = FBinaryRow->Cells();
        lengths = FBinaryRow->Lengths();
        return true;
    case MYSQL_NO_DATA:
        return false;
    default:
        Fail(LastStatementError());
    }
}

void TMySession::ReadRows(TRowArena &arena)
{
    qint64 bytes = -BytesBeforeRests; // since the last rest
    while (const char *const *cells = mysql_fetch_row(FResult.get())) {
        const unsigned long *lengths = mysql_fetch_lengths(FResult.get());
        arena.Append(cells, lengths);
        bytes = std::accumulate(lengths, lengths + arena.FieldCount(), bytes);
        if (bytes >= BytesBetweenRests) {
            bytes = 0;
            LetRowsGather(FHandle.get());
        }
    }
    if (mysql_errno(FHandle.get()) != 0)
        Fail();
}

void TMySession::CloseRows()
{
    FResult.reset();
    FStatement.reset();
    if (IsOpen())
        NoteAnswer();
}

bool TMySession::NextAnswer()
{
    const int result = mysql_next_result(FHandle.get());
    if (result > 0)
        Fail();
    if (result == 0)
        NoteAnswer();
    return result == 0;
}

void TMySession::Abandon()
{
    if (IsOpen() && !FResult && FHandle->status == MYSQL_STATUS_GET_RESULT)
        FResult.reset(mysql_use_result(FHandle.get()));
    if (!IsOpen() || !FResult)
        return;
    try {
        TSessionParams params = FParams;
        params.Database.clear();
        TMySession other;
        other.Open(params);
        other.Query("KILL QUERY " + QString::number(mysql_thread_id(FHandle.get())));
    } catch (const EMyError &) {
        // Without a second session the rest is read off, which takes longer and comes to the same.
    }
    FResult.reset();
    FStatement.reset();
    while (mysql_next_result(FHandle.get()) == 0)
        FResult.reset(mysql_use_result(FHandle.get()));
    FResult.reset();
    // The kill may have arrived behind the last row; then this statement takes it.
    mysql_query(FHandle.get(), "DO 0");
    if (EndsSession(LastError().ErrorCode()))
        Close();
    else
        NoteAnswer();
}

quint64 TMySession::AffectedRows() const
{
    return mysql_affected_rows(FHandle.get());
}

quint64 TMySession::InsertId() const
{
    return mysql_insert_id(FHandle.get());
}

std::vector<QStringList> TMySession::Rows(const QString &sql)
{
    std::vector<QStringList> rows;
    Query(sql);
    if (!HasColumns())
        return rows;
    const std::vector<TFieldInfo> infos = OpenRows();
    const char *const *cells = nullptr;
    const unsigned long *lengths = nullptr;
    while (FetchRow(cells, lengths)) {
        QStringList row;
        for (size_t i = 0; i < infos.size(); ++i)
            row += cells[i] ? infos[i].Codec->Decode({cells[i], static_cast<qsizetype>(lengths[i])})
                            : QString();
        rows.push_back(row);
    }
    CloseRows();
    return rows;
}
