#pragma once

#include "client/uDataSet.h"
#include "model/uDbmEntities.h"
#include "sql/uDbmChildFormatters.h"

/// Statements about databases.
class TDbmDatabaseFormatters : public TDbmChildFormatters
{
public:
    explicit TDbmDatabaseFormatters(const TDbmServerFeatures *features)
        : TDbmChildFormatters(features)
    {}

    /// All databases for an empty name.
    QString FormatFetchQuery(const QString &name) const;
    TDbmDatabaseEntity ParseFetchQueryRow(const TDataSet &row) const;
    QString FormatCreateDatabase(const TDbmDatabaseEntity &entity) const;
    /// Deliberate: without a change the statement has no clause and the server refuses it.
    QString FormatAlterDatabase(const TDbmDatabaseEntity &oldEntity,
                                const TDbmDatabaseEntity &newEntity) const;
    /// For dumps; empty for an empty collation.
    QString FormatAlterDatabaseFull(const TDbmDatabaseEntity &entity) const;
    QString FormatDropDatabase(const QString &name, bool ifExists) const;
    QString FormatUseDatabase(const QString &name) const;
};
