#pragma once

#include "sql/uDbmChildCommands.h"

/// The server's collations.
class TDbmCollationCommands : public TDbmChildCommands
{
public:
    using TDbmChildCommands::TDbmChildCommands;

    QList<TDbmCollationEntity> ExecuteSelect();
};
