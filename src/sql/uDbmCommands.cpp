#include "sql/uDbmCommands.h"

TDbmCommands::TDbmCommands(TDbmProvider *provider, const TDbmFormatters *formatters)
    : FDatabases(provider, formatters), FVariables(provider, formatters),
      FCharsets(provider, formatters)
{
    const TDbmCommandNotExecutedEvent forward =
        [this](TDbmChildCommands *sender, const QString &message, const QString &command) {
            if (FOnCommandNotExecuted)
                FOnCommandNotExecuted(sender, message, command);
        };
    for (TDbmChildCommands *family :
         std::initializer_list<TDbmChildCommands *>{&FDatabases, &FVariables, &FCharsets})
        family->SetOnCommandNotExecuted(forward);
}
