#pragma once

#include "sql/uDbmChildCommands.h"

/// The views of a database.
class TDbmViewCommands : public TDbmChildCommands
{
public:
    using TDbmChildCommands::TDbmChildCommands;

    QList<TDbmViewEntity> ExecuteSelect(const QString &database);
    bool ExecuteSelectRow(const QString &database, const QString &view, TDbmViewEntity &entity);
    void ExecuteCreate(const QString &database, const TDbmViewEntity &entity) const;
    /// Replaces the view; under another name creates the new one, then drops the old one. The
    /// view's algorithm survives also where the entity does not tell it.
    void ExecuteUpdate(const QString &database, const QString &oldName,
                       const TDbmViewEntity &entity) const;
    /// From the view's text, for servers whose catalogue does not tell it. Empty for a view that no
    /// longer works; raises EDacMySqlError when the text cannot be read otherwise.
    QString ExecuteSelectAlgorithm(const QString &database, const QString &view) const;
    void ExecuteDelete(const QString &database, const QString &name) const;
    void ExecuteRename(const QString &database, const QString &oldName,
                       const QString &newName) const;

private:
    void Create(const QString &database, const TDbmViewEntity &entity, bool orReplace) const;
};
