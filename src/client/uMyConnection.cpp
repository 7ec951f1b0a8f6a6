#include "client/uMyConnection.h"

#include "client/uMySession.h"

namespace {

// The wide sets of the server cannot be a client's; everything in them goes through UTF-8.
QByteArray WireCharset(const TMyConnectionOptions &options)
{
    const QByteArray name = options.Charset.trimmed().toLower().toLatin1();
    const bool wide = name.startsWith("utf16") || name == "utf32" || name == "ucs2";
    return wide || (options.UseUnicode && !name.startsWith("utf8")) ? QByteArray("utf8mb4") : name;
}

} // namespace

struct TMyConnection::TLost
{
    TSessionParams Params;
    TSessionState State;
};

TMyConnection::TMyConnection() : FSession(std::make_unique<TMySession>()) {}

TMyConnection::~TMyConnection()
{
    Disconnect();
}

TSessionParams TMyConnection::SessionParams() const
{
    return {.Server = Server,
            .Port = Port,
            .Username = Username,
            .Password = Password,
            .Database = Database,
            .Charset = WireCharset(Options),
            .Compress = Options.Compress,
            .TimeoutSecs = ConnectionTimeout};
}

void TMyConnection::Connect()
{
    if (Connected())
        return;
    if (FOpened)
        SessionLost();
    if (FBeforeConnect)
        FBeforeConnect(this);
    try {
        OpenSession();
    } catch (const EMyError &error) {
        bool fail = true;
        if (FOnError)
            FOnError(this, error, fail);
        throw;
    }
    FOpened = true;
    FServerVersion = FSession->ServerVersion();
    if (FAfterConnect)
        FAfterConnect(this);
}

void TMyConnection::OpenSession()
{
    const TSessionParams params = SessionParams();
    FSession->Open(params);
    // Once only: a database that is gone must not keep the next try from working.
    const std::unique_ptr<TLost> lost = std::move(FLost);
    if (lost && lost->Params == params)
        FSession->Restore(lost->State);
}

void TMyConnection::Disconnect()
{
    FLost.reset();
    if (!FOpened)
        return;
    FOpened = false;
    FSession->Close();
    if (FAfterDisconnect)
        FAfterDisconnect(this);
}

void TMyConnection::Drop()
{
    if (!FOpened)
        return;
    FSession->Close();
    SessionLost();
}

void TMyConnection::SetAddress(const QString &server, int port)
{
    Server = server;
    Port = port;
    if (!FLost)
        return;
    FLost->Params.Server = server;
    FLost->Params.Port = port;
}

bool TMyConnection::Connected() const
{
    return FSession->IsOpen();
}

QString TMyConnection::TlsCipher() const
{
    return FSession->TlsCipher();
}

bool TMyConnection::InTransaction() const
{
    return Connected() && FSession->InTransaction();
}

QString TMyConnection::CurrentDatabase() const
{
    return Connected() ? FSession->State().Database : QString();
}

QString TMyConnection::CurrentCharset() const
{
    return Connected() ? QString::fromLatin1(FSession->State().Charset) : QString();
}

void TMyConnection::Execute(const QString &sql)
{
    Connect();
    const bool inTransaction = InTransaction();
    try {
        FSession->Query(sql);
        do {
            if (FSession->HasColumns()) {
                FSession->OpenRows();
                FSession->CloseRows();
            }
        } while (FSession->NextAnswer());
    } catch (const EMyError &error) {
        RaiseError(error, clExecute, inTransaction);
    }
}

void TMyConnection::RaiseError(EMyError error, TConnLostCause cause, bool wasInTransaction)
{
    // A CALL may have opened a transaction between two of its answers.
    const bool inTransaction = wasInTransaction || FSession->InTransaction();
    if (FOpened && !Connected())
        SessionLost();
    if (error.IsLostConnection() && Options.LocalFailover && FOnConnectionLost) {
        TRetryMode mode = rmRaise;
        FOnConnectionLost(this, cause, mode);
        error.SetCanRepeat(mode == rmReconnectExecute && !inTransaction);
    }
    bool fail = true;
    if (FOnError)
        FOnError(this, error, fail);
    throw error;
}

void TMyConnection::SessionLost()
{
    FOpened = false;
    FLost.reset(new TLost{FSession->Params(), FSession->State()});
    if (FAfterDisconnect)
        FAfterDisconnect(this);
}
