#pragma once

#include "sql/uDbmChildCommands.h"

/// The columns of a table or view.
class TDbmFieldCommands : public TDbmChildCommands
{
public:
    using TDbmChildCommands::TDbmChildCommands;

    QList<TDbmFieldEntity> ExecuteSelect(const QString &database, const QString &table);
    void ExecuteCreate(const QString &database, const QString &table, const TDbmFieldEntity &field,
                       const TDbmFieldPosition &position, const QString &tableCollation) const;
    /// `field` bears the present name. What belongs to the column's definition and stands only in
    /// the table's text is read first, so that it survives.
    void ExecuteUpdate(const QString &database, const QString &table, const TDbmFieldEntity &field,
                       const TDbmFieldPosition &position, const QString &newName,
                       const QString &tableCollation) const;
    void ExecuteDelete(const QString &database, const QString &table, const QString &name) const;

private:
    TDbmFieldEntity WithCheck(const QString &database, const QString &table, TDbmFieldEntity field,
                              const QString &newName) const;
};
