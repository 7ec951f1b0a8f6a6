#pragma once

#include "support/uVariant.h"

/// The clauses that statements share. Pure text, any thread. Those of columns and values raise
/// EException when a column has no value.
class TDbmStatementsFormatters
{
public:
    static QString FormatFields(const QStringList &names);
    static QString FormatValues(const TVariantList &values);
    /// Empty for no fields.
    static QString FormatSet(const QStringList &fields, const TVariantList &values);
    static QString FormatOn(const QString &leftAlias, const QString &rightAlias,
                            const QStringList &rightFields, const QStringList &leftFields);
    /// Equality tests and the user's own condition; a null value is tested by IS NULL.
    static QString FormatWhere(const QStringList &fields, const TVariantList &values,
                               const QString &commandText);
    static QString FormatOrderBy(const QStringList &fields, bool ascending);
    /// An offset below 1 is none, a row count of -1 no limit.
    static QString FormatLimit(qint64 offset, qint64 rowCount);

    static void CheckPairs(const QStringList &fields, const TVariantList &values);
};
