#pragma once

#include "sql/uDbmChildCommands.h"
#include "sql/uDbmTableKeys.h"

/// The tables of a database.
class TDbmTableCommands : public TDbmChildCommands
{
public:
    using TDbmChildCommands::TDbmChildCommands;

    QList<TDbmTableEntity> ExecuteSelect(const QString &database);
    /// True when found.
    bool ExecuteSelectRow(const QString &database, const QString &table, TDbmTableEntity &entity);
    /// Empty when the read failed.
    void ExecuteSelectDDL(const QString &database, const QString &table, QString &ddl);
    quint32 ExecuteChecksum(const QString &database, const QString &table);
    void ExecuteCreate(const QString &database, const TDbmTableEntity &entity) const;
    void ExecuteCreate(const QString &database, const TDbmTableEntity &entity,
                       const QList<TDbmFieldEntity> &fields, const QList<TDbmIndexEntity> &indexes,
                       const QList<QList<TDbmIndexColumnEntity>> &indexColumns) const;
    /// The options under the old name, then the rename; when the first fails there is no second.
    void ExecuteUpdate(const QString &database, const QString &oldName,
                       const TDbmTableEntity &entity) const;
    void ExecuteDelete(const QString &database, const QString &table) const;
    void ExecuteRename(const QString &database, const QString &oldName,
                       const QString &newName) const;
    void ExecuteTruncate(const QString &database, const QString &table) const;
    void ExecuteUpdateDisableKeys(const QString &database, const QString &table) const;
    void ExecuteUpdateEnableKeys(const QString &database, const QString &table) const;
};
