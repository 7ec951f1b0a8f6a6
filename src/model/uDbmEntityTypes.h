#pragma once

#include "support/uDateTime.h"
#include "support/uSet.h"
#include "support/uVariant.h"

#include <QList>
#include <QString>
#include <QStringList>

// Enumerations, sets and value records of which the entities are made.

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
    bool operator==(const TDbmFieldType &) const = default;
};

/// The server's own texts of a column, beside the record that was parsed from them.
struct TDbmFieldServerText
{
    QString Type;         // COLUMN_TYPE as read
    TDbmFieldType Parsed; // what Type was read into; an unedited type still equals it
    QString Default;      // an expression default as the server takes it back; else empty
    TDbmValue ParsedDefault;
    QString OnUpdate;  // CURRENT_TIMESTAMP(6), ...; empty without an ON UPDATE
    QString Generated; // GENERATED ALWAYS AS (...) STORED, ...; empty for a plain column
    QString Trailing;  // INVISIBLE, CHECK (...), SRID ...; what stands behind all else
    QString Comment;   // as read; an unedited comment keeps its line breaks
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
