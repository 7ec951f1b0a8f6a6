#pragma once

#include "client/uField.h"
#include "support/uVariant.h"

class TVariantUtils
{
public:
    static bool IsBytes(const TVariant &value) { return value.IsBytes(); }
    static TVariantList FromVariantArray(std::initializer_list<TVariant> values) { return values; }
};

/// How formatters read a field of an answer.
class TFieldReading
{
public:
    static QString Text(const TField &field) { return field.AsString(); }
    /// A boolean gives 0 or 1, a text that is no number 0.
    static qint64 Int64(const TField &field) { return field.Value().ToInt(); }
    static bool IsBinaryCollation(const QString &collation)
    {
        return collation.right(4).compare(u"_bin", Qt::CaseInsensitive) == 0;
    }
};
