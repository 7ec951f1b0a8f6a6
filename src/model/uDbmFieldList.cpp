#include "model/uDbmFieldList.h"

#include "model/uDbmDataPool.h"
#include "model/uDbmDatabaseList.h"
#include "model/uDbmIndexList.h"
#include "model/uDbmManager.h"
#include "model/uDbmReferenceList.h"
#include "model/uDbmTableList.h"
#include "model/uDbmViewList.h"
#include "sql/uDbmFieldUtils.h"
#include "support/uException.h"
#include "support/uFormat.h"

TDbmFieldList &TDbmFieldItem::List() const
{
    return OwnerAs<TDbmFieldList>();
}

bool TDbmFieldItem::HaveAttribute(TDbmFieldTypeAttr attribute)
{
    return TDbmFieldUtils::HaveAttribute(Entity().FieldType.DataType, attribute);
}

bool TDbmFieldItem::IsType(const TDbmFieldDataTypes &types)
{
    return types.Contains(Entity().FieldType.DataType);
}

bool TDbmFieldItem::IsBinary()
{
    return TDbmFieldUtils::IsBinary(Entity().FieldType.DataType);
}

bool TDbmFieldItem::IsBlob()
{
    return TDbmFieldUtils::IsBlob(Entity().FieldType.DataType);
}

bool TDbmFieldItem::IsBoolean()
{
    return TDbmFieldUtils::IsBoolean(Entity().FieldType.DataType);
}

bool TDbmFieldItem::IsDate()
{
    return TDbmFieldUtils::IsDate(Entity().FieldType.DataType);
}

bool TDbmFieldItem::IsNumeric()
{
    return TDbmFieldUtils::IsNumeric(Entity().FieldType.DataType);
}

bool TDbmFieldItem::IsOrdinal()
{
    return TDbmFieldUtils::IsOrdinal(Entity().FieldType.DataType);
}

bool TDbmFieldItem::IsString()
{
    return TDbmFieldUtils::IsString(Entity().FieldType.DataType);
}

bool TDbmFieldItem::IsText()
{
    return TDbmFieldUtils::IsText(Entity().FieldType.DataType);
}

bool TDbmFieldItem::TryFindIndex(const TIndexExpression &expression, TIndexPtr &item)
{
    TDbmTableItem *table = List().Table();
    if (!table)
        return false;
    const QString &name = Entity().FieldName;
    return table->Indexes().TryFind(
        [&](TDbmIndexItem &index) {
            TDbmIndexColumnList::TItemPtr column;
            return index.Columns().TryGetByName(name, column) && expression(index);
        },
        item);
}

void TDbmFieldItem::ForEachIndex(const TIndexAction &action)
{
    TIndexPtr ignored;
    TryFindIndex(
        [&](TDbmIndexItem &index) {
            action(index);
            return false;
        },
        ignored);
}

bool TDbmFieldItem::HaveIndexOf(TDbmIndexKind kind)
{
    TIndexPtr ignored;
    return TryFindIndex([&](TDbmIndexItem &index) { return index.Entity().IndexKind == kind; },
                        ignored);
}

bool TDbmFieldItem::HavePrimaryKey()
{
    return HaveIndexOf(ikPrimary);
}

bool TDbmFieldItem::HaveUniqueKey()
{
    return HaveIndexOf(ikUnique);
}

bool TDbmFieldItem::HaveIndex()
{
    TIndexPtr ignored;
    return TryFindIndex([](TDbmIndexItem &) { return true; }, ignored);
}

bool TDbmFieldItem::TryGetForeignKey(std::shared_ptr<TDbmReferenceItem> &item)
{
    TDbmTableItem *table = List().Table();
    if (!table)
        return false;
    const QString &name = Entity().FieldName;
    return table->References().TryFind(
        [&](TDbmReferenceItem &reference) {
            TDbmReferenceColumnList::TItemPtr column;
            return reference.Columns().TryGetBySrcColumnName(name, column);
        },
        item);
}

bool TDbmFieldItem::HaveReference()
{
    std::shared_ptr<TDbmReferenceItem> ignored;
    return TryGetForeignKey(ignored);
}

QString TDbmFieldItem::ArgumentsText(const TDbmFieldType &type) const
{
    if (TDbmFieldUtils::HaveValues(type.DataType))
        return TFormat::Format("(%s)", {type.Values.join(", ")});
    if (!TDbmFieldUtils::HaveLength(type.DataType) || type.Length == 0)
        return {};
    if (TDbmFieldUtils::HaveDecimals(type.DataType))
        return TFormat::Format("(%d, %d)", {type.Length, type.Decimals});
    return TFormat::Format("(%d)", {type.Length});
}

