#pragma once

#include "sql/uDbmChildCommands.h"

/// The scheduled events of a database.
class TDbmEventCommands : public TDbmChildCommands
{
public:
    using TDbmChildCommands::TDbmChildCommands;

    QList<TDbmEventEntity> ExecuteSelect(const QString &database);
    void ExecuteCreate(const QString &database, const TDbmEventEntity &entity) const;
    void ExecuteUpdate(const QString &database, const QString &oldName,
                       const TDbmEventEntity &entity) const;
    void ExecuteDelete(const QString &database, const QString &name) const;
    void ExecuteRename(const QString &database, const QString &oldName,
                       const QString &newName) const;
};
