#pragma once

#include "model/uDbmList.h"

/// One trigger of a table.
class TDbmTriggerItem : public TDbmItem<TDbmTriggerEntity>
{
public:
    explicit TDbmTriggerItem(TDbmElement *owner) : TDbmItem(owner) {}

    QString GetEventDisplayString();
};

class TDbmTriggerList
    : public TDbmNamedList<TDbmTriggerItem, TDbmTriggerEntity, &TDbmTriggerEntity::TriggerName>
{
public:
    explicit TDbmTriggerList(TDbmElement *owner) : TDbmNamedList(owner) {}

protected:
    QList<TDbmTriggerEntity> SelectEntities() override;
};
