#include "model/uDbmCharsetList.h"

#include "sql/uDbmCommands.h"

TDbmCharsetList::TItemPtr TDbmCharsetList::CreateItem()
{
    return New<TDbmCharsetItem>(this);
}

QList<TDbmCharsetEntity> TDbmCharsetList::SelectEntities()
{
    return FCommands->Charsets().ExecuteSelect();
}

QString TDbmCharsetList::GetEntityKey(const TDbmCharsetEntity &entity) const
{
    return entity.Name;
}
