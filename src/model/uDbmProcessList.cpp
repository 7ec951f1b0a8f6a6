#include "model/uDbmProcessList.h"

#include "sql/uDbmCommands.h"
#include "support/uFormat.h"
#include "support/uStringUtils.h"

QString TDbmProcessItem::GetUserHostDisplayString()
{
    return TFormat::Format("%s@%s", {Entity().User, Entity().Host});
}

QString TDbmProcessItem::GetTimeDisplayString()
{
    return TFormat::DurationText(Entity().Time);
}

QString TDbmProcessItem::GetInfoDisplayString()
{
    return TStringUtils::Compact(Entity().Info);
}

QList<TDbmProcessEntity> TDbmProcessList::SelectEntities()
{
    return FCommands->Processes().ExecuteSelect();
}

QString TDbmProcessList::GetEntityKey(const TDbmProcessEntity &entity) const
{
    return QString::number(entity.Id);
}
