#include "client/uFieldValue.h"

#include "support/uException.h"
#include "support/uFormat.h"
#include "support/uStringUtils.h"

#include <QtEndian>
#include <charconv>

namespace {

// A grid cell shows that much of a binary value; more does not fit on a screen.
constexpr qsizetype ShownBytes = 64;

QString AsciiText(QByteArrayView bytes)
{
    return QString::fromLatin1(bytes);
}

template <typename T>
bool TryNumber(QByteArrayView bytes, T &value)
{
    const char *end = bytes.data() + bytes.size();
    const auto [at, error] = std::from_chars(bytes.data(), end, value);
    return error == std::errc() && at == end;
}

TVariant IntegerValue(const TFieldInfo &info, QByteArrayView bytes)
{
    qint64 value = 0;
    if (info.IsShortYear() || !TryNumber(bytes, value))
        return AsciiText(bytes);
    return value;
}

TVariant FloatValue(QByteArrayView bytes)
{
    double value = 0;
    if (!TryNumber(bytes, value) || TFormat::FloatText(value).toDouble() != value)
        return AsciiText(bytes);
    return value;
}

bool TryBits(QByteArrayView bytes, quint64 &value)
{
    if (bytes.isEmpty() || bytes.size() > 8)
        return false;
    value = 0;
    for (const char byte : bytes)
        value = value << 8 | static_cast<uchar>(byte);
    return true;
}

TVariant BitValue(QByteArrayView bytes)
{
    quint64 value = 0;
    if (!TryBits(bytes, value) || value > static_cast<quint64>(std::numeric_limits<qint64>::max()))
        return bytes.toByteArray();
    return static_cast<qint64>(value);
}

bool TryPart(QByteArrayView text, qsizetype at, qsizetype size, int &part)
{
    return at + size <= text.size() && TryNumber(text.sliced(at, size), part);
}

bool TryTime(QByteArrayView text, qsizetype at, int (&parts)[3])
{
    return text.size() == at + 8 && TryPart(text, at, 2, parts[0]) &&
           TryPart(text, at + 3, 2, parts[1]) && TryPart(text, at + 6, 2, parts[2]);
}

QByteArrayView WithoutZeroFraction(QByteArrayView text)
{
    const qsizetype point = text.indexOf('.');
    if (point < 0)
        return text;
    for (const char digit : text.sliced(point + 1)) {
        if (digit != '0')
            return text;
    }
    return text.first(point);
}

bool TryDateTime(QByteArrayView text, TDateTime &value)
{
    int date[3], time[3] = {0, 0, 0};
    if (!TryPart(text, 0, 4, date[0]) || !TryPart(text, 5, 2, date[1]) ||
        !TryPart(text, 8, 2, date[2]))
        return false;
    if (text.size() != 10 && !TryTime(text, 11, time))
        return false;
    return TDateTime::TryEncode(date[0], date[1], date[2], time[0], time[1], time[2], value);
}

bool TryTimeOfDay(QByteArrayView text, TDateTime &value)
{
    int time[3];
    return TryTime(text, 0, time) && TDateTime::TryEncodeTime(time[0], time[1], time[2], value);
}

// A date-time is written as a date alone at midnight and as a time alone on the day that counts
// as 0, so only the text that comes out tells whether the value survives.
TVariant DateTimeValue(const TFieldInfo &info, QByteArrayView bytes)
{
    const QByteArrayView whole = WithoutZeroFraction(bytes);
    TDateTime value;
    const bool parsed =
        info.DataType == ftTime ? TryTimeOfDay(whole, value) : TryDateTime(whole, value);
    if (!parsed)
        return AsciiText(bytes);
    const QString written = TVariant(value).ToString();
    const QString text = AsciiText(whole);
    const bool midnight =
        info.DataType == ftDateTime && text == written + QStringLiteral(" 00:00:00");
    return written == text || midnight ? TVariant(value) : TVariant(AsciiText(bytes));
}

TVariant TextValue(const TFieldInfo &info, QByteArrayView bytes)
{
    QString text;
    return info.Codec->TryDecode(bytes, text) ? TVariant(text) : TVariant(bytes.toByteArray());
}

QString HexText(QByteArrayView bytes)
{
    return QStringLiteral("0x") + TStringUtils::BinToHex(bytes.data(), bytes.size());
}

QString ShortHexText(QByteArrayView bytes)
{
    if (bytes.isEmpty())
        return {};
    if (bytes.size() <= ShownBytes)
        return HexText(bytes);
    return HexText(bytes.first(ShownBytes)) +
           TFormat::Format("... (%s)", {TFormat::SizeText(bytes.size())});
}

QString Cut(const QString &text, int maxChars)
{
    return text.size() <= maxChars ? text : text.left(maxChars) + QChar(0x2026);
}

TVariant BitFromText(const QString &text)
{
    bool ok = false;
    quint64 bits = text.toULongLong(&ok);
    if (!ok && text.startsWith(u"0x", Qt::CaseInsensitive))
        bits = text.mid(2).toULongLong(&ok, 16);
    if (!ok && text.startsWith(u"b'") && text.endsWith(u'\''))
        bits = text.mid(2).chopped(1).toULongLong(&ok, 2);
    if (!ok)
        throw EException(TFormat::Format("\"%s\" is not a number of bits.", {text}));
    if (bits <= static_cast<quint64>(std::numeric_limits<qint64>::max()))
        return static_cast<qint64>(bits);
    bits = qToBigEndian(bits);
    return QByteArray(reinterpret_cast<const char *>(&bits), sizeof(bits));
}

} // namespace

