#pragma once

#include "sql/uDbmCharsetCommands.h"
#include "sql/uDbmDatabaseCommands.h"
#include "sql/uDbmVariableCommands.h"

/// One instance of each command family on one provider. Every family's failed safe reads are
/// collected in one event.
class TDbmCommands
{
public:
    TDbmCommands(TDbmProvider *provider, const TDbmFormatters *formatters); // not owned

    TDbmDatabaseCommands &Databases() { return FDatabases; }
    TDbmVariableCommands &Variables() { return FVariables; }
    TDbmCharsetCommands &Charsets() { return FCharsets; }

    void SetOnCommandNotExecuted(TDbmCommandNotExecutedEvent event)
    {
        FOnCommandNotExecuted = std::move(event);
    }

private:
    TDbmDatabaseCommands FDatabases;
    TDbmVariableCommands FVariables;
    TDbmCharsetCommands FCharsets;
    TDbmCommandNotExecutedEvent FOnCommandNotExecuted;
};
