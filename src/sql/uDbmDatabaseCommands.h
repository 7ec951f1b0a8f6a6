#pragma once

#include "sql/uDbmChildCommands.h"

class TDbmDatabaseCommands : public TDbmChildCommands
{
public:
    using TDbmChildCommands::TDbmChildCommands;

    QList<TDbmDatabaseEntity> ExecuteSelect();
    bool ExecuteSelectRow(const QString &name, TDbmDatabaseEntity &entity);
    void ExecuteCreate(const TDbmDatabaseEntity &entity) const;
    void ExecuteUpdate(const TDbmDatabaseEntity &oldEntity,
                       const TDbmDatabaseEntity &newEntity) const;
    void ExecuteDelete(const QString &name, bool ifExists) const;
    void ExecuteUse(const QString &name) const;
};