QString TDbmFieldItem::GetTypeDisplayString()
{
    const TDbmFieldEntity &entity = Entity();
    const TDbmFieldType &type = entity.FieldType;
    if (type.DataType == fdtUnknown)
        return entity.ServerText.Type;
    QString text = TDbmFieldUtils::FormatDataType(type.DataType).toLower() + ArgumentsText(type);
    if (HaveAttribute(ftaCharset) && !type.Collation.isEmpty() &&
        type.Collation != List().OwnerCollation())
        text += ' ' + type.Collation;
    if (HaveAttribute(ftaUnsigned) && type.Unsigned)
        text += " unsigned";
    if (HaveAttribute(ftaZerofill) && type.Zerofill)
        text += " zerofill";
    if (HaveAttribute(ftaBinary) && type.Binary)
        text += " binary";
    if (entity.Autoincrement)
        text += " (+)";
    return text;
}

QString TDbmFieldItem::GetKeyDisplayString()
{
    if (HavePrimaryKey())
        return "primary";
    if (HaveUniqueKey())
        return "unique";
    return HaveIndex() ? "index" : "";
}

QString TDbmFieldItem::GetReferenceDisplayString()
{
    std::shared_ptr<TDbmReferenceItem> reference;
    TDbmReferenceColumnList::TItemPtr column;
    if (!TryGetForeignKey(reference) ||
        !reference->Columns().TryGetBySrcColumnName(Entity().FieldName, column))
        return {};
    const TDbmReferenceEntity &entity = reference->Entity();
    const QString &refColumn = column->Entity().RefColumnName;
    if (entity.RefDatabaseName == List().DatabaseName())
        return TFormat::Format("%s.%s", {entity.RefTableName, refColumn});
    return TFormat::Format("%s.%s.%s", {entity.RefDatabaseName, entity.RefTableName, refColumn});
}

QString TDbmFieldItem::GetReferenceOnUpdateDisplayString()
{
    std::shared_ptr<TDbmReferenceItem> reference;
    return TryGetForeignKey(reference) ? reference->GetOnUpdateDisplayString() : QString();
}

QString TDbmFieldItem::GetReferenceOnDeleteDisplayString()
{
    std::shared_ptr<TDbmReferenceItem> reference;
    return TryGetForeignKey(reference) ? reference->GetOnDeleteDisplayString() : QString();
}

TDbmTableItem *TDbmFieldList::Table() const
{
    return dynamic_cast<TDbmTableItem *>(Owner());
}

QString TDbmFieldList::DatabaseName() const
{
    if (const TDbmTableItem *table = Table())
        return table->DatabaseName();
    if (const auto *view = dynamic_cast<TDbmViewItem *>(Owner()))
        return view->DatabaseName();
    throw EException("Unknown field list owner.");
}

QString TDbmFieldList::OwnerName() const
{
    if (const TDbmTableItem *table = Table())
        return table->TableName();
    if (const auto *view = dynamic_cast<TDbmViewItem *>(Owner()))
        return view->ViewName();
    throw EException("Unknown field list owner.");
}

QString TDbmFieldList::OwnerCollation()
{
    if (TDbmTableItem *table = Table())
        return table->Entity().Collation;
    return OwnerAs<TDbmViewItem>().Entity().Info.Collation;
}

TDbmComparer<TDbmFieldEntity> TDbmFieldList::CreateEntityComparer()
{
    return TDbmComparers::CreateFieldEntityComparer();
}

QList<TDbmFieldEntity> TDbmFieldList::SelectEntities()
{
    return FCommands->Fields().ExecuteSelect(DatabaseName(), OwnerName());
}

void TDbmFieldList::DoProcess()
{
    FRequestProcessDatabaseName = DatabaseName();
    FRequestProcessTableName = OwnerName();
    TDbmNamedList::DoProcess();
}

void TDbmFieldList::DoRequestProcess()
{
    TDbmNamedList::DoRequestProcess();
    if (TDbmTableItem *table = Table()) {
        table->DDL().RequestProcess();
        table->Indexes().RequestProcess();
    }
    Manager().DataPool().RequestProcessFor(FRequestProcessDatabaseName, FRequestProcessTableName);
}
