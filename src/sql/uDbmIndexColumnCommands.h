#pragma once

#include "sql/uDbmChildCommands.h"

/// The columns of all indexes of a database at once.
class TDbmIndexColumnCommands : public TDbmChildCommands
{
public:
    using TDbmChildCommands::TDbmChildCommands;

    QList<TDbmDatabaseIndexColumnEntity> ExecuteSelectOnDatabase(const QString &database);
};
