#include "model/uDbmEngineList.h"

#include "sql/uDbmCommands.h"

bool TDbmEngineList::TryGetDefaultEngine(TItemPtr &item)
{
    return TryFind([](TDbmEngineItem &engine) { return engine.Entity().Support == esDefault; },
                   item);
}

QList<TDbmEngineEntity> TDbmEngineList::SelectEntities()
{
    return FCommands->Engines().ExecuteSelect();
}

QList<TDbmPluginEntity> TDbmPluginList::SelectEntities()
{
    return FCommands->Plugins().ExecuteSelect();
}
