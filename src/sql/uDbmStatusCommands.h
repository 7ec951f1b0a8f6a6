#pragma once

#include "sql/uDbmChildCommands.h"

/// The server's status.
class TDbmStatusCommands : public TDbmChildCommands
{
public:
    using TDbmChildCommands::TDbmChildCommands;

    QList<TDbmStatusEntity> ExecuteSelect(TDbmStatusOption option);
};
