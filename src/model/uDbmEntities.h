#pragma once

#include "support/uDateTime.h"
#include "support/uSet.h"
#include "support/uVariant.h"

#include <QList>
#include <QString>
#include <QStringList>

enum TDbmValueType { vtValue, vtCurrentTimeStamp };
enum TDbmTableType { tblTable, tblTemporary, tblSystemView };
enum TDbmTableRowFormat {
    rfUnknown,
    rfDefault,
    rfFixed,
    rfDynamic,
    rfCompressed,
    rfRedundant,
    rfCompact
};
enum TDbmTablePackKeys { pkDefault, pkOn, pkOff };
enum TDbmViewCheckOption { vcoNone, vcoCascaded, vcoLocal };
enum TDbmViewSecurityType { vsUnknown, vsDefiner, vsInvoker };
enum TDbmRoutineType { rtProcedure, rtFunction };
enum TDbmRoutineSecurityType { rsDefiner, rsInvoker };
enum TDbmEventType { evtUnknown, evtOneTime, evtRecurring };
enum TDbmEventStatus { evsUnknown, evsEnable, evsDisable, evsDisableOnSlave };
enum TDbmFieldDataType {
    fdtUnknown,
    fdtTinyint,
    fdtBool,
    fdtSmallint,
    fdtMediumint,
    fdtInt,
    fdtBigint,
    fdtFloat,
    fdtDouble,
    fdtDecimal,
    fdtDate,
    fdtDateTime,
    fdtTimeStamp,
    fdtTime,
    fdtYear,
    fdtChar,
    fdtVarChar,
    fdtBinary,
    fdtVarBinary,
    fdtTinyBlob,
    fdtTinyText,
    fdtBlob,
    fdtText,
    fdtMediumBlob,
    fdtMediumText,
    fdtLongBlob,
    fdtLongText,
    fdtEnum,
    fdtSet,
    fdtBit
};
enum TDbmFieldTypeAttr {
    ftaLength,
    ftaDecimals,
    ftaValues,
    ftaNullable,
    ftaUnsigned,
    ftaAutoinc,
    ftaZerofill,
    ftaBinary,
    ftaCharset,
    ftaDefValue
};
enum TDbmFieldPosType { fptDefault, fptFirst, fptAfter };
enum TDbmIndexKind { ikNone, ikPrimary, ikUnique, ikIndex, ikFulltext, ikSpatial };
enum TDbmReferenceOption { roUnknown, roRestrict, roCascade, roSetNull, roNoAction };
enum TDbmTriggerEvent {
    teUnknown,
    teBeforeInsert,
    teBeforeUpdate,
    teBeforeDelete,
    teAfterInsert,
    teAfterUpdate,
    teAfterDelete
};
enum TDbmVariableOption { svoGlobal, svoSession };
enum TDbmStatusOption { ssoGlobal, ssoSession };
enum TDbmEngineSupport { esYes, esDefault, esNo, esDisabled, esUnknown };
enum TDbmEngineOption { eoTransactions, eoXA, eoSavePoints };
enum TDbmLockTableOption { ltoRead, ltoWrite };
enum TDbmPrivilege {
    privGrantOption,
    privCreateTableSpace,
    privCreateUser,
    privFile,
    privProcess,
    privReload,
    privReplicationClient,
    privReplicationSlave,
    privShowDatabases,
    privShutdown,
    privSuper,
    privSelect,
    privInsert,
    privUpdate,
    privDelete,
    privCreate,
    privCreateTemporaryTables,
    privCreateView,
    privCreateRoutine,
    privAlter,
    privAlterRoutine,
    privDrop,
    privExecute,
    privIndex,
    privEvent,
    privShowView,
    privTrigger,
    privLockTables,
    privReferences
};
enum TDbmUserPriv {
    upSelect,
    upInsert,
    upUpdate,
    upDelete,
    upCreate,
    upDrop,
    upReload,
    upShutdown,
    upProcess,
    upFile,
    upGrant,
    upReferences,
    upIndex,
    upAlter,
    upShowDb,
    upSuper,
    upCreateTmpTable,
    upLockTable,
    upExecute,
    upReplSlave,
    upReplClient,
    upCreateView,
    upShowView,
    upCreateRoutine,
    upAlterRoutine,
    upCreateUser,
    upEvent,
    upTrigger
};
enum TDbmDatabasePriv {
    dpSelect,
    dpInsert,
    dpUpdate,
    dpDelete,
    dpCreate,
    dpDrop,
    dpGrant,
    dpReferences,
    dpIndex,
    dpAlter,
    dpCreateTmpTable,
    dpLockTable,
    dpCreateView,
    dpShowView,
    dpCreateRoutine,
    dpAlterRoutine,
    dpExecute,
    dpEvent,
    dpTrigger
};
enum TDbmTablePriv {
    tpSelect,
    tpInsert,
    tpUpdate,
    tpDelete,
    tpCreate,
    tpDrop,
    tpGrant,
    tpReferences,
    tpIndex,
    tpAlter,
    tpCreateView,
    tpShowView,
    tpTrigger
};
enum TDbmRoutinePriv { rpExecute, rpAlterRoutine, rpGrant };

