#pragma once

#include "sql/uDbmCharsetCommands.h"
#include "sql/uDbmCollationCommands.h"
#include "sql/uDbmDataCommands.h"
#include "sql/uDbmDatabaseCommands.h"
#include "sql/uDbmDatabasePrivilegesCommands.h"
#include "sql/uDbmEngineCommands.h"
#include "sql/uDbmEventCommands.h"
#include "sql/uDbmFieldCommands.h"
#include "sql/uDbmIndexColumnCommands.h"
#include "sql/uDbmIndexCommands.h"
#include "sql/uDbmPluginCommands.h"
#include "sql/uDbmProcessCommands.h"
#include "sql/uDbmReferenceColumnCommands.h"
#include "sql/uDbmReferenceCommands.h"
#include "sql/uDbmRoutineCommands.h"
#include "sql/uDbmRoutinePrivilegesCommands.h"
#include "sql/uDbmStatusCommands.h"
#include "sql/uDbmTableCommands.h"
#include "sql/uDbmTablePrivilegesCommands.h"
#include "sql/uDbmTriggerCommands.h"
#include "sql/uDbmUserPrivilegesCommands.h"
#include "sql/uDbmVariableCommands.h"
#include "sql/uDbmViewCommands.h"

/// One instance of each command family on one provider, in this order. Every family's failed safe
/// reads are collected in one event.
class TDbmCommands
{
public:
    TDbmCommands(TDbmProvider *provider, const TDbmFormatters *formatters); // not owned

    TDbmDataCommands &Data() { return FData; }
    TDbmDatabaseCommands &Databases() { return FDatabases; }
    TDbmTableCommands &Tables() { return FTables; }
    TDbmViewCommands &Views() { return FViews; }
    TDbmRoutineCommands &Routines() { return FRoutines; }
    TDbmEventCommands &Events() { return FEvents; }
    TDbmFieldCommands &Fields() { return FFields; }
    TDbmIndexCommands &Indexes() { return FIndexes; }
    TDbmIndexColumnCommands &IndexColumns() { return FIndexColumns; }
    TDbmReferenceCommands &ForeignKeys() { return FForeignKeys; }
    TDbmReferenceColumnCommands &ForeignKeyColumns() { return FForeignKeyColumns; }
    TDbmTriggerCommands &Triggers() { return FTriggers; }
    TDbmVariableCommands &Variables() { return FVariables; }
    TDbmStatusCommands &Status() { return FStatus; }
    TDbmProcessCommands &Processes() { return FProcesses; }
    TDbmCharsetCommands &Charsets() { return FCharsets; }
    TDbmCollationCommands &Collations() { return FCollations; }
    TDbmEngineCommands &Engines() { return FEngines; }
    TDbmPluginCommands &Plugins() { return FPlugins; }
    TDbmUserPrivilegesCommands &UsersPrivileges() { return FUsersPrivileges; }
    TDbmDatabasePrivilegesCommands &DatabasesPrivileges() { return FDatabasesPrivileges; }
    TDbmTablePrivilegesCommands &TablesPrivileges() { return FTablesPrivileges; }
    TDbmRoutinePrivilegesCommands &RoutinesPrivileges() { return FRoutinesPrivileges; }

    void SetOnCommandNotExecuted(TDbmCommandNotExecutedEvent event)
    {
        FOnCommandNotExecuted = std::move(event);
    }

private:
    TDbmDataCommands FData;
    TDbmDatabaseCommands FDatabases;
    TDbmTableCommands FTables;
    TDbmViewCommands FViews;
    TDbmRoutineCommands FRoutines;
    TDbmEventCommands FEvents;
    TDbmFieldCommands FFields;
    TDbmIndexCommands FIndexes;
    TDbmIndexColumnCommands FIndexColumns;
    TDbmReferenceCommands FForeignKeys;
    TDbmReferenceColumnCommands FForeignKeyColumns;
    TDbmTriggerCommands FTriggers;
    TDbmVariableCommands FVariables;
    TDbmStatusCommands FStatus;
    TDbmProcessCommands FProcesses;
    TDbmCharsetCommands FCharsets;
    TDbmCollationCommands FCollations;
    TDbmEngineCommands FEngines;
    TDbmPluginCommands FPlugins;
    TDbmUserPrivilegesCommands FUsersPrivileges;
    TDbmDatabasePrivilegesCommands FDatabasesPrivileges;
    TDbmTablePrivilegesCommands FTablesPrivileges;
    TDbmRoutinePrivilegesCommands FRoutinesPrivileges;
    TDbmCommandNotExecutedEvent FOnCommandNotExecuted;
};
