#pragma once

#include "client/uDataSet.h"
#include "model/uDbmEntities.h"
#include "sql/uDbmChildFormatters.h"

/// Statements about foreign keys.
class TDbmReferenceFormatters : public TDbmChildFormatters
{
public:
    explicit TDbmReferenceFormatters(const TDbmServerFeatures *features)
        : TDbmChildFormatters(features)
    {}

    QString FormatSelectReferences(const QString &database, const QString &table) const;
    TDbmReferenceEntity ParseSelectRow(const TDataSet &row) const;
    QString FormatSelectDependencies(const QString &database, const QString &table) const;
    TDbmDependencyEntity ParseSelectDependenciesRow(const TDataSet &row) const;
    QList<TDbmReferenceEntity> ParseFromTableDDL(const QString &database, const QString &ddl) const;
    /// A referenced table of `database` is written without it.
    QString FormatAddForeignKey(const TDbmReferenceEntity &reference,
                                const QList<TDbmReferenceColumnEntity> &columns,
                                const QString &database) const;
    QString FormatDropForeignKey(const QString &name) const;
    QString FormatAlterTableAddForeignKey(const QString &database, const QString &table,
                                          const QString &referenceDatabase,
                                          const QList<TDbmReferenceColumnEntity> &columns,
                                          const TDbmReferenceEntity &reference) const;
    QString FormatAlterTableDropForeignKey(const QString &database, const QString &table,
                                           const QString &name) const;
};
