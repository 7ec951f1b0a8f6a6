#pragma once

#include "sql/uDbmChildCommands.h"

/// The foreign keys of a table, and those of other tables that point to it.
class TDbmReferenceCommands : public TDbmChildCommands
{
public:
    using TDbmChildCommands::TDbmChildCommands;

    /// From the server's catalogue; lists read the table's text instead.
    QList<TDbmReferenceEntity> ExecuteSelect(const QString &database, const QString &table);
    QList<TDbmDependencyEntity> ExecuteSelectDependencies(const QString &database,
                                                          const QString &table);
    void ExecuteCreate(const QString &database, const QString &table,
                       const QList<TDbmReferenceColumnEntity> &columns,
                       const TDbmReferenceEntity &reference) const;
    /// Adds the new key, then drops the old one: the reverse of the order of indexes. Under its own
    /// name a key can only be dropped first; when the add fails the old key is added back and the
    /// error is raised.
    void ExecuteUpdate(const QString &database, const QString &table,
                       const QList<TDbmReferenceColumnEntity> &columns,
                       const TDbmReferenceEntity &reference, const QString &oldName) const;
    void ExecuteDelete(const QString &database, const QString &table, const QString &name) const;

private:
    void ReplaceUnderItsName(const QString &database, const QString &table,
                             const QList<TDbmReferenceColumnEntity> &columns,
                             const TDbmReferenceEntity &reference, const QString &oldName) const;
};
