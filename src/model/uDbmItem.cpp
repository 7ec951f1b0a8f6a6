#include "model/uDbmItem.h"

void TDbmItemBase::SetEntity(std::unique_ptr<TDbmEntity> entity)
{
    FEntity = std::move(entity);
    FEntityProcessed = true;
    DoSetEntity();
}

void TDbmItemBase::DoRequestProcess()
{
    FEntityProcessed = false;
}

void TDbmItemBase::DoProcess()
{
    if (FEntityProcessed)
        return;
    FEntityProcessed = true;
    DoProcessEntity();
}
