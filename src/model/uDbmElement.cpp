#include "model/uDbmElement.h"

#include "model/uDbmManager.h"
#include "support/uException.h"

TDbmElement::TDbmElement(TDbmElement *owner)
    : FProvider(owner ? owner->FProvider : nullptr), FFeatures(owner ? owner->FFeatures : nullptr),
      FFormatters(owner ? owner->FFormatters : nullptr),
      FCommands(owner ? owner->FCommands : nullptr), FOwner(owner ? owner->Place() : TPlace())
{}

TDbmElement::TDbmElement(TDbmProvider *provider, TDbmServerFeatures *features,
                         TDbmFormatters *formatters, TDbmCommands *commands)
    : FProvider(provider), FFeatures(features), FFormatters(formatters), FCommands(commands)
{}

TDbmElement::~TDbmElement()
{
    if (FPlace)
        *FPlace = nullptr;
}

TDbmElement::TPlace TDbmElement::Place()
{
    if (!FPlace)
        FPlace = std::make_shared<TDbmElement *>(this);
    return FPlace;
}

TDbmElement &TDbmElement::ExistingOwner() const
{
    if (TDbmElement *owner = Owner())
        return *owner;
    throw EException("The object is not in the list any more.");
}

bool TDbmElement::IsAttached() const
{
    const TDbmElement *element = this;
    while (element && element->FOwner)
        element = *element->FOwner;
    return element != nullptr;
}

void TDbmElement::RequestProcess()
{
    if (!IsAttached())
        return;
    DoRequestProcess();
    FProcessed = false;
}

void TDbmElement::Process()
{
    if (FProcessed)
        return;
    FProcessed = true;
    if (IsAttached())
        DoProcess();
}

void TDbmElement::RequestProcessOfOwner()
{
    if (TDbmElement *owner = Owner())
        owner->RequestProcess();
}

TDbmManager &TDbmElement::Manager()
{
    TDbmElement *root = this;
    while (root->FOwner)
        root = &root->ExistingOwner();
    return static_cast<TDbmManager &>(*root);
}
