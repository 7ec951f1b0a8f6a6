#include "model/uDbmReferenceList.h"

#include "model/uDbmDatabaseList.h"
#include "model/uDbmManager.h"
#include "model/uDbmTableList.h"
#include "sql/uDbmCommands.h"
#include "support/uFormat.h"

namespace {

QString OptionText(TDbmReferenceOption option)
{
    switch (option) {
    case roRestrict:
        return "restrict";
    case roCascade:
        return "cascade";
    case roSetNull:
        return "set null";
    case roNoAction:
        return "no action";
    case roUnknown:
        break;
    }
    return {};
}

} // namespace

bool TDbmReferenceColumnList::TryGetByRefColumnName(const QString &name, TItemPtr &item)
{
    return TryFind(
        [&](TDbmReferenceColumnItem &column) { return column.Entity().RefColumnName == name; },
        item);
}

QString TDbmReferenceColumnList::Join(QString TDbmReferenceColumnEntity::*name)
{
    QStringList names;
    ForEach([&](TDbmReferenceColumnItem &column) { names.append(column.Entity().*name); });
    return names.join(", ");
}

QString TDbmReferenceColumnList::GetSrcColumnsDisplayString()
{
    return Join(&TDbmReferenceColumnEntity::SrcColumnName);
}

QString TDbmReferenceColumnList::GetRefColumnsDisplayString()
{
    return Join(&TDbmReferenceColumnEntity::RefColumnName);
}

TDbmComparer<TDbmReferenceColumnEntity> TDbmReferenceColumnList::CreateEntityComparer()
{
    return TDbmComparers::CreateReferenceColumnEntityComparer();
}

QList<TDbmReferenceColumnEntity> TDbmReferenceColumnList::SelectEntities()
{
    auto &reference = OwnerAs<TDbmReferenceItem>();
    TDbmTableItem &table = reference.Table();
    return FFormatters->ForeignKeyColumns().ParseFromTableDDL(
        table.DatabaseName(), table.DDL().GetValue(), reference.Entity().ReferenceName);
}

TDbmTableItem &TDbmReferenceItem::Table() const
{
    return OwnerAs<TDbmReferenceList>().Table();
}

void TDbmReferenceItem::DoRequestProcess()
{
    TDbmTableChildItem::DoRequestProcess();
    RequestProcessOf(FColumns);
}

QString TDbmReferenceItem::GetReferenceDisplayString()
{
    return TFormat::Format("%s(%s)",
                           {Entity().RefTableName, Columns().GetRefColumnsDisplayString()});
}

QString TDbmReferenceItem::GetOnUpdateDisplayString()
{
    return OptionText(Entity().OnUpdate);
}

QString TDbmReferenceItem::GetOnDeleteDisplayString()
{
    return OptionText(Entity().OnDelete);
}

TDbmTableItem &TDbmReferenceList::Table() const
{
    return OwnerAs<TDbmTableItem>();
}

QList<TDbmReferenceEntity> TDbmReferenceList::SelectEntities()
{
    return FFormatters->ForeignKeys().ParseFromTableDDL(Table().DatabaseName(),
                                                        Table().DDL().GetValue());
}

void TDbmReferenceList::DoRequestProcess()
{
    TDbmNamedList::DoRequestProcess();
    if (!FFeatures->ISRefConstraints)
        Table().DDL().RequestProcess();
}

QList<TDbmDatabaseReferenceColumnEntity> TDbmDatabaseReferenceColumnList::SelectEntities()
{
    return FCommands->ForeignKeyColumns().ExecuteSelectOnDatabase(
        OwnerAs<TDbmDatabaseItem>().Name());
}

QString
TDbmDatabaseReferenceColumnList::GetEntityKey(const TDbmDatabaseReferenceColumnEntity &entity) const
{
    return TFormat::Format("%s.%s.%d", {entity.TableName, entity.ReferenceName, entity.Position});
}

TDbmTableItem &TDbmDependencyItem::Table() const
{
    return OwnerAs<TDbmElement>().OwnerAs<TDbmTableItem>();
}

bool TDbmDependencyItem::TryGetReference(std::shared_ptr<TDbmReferenceItem> &item)
{
    const TDbmDependencyEntity &entity = Entity();
    std::shared_ptr<TDbmTableItem> table;
    return Manager().TryGetTable(entity.SrcDatabaseName, entity.SrcTableName, table) &&
           table->References().TryGetByName(entity.Name, item);
}

QString TDbmDependencyItem::GetReferenceSrcTableDisplayString()
{
    const TDbmDependencyEntity &entity = Entity();
    if (entity.SrcDatabaseName == Table().DatabaseName())
        return entity.SrcTableName;
    return TFormat::Format("%s.%s", {entity.SrcDatabaseName, entity.SrcTableName});
}

QString TDbmDependencyItem::GetReferenceSrcFieldsDisplayString()
{
    std::shared_ptr<TDbmReferenceItem> item;
    return TryGetReference(item) ? item->Columns().GetSrcColumnsDisplayString() : QString();
}

QString TDbmDependencyItem::GetReferenceSourceDisplayString()
{
    const QString table = GetReferenceSrcTableDisplayString();
    const QString fields = GetReferenceSrcFieldsDisplayString();
    return table.isEmpty() || fields.isEmpty() ? QString()
                                               : TFormat::Format("%s(%s)", {table, fields});
}

QString TDbmDependencyItem::GetReferenceRefFieldsDisplayString()
{
    std::shared_ptr<TDbmReferenceItem> item;
    return TryGetReference(item) ? item->Columns().GetRefColumnsDisplayString() : QString();
}

QString TDbmDependencyItem::GetReferenceOnUpdateDisplayString()
{
    std::shared_ptr<TDbmReferenceItem> item;
    return TryGetReference(item) ? item->GetOnUpdateDisplayString() : QString();
}

QString TDbmDependencyItem::GetReferenceOnDeleteDiplsayString()
{
    std::shared_ptr<TDbmReferenceItem> item;
    return TryGetReference(item) ? item->GetOnDeleteDisplayString() : QString();
}

QList<TDbmDependencyEntity> TDbmDependencyList::SelectEntities()
{
    const auto &table = OwnerAs<TDbmTableItem>();
    return FCommands->ForeignKeys().ExecuteSelectDependencies(table.DatabaseName(),
                                                              table.TableName());
}
