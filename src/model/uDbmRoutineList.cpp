#include "model/uDbmRoutineList.h"

#include "model/uDbmDatabaseList.h"
#include "sql/uDbmCommands.h"

void TDbmRoutineParamsItem::DoProcess()
{
    auto &routine = OwnerAs<TDbmRoutineItem>();
    const TDbmRoutineEntity &entity = routine.Entity();
    FCommands->Routines().ExecuteSelectParams(routine.Database().Name(), entity.RoutineName, FValue,
                                              entity.RoutineType);
}

TDbmDatabaseItem &TDbmRoutineItem::Database() const
{
    return OwnerAs<TDbmRoutineList>().Database();
}

QString TDbmRoutineItem::GetSecurityTypeDisplayString()
{
    return Entity().SecurityType == rsInvoker ? "Invoker" : "Definer";
}

void TDbmRoutineItem::DoRequestProcess()
{
    TDbmItem::DoRequestProcess();
    RequestProcessOf(FParams);
}

TDbmDatabaseItem &TDbmRoutineList::Database() const
{
    return OwnerAs<TDbmDatabaseItem>();
}

int TDbmRoutineList::CountByType(TDbmRoutineType routineType)
{
    int count = 0;
    ForEach([&](TDbmRoutineItem &routine) {
        if (routine.Entity().RoutineType == routineType)
            ++count;
    });
    return count;
}

QList<TDbmRoutineEntity> TDbmRoutineList::SelectEntities()
{
    return FCommands->Routines().ExecuteSelect(Database().Name());
}
