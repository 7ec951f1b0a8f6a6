#include "sql/uDbmSqlValueUtils.h"

#include "sql/uDbmSqlStringFormatter.h"
#include "support/uFormat.h"
#include "support/uRegExUtils.h"
#include "support/uStringUtils.h"

#include <cmath>

namespace {

QString Quote(const QString &text, bool quoted)
{
    return quoted ? u'\'' + text + u'\'' : text;
}

// Qt takes "nan" and "inf" for numbers, for which the server has no literal.
bool TryParseFloat(const QString &text, double &value)
{
    bool ok = false;
    value = text.toDouble(&ok);
    return ok && std::isfinite(value);
}

bool TryParseDate(const QString &text, int &year, int &month, int &day)
{
    const auto match = TRegExUtils::Match(text, "^(\\d{1,4})-(\\d{1,2})-(\\d{1,2})$");
    year = match.captured(1).toInt();
    month = match.captured(2).toInt();
    day = match.captured(3).toInt();
    return match.hasMatch();
}

bool TryParseTime(const QString &text, int &hour, int &minute, int &second)
{
    const auto match = TRegExUtils::Match(text, "^(\\d{1,2}):(\\d{1,2})(?::(\\d{1,2}))?$");
    hour = match.captured(1).toInt();
    minute = match.captured(2).toInt();
    second = match.captured(3).toInt();
    return match.hasMatch();
}

} // namespace

QString TDbmSqlValueUtils::FormatValue(const TDbmValue &value, bool quoted)
{
    return value.ValueType == vtCurrentTimeStamp ? FormatCurrentTimeStamp()
                                                 : FormatVariantValue(value.Value, quoted);
}

QString TDbmSqlValueUtils::DisplayValue(const TDbmValue &value, const QString &nullText)
{
    if (value.ValueType == vtCurrentTimeStamp)
        return "current_timestamp";
    return value.Value.IsNull() ? nullText : value.Value.ToString();
}

bool TDbmSqlValueUtils::IsNullValue(const TDbmValue &value)
{
    return value.ValueType == vtValue && value.Value.IsNull();
}

QString TDbmSqlValueUtils::FormatFieldValue(const TField &field, bool quoted)
{
    return FormatVariantValue(field.Value(), quoted);
}

QString TDbmSqlValueUtils::FormatVariantValue(const TVariant &value, bool quoted)
{
    if (value.IsBytes())
        return FormatBlob(value.As<QByteArray>());
    if (value.IsInt())
        return FormatInt(value.As<qint64>());
    if (value.IsDouble())
        return FormatFloat(value.As<double>(), quoted);
    if (value.IsCurrency())
        return FormatFloat(value.As<TCurrency>().Value, quoted);
    if (value.IsDateTime())
        return FormatDateTime(value.As<TDateTime>(), quoted);
    if (value.IsBool())
        return FormatBoolean(value.As<bool>());
    if (value.IsString())
        return FormatString(value.As<QString>(), quoted);
    // Deliberate: null, and with it every kind that has no literal of its own. An unsigned 64-bit
    // variant is one of them; the result layer hands such values over as text.
    return FormatNull();
}

QString TDbmSqlValueUtils::FormatBlob(const QByteArray &value)
{
    return "0x" + TStringUtils::BytesToHex(value);
}

QString TDbmSqlValueUtils::FormatString(const QString &value, bool quoted)
{
    return Quote(TDbmSqlStringFormatter::Format(value), quoted);
}

QString TDbmSqlValueUtils::FormatFloat(double value, bool quoted)
{
    return Quote(TFormat::FloatText(value), quoted);
}

QString TDbmSqlValueUtils::FormatTime(TDateTime value, bool quoted)
{
    return Quote(value.TimeText(), quoted);
}

QString TDbmSqlValueUtils::FormatDate(TDateTime value, bool quoted)
{
    return Quote(value.DateText(), quoted);
}

QString TDbmSqlValueUtils::FormatDateTime(TDateTime value, bool quoted)
{
    if (!value.HasDate())
        return FormatTime(value, quoted);
    return value.HasTime() ? Quote(value.DateTimeText(), quoted) : FormatDate(value, quoted);
}

bool TDbmSqlValueUtils::IsCurrentTimeStamp(const QString &text)
{
    return text.compare(u"CURRENT_TIMESTAMP", Qt::CaseInsensitive) == 0;
}

TVariant TDbmSqlValueUtils::ParseInt(const QString &text, const TVariant &def)
{
    bool ok = false;
    const qint64 value = text.trimmed().toLongLong(&ok);
    return ok ? TVariant(value) : def;
}

TVariant TDbmSqlValueUtils::ParseFloat(const QString &text, const TVariant &def)
{
    double value;
    return TryParseFloat(text.trimmed(), value) ? TVariant(value) : def;
}

TVariant TDbmSqlValueUtils::ParseTime(const QString &text, const TVariant &def)
{
    int hour, minute, second;
    TDateTime value;
    const bool ok = TryParseTime(text.trimmed(), hour, minute, second) &&
                    TDateTime::TryEncodeTime(hour, minute, second, value);
    return ok ? TVariant(value) : def;
}

TVariant TDbmSqlValueUtils::ParseDate(const QString &text, const TVariant &def)
{
    int year, month, day;
    TDateTime value;
    const bool ok = TryParseDate(text.trimmed(), year, month, day) &&
                    TDateTime::TryEncode(year, month, day, 0, 0, 0, value);
    return ok ? TVariant(value) : def;
}

TVariant TDbmSqlValueUtils::ParseDateTime(const QString &text, const TVariant &def)
{
    const QString trimmed = text.trimmed();
    const qsizetype blank = trimmed.indexOf(u' ');
    if (blank < 0)
        return ParseDate(trimmed, ParseTime(trimmed, def));
    int year, month, day, hour, minute, second;
    TDateTime value;
    const bool ok = TryParseDate(trimmed.left(blank), year, month, day) &&
                    TryParseTime(trimmed.mid(blank + 1).trimmed(), hour, minute, second) &&
                    TDateTime::TryEncode(year, month, day, hour, minute, second, value);
    return ok ? TVariant(value) : def;
}

TVariant TDbmSqlValueUtils::ParseBoolean(const QString &text)
{
    if (text.compare(u"True", Qt::CaseInsensitive) == 0)
        return true;
    if (text.compare(u"False", Qt::CaseInsensitive) == 0)
        return false;
    double number;
    return TryParseFloat(text, number) && number != 0;
}
