#pragma once

#include "client/uFieldInfo.h"
#include "client/uMyError.h"

#include <QByteArray>
#include <QString>
#include <functional>
#include <memory>
#include <vector>

class TBinaryRow;
class TRowArena;
struct st_mysql;
struct st_mysql_res;
struct st_mysql_stmt;

/// Where and as whom a session is opened.
struct TSessionParams
{
    QString Server;
    int Port = 0;
    QString Username, Password, Database;
    QByteArray Charset; // as the server names it; empty: the widest Unicode that it knows
    bool Compress = false;
    int TimeoutSecs = 15; // for connecting and the handshake; statements have no time-out
    bool operator==(const TSessionParams &) const = default;
};

/// What statements have changed in a session and a new one would not have by itself.
struct TSessionState
{
    QString Database;
    QByteArray Charset;
    bool Autocommit = true;
};

/// The protocol below TMyConnection: one handle of the client library. Failures raise EMyError and
/// leave a session that is lost closed.
class TMySession
{
public:
    TMySession();
    ~TMySession();
    TMySession(const TMySession &) = delete;
    TMySession &operator=(const TMySession &) = delete;

    void Open(const TSessionParams &params);
    void Close();
    bool IsOpen() const { return FHandle != nullptr; }
    const TSessionParams &Params() const { return FParams; }

    QString ServerVersion() const;
    QString TlsCipher() const;
    bool InTransaction() const;
    bool NoBackslashEscapes() const;
    /// As of the last answer; stays readable when the session was lost.
    const TSessionState &State() const { return FState; }
    void Restore(const TSessionState &state);

    /// Raises when a character does not exist in the session's set.
    QByteArray Encode(const QString &text) const;

    /// Sends a statement and reads the head of its first answer. Everything that it answers has to
    /// be read before the next one: each answer with columns by OpenRows .. CloseRows.
    void Query(const QString &sql);
    /// The same for a single SELECT whose rows are only fetched. They come in binary form, which
    /// takes the server a fraction of the time, and FetchRow gives the text that it would have
    /// sent. Without such a form it is Query.
    void QueryRows(const QString &sql);
    bool HasColumns() const;
    std::vector<TFieldInfo> OpenRows();
    /// The next row; false behind the last one. Pointers are valid until the next call.
    bool FetchRow(const char *const *&cells, const unsigned long *&lengths);
    void ReadRows(TRowArena &arena);
    void CloseRows();
    /// Gives false when there is no further answer.
    bool NextAnswer();
    /// Ends a statement whose rows nobody wants any more, without reading them all.
    void Abandon();
    quint64 AffectedRows() const;
    quint64 InsertId() const;

    /// Runs a statement of the layer's own and gives the cells of its rows, decoded; NULL is a null
    /// string.
    std::vector<QStringList> Rows(const QString &sql);

private:
    struct TClose
    {
        void operator()(st_mysql *handle) const;
    };
    struct TFreeResult
    {
        void operator()(st_mysql_res *result) const;
    };
    struct TCloseStatement
    {
        void operator()(st_mysql_stmt *statement) const;
    };

    void OpenHandle(const TSessionParams &params, bool tls);
    void SetOptions(const TSessionParams &params, bool tls);
    void EndTimeouts();
    void SetCharset(const QByteArray &charset);
    void RaiseIfTooLarge(qsizetype size);
    bool TryQueryBinary(const QByteArray &sql);
    bool FetchBinaryRow(const char *const *&cells, const unsigned long *&lengths);
    void NoteAnswer();
    void NoteDatabase(const QString &sql);
    /// Codes after which the session has ended although they do not say that it was lost.
    static bool EndsSession(int code);
    [[noreturn]] void Fail();
    [[noreturn]] void Fail(const EMyError &error);
    EMyError LastError() const;
    EMyError LastStatementError() const;
    EMyError ErrorOf(int code, const char *message) const;
    std::shared_ptr<const TCharsetCodec> CodecOfColumn(uint collation);
    std::shared_ptr<const TCharsetCodec> FindCodec(uint collation);

    std::unique_ptr<st_mysql, TClose> FHandle;
    std::unique_ptr<st_mysql_stmt, TCloseStatement> FStatement; // while its rows are read
    std::unique_ptr<st_mysql_res, TFreeResult> FResult;         // of a statement: its columns
    std::unique_ptr<TBinaryRow> FBinaryRow;
    TSessionParams FParams;
    TSessionState FState;
    bool FInTransaction = false;
    const char *FLibraryCharset = nullptr; // as the library last told; its own memory
    std::shared_ptr<const TCharsetCodec> FCodec;
    std::vector<std::shared_ptr<const TCharsetCodec>> FColumnCodecs; // met so far
    std::vector<std::pair<uint, std::shared_ptr<const TCharsetCodec>>> FCollationCodecs; // same
};
