#pragma once

#include "model/uDbmEntities.h"

/// One index with all of its columns.
struct TDbmWholeIndex
{
    TDbmIndexEntity Index;
    QList<TDbmIndexColumnEntity> Columns;
    /// False when a part is an expression: then Columns do not tell the whole key.
    bool IsWhole = true;
    /// Whether equal columns mean the same row: unique, over whole columns.
    bool IdentifiesRows() const;
    QStringList ColumnNames() const;
};

/// One foreign key with all of its pairs.
struct TDbmWholeReference
{
    TDbmReferenceEntity Reference;
    QList<TDbmReferenceColumnEntity> Columns;
};

/// The keys of a table, whole, whatever characters their names have: for everything that writes
/// rows or keys. A key that cannot be read is absent, never shortened.
class TDbmTableKeys
{
public:
    /// `ddl` is the text of SHOW CREATE TABLE.
    static TDbmTableKeys Parse(const QString &databaseName, const QString &ddl);

    const QList<TDbmWholeIndex> &Indexes() const { return FIndexes; }
    const QList<TDbmWholeReference> &References() const { return FReferences; }
    /// The primary key over whole columns; false when there is none.
    bool TryGetRowKey(QStringList &columnNames) const;
    /// Blind to letter case, as the server is.
    bool TryGetIndex(const QString &name, TDbmWholeIndex &index) const;
    bool TryGetReference(const QString &name, TDbmWholeReference &reference) const;

private:
    QList<TDbmWholeIndex> FIndexes;
    QList<TDbmWholeReference> FReferences;
};
