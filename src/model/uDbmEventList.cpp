#include "model/uDbmEventList.h"

#include "model/uDbmDatabaseList.h"
#include "model/uDbmManager.h"
#include "sql/uDbmCommands.h"
#include "sql/uDbmIntervalUtils.h"

namespace {

QString TimeText(TDateTime value)
{
    return value.IsNull() ? QString() : value.DateTimeText();
}

} // namespace

TDbmDatabaseItem &TDbmEventItem::Database() const
{
    return OwnerAs<TDbmEventList>().Database();
}

QString TDbmEventItem::GetStatusDisplayString()
{
    switch (Entity().Status) {
    case evsEnable:
        return "Enabled";
    case evsDisable:
        return "Disabled";
    case evsDisableOnSlave:
        return "Disabled on slave";
    case evsUnknown:
        break;
    }
    return {};
}

QString TDbmEventItem::GetTypeDisplayString()
{
    switch (Entity().EventType) {
    case evtOneTime:
        return "One-time";
    case evtRecurring:
        return "Recurring";
    case evtUnknown:
        break;
    }
    return {};
}

QString TDbmEventItem::GetExecuteAtDisplayString()
{
    return TimeText(Entity().AtTimestamp);
}

QString TDbmEventItem::GetStartsDisplayString()
{
    return TimeText(Entity().StartsTimestamp);
}

QString TDbmEventItem::GetEndsDisplayString()
{
    return TimeText(Entity().EndsTimestamp);
}

QString TDbmEventItem::GetIntervalDisplayString()
{
    return TDbmIntervalUtils::IntervalToDisplayString(Entity().Interval);
}

QString TDbmEventItem::GetCreatedDisplayString()
{
    return TimeText(Entity().Created);
}

QString TDbmEventItem::GetUpdatedDisplayString()
{
    return TimeText(Entity().LastAltered);
}

QString TDbmEventItem::GetExecutedDisplayString()
{
    return TimeText(Entity().LastExecuted);
}

TDbmDatabaseItem &TDbmEventList::Database() const
{
    return OwnerAs<TDbmDatabaseItem>();
}

QList<TDbmEventEntity> TDbmEventList::SelectEntities()
{
    if (!Manager().Features().Events)
        return {};
    return FCommands->Events().ExecuteSelect(Database().Name());
}
