#pragma once

#include "model/uDbmList.h"

/// One storage engine of the server.
class TDbmEngineItem : public TDbmItem<TDbmEngineEntity>
{
public:
    explicit TDbmEngineItem(TDbmElement *owner) : TDbmItem(owner) {}
};

class TDbmEngineList
    : public TDbmNamedList<TDbmEngineItem, TDbmEngineEntity, &TDbmEngineEntity::EngineName>
{
public:
    explicit TDbmEngineList(TDbmElement *owner) : TDbmNamedList(owner) {}

    bool TryGetDefaultEngine(TItemPtr &item);

protected:
    QList<TDbmEngineEntity> SelectEntities() override;
};

/// One plugin of the server.
class TDbmPluginItem : public TDbmItem<TDbmPluginEntity>
{
public:
    explicit TDbmPluginItem(TDbmElement *owner) : TDbmItem(owner) {}
};

class TDbmPluginList
    : public TDbmNamedList<TDbmPluginItem, TDbmPluginEntity, &TDbmPluginEntity::PluginName>
{
public:
    explicit TDbmPluginList(TDbmElement *owner) : TDbmNamedList(owner) {}

protected:
    QList<TDbmPluginEntity> SelectEntities() override;
};
