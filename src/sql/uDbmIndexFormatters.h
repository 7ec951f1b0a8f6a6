#pragma once

#include "client/uDataSet.h"
#include "model/uDbmEntities.h"
#include "sql/uDbmChildFormatters.h"

/// Statements about the indexes of a table.
class TDbmIndexFormatters : public TDbmChildFormatters
{
public:
    explicit TDbmIndexFormatters(const TDbmServerFeatures *features) : TDbmChildFormatters(features)
    {}

    /// The primary key, then unique keys, then plain keys, each group in the order of the text.
    QList<TDbmIndexEntity> ParseFromTableDDL(const QString &database, const QString &ddl) const;
    QString FormatSelect(const QString &database, const QString &table) const;
    TDbmIndexEntity ParseSelectRow(const TDataSet &row) const;
    QString FormatDefinition(const TDbmIndexEntity &index,
                             const QList<TDbmIndexColumnEntity> &columns) const;
    QString FormatAddIndex(const TDbmIndexEntity &index,
                           const QList<TDbmIndexColumnEntity> &columns) const;
    /// Only the exact word PRIMARY means the primary key.
    QString FormatDropIndex(const QString &name) const;
    QString FormatAlterTableAddIndex(const QString &database, const QString &table,
                                     const TDbmIndexEntity &index,
                                     const QList<TDbmIndexColumnEntity> &columns) const;
    QString FormatAlterTableDropIndex(const QString &database, const QString &table,
                                      const QString &name) const;
    /// Both at once, for keys that the server does not let go for a moment.
    QString FormatAlterTableReplaceIndex(const QString &database, const QString &table,
                                         const TDbmIndexEntity &index,
                                         const QList<TDbmIndexColumnEntity> &columns,
                                         const QString &oldName) const;
};
