#pragma once

#include "sql/uDbmChildCommands.h"

/// The procedures and functions of a database.
class TDbmRoutineCommands : public TDbmChildCommands
{
public:
    using TDbmChildCommands::TDbmChildCommands;

    QList<TDbmRoutineEntity> ExecuteSelect(const QString &database);
    /// Empty when the read failed.
    void ExecuteSelectParams(const QString &database, const QString &name, QString &params,
                             TDbmRoutineType routineType);
    void ExecuteCreate(const QString &database, const TDbmRoutineEntity &entity,
                       const QString &params) const;
    void ExecuteUpdate(const QString &database, const QString &name,
                       const TDbmRoutineEntity &entity) const;
    void ExecuteDelete(const QString &database, const TDbmRoutineEntity &entity) const;
    void ExecuteDeleteProcedure(const QString &database, const QString &name) const;
    void ExecuteDeleteFunction(const QString &database, const QString &name) const;
    /// Creates the copy first: when that fails the old routine is as it was.
    void ExecuteRename(const QString &database, const TDbmRoutineEntity &entity,
                       const QString &newName, const QString &params) const;
};
