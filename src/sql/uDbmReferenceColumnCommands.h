#pragma once

#include "sql/uDbmChildCommands.h"

/// The pairs of columns of foreign keys.
class TDbmReferenceColumnCommands : public TDbmChildCommands
{
public:
    using TDbmChildCommands::TDbmChildCommands;

    QList<TDbmDatabaseReferenceColumnEntity> ExecuteSelectOnDatabase(const QString &database);
    /// All pairs of one key.
    QList<TDbmReferenceColumnEntity>
    ExecuteSelectOnForeignKey(const QString &database, const QString &table, const QString &name);
};
