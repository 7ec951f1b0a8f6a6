#pragma once

#include "sql/uDbmChildCommands.h"

/// The server's threads. Unlike in other families a failing read raises EDacMySqlError.
class TDbmProcessCommands : public TDbmChildCommands
{
public:
    using TDbmChildCommands::TDbmChildCommands;

    QList<TDbmProcessEntity> ExecuteSelect() const;
    void ExecuteKillQuery(qint64 id) const;
    void ExecuteKillConnection(qint64 id) const;
};
