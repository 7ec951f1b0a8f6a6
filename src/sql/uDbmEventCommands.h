#pragma once

#include "sql/uDbmChildCommands.h"

/// The scheduled events of a database.
class TDbmEventCommands : public TDbmChildCommands
{
public:
    using TDbmChildCommands::TDbmChildCommands;

    QList<TDbmEventEntity> ExecuteSelect(const QString &database);
    /// The body as it was written. Empty for an account that may not see it.
    QString ExecuteSelectBody(const QString &database, const QString &name) const;
    void ExecuteCreate(const QString &database, const TDbmEventEntity &entity) const;
    void ExecuteUpdate(const QString &database, const QString &oldName,
                       const TDbmEventEntity &entity) const;
    void ExecuteDelete(const QString &database, const QString &name) const;
    void ExecuteRename(const QString &database, const QString &oldName,
                       const QString &newName) const;

private:
    /// Runs something in a session whose time zone is that of an event: the server reads the times
    /// of a schedule in the session's zone, and would move them otherwise.
    void ExecuteInTimeZone(const QString &timeZone, const std::function<void()> &action) const;
};
