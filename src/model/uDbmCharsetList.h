#pragma once

#include "model/uDbmList.h"

/// One character set of the server.
class TDbmCharsetItem : public TDbmItem<TDbmCharsetEntity>
{
public:
    explicit TDbmCharsetItem(TDbmElement *owner) : TDbmItem(owner) {}
};

class TDbmCharsetList
    : public TDbmNamedList<TDbmCharsetItem, TDbmCharsetEntity, &TDbmCharsetEntity::Name>
{
public:
    explicit TDbmCharsetList(TDbmElement *owner) : TDbmNamedList(owner) {}

protected:
    QList<TDbmCharsetEntity> SelectEntities() override;
};

/// One collation of the server.
class TDbmCollationItem : public TDbmItem<TDbmCollationEntity>
{
public:
    explicit TDbmCollationItem(TDbmElement *owner) : TDbmItem(owner) {}
};

class TDbmCollationList
    : public TDbmNamedList<TDbmCollationItem, TDbmCollationEntity, &TDbmCollationEntity::Name>
{
public:
    explicit TDbmCollationList(TDbmElement *owner) : TDbmNamedList(owner) {}

protected:
    QList<TDbmCollationEntity> SelectEntities() override;
};
