#pragma once

#include "client/uDataSet.h"
#include "model/uDbmEntities.h"
#include "sql/uDbmFieldFormatters.h"
#include "sql/uDbmIndexFormatters.h"

/// Statements about tables.
class TDbmTableFormatters : public TDbmChildFormatters
{
public:
    explicit TDbmTableFormatters(const TDbmServerFeatures *features)
        : TDbmChildFormatters(features), FFields(features), FIndexes(features)
    {}

    QString FormatSelect(const QString &database) const;
    QString FormatSelectRow(const QString &database, const QString &table) const;
    TDbmTableEntity ParseSelectRow(const TDataSet &row) const;
    QString FormatSelectDDL(const QString &database, const QString &table) const;
    QString ParseSelectDDL(const TDataSet &row) const;

    /// `indexColumns[i]` belongs to `indexes[i]`. A collation that equals the default one is not
    /// written.
    QString FormatCreate(const QString &database, const TDbmTableEntity &entity,
                         const QString &defaultCollation,
                         const QList<QList<TDbmIndexColumnEntity>> &indexColumns,
                         const QList<TDbmIndexEntity> &indexes,
                         const QList<TDbmFieldEntity> &fields) const;
    /// With one column and a primary key on it, as a new table starts.
    QString FormatCreate(const QString &database, const TDbmTableEntity &entity,
                         const QString &defaultCollation) const;
    /// All options, also those that did not change. The name stays.
    QString FormatUpdate(const QString &database, const QString &table,
                         const TDbmTableEntity &entity) const;
    QString FormatDelete(const QString &database, const QString &table) const;
    QString FormatRename(const QString &database, const QString &oldName,
                         const QString &newName) const;
    QString FormatTruncate(const QString &database, const QString &table) const;
    QString FormatChecksum(const QString &database, const QString &table) const;
    qint64 ParseChecksum(const TDataSet &row) const;
    QString FormatUpdateDisableKeys(const QString &database, const QString &table) const;
    QString FormatUpdateEnableKeys(const QString &database, const QString &table) const;

private:
    QString FormatFetch(const QString &condition) const;
    QStringList FormatOptions(const TDbmTableEntity &entity, const QString &defaultCollation,
                              bool isNew) const;

    TDbmFieldFormatters FFields;
    TDbmIndexFormatters FIndexes;
};
