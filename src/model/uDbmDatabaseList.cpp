#include "model/uDbmDatabaseList.h"

#include "core/uDbmProvider.h"
#include "sql/uDbmCommands.h"
#include "support/uException.h"

TDbmDatabaseList::TItemPtr TDbmDatabaseList::GetByName(const QString &name)
{
    TItemPtr item;
    // Deliberate: the placeholder has no type letter, so the message shows the bare template.
    if (!TryGetByName(name, item))
        throw EException("Database \"%\" not found.");
    return item;
}

TDbmComparer<TDbmDatabaseEntity> TDbmDatabaseList::CreateEntityComparer()
{
    return TDbmComparers::CreateDatabaseEntityComparer();
}

TDbmDatabaseList::TItemPtr TDbmDatabaseList::CreateItem()
{
    return New<TDbmDatabaseItem>(this);
}

QList<TDbmDatabaseEntity> TDbmDatabaseList::SelectEntities()
{
    if (!FProvider->IsDatabaseConnection())
        return FCommands->Databases().ExecuteSelect();
    TDbmDatabaseEntity entity;
    if (!FCommands->Databases().ExecuteSelectRow(FProvider->ConnectionProfile().Database, entity))
        return {};
    return {entity};
}

QString TDbmDatabaseList::GetEntityKey(const TDbmDatabaseEntity &entity) const
{
    return entity.DatabaseName;
}
