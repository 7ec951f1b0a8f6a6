#pragma once

#include "model/uDbmElement.h"
#include "model/uDbmEntities.h"

/// One object of a list. A list may forget it while a page still holds it.
class TDbmItemBase : public TDbmElement
{
public:
    void SetEntity(std::unique_ptr<TDbmEntity> entity);
    /// The entity as it stands, without a read; nullptr before the first SetEntity.
    const TDbmEntity *StoredEntity() const { return FEntity.get(); }

    bool IsDelete() const { return FIsDelete; }
    void SetIsDelete(bool value) { FIsDelete = value; } // used only during a list's reload

protected:
    using TDbmElement::TDbmElement;

    void DoRequestProcess() override;
    void DoProcess() override;
    /// Fills in the entity's lazily read parts.
    virtual void DoProcessEntity() {}
    /// The entity was replaced.
    virtual void DoSetEntity() {}

private:
    bool FIsDelete = false;
    std::unique_ptr<TDbmEntity> FEntity;
    bool FEntityProcessed = false;
};

/// Adds the typed entity.
template <typename TEntity>
class TDbmItem : public TDbmItemBase
{
public:
    using TDbmItemBase::SetEntity;
    void SetEntity(TEntity entity)
    {
        SetEntity(std::unique_ptr<TDbmEntity>(std::make_unique<TEntity>(std::move(entity))));
    }
    /// Runs Process; valid until the entity is replaced.
    const TEntity &Entity()
    {
        Process();
        return static_cast<const TEntity &>(*StoredEntity());
    }

protected:
    using TDbmItemBase::TDbmItemBase;
};
