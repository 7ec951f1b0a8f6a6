#pragma once

#include "model/uDbmComparers.h"
#include "model/uDbmItem.h"

#include <QHash>
#include <algorithm>
#include <vector>

/// A lazily loaded list of items of one kind. A reload keeps the identity of the items that are
/// still on the server, and all that hangs below them. Any read may raise what the load raises.
template <typename TItem, typename TEntity>
class TDbmList : public TDbmElement
{
public:
    using TItemType = TItem;
    using TEntityType = TEntity;
    using TItemPtr = std::shared_ptr<TItem>;
    using TItems = QList<TItemPtr>;
    using TAction = std::function<void(TItem &item)>;
    using TExpression = std::function<bool(TItem &item)>;

    int Count()
    {
        Process();
        return static_cast<int>(FList.size());
    }
    /// In list order; the list must not be changed inside.
    void ForEach(const TAction &action)
    {
        Process();
        for (const TItemPtr &item : std::as_const(FList))
            action(*item);
    }
    /// The first item for which the expression is true; `item` is left alone when there is none.
    bool TryFind(const TExpression &expression, TItemPtr &item)
    {
        Process();
        for (const TItemPtr &candidate : std::as_const(FList)) {
            if (!expression(*candidate))
                continue;
            item = candidate;
            return true;
        }
        return false;
    }
    bool TryFind(const TExpression &expression)
    {
        TItemPtr ignored;
        return TryFind(expression, ignored);
    }
    /// A snapshot: a later reload does not change it.
    TItems ToArray()
    {
        Process();
        return FList;
    }
    /// Exact and case-sensitive.
    bool TryGetByName(const QString &name, TItemPtr &item)
    {
        Process();
        const auto found = FDict.constFind(name);
        if (found == FDict.constEnd() || (*found)->IsDelete())
            return false;
        item = *found;
        return true;
    }
    /// Not owned by the answer; valid until the next reload.
    QList<const TEntity *> ToEntityList()
    {
        QList<const TEntity *> entities;
        ForEach([&](TItem &item) { entities.append(&item.Entity()); });
        return entities;
    }
    QList<const TEntity *> ToEntityArray() { return ToEntityList(); }

protected:
    using TDbmElement::TDbmElement;

    virtual TDbmComparer<TEntity> CreateEntityComparer()
    {
        return TDbmComparers::CreateNullComparer<TEntity>();
    }
    virtual TItemPtr CreateItem() = 0;
    virtual QList<TEntity> SelectEntities() = 0;
    virtual QString GetEntityKey(const TEntity &entity) const = 0;

    void DoRequestProcess() override
    {
        for (const TItemPtr &item : std::as_const(FList))
            item->RequestProcess();
    }

    void DoProcess() override
    {
        Mark();
        Fill();
        Sweep();
    }

private:
    void Mark()
    {
        FList.clear();
        for (const TItemPtr &item : std::as_const(FDict))
            item->SetIsDelete(true);
    }

    void Fill()
    {
        QList<TEntity> entities = SelectEntities();
        std::vector<TEntity *> ordered;
        ordered.reserve(static_cast<size_t>(entities.size()));
        for (TEntity &entity : entities)
            ordered.push_back(&entity);
        const auto comparer = CreateEntityComparer();
        const auto isBefore = [&](const TEntity *left, const TEntity *right) {
            return comparer(*left, *right) < 0;
        };
        // Servers give most lists in this order.
        if (!std::is_sorted(ordered.begin(), ordered.end(), isBefore))
            std::stable_sort(ordered.begin(), ordered.end(), isBefore);
        FDict.reserve(entities.size());
        for (TEntity *entity : ordered) {
            const TItemPtr item = FindOrCreate(GetEntityKey(*entity));
            item->SetIsDelete(false);
            item->SetEntity(std::move(*entity));
            FList.append(item);
        }
    }

    // An item that could not be made leaves no empty place behind for the next reload to find.
    TItemPtr FindOrCreate(const QString &key)
    {
        TItemPtr item = FDict.value(key);
        if (!item) {
            item = CreateItem();
            FDict.insert(key, item);
        }
        return item;
    }

    // Holders of a swept item keep it alive.
    void Sweep()
    {
        FDict.removeIf([](const auto &entry) { return (*entry)->IsDelete(); });
    }

    QHash<QString, TItemPtr> FDict;
    TItems FList; // in display order
};

/// A list whose items are told apart by one text of their entity.
template <typename TItem, typename TEntity, QString TEntity::*KeyMember,
          template <typename, typename> typename TBase = TDbmList>
class TDbmNamedList : public TBase<TItem, TEntity>
{
public:
    using typename TBase<TItem, TEntity>::TItemPtr;

protected:
    using TBase<TItem, TEntity>::TBase;

    TItemPtr CreateItem() override { return TDbmElement::New<TItem>(this); }
    QString GetEntityKey(const TEntity &entity) const override { return entity.*KeyMember; }
};

/// Lists and items that hang under a table or view item.
template <typename TItem, typename TEntity>
class TDbmTableChildList : public TDbmList<TItem, TEntity>
{
protected:
    using TDbmList<TItem, TEntity>::TDbmList;
};

template <typename TEntity>
class TDbmTableChildItem : public TDbmItem<TEntity>
{
protected:
    using TDbmItem<TEntity>::TDbmItem;
};
