#include "sql/uDbmChildCommands.h"

#include "support/uException.h"

void TDbmChildCommands::ExecuteScript(const QString &commandText, const QString &delimiter) const
{
    FProvider->Command().ExecScript(commandText, {}, delimiter);
}

bool TDbmChildCommands::SafeExecute(const QString &commandText,
                                    const std::function<void(const QString &)> &action)
{
    QString message;
    try {
        action(commandText);
        return true;
    } catch (const std::exception &e) {
        message = ExceptionMessage(e);
    } catch (...) {
        message = "Unknown exception.";
    }
    if (FOnCommandNotExecuted)
        FOnCommandNotExecuted(this, message, commandText);
    return false;
}
