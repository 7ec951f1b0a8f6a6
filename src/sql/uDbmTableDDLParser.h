#pragma once

#include "core/uDbmServerFeatures.h"

/// Reads indexes and foreign keys out of the text of SHOW CREATE TABLE, for lists and pages.
/// Deliberate: names with other characters than letters, digits and _, full-text and spatial
/// indexes, keys into another database and all but the first pair of a composite foreign key are
/// not seen. Whoever writes rows or keys reads them with TDbmTableKeys. Short-lived.
class TDbmTableDDLParser
{
public:
    TDbmTableDDLParser(const TDbmServerFeatures *serverFeatures, const QString &databaseName,
                       const QString &ddl);

    QList<TDbmFieldEntity> ParseColumns() const; // names only
    bool TryParsePrimaryKey(TDbmIndexEntity &index) const;
    QList<TDbmIndexEntity> ParseUniqueKeys() const;
    QList<TDbmIndexEntity> ParseKeys() const;
    QList<TDbmReferenceEntity> ParseForeignKeys() const;
    /// Knows the columns of full-text and spatial indexes too. The name stands raw in the
    /// expression.
    QList<TDbmIndexColumnEntity> ParseIndexColumns(const TDbmIndexEntity &index) const;
    /// The first pair of columns. Positions stay 0.
    QList<TDbmReferenceColumnEntity> ParseForeignKeyColumns(const QString &referenceName) const;

private:
    QList<TDbmIndexEntity> ParseKeyLines(const QString &pattern, TDbmIndexKind kind) const;

    const TDbmServerFeatures *FServerFeatures; // not owned
    QString FDatabaseName;
    QString FDDL;
};
