#pragma once

#include <QObject>
#include <QPointer>
#include <functional>
#include <memory>
#include <typeindex>
#include <vector>

/// Base of everything that can be said on the bus.
class TMessage
{
public:
    virtual ~TMessage() = default;
};

/// Process-wide bus. A sender hands a message over; every recipient that registered for exactly its
/// class is called at once, in order of registration, before the send returns. Main thread only.
class TMessenger
{
public:
    /// The registration ends with the recipient object. Registering twice calls the action twice.
    template <typename T>
    static void Register(QObject *recipient, std::function<void(const T &)> action)
    {
        Add({typeid(T), recipient, [action = std::move(action)](const TMessage &message) {
                 action(static_cast<const T &>(message));
             }});
    }
    template <typename T>
    static void Send(std::unique_ptr<T> message)
    {
        Dispatch(typeid(T), *message);
    }
    static void Unregister(QObject *recipient);

private:
    struct TRecipient
    {
        std::type_index MessageType;
        QPointer<QObject> Recipient;
        std::function<void(const TMessage &)> Action;
    };
    static std::vector<std::shared_ptr<TRecipient>> &Recipients();
    static void Add(TRecipient recipient);
    static void Dispatch(std::type_index type, const TMessage &message);
};
