#include "model/uDbmElement.h"

#include "model/uDbmManager.h"

TDbmElement::TDbmElement(TDbmElement *owner)
    : FProvider(owner ? owner->FProvider : nullptr), FFeatures(owner ? owner->FFeatures : nullptr),
      FFormatters(owner ? owner->FFormatters : nullptr),
      FCommands(owner ? owner->FCommands : nullptr), FOwner(owner)
{}

TDbmElement::TDbmElement(TDbmProvider *provider, TDbmServerFeatures *features,
                         TDbmFormatters *formatters, TDbmCommands *commands)
    : FProvider(provider), FFeatures(features), FFormatters(formatters), FCommands(commands)
{}

void TDbmElement::RequestProcess()
{
    DoRequestProcess();
    FProcessed = false;
}

void TDbmElement::Process()
{
    if (FProcessed)
        return;
    FProcessed = true;
    DoProcess();
}

TDbmManager &TDbmElement::Manager()
{
    TDbmElement *root = this;
    while (root->FOwner)
        root = root->FOwner;
    return static_cast<TDbmManager &>(*root);
}
