#pragma once

#include "model/uDbmList.h"

/// One database of the server.
class TDbmDatabaseItem : public TDbmItem<TDbmDatabaseEntity>
{
public:
    explicit TDbmDatabaseItem(TDbmElement *owner) : TDbmItem(owner) {}
    QString Name() { return Entity().DatabaseName; }
};

/// The databases that the account may see, or the one that the connection is bound to.
class TDbmDatabaseList : public TDbmList<TDbmDatabaseItem, TDbmDatabaseEntity>
{
public:
    explicit TDbmDatabaseList(TDbmElement *owner) : TDbmList(owner) {}

    bool TryGetByName(const QString &name, TItemPtr &item) { return TryGetByKey(name, item); }
    /// Raises EException when there is none.
    TItemPtr GetByName(const QString &name);

protected:
    TDbmComparer<TDbmDatabaseEntity> CreateEntityComparer() override;
    TItemPtr CreateItem() override;
    QList<TDbmDatabaseEntity> SelectEntities() override;
    QString GetEntityKey(const TDbmDatabaseEntity &entity) const override;
};
