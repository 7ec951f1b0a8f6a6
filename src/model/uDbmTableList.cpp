#include "model/uDbmTableList.h"

#include "model/uDbmDataPool.h"
#include "model/uDbmDatabaseList.h"
#include "model/uDbmFieldList.h"
#include "model/uDbmIndexList.h"
#include "model/uDbmManager.h"
#include "model/uDbmReferenceList.h"
#include "model/uDbmTriggerList.h"
#include "support/uFormat.h"

void TDbmTableDDLElement::DoProcess()
{
    const auto &table = OwnerAs<const TDbmTableItem>();
    FKeysRead = false;
    FCommands->Tables().ExecuteSelectDDL(table.DatabaseName(), table.TableName(), FValue);
}

const TDbmTableKeys &TDbmTableDDLElement::Keys()
{
    const QString &ddl = GetValue();
    if (!FKeysRead) {
        FKeys = TDbmTableKeys::Parse(OwnerAs<TDbmTableItem>().DatabaseName(), ddl);
        FKeysRead = true;
    }
    return FKeys;
}

TDbmTableItem::TDbmTableItem(TDbmElement *owner) : TDbmItem(owner) {}

TDbmTableItem::~TDbmTableItem() = default;

bool TDbmTableItem::HaveLoadedFields() const
{
    return FFields && FFields->IsProcessed();
}

TDbmFieldList &TDbmTableItem::Fields()
{
    return Child(FFields);
}

TDbmIndexList &TDbmTableItem::Indexes()
{
    return Child(FIndexes);
}

TDbmReferenceList &TDbmTableItem::References()
{
    return Child(FReferences);
}

TDbmDependencyList &TDbmTableItem::Dependencies()
{
    return Child(FDependencies);
}

TDbmTriggerList &TDbmTableItem::Triggers()
{
    return Child(FTriggers);
}

TDbmTableDDLElement &TDbmTableItem::DDL()
{
    return Child(FDDL);
}

bool TDbmTableItem::TryGetRowKey(QStringList &columnNames)
{
    return DDL().Keys().TryGetRowKey(columnNames);
}

void TDbmTableItem::DoRequestProcess()
{
    TDbmItem::DoRequestProcess();
    RequestProcessOf(FFields);
    RequestProcessOf(FIndexes);
    RequestProcessOf(FReferences);
    RequestProcessOf(FDependencies);
    RequestProcessOf(FTriggers);
    RequestProcessOf(FDDL);
    Manager().DataPool().RequestProcessFor(FDatabaseName, FTableName);
}

void TDbmTableItem::DoProcessEntity()
{
    TDbmTableEntity entity;
    if (FCommands->Tables().ExecuteSelectRow(FDatabaseName, FTableName, entity))
        SetEntity(entity);
}

void TDbmTableItem::DoSetEntity()
{
    FDatabaseName = OwnerAs<TDbmTableList>().Database().Name();
    FTableName = static_cast<const TDbmTableEntity &>(*StoredEntity()).TableName;
}

QString TDbmTableItem::GetRowFormatDisplayString()
{
    switch (Entity().RowFormat) {
    case rfFixed:
        return "Fixed";
    case rfDynamic:
        return "Dynamic";
    case rfCompressed:
        return "Compressed";
    case rfRedundant:
        return "Redundant";
    case rfCompact:
        return "Compact";
    case rfUnknown:
    case rfDefault:
        break;
    }
    return {};
}

QString TDbmTableItem::GetPackKeysDisplayString()
{
    switch (Entity().PackKeys) {
    case pkOn:
        return "ON";
    case pkOff:
        return "OFF";
    case pkDefault:
        break;
    }
    return "Default";
}

QString TDbmTableItem::GetChecksumDisplayString()
{
    return Entity().Checksum ? "Yes" : "No";
}

QString TDbmTableItem::GetDelayKeyWriteDisplayString()
{
    return Entity().DelayKeyWrite ? "Yes" : "No";
}

QString TDbmTableItem::GetAvgRowLengthDisplayString()
{
    return TFormat::SizeText(Entity().Info.AvgRowLength);
}

QString TDbmTableItem::GetDataLengthDisplayString()
{
    return TFormat::SizeText(Entity().Info.DataLength);
}

QString TDbmTableItem::GetDataFreeDisplayString()
{
    return TFormat::SizeText(Entity().Info.DataFree);
}

QString TDbmTableItem::GetIndexLengthDisplayString()
{
    return TFormat::SizeText(Entity().Info.IndexLength);
}

QString TDbmTableItem::GetMaxDataLengthDisplayString()
{
    const qint64 length = Entity().Info.MaxDataLength;
    return length == 0 ? QString() : TFormat::SizeText(length);
}

TDbmDatabaseItem &TDbmTableList::Database() const
{
    return OwnerAs<TDbmDatabaseItem>();
}

int TDbmTableList::GetTriggerCount()
{
    int count = 0;
    ForEach([&](TDbmTableItem &table) { count += table.Triggers().Count(); });
    return count;
}

TDbmComparer<TDbmTableEntity> TDbmTableList::CreateEntityComparer()
{
    return TDbmComparers::CreateTableEntityComparer();
}

QList<TDbmTableEntity> TDbmTableList::SelectEntities()
{
    return FCommands->Tables().ExecuteSelect(Database().Name());
}
