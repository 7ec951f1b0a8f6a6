#include "client/uMySession.h"

#include "client/uBinaryRow.h"
#include "support/uFormat.h"

#include <QDeadlineTimer>
#include <csignal>
#include <errmsg.h>
#include <mutex>
#include <mysql.h>

#include <ma_pvio.h> // needs the one above
#include <mysqld_error.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/socket.h>

namespace {

// Codes of newer servers than the library's header.
constexpr int ClientInteractionTimeout = 4031; // MySQL: idle for too long, told ahead of the end
constexpr int SessionWasKilled = 3169;
constexpr int ConnectionKilled = 1927; // MariaDB

// TCP keep-alive: a dead peer is noticed after two minutes, as routers forget silent sessions
// after five at the earliest.
constexpr int KeepAliveIdleSecs = 60;
constexpr int KeepAliveIntervalSecs = 15;
constexpr int KeepAliveProbes = 4;

const QString LostText = QStringLiteral("Lost connection to server during query");

void InitLibrary()
{
    static std::once_flag once;
    std::call_once(once, [] {
        mysql_library_init(0, nullptr, nullptr);
        // A write over TLS to a closed session ends the process otherwise.
        struct sigaction action = {};
        if (::sigaction(SIGPIPE, nullptr, &action) == 0 && action.sa_handler == SIG_DFL)
            std::signal(SIGPIPE, SIG_IGN);
    });
}

void KeepAlive(my_socket socket)
{
    const auto set = [socket](int level, int option, int value) {
        ::setsockopt(socket, level, option, &value, sizeof(value));
    };
    set(SOL_SOCKET, SO_KEEPALIVE, 1);
    set(IPPROTO_TCP, TCP_KEEPIDLE, KeepAliveIdleSecs);
    set(IPPROTO_TCP, TCP_KEEPINTVL, KeepAliveIntervalSecs);
    set(IPPROTO_TCP, TCP_KEEPCNT, KeepAliveProbes);
}

bool MayBeUtf8(const QByteArray &charset)
{
    return charset == "utf8mb4" || charset.isEmpty();
}

QString QuotedName(QString name)
{
    return u'`' + name.replace(u'`', QStringLiteral("``")) + u'`';
}

bool IsUse(const QString &sql)
{
    return sql.trimmed().startsWith(u"use", Qt::CaseInsensitive);
}

} // namespace

void TMySession::TClose::operator()(st_mysql *handle) const
{
    mysql_close(handle);
}

void TMySession::TFreeResult::operator()(st_mysql_res *result) const
{
    mysql_free_result(result);
}

void TMySession::TCloseStatement::operator()(st_mysql_stmt *statement) const
{
    mysql_stmt_close(statement);
}

TMySession::TMySession() = default;

TMySession::~TMySession()
{
    Close();
}

void TMySession::Open(const TSessionParams &params)
{
    Close();
    InitLibrary();
    const QDeadlineTimer deadline(params.TimeoutSecs * 1000);
    try {
        OpenHandle(params, true);
    } catch (const EMyError &tlsError) {
        if (tlsError.ErrorCode() != CR_SSL_CONNECTION_ERROR || deadline.hasExpired())
            throw;
        // The server offers a TLS that this machine cannot speak. Preferred is not required.
        try {
            OpenHandle(params, false);
        } catch (const EMyError &error) {
            // A server that insists on TLS says so in one of several ways.
            throw EMyError(error.ErrorCode(),
                           TFormat::Format("%s (%s)", {error.Message(), tlsError.Message()}));
        }
    }
}

void TMySession::SetOptions(const TSessionParams &params, bool tls)
{
    const uint timeout = static_cast<uint>(params.TimeoutSecs);
    const uint tcp = MYSQL_PROTOCOL_TCP; // or the name localhost would mean a socket file
    const my_bool preferTls = tls;       // without verification the library takes what is offered
    const QByteArray charset = params.Charset.isEmpty() ? "utf8mb4" : params.Charset;
    mysql_optionsv(FHandle.get(), MYSQL_OPT_CONNECT_TIMEOUT, &timeout);
    // The first covers the handshake as far as it is plain, the second the part inside TLS.
    mysql_optionsv(FHandle.get(), MYSQL_OPT_READ_TIMEOUT, &timeout);
    mysql_optionsv(FHandle.get(), MYSQL_OPT_PROTOCOL, &tcp);
    mysql_optionsv(FHandle.get(), MYSQL_OPT_SSL_ENFORCE, &preferTls);
    mysql_optionsv(FHandle.get(), MYSQL_SET_CHARSET_NAME, charset.constData());
    if (params.Compress)
        mysql_optionsv(FHandle.get(), MYSQL_OPT_COMPRESS, nullptr);
}

