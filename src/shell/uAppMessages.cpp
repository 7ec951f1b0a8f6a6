#include "shell/uAppMessages.h"

namespace {

template <typename T>
std::unique_ptr<T> Make(TDbmManager *manager, const QString &databaseName)
{
    auto message = std::make_unique<T>();
    message->Manager = manager;
    message->DatabaseName = databaseName;
    return message;
}

template <typename T>
void SendNamed(TDbmManager *manager, const QString &databaseName, QString T::*field,
               const QString &name)
{
    auto message = Make<T>(manager, databaseName);
    (*message).*field = name;
    TMessenger::Send(std::move(message));
}

template <typename T>
void SendRenamed(TDbmManager *manager, const QString &databaseName, QString T::*oldField,
                 const QString &oldName, QString T::*newField, const QString &newName)
{
    auto message = Make<T>(manager, databaseName);
    (*message).*oldField = oldName;
    (*message).*newField = newName;
    TMessenger::Send(std::move(message));
}

} // namespace

void TAppMessages::SendRedrawUI()
{
    TMessenger::Send(std::make_unique<TRedrawUIMessage>());
}

void TAppMessages::SendManagerPagesChange()
{
    TMessenger::Send(std::make_unique<TManagerPagesChangeMessage>());
}

void TAppMessages::SendQueryPageStatusChanged()
{
    TMessenger::Send(std::make_unique<TQueryPageStatusChangedMessage>());
}

void TAppMessages::SendSelectSchema(TDbmManager *manager, const QString &databaseName)
{
    TMessenger::Send(Make<TSelectSchemaMessage>(manager, databaseName));
}

void TAppMessages::SendDatabaseDeleted(TDbmManager *manager, const QString &databaseName)
{
    TMessenger::Send(Make<TDatabaseDeletedMessage>(manager, databaseName));
}

void TAppMessages::SendTableRenamed(TDbmManager *manager, const QString &databaseName,
                                    const QString &tableName, const QString &newTableName)
{
    SendRenamed(manager, databaseName, &TTableRenamedMessage::TableName, tableName,
                &TTableRenamedMessage::NewTableName, newTableName);
}

void TAppMessages::SendViewRenamed(TDbmManager *manager, const QString &databaseName,
                                   const QString &viewName, const QString &newViewName)
{
    SendRenamed(manager, databaseName, &TViewRenamedMessage::ViewName, viewName,
                &TViewRenamedMessage::NewViewName, newViewName);
}

void TAppMessages::SendRoutineRenamed(TDbmManager *manager, const QString &databaseName,
                                      const QString &routineName, const QString &newRoutineName)
{
    SendRenamed(manager, databaseName, &TRoutineRenamedMessage::RoutineName, routineName,
                &TRoutineRenamedMessage::NewRoutineName, newRoutineName);
}

void TAppMessages::SendEventRenamed(TDbmManager *manager, const QString &databaseName,
                                    const QString &eventName, const QString &newEventName)
{
    SendRenamed(manager, databaseName, &TEventRenamedMessage::EventName, eventName,
                &TEventRenamedMessage::NewEventName, newEventName);
}

void TAppMessages::SendTableDeleted(TDbmManager *manager, const QString &databaseName,
                                    const QString &tableName)
{
    SendNamed(manager, databaseName, &TTableDeletedMessage::TableName, tableName);
}

void TAppMessages::SendViewDeleted(TDbmManager *manager, const QString &databaseName,
                                   const QString &viewName)
{
    SendNamed(manager, databaseName, &TViewDeletedMessage::ViewName, viewName);
}

void TAppMessages::SendRoutineDeleted(TDbmManager *manager, const QString &databaseName,
                                      const QString &routineName)
{
    SendNamed(manager, databaseName, &TRoutineDeletedMessage::RoutineName, routineName);
}

void TAppMessages::SendEventDeleted(TDbmManager *manager, const QString &databaseName,
                                    const QString &eventName)
{
    SendNamed(manager, databaseName, &TEventDeletedMessage::EventName, eventName);
}
