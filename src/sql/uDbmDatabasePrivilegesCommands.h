#pragma once

#include "sql/uDbmChildCommands.h"

/// Reads the privileges of one account on this level.
class TDbmDatabasePrivilegesCommands : public TDbmChildCommands
{
public:
    using TDbmChildCommands::TDbmChildCommands;

    QList<TDbmDatabasePrivilegesEntity> ExecuteSelect(const QString &user, const QString &host);
};