void TMySession::OpenHandle(const TSessionParams &params, bool tls)
{
    // The library reads "no port" as a port of the environment's or its own.
    if (params.Port < 1 || params.Port > 65535)
        throw EMyError(CR_CONN_HOST_ERROR,
                       TFormat::Format("Can't connect to server on '%s': there is no port %d.",
                                       {params.Server, params.Port}));
    FParams = params;
    FState = {};
    FInTransaction = false;
    FLibraryCharset = nullptr;
    FCodec = TCharsetCodec::Create("utf8mb4");
    FHandle.reset(mysql_init(nullptr));
    if (!FHandle)
        throw EMyError(CR_OUT_OF_MEMORY, "Client run out of memory");
    try {
        SetOptions(params, tls);
        const QByteArray database = params.Database.toUtf8();
        if (!mysql_real_connect(
                FHandle.get(), params.Server.toUtf8().constData(),
                params.Username.toUtf8().constData(), params.Password.toUtf8().constData(),
                database.isEmpty() ? nullptr : database.constData(), static_cast<uint>(params.Port),
                nullptr, CLIENT_MULTI_RESULTS | CLIENT_FOUND_ROWS))
            throw LastError();
        FState.Database = params.Database;
        KeepAlive(mysql_get_socket(FHandle.get()));
        SetCharset(params.Charset);
        EndTimeouts();
    } catch (const EMyError &) {
        FHandle.reset();
        throw;
    }
}

// The option counts for sessions with TLS; without, the socket's layer keeps a copy of it.
void TMySession::EndTimeouts()
{
    const uint none = 0;
    mysql_optionsv(FHandle.get(), MYSQL_OPT_READ_TIMEOUT, &none);
    MARIADB_PVIO *socket = FHandle->net.pvio;
    socket->methods->set_timeout(socket, PVIO_READ_TIMEOUT, 0);
}

void TMySession::SetCharset(const QByteArray &charset)
{
    const QByteArray name = charset.isEmpty() ? "utf8mb4" : charset;
    auto codec = TCharsetCodec::Create(name);
    if (!codec)
        throw EMyError(CR_CANT_READ_CHARSET,
                       "Can't initialize character set " + QString::fromLatin1(name));
    try {
        Query("SET NAMES " + QString::fromLatin1(name));
    } catch (const EMyError &error) {
        // Servers before 5.5.3 know the characters of the first plane only.
        if (error.ErrorCode() != ER_UNKNOWN_CHARACTER_SET || !MayBeUtf8(charset))
            throw;
        SetCharset("utf8");
        return;
    }
    FCodec = std::move(codec);
    FState.Charset = name;
    FColumnCodecs.clear();
    FCollationCodecs.clear();
}

void TMySession::Close()
{
    // Freeing an unread result reads it to its end first; a cut socket has an end at once.
    if (FResult)
        ::shutdown(mysql_get_socket(FHandle.get()), SHUT_RDWR);
    FResult.reset();
    FStatement.reset();
    FHandle.reset();
}

void TMySession::Restore(const TSessionState &state)
{
    try {
        if (!state.Database.isEmpty() && state.Database != FState.Database)
            Query("USE " + QuotedName(state.Database));
        if (!state.Charset.isEmpty() && state.Charset != FState.Charset)
            SetCharset(state.Charset);
        if (!state.Autocommit && FState.Autocommit)
            Query("SET autocommit = 0");
    } catch (const EMyError &) {
        Close();
        throw;
    }
}

QString TMySession::ServerVersion() const
{
    return IsOpen() ? QString::fromUtf8(mysql_get_server_info(FHandle.get())) : QString();
}

QString TMySession::TlsCipher() const
{
    return IsOpen() ? QString::fromLatin1(mysql_get_ssl_cipher(FHandle.get())) : QString();
}

bool TMySession::InTransaction() const
{
    return FInTransaction;
}

bool TMySession::NoBackslashEscapes() const
{
    return IsOpen() && (FHandle->server_status & SERVER_STATUS_NO_BACKSLASH_ESCAPES) != 0;
}

