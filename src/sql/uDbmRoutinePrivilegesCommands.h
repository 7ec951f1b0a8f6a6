#pragma once

#include "sql/uDbmChildCommands.h"

/// Reads the privileges of one account on this level.
class TDbmRoutinePrivilegesCommands : public TDbmChildCommands
{
public:
    using TDbmChildCommands::TDbmChildCommands;

    QList<TDbmRoutinePrivilegesEntity> ExecuteSelect(const QString &user, const QString &host);
};
