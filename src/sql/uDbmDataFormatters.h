#pragma once

#include "sql/uDbmChildFormatters.h"
#include "support/uVariant.h"

/// Statements that read and change rows. Values go into the text as literals. The caller hands in
/// the columns that identify a row: with none, an update or a delete meets every row.
class TDbmDataFormatters : public TDbmChildFormatters
{
public:
    explicit TDbmDataFormatters(const TDbmServerFeatures *features) : TDbmChildFormatters(features)
    {}

    QString FormatSelectRowCount(const QString &database, const QString &table) const;
    /// `whereText` is the user's own condition, inserted as it is.
    QString FormatSelectRowCount(const QString &database, const QString &table,
                                 const QString &whereText) const;
    QString FormatSelectRow(const QString &database, const QString &table,
                            const TVariantList &values, const QStringList &fields) const;
    QString FormatInsertRow(const QString &database, const QString &table,
                            const TVariantList &values, const QStringList &fields) const;
    /// Changes one row at most.
    QString FormatUpdateRow(const QString &database, const QString &table,
                            const TVariantList &whereValues, const QStringList &whereFields,
                            const TVariantList &values, const QStringList &fields) const;
    /// Deliberate: deletes every row that matches.
    QString FormatDeleteRow(const QString &database, const QString &table,
                            const TVariantList &whereValues, const QStringList &whereFields) const;
};
