#include "model/uDbmIndexList.h"

#include "model/uDbmDatabaseList.h"
#include "model/uDbmTableList.h"
#include "sql/uDbmCommands.h"
#include "support/uFormat.h"

QStringList TDbmIndexColumnList::GetColumnNames()
{
    QStringList names;
    ForEach([&](TDbmIndexColumnItem &column) { names.append(column.Entity().ColumnName); });
    return names;
}

QString TDbmIndexColumnList::GetColumnsDisplayString()
{
    QStringList texts;
    ForEach([&](TDbmIndexColumnItem &column) {
        const TDbmIndexColumnEntity &entity = column.Entity();
        texts.append(entity.Length == 0
                         ? entity.ColumnName
                         : TFormat::Format("%s(%d)", {entity.ColumnName, entity.Length}));
    });
    return texts.join(", ");
}

TDbmComparer<TDbmIndexColumnEntity> TDbmIndexColumnList::CreateEntityComparer()
{
    return TDbmComparers::CreateIndexColumnEntityComparer();
}

QList<TDbmIndexColumnEntity> TDbmIndexColumnList::SelectEntities()
{
    auto &index = OwnerAs<TDbmIndexItem>();
    TDbmTableItem &table = index.Table();
    return FFormatters->IndexColumns().ParseFromTableDDL(table.DatabaseName(),
                                                         table.DDL().GetValue(), index.Entity());
}

TDbmTableItem &TDbmIndexItem::Table() const
{
    return OwnerAs<TDbmIndexList>().Table();
}

void TDbmIndexItem::DoRequestProcess()
{
    TDbmItem::DoRequestProcess();
    RequestProcessOf(FColumns);
    Table().DDL().RequestProcess();
}

QString TDbmIndexItem::GetIndexTypeDisplayString()
{
    switch (Entity().IndexKind) {
    case ikPrimary:
        return "primary";
    case ikUnique:
        return "unique";
    case ikIndex:
        return "index";
    case ikFulltext:
        return "fulltext";
    case ikSpatial:
        return "spatial";
    case ikNone:
        break;
    }
    return {};
}

TDbmTableItem &TDbmIndexList::Table() const
{
    return OwnerAs<TDbmTableItem>();
}

bool TDbmIndexList::TryGetPrimaryKey(TItemPtr &item)
{
    return TryFind([](TDbmIndexItem &index) { return index.Entity().IndexKind == ikPrimary; },
                   item);
}

QList<TDbmIndexEntity> TDbmIndexList::SelectEntities()
{
    return FFormatters->Indexes().ParseFromTableDDL(Table().DatabaseName(),
                                                    Table().DDL().GetValue());
}

QList<TDbmDatabaseIndexColumnEntity> TDbmDatabaseIndexColumnList::SelectEntities()
{
    return FCommands->IndexColumns().ExecuteSelectOnDatabase(OwnerAs<TDbmDatabaseItem>().Name());
}

QString TDbmDatabaseIndexColumnList::GetEntityKey(const TDbmDatabaseIndexColumnEntity &entity) const
{
    return TFormat::Format("%s.%s.%s", {entity.TableName, entity.IndexName, entity.ColumnName});
}
