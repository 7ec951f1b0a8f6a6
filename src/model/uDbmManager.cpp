#include "model/uDbmManager.h"

#include "support/uException.h"

// In this order: each stands on those before it.
struct TDbmManager::TParts
{
    TDbmProvider Provider;
    TDbmServerFeatures Features;
    TDbmFormatters Formatters{&Features};
    TDbmCommands Commands{&Provider, &Formatters};
};

std::unique_ptr<TDbmManager> TDbmManager::Create()
{
    return std::unique_ptr<TDbmManager>(new TDbmManager(std::make_unique<TParts>()));
}

TDbmManager::TDbmManager(std::unique_ptr<TParts> parts)
    : TDbmElement(&parts->Provider, &parts->Features, &parts->Formatters, &parts->Commands),
      FParts(std::move(parts))
{
    HookEvents();
    FDatabases = New<TDbmDatabaseList>(this);
    FCharsets = New<TDbmCharsetList>(this);
}

TDbmManager::~TDbmManager() = default;

TDbmProvider &TDbmManager::Provider()
{
    return FParts->Provider;
}

TDbmCommand &TDbmManager::Command()
{
    return FParts->Provider.Command();
}

TDbmFormatters &TDbmManager::Formatters()
{
    return FParts->Formatters;
}

TDbmCommands &TDbmManager::Commands()
{
    return FParts->Commands;
}

TDbmConnectionProfile TDbmManager::ConnectionProfile() const
{
    return FParts->Provider.ConnectionProfile();
}

bool TDbmManager::IsDatabaseConnection() const
{
    return FParts->Provider.IsDatabaseConnection();
}

void TDbmManager::HookEvents()
{
    TDacMySqlConnection &connection = FParts->Provider.Connection();
    connection.SetOnBeforeExecute([this](TDacMySqlConnection *, const QString &commandText) {
        if (FOnCommandBeforeExecute)
            FOnCommandBeforeExecute(this, commandText);
    });
    connection.SetOnAfterExecute([this](TDacMySqlConnection *) {
        if (FOnCommandAfterExecute)
            FOnCommandAfterExecute(this);
    });
    connection.SetOnExecuteError([this](TDacMySqlConnection *, const EDacMySqlError &e) {
        if (FOnCommandExecuteError)
            FOnCommandExecuteError(this, e);
    });
    FParts->Provider.SetOnConnectionMessage([this](TDbmProvider *, const QString &message) {
        if (FOnConnectionMessage)
            FOnConnectionMessage(this, message);
    });
}

void TDbmManager::SetParams(const TDbmConnectionProfile &profile)
{
    FParts->Provider.SetParams(profile);
}

void TDbmManager::Connect()
{
    FParts->Provider.OpenConnection();
    FParts->Features.SetParams(FParts->Provider.ServerVersion());
}

void TDbmManager::SetCharset(const QString &value)
{
    FParts->Provider.SetCharset(value);
    RequestProcess();
}

void TDbmManager::RequestProcess()
{
    FDatabases->RequestProcess();
    FCharsets->RequestProcess();
}

const TDbmServerFeatures &TDbmManager::Features()
{
    Connect();
    return FParts->Features;
}

QString TDbmManager::ServerVersion()
{
    Connect();
    return FParts->Provider.ServerVersion();
}

std::shared_ptr<TDbmDatabaseItem> TDbmManager::GetUsedDatabase()
{
    std::shared_ptr<TDbmDatabaseItem> item;
    if (!FDatabases->TryGetByName(ConnectionProfile().Database, item))
        throw EException("Get used database error.");
    return item;
}

std::unique_ptr<TDbmScript> TDbmManager::CreateScript()
{
    return std::make_unique<TDbmScript>(FParts->Provider.Connection());
}

void TDbmManager::SetOnCommandBeforeExecute(TDbmManagerCommandBeforeExecuteEvent event)
{
    FOnCommandBeforeExecute = std::move(event);
}

void TDbmManager::SetOnCommandAfterExecute(TDbmManagerCommandAfterExecuteEvent event)
{
    FOnCommandAfterExecute = std::move(event);
}

void TDbmManager::SetOnCommandExecuteError(TDbmManagerCommandExecuteErrorEvent event)
{
    FOnCommandExecuteError = std::move(event);
}

void TDbmManager::SetOnConnectionMessage(TDbmManagerConnectionMessageEvent event)
{
    FOnConnectionMessage = std::move(event);
}
