#pragma once

#include "shell/uMessaging.h"

#include <QString>

class TDbmManager;

/// Server objects changed: redraw what is visible.
struct TRedrawUIMessage : TMessage
{};
/// The set of pages or the active page of a workspace changed.
struct TManagerPagesChangeMessage : TMessage
{};
/// The enabled state of a query page's actions changed.
struct TQueryPageStatusChangedMessage : TMessage
{};

/// A message about one workspace: each listener checks whether the manager is its own.
struct TManagerMessage : TMessage
{
    TDbmManager *Manager = nullptr; // not owned
    QString DatabaseName;
};
struct TSelectSchemaMessage : TManagerMessage
{};
struct TTableRenamedMessage : TManagerMessage
{
    QString TableName, NewTableName;
};
struct TViewRenamedMessage : TManagerMessage
{
    QString ViewName, NewViewName;
};
struct TRoutineRenamedMessage : TManagerMessage
{
    QString RoutineName, NewRoutineName;
};
struct TEventRenamedMessage : TManagerMessage
{
    QString EventName, NewEventName;
};
struct TDatabaseDeletedMessage : TManagerMessage
{};
struct TTableDeletedMessage : TManagerMessage
{
    QString TableName;
};
struct TViewDeletedMessage : TManagerMessage
{
    QString ViewName;
};
struct TRoutineDeletedMessage : TManagerMessage
{
    QString RoutineName;
};
struct TEventDeletedMessage : TManagerMessage
{
    QString EventName;
};

/// The fixed list of things that can be said. Messages without a receiver are part of the contract,
/// so that a page can subscribe without changing the senders.
class TAppMessages
{
public:
    static void SendRedrawUI();
    static void SendManagerPagesChange();
    static void SendQueryPageStatusChanged();
    static void SendSelectSchema(TDbmManager *manager, const QString &databaseName);
    static void SendTableRenamed(TDbmManager *manager, const QString &databaseName,
                                 const QString &tableName, const QString &newTableName);
    static void SendViewRenamed(TDbmManager *manager, const QString &databaseName,
                                const QString &viewName, const QString &newViewName);
    static void SendRoutineRenamed(TDbmManager *manager, const QString &databaseName,
                                   const QString &routineName, const QString &newRoutineName);
    static void SendEventRenamed(TDbmManager *manager, const QString &databaseName,
                                 const QString &eventName, const QString &newEventName);
    static void SendDatabaseDeleted(TDbmManager *manager, const QString &databaseName);
    static void SendTableDeleted(TDbmManager *manager, const QString &databaseName,
                                 const QString &tableName);
    static void SendViewDeleted(TDbmManager *manager, const QString &databaseName,
                                const QString &viewName);
    static void SendRoutineDeleted(TDbmManager *manager, const QString &databaseName,
                                   const QString &routineName);
    static void SendEventDeleted(TDbmManager *manager, const QString &databaseName,
                                 const QString &eventName);
};
