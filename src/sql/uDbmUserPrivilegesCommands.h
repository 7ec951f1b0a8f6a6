#pragma once

#include "sql/uDbmChildCommands.h"

/// The accounts of the server. Each change is several statements; a failing one stops the sequence
/// where it stands.
class TDbmUserPrivilegesCommands : public TDbmChildCommands
{
public:
    using TDbmChildCommands::TDbmChildCommands;

    QList<TDbmUserPrivilegesEntity> ExecuteSelect();
    void ExecuteCreate(const TDbmUserPrivilegesEntity &entity, const QString &password) const;
    /// Only what the entity tells changes: rights on databases, tables and routines, and global
    /// ones that are not modelled, stay as they are. Raises EException for a role
    /// and for an account that is gone.
    void ExecuteUpdate(const QString &oldUser, const QString &oldHost, const QString &password,
                       bool changePassword, const TDbmUserPrivilegesEntity &entity) const;
    void ExecuteDelete(const QString &user, const QString &host) const;

private:
    void Execute(const QString &statement) const;
    /// Empty when there is no such account.
    QList<TDbmUserPrivilegesEntity> SelectRow(const QString &user, const QString &host) const;
    void FlushPrivileges() const;
};
