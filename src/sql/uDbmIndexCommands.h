#pragma once

#include "sql/uDbmChildCommands.h"

/// The indexes of a table.
class TDbmIndexCommands : public TDbmChildCommands
{
public:
    using TDbmChildCommands::TDbmChildCommands;

    /// From the server's catalogue; lists read the table's text instead.
    QList<TDbmIndexEntity> ExecuteSelect(const QString &database, const QString &table);
    void ExecuteCreate(const QString &database, const QString &table,
                       const QList<TDbmIndexColumnEntity> &columns,
                       const TDbmIndexEntity &index) const;
    /// Drops the old index, then adds the new one. A key that the server does not let go alone,
    /// such as that of an AUTO_INCREMENT column or of a foreign key, is replaced in one statement.
    void ExecuteUpdate(const QString &database, const QString &table,
                       const QList<TDbmIndexColumnEntity> &columns, const TDbmIndexEntity &index,
                       const QString &oldName) const;
    void ExecuteDelete(const QString &database, const QString &table, const QString &name) const;
};
