#include "sql/uDbmCommands.h"

TDbmCommands::TDbmCommands(TDbmProvider *provider, const TDbmFormatters *formatters)
    : FData(provider, formatters), FDatabases(provider, formatters), FTables(provider, formatters),
      FViews(provider, formatters), FRoutines(provider, formatters), FEvents(provider, formatters),
      FFields(provider, formatters), FIndexes(provider, formatters),
      FIndexColumns(provider, formatters), FForeignKeys(provider, formatters),
      FForeignKeyColumns(provider, formatters), FTriggers(provider, formatters),
      FVariables(provider, formatters), FStatus(provider, formatters),
      FProcesses(provider, formatters), FCharsets(provider, formatters),
      FCollations(provider, formatters), FEngines(provider, formatters),
      FPlugins(provider, formatters), FUsersPrivileges(provider, formatters),
      FDatabasesPrivileges(provider, formatters), FTablesPrivileges(provider, formatters),
      FRoutinesPrivileges(provider, formatters)
{
    const TDbmCommandNotExecutedEvent forward =
        [this](TDbmChildCommands *sender, const QString &message, const QString &command) {
            if (FOnCommandNotExecuted)
                FOnCommandNotExecuted(sender, message, command);
        };
    for (TDbmChildCommands *family :
         std::initializer_list<TDbmChildCommands *>{&FData,
                                                    &FDatabases,
                                                    &FTables,
                                                    &FViews,
                                                    &FRoutines,
                                                    &FEvents,
                                                    &FFields,
                                                    &FIndexes,
                                                    &FIndexColumns,
                                                    &FForeignKeys,
                                                    &FForeignKeyColumns,
                                                    &FTriggers,
                                                    &FVariables,
                                                    &FStatus,
                                                    &FProcesses,
                                                    &FCharsets,
                                                    &FCollations,
                                                    &FEngines,
                                                    &FPlugins,
                                                    &FUsersPrivileges,
                                                    &FDatabasesPrivileges,
                                                    &FTablesPrivileges,
                                                    &FRoutinesPrivileges})
        family->SetOnCommandNotExecuted(forward);
}
