#include "model/uDbmTriggerList.h"

#include "model/uDbmTableList.h"
#include "sql/uDbmCommands.h"

QString TDbmTriggerItem::GetEventDisplayString()
{
    switch (Entity().Event) {
    case teBeforeInsert:
        return "before insert";
    case teBeforeUpdate:
        return "before update";
    case teBeforeDelete:
        return "before delete";
    case teAfterInsert:
        return "after insert";
    case teAfterUpdate:
        return "after update";
    case teAfterDelete:
        return "after delete";
    case teUnknown:
        break;
    }
    return {};
}

QList<TDbmTriggerEntity> TDbmTriggerList::SelectEntities()
{
    const auto &table = OwnerAs<TDbmTableItem>();
    return FCommands->Triggers().ExecuteSelect(table.DatabaseName(), table.TableName());
}
