#pragma once

#include "support/uVariant.h"

class TDbmCommand;

/// Account names, parameterised update statements and access to a single cell.
class TDbmSqlUtils
{
public:
    /// 'user'@'host'; an empty host is written %.
    static QString FormatUserHost(const QString &user, const QString &host);
    /// Deliberate: a null value is written `= NULL`; the IS NULL form is that of
    /// TDbmStatementsFormatters.
    static QString FormatWhere(const QStringList &fields, const TVariantList &values);
    static QString FormatGetFieldValue(const QString &database, const QString &table,
                                       const QStringList &keyFields, const TVariantList &keyValues,
                                       const QString &fieldName);
    static QString FormatSetFieldValue(const QString &database, const QString &table,
                                       const QStringList &keyFields, const TVariantList &keyValues,
                                       const QString &fieldName, const TVariant &value);
    /// Null when no row has the key. Raises EDacMySqlError.
    static TVariant ExecuteGetFieldValue(TDbmCommand &command, const QString &database,
                                         const QString &table, const QStringList &keyFields,
                                         const TVariantList &keyValues, const QString &fieldName);
    static void ExecuteSetFieldValue(TDbmCommand &command, const QString &database,
                                     const QString &table, const QStringList &keyFields,
                                     const TVariantList &keyValues, const QString &fieldName,
                                     const TVariant &value);

    /// Statements with named parameters: `:a` is the new value of `a`, `:OLD_a` its former one.
    static QString FormatUpdateSQLInsert(const QString &database, const QString &table,
                                         const QStringList &fields);
    static QString FormatUpdateSQLUpdate(const QString &database, const QString &table,
                                         const QStringList &keyFields, const QStringList &fields);
    static QString FormatUpdateSQLDelete(const QString &database, const QString &table,
                                         const QStringList &keyFields);
};
