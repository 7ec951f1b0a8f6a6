#pragma once

#include "model/uDbmEntityTypes.h"

/// The plain description of one server object: data only. Date fields count as absent at 0.
struct TDbmEntity
{
    TDbmEntity() = default;
    TDbmEntity(const TDbmEntity &) = default;
    TDbmEntity &operator=(const TDbmEntity &) = default;
    virtual ~TDbmEntity() = default;
};

struct TDbmDatabaseEntity : TDbmEntity
{
    QString DatabaseName;
    QString Collation;
};

struct TDbmTableEntity : TDbmEntity
{
    QString TableName;
    QString Engine;
    TDbmTableRowFormat RowFormat = rfUnknown;
    QString Collation;
    QString Comment;
    TVariant AutoIncrement; // null when the table has none
    bool Checksum = false;
    TDbmTablePackKeys PackKeys = pkDefault;
    bool DelayKeyWrite = false;
    TDbmTableInfo Info;
};

struct TDbmViewEntity : TDbmEntity
{
    QString ViewName;
    QString Definition;
    QString Definer;
    TDbmViewCheckOption CheckOption = vcoNone;
    TDbmViewSecurityType SecurityType = vsUnknown;
    TDbmViewInfo Info;
    QString Algorithm; // UNDEFINED, MERGE or TEMPTABLE as the server wrote it; empty when not known
};

struct TDbmRoutineEntity : TDbmEntity
{
    QString RoutineName;
    TDbmRoutineType RoutineType = rtProcedure;
    QString Definition;
    bool Deterministic = false;
    TDbmRoutineSecurityType SecurityType = rsDefiner;
    QString Comment;
    QString Definer;
    QString Returns;
    TDbmRoutineInfo Info;
    QString DataAccess; // CONTAINS SQL, NO SQL, ... as the server wrote it; empty when not known
};

struct TDbmEventEntity : TDbmEntity
{
    QString EventName;
    QString Definer;
    TDbmEventType EventType = evtUnknown;
    TDateTime AtTimestamp;
    TDateTime StartsTimestamp;
    TDateTime EndsTimestamp;
    TDbmInterval Interval;
    bool OnCompletionPreserve = false;
    TDbmEventStatus Status = evsUnknown;
    QString Comment;
    QString Definition;
    TDateTime Created;
    TDateTime LastAltered;
    TDateTime LastExecuted;
    QString TimeZone; // that its times are told in, as the server wrote it; empty when not known
};

struct TDbmFieldEntity : TDbmEntity
{
    QString FieldName;
    TDbmFieldType FieldType;
    bool Nullable = false;
    bool Autoincrement = false;
    TDbmValue DefaultValue; // the null value
    QString Comment;
    TDbmFieldRecInfo Info;
    /// What the server wrote, so that what the record cannot hold goes back unchanged. Empty for a
    /// column that was not read from a server.
    TDbmFieldServerText ServerText;
};

struct TDbmIndexEntity : TDbmEntity
{
    QString IndexName;
    TDbmIndexKind IndexKind = ikNone;
    QString Options; // clauses behind the columns, in SQL
};

struct TDbmIndexColumnEntity : TDbmEntity
{
    qint32 Position = 0;
    QString ColumnName;
    qint64 Length = 0; // prefix length; 0 is the whole column
    bool Descending = false;
};

struct TDbmDatabaseIndexColumnEntity : TDbmEntity
{
    QString TableName;
    QString IndexName;
    QString ColumnName;
    qint32 Position = 0;
    qint64 Length = 0; // prefix length; 0 is the whole column
};

struct TDbmReferenceEntity : TDbmEntity
{
    QString ReferenceName;
    QString RefDatabaseName;
    QString RefTableName;
    TDbmReferenceOption OnDelete = roUnknown;
    TDbmReferenceOption OnUpdate = roUnknown;
};

struct TDbmReferenceColumnEntity : TDbmEntity
{
    qint32 Position = 0;
    QString SrcColumnName;
    QString RefColumnName;
};

struct TDbmDatabaseReferenceColumnEntity : TDbmEntity
{
    QString TableName;
    QString ReferenceName;
    qint32 Position = 0;
    QString SrcColumnName;
    QString RefColumnName;
};

/// A foreign key of another table that points here.
struct TDbmDependencyEntity : TDbmEntity
{
    QString Name;
    QString SrcDatabaseName;
    QString SrcTableName;
};

struct TDbmTriggerEntity : TDbmEntity
{
    QString TriggerName;
    TDbmTriggerEvent Event = teUnknown;
    QString Body;
    QString Definer;
    TDateTime Created;
    QString SQLMode;
    QString CharsetClient;
    QString CollationConnection;
    QString DatabaseCollation;
};

struct TDbmVariableEntity : TDbmEntity
{
    QString Name;
    QString Value;
};

struct TDbmStatusEntity : TDbmEntity
{
    QString Name;
    QString Value;
};

struct TDbmCharsetEntity : TDbmEntity
{
    QString Name;
    QString DefaultCollate;
    QString Description;
    qint32 MaxLen = 0; // bytes per character
};

struct TDbmCollationEntity : TDbmEntity
{
    QString Name;
    QString Charset;
    qint32 ID = 0;
    bool Default = false;
    bool Compiled = false;
    qint32 SortLen = 0;
};

struct TDbmProcessEntity : TDbmEntity
{
    qint64 Id = 0;
    QString User;
    QString Host;
    QString Db;
    QString Command;
    qint64 Time = 0; // seconds
    QString State;
    QString Info;
};

struct TDbmEngineEntity : TDbmEntity
{
    QString EngineName;
    TDbmEngineSupport Support = esYes;
    TDbmEngineOptions Options;
    QString Comment;
};

struct TDbmPluginEntity : TDbmEntity
{
    QString PluginName;
    QString Version;
    QString Status;
    QString PluginType;
    QString TypeVersion;
    QString PluginLibrary;
    QString LibraryVersion;
    QString Author;
    QString Description;
    QString License;
};

struct TDbmUserPrivilegesEntity : TDbmEntity
{
    QString UserName;
    QString HostName;
    bool HavePassword = false;
    TDbmPrivileges Privileges;
    qint64 MaxQueriesPerHour = 0;
    qint64 MaxUpdatesPerHour = 0;
    qint64 MaxConnectionsPerHour = 0;
    qint64 MaxUserConnections = 0;
    bool IsRole = false; // shown among the users, never rewritten as an account
};

struct TDbmDatabasePrivilegesEntity : TDbmEntity
{
    QString User;
    QString Host;
    QString Database;
    TDbmDatabasePrivs Privs;
};

struct TDbmTablePrivilegesEntity : TDbmEntity
{
    QString User;
    QString Host;
    QString Database;
    QString Table;
    TDbmTablePrivs Privs;
};

struct TDbmRoutinePrivilegesEntity : TDbmEntity
{
    QString User;
    QString Host;
    QString Database;
    QString Routine;
    TDbmRoutineType RoutineType = rtProcedure;
    TDbmRoutinePrivs Privs;
};
