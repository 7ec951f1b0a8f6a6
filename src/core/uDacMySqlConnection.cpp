#include "core/uDacMySqlConnection.h"

#include "support/uStringUtils.h"

#include <QStringList>

namespace {

EDacMySqlError Converted(const EMyError &e, const QString &commandText)
{
    return EDacMySqlError(e.ErrorCode(), TStringUtils::Compact(e.Message()), commandText);
}

bool IsUnicodeCharset(const QString &charset)
{
    static const QStringList charsets = {"utf8", "utf8mb4", "utf16", "utf32", "ucs2"};
    return charsets.contains(charset, Qt::CaseInsensitive);
}

} // namespace

TDacMySqlConnection::TDacMySqlConnection() : FConnection(std::make_unique<TMyConnection>())
{
    HookLibraryEvents();
}

TDacMySqlConnection::~TDacMySqlConnection()
{
    // The library tells of the disconnect while it goes, and the events must still be there then.
    FConnection.reset();
}

void TDacMySqlConnection::HookLibraryEvents()
{
    FConnection->SetBeforeConnect([this](TMyConnection *sender) {
        sender->Options.UseUnicode = IsUnicodeCharset(FCharset);
        if (FOnBeforeConnect)
            FOnBeforeConnect(this);
    });
    FConnection->SetAfterConnect([this](TMyConnection *) { FireAfterConnect(); });
    FConnection->SetAfterDisconnect([this](TMyConnection *) { FireAfterDisconnect(); });
    FConnection->SetOnError([](TMyConnection *, const EMyError &, bool &fail) { fail = true; });
    FConnection->SetOnConnectionLost([](TMyConnection *, TConnLostCause, TRetryMode &retryMode) {
        retryMode = rmReconnectExecute;
    });
}

void TDacMySqlConnection::FireAfterConnect()
{
    if (FDisableConnectEvents)
        return;
    if (FOnInit)
        FOnInit(this);
    if (FOnAfterConnect)
        FOnAfterConnect(this);
}

void TDacMySqlConnection::FireAfterDisconnect()
{
    if (!FDisableConnectEvents && FOnAfterDisconnect)
        FOnAfterDisconnect(this);
}

void TDacMySqlConnection::Connect()
{
    FConnection->Server = FHost;
    FConnection->Database = FDatabase;
    FConnection->Username = FUserName;
    FConnection->Password = FPassword;
    FConnection->Port = FPort;
    FConnection->Options.Charset = FCharset;
    FConnection->Options.Compress = FUseCompression;
    FConnection->Options.Direct = false;
    FConnection->Options.DisconnectedMode = false;
    FConnection->Options.LocalFailover = true;
    try {
        FConnection->Connect();
    } catch (const EMyError &e) {
        throw Converted(e, QString());
    }
}

void TDacMySqlConnection::Disconnect()
{
    FConnection->Disconnect();
}

void TDacMySqlConnection::Drop()
{
    FConnection->Drop();
}

void TDacMySqlConnection::SetAddress(const QString &host, int port)
{
    FHost = host;
    FPort = port;
    FConnection->SetAddress(host, port);
}

bool TDacMySqlConnection::Connected() const
{
    return FConnection->Connected();
}

QString TDacMySqlConnection::ServerVersion() const
{
    return FConnection->ServerVersion();
}

void TDacMySqlConnection::ChangeCharset(const QString &charset)
{
    FCharset = charset;
    // Also without a session: what a lost one had would come back with its charset.
    Disconnect();
}

std::unique_ptr<TMyQuery> TDacMySqlConnection::CreateDataset()
{
    auto dataset = std::make_unique<TMyQuery>(FConnection.get());
    dataset->SetCachedUpdates(false);
    dataset->SetStatementHooks(
        {.Open = [this] { OpenForChange(); },
         .Run = [this](const QString &sql, const TOperation &run) { Run(sql, run, {}); }});
    return dataset;
}

void TDacMySqlConnection::OpenForChange()
{
    if (FOnBeforeChange)
        FOnBeforeChange(this);
    try {
        FConnection->Connect();
    } catch (const EMyError &e) {
        throw Converted(e, QString());
    }
}

void TDacMySqlConnection::Execute(const QString &commandText)
{
    Execute(commandText, true);
}

void TDacMySqlConnection::ExecuteDataset(const QString &commandText, TMyQuery &dataset)
{
    ExecuteDataset(commandText, dataset, true);
}

void TDacMySqlConnection::RefreshDataset(TMyQuery &dataset)
{
    const QString commandText = dataset.SQL().trimmed();
    // The dataset may have been closed by the loss, so that it is executed anew.
    Run(
        commandText, [&] { dataset.Refresh(); },
        [&] { ExecuteDataset(commandText, dataset, false); });
}

void TDacMySqlConnection::Execute(const QString &commandText, bool retry)
{
    const auto execute = [&] {
        TMyCommand command;
        command.Connection = FConnection.get();
        command.SQL = commandText;
        command.Execute();
    };
    const auto repeat = [&] { Execute(commandText, false); };
    Run(commandText, execute, retry ? TOperation(repeat) : TOperation());
}

void TDacMySqlConnection::ExecuteDataset(const QString &commandText, TMyQuery &dataset, bool retry)
{
    const auto execute = [&] {
        const QString before = dataset.SQL();
        dataset.SetSQL(commandText);
        try {
            dataset.Execute();
        } catch (...) {
            // A refresh of the rows that are still there must not run what failed.
            if (dataset.Active())
                dataset.SetSQL(before);
            throw;
        }
    };
    const auto repeat = [&] { ExecuteDataset(commandText, dataset, false); };
    Run(commandText, execute, retry ? TOperation(repeat) : TOperation());
}

void TDacMySqlConnection::Stream(const QString &commandText,
                                 const TMyQuery::TStreamFields &onFields,
                                 const TMyQuery::TStreamRow &onRow)
{
    const std::unique_ptr<TMyQuery> query = CreateDataset();
    query->SetSQL(commandText);
    Run(commandText, [&] { query->Stream(onFields, onRow); }, {});
}

void TDacMySqlConnection::Run(const QString &commandText, const TOperation &operation,
                              const TOperation &onLost)
{
    FireBeforeExecute(commandText);
    try {
        RunConverted(commandText, operation, onLost);
    } catch (...) {
        FireAfterExecute();
        throw;
    }
    FireAfterExecute();
}

void TDacMySqlConnection::RunConverted(const QString &commandText, const TOperation &operation,
                                       const TOperation &onLost)
{
    try {
        operation();
    } catch (const EMyError &e) {
        const EDacMySqlError error = Converted(e, commandText);
        if (onLost && FRepeats && error.IsLostConnection() && e.CanRepeat()) {
            onLost();
            return;
        }
        if (FOnExecuteError)
            FOnExecuteError(this, error);
        throw error;
    }
}

void TDacMySqlConnection::FireBeforeExecute(const QString &commandText)
{
    if (FOnBeforeExecute)
        FOnBeforeExecute(this, commandText);
}

void TDacMySqlConnection::FireAfterExecute()
{
    if (FOnAfterExecute)
        FOnAfterExecute(this);
}
