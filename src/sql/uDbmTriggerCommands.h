#pragma once

#include "sql/uDbmChildCommands.h"

/// The triggers of a table.
class TDbmTriggerCommands : public TDbmChildCommands
{
public:
    using TDbmChildCommands::TDbmChildCommands;

    QList<TDbmTriggerEntity> ExecuteSelect(const QString &database, const QString &table);
    void ExecuteCreate(const QString &database, const QString &table,
                       const TDbmTriggerEntity &entity) const;
    /// Drops the old trigger, then creates the new one. When that fails the old one is put back as
    /// it was and where it was, and the error is raised.
    void ExecuteRecreate(const QString &database, const QString &table,
                         const TDbmTriggerEntity &entity, const QString &oldName) const;
    void ExecuteDelete(const QString &database, const QString &name) const;

private:
    /// Gives `entity` the body as it was written, where the server tells it.
    void ReadBody(const QString &database, TDbmTriggerEntity &entity) const;
};
