#pragma once

#include "client/uDataSet.h"
#include "model/uDbmEntities.h"
#include "sql/uDbmChildFormatters.h"

/// Reads the columns of indexes.
class TDbmIndexColumnFormatters : public TDbmChildFormatters
{
public:
    explicit TDbmIndexColumnFormatters(const TDbmServerFeatures *features)
        : TDbmChildFormatters(features)
    {}

    QList<TDbmIndexColumnEntity> ParseFromTableDDL(const QString &database, const QString &ddl,
                                                   const TDbmIndexEntity &index) const;
    QString FormatSelectOnDatabase(const QString &database) const;
    /// Deliberate: the position reads 0, the order of the rows carries it.
    TDbmDatabaseIndexColumnEntity ParseSelectOnDatabaseRow(const TDataSet &row) const;
};