QByteArray TMySession::Encode(const QString &text) const
{
    QByteArray bytes;
    if (FCodec->TryEncode(text, bytes))
        return bytes;
    const qsizetype good = FCodec->Decode(bytes).size();
    const bool pair = text.at(good).isHighSurrogate();
    throw EMyError(
        ER_INVALID_CHARACTER_STRING,
        TFormat::Format("Invalid %s character string: '%s'",
                        {QString::fromLatin1(FCodec->Name()), text.mid(good, pair ? 2 : 1)}));
}

// The library follows what the server tells of its session: the database in use, and the set in
// which statements are read.
void TMySession::NoteAnswer()
{
    FInTransaction = (FHandle->server_status & SERVER_STATUS_IN_TRANS) != 0;
    FState.Autocommit = (FHandle->server_status & SERVER_STATUS_AUTOCOMMIT) != 0;
    if (FHandle->server_capabilities & CLIENT_SESSION_TRACKING)
        FState.Database = QString::fromUtf8(FHandle->db);
    const char *charset = FHandle->charset->csname;
    if (charset == FLibraryCharset)
        return;
    const bool changed = FLibraryCharset != nullptr;
    FLibraryCharset = charset;
    auto codec = changed ? TCharsetCodec::Create(charset) : nullptr;
    if (!codec)
        return;
    FCodec = std::move(codec);
    FState.Charset = charset;
    FColumnCodecs.clear();
    FCollationCodecs.clear();
}

// Servers before 5.7 do not tell of a new database by themselves.
void TMySession::NoteDatabase(const QString &sql)
{
    if (!(FHandle->server_capabilities & CLIENT_SESSION_TRACKING) && IsUse(sql) && !HasColumns())
        FState.Database = Rows("SELECT DATABASE()").at(0).at(0);
}

bool TMySession::EndsSession(int code)
{
    switch (code) {
    case CR_SERVER_GONE_ERROR:
    case CR_SERVER_LOST:
    case CR_MALFORMED_PACKET:
    case ER_NET_PACKET_TOO_LARGE: // the server closes behind it
    case ConnectionKilled:
    case SessionWasKilled:
    case ER_SERVER_SHUTDOWN:
    case ER_NORMAL_SHUTDOWN:
    case ER_SHUTDOWN_COMPLETE:
        return true;
    default:
        return false;
    }
}

void TMySession::Fail()
{
    Fail(LastError());
}

void TMySession::Fail(const EMyError &error)
{
    if (EndsSession(error.ErrorCode()))
        Close();
    throw error;
}

EMyError TMySession::LastError() const
{
    return ErrorOf(static_cast<int>(mysql_errno(FHandle.get())), mysql_error(FHandle.get()));
}

EMyError TMySession::LastStatementError() const
{
    return ErrorOf(static_cast<int>(mysql_stmt_errno(FStatement.get())),
                   mysql_stmt_error(FStatement.get()));
}

EMyError TMySession::ErrorOf(int code, const char *message) const
{
    const QString text = FCodec->Decode(message);
    const bool connected = !FState.Charset.isEmpty();
    switch (connected ? code : 0) {
    case CR_SSL_CONNECTION_ERROR: // what a cut session looks like through TLS
    case CR_ERR_NET_READ:
    case CR_ERR_NET_WRITE:
    case CR_SERVER_LOST_EXTENDED:
        return EMyError(CR_SERVER_LOST, LostText);
    case ClientInteractionTimeout: // nothing was executed, the session had gone before
        return EMyError(CR_SERVER_GONE_ERROR, text);
    default:
        return EMyError(code, text);
    }
}

std::shared_ptr<const TCharsetCodec> TMySession::CodecOfColumn(uint collation)
{
    for (const auto &[known, codec] : FCollationCodecs) {
        if (known == collation)
            return codec;
    }
    auto codec = FindCodec(collation);
    FCollationCodecs.emplace_back(collation, codec);
    return codec;
}

std::shared_ptr<const TCharsetCodec> TMySession::FindCodec(uint collation)
{
    // A collation that the library does not know is newer than it. The server sends text in the
    // session's set unless it was told not to convert.
    const MARIADB_CHARSET_INFO *charset = mariadb_get_charset_by_nr(collation);
    const QByteArray name = charset ? QByteArray(charset->csname) : FCodec->Name();
    if (name == FCodec->Name() || name == "binary")
        return FCodec;
    for (const auto &known : FColumnCodecs) {
        if (known->Name() == name)
            return known;
    }
    auto codec = TCharsetCodec::Create(name);
    if (!codec)
        return FCodec;
    FColumnCodecs.push_back(codec);
    return codec;
}
