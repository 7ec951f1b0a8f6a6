#pragma once

#include "model/uDbmList.h"

class TDbmTableItem;

/// One column of an index, as the lists show it.
class TDbmIndexColumnItem : public TDbmItem<TDbmIndexColumnEntity>
{
public:
    explicit TDbmIndexColumnItem(TDbmElement *owner) : TDbmItem(owner) {}
};

class TDbmIndexColumnList : public TDbmNamedList<TDbmIndexColumnItem, TDbmIndexColumnEntity,
                                                 &TDbmIndexColumnEntity::ColumnName>
{
public:
    explicit TDbmIndexColumnList(TDbmElement *owner) : TDbmNamedList(owner) {}

    QStringList GetColumnNames();
    QString GetColumnsDisplayString();

protected:
    TDbmComparer<TDbmIndexColumnEntity> CreateEntityComparer() override;
    QList<TDbmIndexColumnEntity> SelectEntities() override;
};

/// One index of a table.
class TDbmIndexItem : public TDbmItem<TDbmIndexEntity>
{
public:
    explicit TDbmIndexItem(TDbmElement *owner) : TDbmItem(owner) {}

    TDbmTableItem &Table() const;
    TDbmIndexColumnList &Columns() { return Child(FColumns); }
    QString GetIndexTypeDisplayString();

protected:
    void DoRequestProcess() override;

private:
    std::shared_ptr<TDbmIndexColumnList> FColumns;
};

/// The indexes of a table, parsed out of its text. TDbmTableKeys has those that are written by.
class TDbmIndexList
    : public TDbmNamedList<TDbmIndexItem, TDbmIndexEntity, &TDbmIndexEntity::IndexName>
{
public:
    explicit TDbmIndexList(TDbmElement *owner) : TDbmNamedList(owner) {}

    TDbmTableItem &Table() const;
    bool TryGetPrimaryKey(TItemPtr &item);

protected:
    QList<TDbmIndexEntity> SelectEntities() override;
};

/// One column of one index of a database.
class TDbmDatabaseIndexColumnItem : public TDbmItem<TDbmDatabaseIndexColumnEntity>
{
public:
    explicit TDbmDatabaseIndexColumnItem(TDbmElement *owner) : TDbmItem(owner) {}
};

class TDbmDatabaseIndexColumnList
    : public TDbmList<TDbmDatabaseIndexColumnItem, TDbmDatabaseIndexColumnEntity>
{
public:
    explicit TDbmDatabaseIndexColumnList(TDbmElement *owner) : TDbmList(owner) {}

protected:
    TItemPtr CreateItem() override { return New<TDbmDatabaseIndexColumnItem>(this); }
    QList<TDbmDatabaseIndexColumnEntity> SelectEntities() override;
    QString GetEntityKey(const TDbmDatabaseIndexColumnEntity &entity) const override;
};
