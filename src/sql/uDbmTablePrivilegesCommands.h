#pragma once

#include "sql/uDbmChildCommands.h"

/// Reads the privileges of one account on this level.
class TDbmTablePrivilegesCommands : public TDbmChildCommands
{
public:
    using TDbmChildCommands::TDbmChildCommands;

    QList<TDbmTablePrivilegesEntity> ExecuteSelect(const QString &user, const QString &host);
};