TVariant TFieldValue::Value(const TFieldInfo &info, QByteArrayView bytes)
{
    switch (info.DataType) {
    case ftSmallint:
    case ftInteger:
    case ftWord:
    case ftLargeint:
    case ftULargeint:
    case ftAutoInc:
        return IntegerValue(info, bytes);
    case ftFloat:
        return FloatValue(bytes);
    case ftBit:
        return BitValue(bytes);
    case ftDate:
    case ftTime:
    case ftDateTime:
        return DateTimeValue(info, bytes);
    case ftBytes:
    case ftBlob:
    case ftGeometry:
        return bytes.isEmpty() ? TVariant(QString(QLatin1String("")))
                               : TVariant(bytes.toByteArray());
    default:
        return info.IsText ? TextValue(info, bytes) : TVariant(AsciiText(bytes));
    }
}

QString TFieldValue::Text(const TFieldInfo &info, QByteArrayView bytes)
{
    quint64 bits = 0;
    if (info.DataType == ftBit && TryBits(bytes, bits))
        return QString::number(bits);
    return info.IsText ? info.Codec->Decode(bytes) : AsciiText(bytes);
}

QString TFieldValue::DisplayText(const TFieldInfo &info, QByteArrayView bytes, int maxChars)
{
    if (info.IsBinary())
        return ShortHexText(bytes);
    if (maxChars < 0 || !info.IsText)
        return Text(info, bytes);
    // One character more than shown tells that there are more; a character that the cut goes
    // through lies behind it.
    const qsizetype enough = (static_cast<qsizetype>(maxChars) + 2) * info.Codec->MaxBytes();
    return Cut(info.Codec->Decode(bytes.first(qMin(bytes.size(), enough))), maxChars);
}

QString TFieldValue::EditText(const TFieldInfo &info, QByteArrayView bytes)
{
    if (info.IsBinary())
        return bytes.isEmpty() ? QString() : HexText(bytes);
    return Text(info, bytes);
}

bool TFieldValue::TryParseHex(const QString &text, QByteArray &bytes)
{
    if (!text.startsWith(u"0x") || text.size() % 2 != 0)
        return false;
    const QByteArray digits = text.mid(2).toLatin1();
    bytes = TStringUtils::HexToBytes(text.mid(2));
    return bytes.size() * 2 == digits.size() && bytes.toHex().toUpper() == digits.toUpper();
}

TVariant TFieldValue::FromEditor(const TFieldInfo &info, const TVariant &typed)
{
    if (!typed.IsString())
        return typed;
    const QString text = typed.As<QString>();
    QByteArray bytes;
    if (info.IsBinary() && TryParseHex(text, bytes) && !bytes.isEmpty())
        return bytes;
    if (info.DataType == ftBit)
        return BitFromText(text.trimmed());
    return typed;
}
