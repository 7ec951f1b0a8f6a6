#pragma once

#include "sql/uDbmChildCommands.h"

/// The server's storage engines.
class TDbmEngineCommands : public TDbmChildCommands
{
public:
    using TDbmChildCommands::TDbmChildCommands;

    QList<TDbmEngineEntity> ExecuteSelect();
};
