#include "shell/uMessaging.h"

std::vector<std::shared_ptr<TMessenger::TRecipient>> &TMessenger::Recipients()
{
    static std::vector<std::shared_ptr<TRecipient>> recipients;
    return recipients;
}

void TMessenger::Add(TRecipient recipient)
{
    std::erase_if(Recipients(), [](const auto &entry) { return entry->Recipient.isNull(); });
    Recipients().push_back(std::make_shared<TRecipient>(std::move(recipient)));
}

void TMessenger::Unregister(QObject *recipient)
{
    std::erase_if(Recipients(),
                  [recipient](const auto &entry) { return entry->Recipient == recipient; });
}

// The snapshot lets a recipient register or unregister during the dispatch, and an entry that is
// removed meanwhile is still called; the guard skips a recipient that has died.
void TMessenger::Dispatch(std::type_index type, const TMessage &message)
{
    std::vector<std::shared_ptr<TRecipient>> snapshot;
    for (const auto &entry : Recipients())
        if (entry->MessageType == type)
            snapshot.push_back(entry);
    for (const auto &entry : snapshot)
        if (!entry->Recipient.isNull())
            entry->Action(message);
}
