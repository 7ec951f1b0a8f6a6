#include "core/uDbmScript.h"

TDbmScript::TDbmScript(TDacMySqlConnection &connection) : FConnection(connection)
{
    FSqlProcessor.SetOnProcess([this](TDbmSqlProcessor *, const QString &commandText) {
        FConnection.Execute(commandText);
    });
    FSqlProcessor.SetOnProgress([this](TDbmSqlProcessor *, double percent) {
        if (FOnProgress)
            FOnProgress(this, percent);
    });
}

void TDbmScript::ExecuteFromText(const QString &value, const QString &delimiter)
{
    Run(delimiter, [&] { FSqlProcessor.ExecuteFromText(value); });
}

void TDbmScript::ExecuteFromFile(const QString &fileName, const QString &delimiter)
{
    Run(delimiter, [&] { FSqlProcessor.ExecuteFromFile(fileName); });
}

void TDbmScript::Run(const QString &delimiter, const std::function<void()> &action)
{
    if (FOnBeforeExecute)
        FOnBeforeExecute(this);
    FSqlProcessor.SetDelimiter(delimiter);
    action();
    if (FOnAfterExecute)
        FOnAfterExecute(this);
}
