#pragma once

#include "model/uDbmList.h"

/// One character set of the server.
class TDbmCharsetItem : public TDbmItem<TDbmCharsetEntity>
{
public:
    explicit TDbmCharsetItem(TDbmElement *owner) : TDbmItem(owner) {}
};

class TDbmCharsetList : public TDbmList<TDbmCharsetItem, TDbmCharsetEntity>
{
public:
    explicit TDbmCharsetList(TDbmElement *owner) : TDbmList(owner) {}

    bool TryGetByName(const QString &name, TItemPtr &item) { return TryGetByKey(name, item); }

protected:
    TItemPtr CreateItem() override;
    QList<TDbmCharsetEntity> SelectEntities() override;
    QString GetEntityKey(const TDbmCharsetEntity &entity) const override;
};