using TDbmFieldDataTypes = TSet<TDbmFieldDataType>;
using TDbmFieldTypeAttrs = TSet<TDbmFieldTypeAttr>;
using TDbmEngineOptions = TSet<TDbmEngineOption>;
using TDbmPrivileges = TSet<TDbmPrivilege>;
using TDbmUserPrivs = TSet<TDbmUserPriv>;
using TDbmDatabasePrivs = TSet<TDbmDatabasePriv>;
using TDbmTablePrivs = TSet<TDbmTablePriv>;
using TDbmRoutinePrivs = TSet<TDbmRoutinePriv>;

/// A column's default: a value, or the server's current time whatever Value holds.
struct TDbmValue
{
    TDbmValueType ValueType = vtValue;
    TVariant Value;
    bool operator==(const TDbmValue &) const = default;
};

struct TDbmFieldType
{
    TDbmFieldDataType DataType = fdtUnknown;
    TDbmFieldTypeAttrs Attrs;
    bool Unsigned = false;
    bool Zerofill = false;
    bool Binary = false;
    QString Collation;
    qint32 Length = 0;
    qint32 Decimals = 0;
    QStringList Values; // of enum and set
};

struct TDbmFieldPosition
{
    TDbmFieldPosType PositionType = fptDefault;
    QString PositionField; // for fptAfter
};

struct TDbmFieldRecInfo
{
    qint32 PosIndex = 0; // ordinal position of the column
};

struct TDbmTableInfo
{
    QString Version;
    qint64 Rows = 0;
    qint64 AvgRowLength = 0;
    qint64 DataLength = 0;
    qint64 MaxDataLength = 0;
    qint64 IndexLength = 0;
    qint64 DataFree = 0;
    qint64 Checksum = 0;
    TDateTime CreateTime;
    TDateTime UpdateTime;
    TDateTime CheckTime;
    TDbmTableType TableType = tblTable;
};

struct TDbmViewInfo
{
    bool Updatable = false;
    QString Charset;
    QString Collation;
};

struct TDbmRoutineInfo
{
    TDateTime Created;
    TDateTime LastAltered;
};

struct TDbmInterval
{
    qint64 Years = 0;
    qint64 Quarters = 0;
    qint64 Months = 0;
    qint64 Weeks = 0;
    qint64 Days = 0;
    qint64 Hours = 0;
    qint64 Minutes = 0;
    qint64 Seconds = 0;
    qint64 Microseconds = 0;
    bool operator==(const TDbmInterval &) const = default;
};

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
};

struct TDbmIndexEntity : TDbmEntity
{
    QString IndexName;
    TDbmIndexKind IndexKind = ikNone;
};

struct TDbmIndexColumnEntity : TDbmEntity
{
    qint32 Position = 0;
    QString ColumnName;
    qint64 Length = 0; // prefix length; 0 is the whole column
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
