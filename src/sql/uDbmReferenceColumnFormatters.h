#pragma once

#include "client/uDataSet.h"
#include "model/uDbmEntities.h"
#include "sql/uDbmChildFormatters.h"

/// Reads the pairs of columns of foreign keys.
class TDbmReferenceColumnFormatters : public TDbmChildFormatters
{
public:
    explicit TDbmReferenceColumnFormatters(const TDbmServerFeatures *features)
        : TDbmChildFormatters(features)
    {}

    QString FormatSelectOnDatabase(const QString &database) const;
    TDbmDatabaseReferenceColumnEntity ParseSelectRowOnDatabase(const TDataSet &row) const;
    QString FormatSelectOnForeignKey(const QString &database, const QString &table,
                                     const QString &name) const;
    TDbmReferenceColumnEntity ParseSelectRowOnForeignKey(const TDataSet &row) const;
    /// The first pair; see TDbmTableDDLParser.
    QList<TDbmReferenceColumnEntity> ParseFromTableDDL(const QString &database, const QString &ddl,
                                                       const QString &referenceName) const;
};
