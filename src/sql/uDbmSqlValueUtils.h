#pragma once

#include "client/uField.h"
#include "model/uDbmEntities.h"

/// Values to literals and texts to values. Nobody else makes a literal. Any thread.
class TDbmSqlValueUtils
{
public:
    static QString FormatValue(const TDbmValue &value, bool quoted);
    /// Text for a grid; `nullText` stands for null.
    static QString DisplayValue(const TDbmValue &value, const QString &nullText);
    static bool IsNullValue(const TDbmValue &value);
    static TDbmValue NullValue() { return {}; }

    static QString FormatFieldValue(const TField &field, bool quoted);
    static QString FormatVariantValue(const TVariant &value, bool quoted);
    static QString FormatNull() { return "NULL"; }
    static QString FormatDefault() { return "DEFAULT"; }
    static QString FormatCurrentTimeStamp() { return "CURRENT_TIMESTAMP"; }
    static QString FormatBlob(const QByteArray &value);
    static QString FormatString(const QString &value, bool quoted);
    static QString FormatInt(qint64 value) { return QString::number(value); }
    static QString FormatFloat(double value, bool quoted);
    static QString FormatTime(TDateTime value, bool quoted);
    static QString FormatDate(TDateTime value, bool quoted);
    /// A time alone when there is no day, a date alone at midnight, else both. Whole seconds.
    static QString FormatDateTime(TDateTime value, bool quoted);
    static QString FormatBoolean(bool value) { return value ? "TRUE" : "FALSE"; }

    static bool IsCurrentTimeStamp(const QString &text);
    static TVariant ParseString(const QString &text) { return text; }
    /// Each gives `def` when the text does not parse. Dates are yyyy-mm-dd, times hh:mm:ss.
    static TVariant ParseInt(const QString &text, const TVariant &def);
    static TVariant ParseFloat(const QString &text, const TVariant &def);
    static TVariant ParseTime(const QString &text, const TVariant &def);
    static TVariant ParseDate(const QString &text, const TVariant &def);
    static TVariant ParseDateTime(const QString &text, const TVariant &def);
    static TVariant ParseBoolean(const QString &text);
};
