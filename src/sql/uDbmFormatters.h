#pragma once

#include "sql/uDbmCharsetFormatters.h"
#include "sql/uDbmCollationFormatters.h"
#include "sql/uDbmDataFormatters.h"
#include "sql/uDbmDatabaseFormatters.h"
#include "sql/uDbmDatabasePrivilegesFormatters.h"
#include "sql/uDbmEngineFormatters.h"
#include "sql/uDbmEventFormatters.h"
#include "sql/uDbmFieldFormatters.h"
#include "sql/uDbmIndexColumnFormatters.h"
#include "sql/uDbmIndexFormatters.h"
#include "sql/uDbmOtherFormatters.h"
#include "sql/uDbmPluginFormatters.h"
#include "sql/uDbmProcessFormatters.h"
#include "sql/uDbmReferenceColumnFormatters.h"
#include "sql/uDbmReferenceFormatters.h"
#include "sql/uDbmRoutineFormatters.h"
#include "sql/uDbmRoutinePrivilegesFormatters.h"
#include "sql/uDbmStatusFormatters.h"
#include "sql/uDbmTableFormatters.h"
#include "sql/uDbmTablePrivilegesFormatters.h"
#include "sql/uDbmTriggerFormatters.h"
#include "sql/uDbmUserPrivilegesFormatters.h"
#include "sql/uDbmVariableFormatters.h"
#include "sql/uDbmViewFormatters.h"

/// One instance of each family of formatters, made in this order on the features of one connection,
/// which must outlive them.
class TDbmFormatters
{
public:
    explicit TDbmFormatters(const TDbmServerFeatures *features)
        : FData(features), FDatabases(features), FTables(features), FViews(features),
          FRoutines(features), FEvents(features), FFields(features), FIndexes(features),
          FIndexColumns(features), FForeignKeys(features), FForeignKeyColumns(features),
          FTriggers(features), FVariables(features), FStatus(features), FProcesses(features),
          FCharsets(features), FCollations(features), FPlugins(features), FEngines(features),
          FUsersPrivileges(features), FDatabasesPrivileges(features), FTablesPrivileges(features),
          FRoutinesPrivileges(features), FOther(features)
    {}

    const TDbmDataFormatters &Data() const { return *FData; }
    const TDbmDatabaseFormatters &Databases() const { return *FDatabases; }
    const TDbmTableFormatters &Tables() const { return *FTables; }
    const TDbmViewFormatters &Views() const { return *FViews; }
    const TDbmRoutineFormatters &Routines() const { return *FRoutines; }
    const TDbmEventFormatters &Events() const { return *FEvents; }
    const TDbmFieldFormatters &Fields() const { return *FFields; }
    const TDbmIndexFormatters &Indexes() const { return *FIndexes; }
    const TDbmIndexColumnFormatters &IndexColumns() const { return *FIndexColumns; }
    const TDbmReferenceFormatters &ForeignKeys() const { return *FForeignKeys; }
    const TDbmReferenceColumnFormatters &ForeignKeyColumns() const { return *FForeignKeyColumns; }
    const TDbmTriggerFormatters &Triggers() const { return *FTriggers; }
    const TDbmVariableFormatters &Variables() const { return *FVariables; }
    const TDbmStatusFormatters &Status() const { return *FStatus; }
    const TDbmProcessFormatters &Processes() const { return *FProcesses; }
    const TDbmCharsetFormatters &Charsets() const { return *FCharsets; }
    const TDbmCollationFormatters &Collations() const { return *FCollations; }
    const TDbmPluginFormatters &Plugins() const { return *FPlugins; }
    const TDbmEngineFormatters &Engines() const { return *FEngines; }
    const TDbmUserPrivilegesFormatters &UsersPrivileges() const { return *FUsersPrivileges; }
    const TDbmDatabasePrivilegesFormatters &DatabasesPrivileges() const
    {
        return *FDatabasesPrivileges;
    }
    const TDbmTablePrivilegesFormatters &TablesPrivileges() const { return *FTablesPrivileges; }
    const TDbmRoutinePrivilegesFormatters &RoutinesPrivileges() const
    {
        return *FRoutinesPrivileges;
    }
    const TDbmOtherFormatters &Other() const { return *FOther; }

private:
    TDbmFormattersOwner<TDbmDataFormatters> FData;
    TDbmFormattersOwner<TDbmDatabaseFormatters> FDatabases;
    TDbmFormattersOwner<TDbmTableFormatters> FTables;
    TDbmFormattersOwner<TDbmViewFormatters> FViews;
    TDbmFormattersOwner<TDbmRoutineFormatters> FRoutines;
    TDbmFormattersOwner<TDbmEventFormatters> FEvents;
    TDbmFormattersOwner<TDbmFieldFormatters> FFields;
    TDbmFormattersOwner<TDbmIndexFormatters> FIndexes;
    TDbmFormattersOwner<TDbmIndexColumnFormatters> FIndexColumns;
    TDbmFormattersOwner<TDbmReferenceFormatters> FForeignKeys;
    TDbmFormattersOwner<TDbmReferenceColumnFormatters> FForeignKeyColumns;
    TDbmFormattersOwner<TDbmTriggerFormatters> FTriggers;
    TDbmFormattersOwner<TDbmVariableFormatters> FVariables;
    TDbmFormattersOwner<TDbmStatusFormatters> FStatus;
    TDbmFormattersOwner<TDbmProcessFormatters> FProcesses;
    TDbmFormattersOwner<TDbmCharsetFormatters> FCharsets;
    TDbmFormattersOwner<TDbmCollationFormatters> FCollations;
    TDbmFormattersOwner<TDbmPluginFormatters> FPlugins;
    TDbmFormattersOwner<TDbmEngineFormatters> FEngines;
    TDbmFormattersOwner<TDbmUserPrivilegesFormatters> FUsersPrivileges;
    TDbmFormattersOwner<TDbmDatabasePrivilegesFormatters> FDatabasesPrivileges;
    TDbmFormattersOwner<TDbmTablePrivilegesFormatters> FTablesPrivileges;
    TDbmFormattersOwner<TDbmRoutinePrivilegesFormatters> FRoutinesPrivileges;
    TDbmFormattersOwner<TDbmOtherFormatters> FOther;
};
