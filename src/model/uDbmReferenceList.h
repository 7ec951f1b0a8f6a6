#pragma once

#include "model/uDbmList.h"

class TDbmTableItem;

/// One pair of columns of a foreign key, as the lists show it.
class TDbmReferenceColumnItem : public TDbmItem<TDbmReferenceColumnEntity>
{
public:
    explicit TDbmReferenceColumnItem(TDbmElement *owner) : TDbmItem(owner) {}
};

class TDbmReferenceColumnList
    : public TDbmNamedList<TDbmReferenceColumnItem, TDbmReferenceColumnEntity,
                           &TDbmReferenceColumnEntity::SrcColumnName>
{
public:
    explicit TDbmReferenceColumnList(TDbmElement *owner) : TDbmNamedList(owner) {}

    bool TryGetBySrcColumnName(const QString &name, TItemPtr &item)
    {
        return TryGetByName(name, item);
    }
    bool TryGetByRefColumnName(const QString &name, TItemPtr &item);
    QString GetSrcColumnsDisplayString();
    QString GetRefColumnsDisplayString();

protected:
    TDbmComparer<TDbmReferenceColumnEntity> CreateEntityComparer() override;
    QList<TDbmReferenceColumnEntity> SelectEntities() override;

private:
    QString Join(QString TDbmReferenceColumnEntity::*name);
};

/// One foreign key of a table.
class TDbmReferenceItem : public TDbmTableChildItem<TDbmReferenceEntity>
{
public:
    explicit TDbmReferenceItem(TDbmElement *owner) : TDbmTableChildItem(owner) {}

    TDbmTableItem &Table() const;
    TDbmReferenceColumnList &Columns() { return Child(FColumns); }
    QString GetReferenceDisplayString();
    QString GetOnUpdateDisplayString();
    QString GetOnDeleteDisplayString();

protected:
    void DoRequestProcess() override;

private:
    std::shared_ptr<TDbmReferenceColumnList> FColumns;
};

/// The foreign keys of a table, parsed out of its text.
class TDbmReferenceList
    : public TDbmNamedList<TDbmReferenceItem, TDbmReferenceEntity,
                           &TDbmReferenceEntity::ReferenceName, TDbmTableChildList>
{
public:
    explicit TDbmReferenceList(TDbmElement *owner) : TDbmNamedList(owner) {}

    TDbmTableItem &Table() const;

protected:
    QList<TDbmReferenceEntity> SelectEntities() override;
    void DoRequestProcess() override;
};

/// One pair of columns of one foreign key of a database.
class TDbmDatabaseReferenceColumnItem : public TDbmItem<TDbmDatabaseReferenceColumnEntity>
{
public:
    explicit TDbmDatabaseReferenceColumnItem(TDbmElement *owner) : TDbmItem(owner) {}
};

class TDbmDatabaseReferenceColumnList
    : public TDbmList<TDbmDatabaseReferenceColumnItem, TDbmDatabaseReferenceColumnEntity>
{
public:
    explicit TDbmDatabaseReferenceColumnList(TDbmElement *owner) : TDbmList(owner) {}

protected:
    TItemPtr CreateItem() override { return New<TDbmDatabaseReferenceColumnItem>(this); }
    QList<TDbmDatabaseReferenceColumnEntity> SelectEntities() override;
    QString GetEntityKey(const TDbmDatabaseReferenceColumnEntity &entity) const override;
};

/// One foreign key of another table that points here.
class TDbmDependencyItem : public TDbmItem<TDbmDependencyEntity>
{
public:
    explicit TDbmDependencyItem(TDbmElement *owner) : TDbmItem(owner) {}

    TDbmTableItem &Table() const;
    /// The key as the other table has it.
    bool TryGetReference(std::shared_ptr<TDbmReferenceItem> &item);
    QString GetReferenceSrcTableDisplayString();
    QString GetReferenceSrcFieldsDisplayString();
    QString GetReferenceSourceDisplayString();
    QString GetReferenceRefFieldsDisplayString();
    QString GetReferenceOnUpdateDisplayString();
    QString GetReferenceOnDeleteDiplsayString();
};

class TDbmDependencyList
    : public TDbmNamedList<TDbmDependencyItem, TDbmDependencyEntity, &TDbmDependencyEntity::Name>
{
public:
    explicit TDbmDependencyList(TDbmElement *owner) : TDbmNamedList(owner) {}

protected:
    QList<TDbmDependencyEntity> SelectEntities() override;
};
