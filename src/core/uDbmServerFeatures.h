#pragma once

#include "model/uDbmEntities.h"

/// What a server of a version offers, so that nothing else compares versions. Before the first
/// SetParams all flags are false and the sets empty.
class TDbmServerFeatures
{
public:
    void SetParams(const QString &serverVersion);
    const QString &ServerVersion() const { return FServerVersion; }

    bool Events = false;  // the server has events
    bool Plugins = false; // the server has plugins
    // Tables of INFORMATION_SCHEMA that exist, and columns of them.
    bool ISVariables = false;
    bool ISStatus = false;
    bool ISEvents = false;
    bool ISEventsTimeZone = false;
    bool ISEventsBody = false;
    bool ISEventsDefinition = false;
    bool ISEventsOriginator = false;
    bool ISEventsCharsetClient = false;
    bool ISEventsCollationConnection = false;
    bool ISEventsDatabaseCollation = false;
    bool ISEventsStatusSlaveSideDisabled = false; // the status value of replicas
    bool CreateEventDefiner = false;              // CREATE EVENT takes a definer
    bool ISPlugins = false;
    bool ISPluginsLicense = false;
    bool ISProcessList = false;
    bool ISEngines = false;
    bool ISStatistics = false;
    bool ISRefConstraints = false;
    bool GlobalFKs = false; // foreign keys of a whole database can be read at once
    // Privileges that can be granted.
    TDbmUserPrivs UserPrivs;
    TDbmDatabasePrivs DatabasePrivs;
    TDbmTablePrivs TablePrivs;
    TDbmRoutinePrivs RoutinePrivs;
    // What came after the servers above, where only the name in the version text tells.
    bool PSVariables = false;    // variables and status stand in performance_schema
    bool QuotedDefaults = false; // column defaults are expressions: quoted literals, the word NULL
    bool MarkedDefaults = false; // column defaults that are expressions are marked in EXTRA
    bool ColumnChecks = false;   // a CHECK may belong to a column's definition
    bool CachedStatistics = false; // row counts and AUTO_INCREMENT are kept for a day
    bool ConstraintNames = false;  // a foreign key is named by a CONSTRAINT clause alone
    bool SourceWords = false;      // no more masters and slaves; several old statements are gone
    bool AlterUser = false;        // passwords and limits are set by ALTER USER
    bool Roles = false;            // roles stand among the accounts, marked as such

private:
    QString FServerVersion;
};
