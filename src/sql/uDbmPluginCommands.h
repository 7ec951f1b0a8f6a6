#pragma once

#include "sql/uDbmChildCommands.h"

/// The server's plugins. Unlike in other families a failing read raises EDacMySqlError.
class TDbmPluginCommands : public TDbmChildCommands
{
public:
    using TDbmChildCommands::TDbmChildCommands;

    QList<TDbmPluginEntity> ExecuteSelect() const;
};
