#include "model/uDbmDatabaseList.h"

#include "core/uDbmProvider.h"
#include "model/uDbmEventList.h"
#include "model/uDbmIndexList.h"
#include "model/uDbmReferenceList.h"
#include "model/uDbmRoutineList.h"
#include "model/uDbmTableList.h"
#include "model/uDbmViewList.h"
#include "sql/uDbmCommands.h"
#include "support/uException.h"

TDbmDatabaseItem::TDbmDatabaseItem(TDbmElement *owner) : TDbmItem(owner) {}

TDbmDatabaseItem::~TDbmDatabaseItem() = default;

TDbmTableList &TDbmDatabaseItem::Tables()
{
    return Child(FTables);
}

TDbmViewList &TDbmDatabaseItem::Views()
{
    return Child(FViews);
}

TDbmRoutineList &TDbmDatabaseItem::Routines()
{
    return Child(FRoutines);
}

TDbmEventList &TDbmDatabaseItem::Events()
{
    return Child(FEvents);
}

TDbmDatabaseIndexColumnList &TDbmDatabaseItem::IndexColumns()
{
    return Child(FIndexColumns);
}

TDbmDatabaseReferenceColumnList &TDbmDatabaseItem::ForeignKeyColumns()
{
    return Child(FForeignKeyColumns);
}

void TDbmDatabaseItem::DoRequestProcess()
{
    TDbmItem::DoRequestProcess();
    RequestProcessOf(FTables);
    RequestProcessOf(FViews);
    RequestProcessOf(FRoutines);
    RequestProcessOf(FEvents);
    RequestProcessOf(FIndexColumns);
    RequestProcessOf(FForeignKeyColumns);
}

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

QList<TDbmDatabaseEntity> TDbmDatabaseList::SelectEntities()
{
    if (!FProvider->IsDatabaseConnection())
        return FCommands->Databases().ExecuteSelect();
    TDbmDatabaseEntity entity;
    if (!FCommands->Databases().ExecuteSelectRow(FProvider->ConnectionProfile().Database, entity))
        return {};
    return {entity};
}
