#pragma once

#include "model/uDbmList.h"

class TDbmDatabaseItem;

/// One scheduled event of a database. Times show as "yyyy-mm-dd hh:mm:ss", empty when absent.
class TDbmEventItem : public TDbmItem<TDbmEventEntity>
{
public:
    explicit TDbmEventItem(TDbmElement *owner) : TDbmItem(owner) {}

    TDbmDatabaseItem &Database() const;
    QString GetStatusDisplayString();
    QString GetTypeDisplayString();
    QString GetExecuteAtDisplayString();
    QString GetStartsDisplayString();
    QString GetEndsDisplayString();
    QString GetIntervalDisplayString();
    QString GetCreatedDisplayString();
    QString GetUpdatedDisplayString();
    QString GetExecutedDisplayString();
};

/// Empty, without a statement, on a server that has no events.
class TDbmEventList
    : public TDbmNamedList<TDbmEventItem, TDbmEventEntity, &TDbmEventEntity::EventName>
{
public:
    explicit TDbmEventList(TDbmElement *owner) : TDbmNamedList(owner) {}

    TDbmDatabaseItem &Database() const;

protected:
    QList<TDbmEventEntity> SelectEntities() override;
};
