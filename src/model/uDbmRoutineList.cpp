#include "model/uDbmRoutineList.h"

#include "model/uDbmDatabaseList.h"
#include "sql/uDbmCommands.h"

void TDbmRoutineParamsItem::DoProcess()
{
    auto &routine = static_cast<TDbmRoutineItem &>(*Owner());
    const TDbmRoutineEntity &entity = routine.Entity();
    FCommands->Routines().ExecuteSelectParams(routine.Database().Name(), entity.RoutineName, FValue,
                                              entity.RoutineType);
}

TDbmDatabaseItem &TDbmRoutineItem::Database() const
{
    return static_cast<TDbmRoutineList &>(*Owner()).Database();
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
    return static_cast<TDbmDatabaseItem &>(*Owner());
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
