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
    /// The parameter list as a new routine needs it; `entity` gets its body as it was written.
    /// Unlike the reads for showing, raises where the list cannot be read: without it another
    /// routine would be made.
    QString ExecuteSelectWhole(const QString &database, TDbmRoutineEntity &entity) const;
    void ExecuteCreate(const QString &database, const TDbmRoutineEntity &entity,
                       const QString &params) const;
    void ExecuteUpdate(const QString &database, const QString &name,
                       const TDbmRoutineEntity &entity) const;
    void ExecuteDelete(const QString &database, const TDbmRoutineEntity &entity) const;
    void ExecuteDeleteProcedure(const QString &database, const QString &name) const;
    void ExecuteDeleteFunction(const QString &database, const QString &name) const;
    /// With what is needed to put it back. Raises EDacMySqlError for a routine that is not there,
    /// EException for one whose text the account may not see.
    TDbmRoutineText ExecuteSelectText(const QString &database, const QString &name,
                                      TDbmRoutineType routineType) const;
    bool ExecuteExists(const QString &database, const QString &name,
                       TDbmRoutineType routineType) const;
    /// The database that a routine without one in its name belongs to.
    QString ExecuteSelectDatabase() const;
    void ExecuteRestore(const TDbmRoutineText &text) const;
    /// Drops the old routine, then creates the new one. When that fails the old one is put back as
    /// it was, and the error is raised.
    void ExecuteRecreate(const QString &database, const TDbmRoutineEntity &entity,
                         const QString &params, const TDbmRoutineEntity &old) const;
    /// Creates the copy first: when that fails the old routine is as it was.
    void ExecuteRename(const QString &database, const TDbmRoutineEntity &entity,
                       const QString &newName, const QString &params) const;
};
