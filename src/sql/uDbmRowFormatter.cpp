#include "sql/uDbmRowFormatter.h"

#include "client/uFieldValue.h"
#include "sql/uDbmSqlValueUtils.h"

#include <charconv>
#include <cstring>
#ifdef __SSE2__
#include <emmintrin.h>
#endif

namespace {

constexpr qsizetype SafeDigits = 15; // a double brings so many decimal digits back

qint64 AppendAscii(QByteArrayView bytes, QByteArray &text)
{
    text.append(bytes);
    return bytes.size();
}

qint64 AppendQuoted(QByteArrayView bytes, QByteArray &text)
{
    text.append('\'').append(bytes).append('\'');
    return bytes.size() + 2;
}

qint64 AppendHex(QByteArrayView bytes, QByteArray &text)
{
    static constexpr char Digits[] = "0123456789ABCDEF";
    const qsizetype start = text.size();
    text.resize(start + 2 + bytes.size() * 2);
    char *out = text.data() + start;
    *out++ = '0';
    *out++ = 'x';
    for (const char byte : bytes) {
        *out++ = Digits[static_cast<uchar>(byte) >> 4];
        *out++ = Digits[static_cast<uchar>(byte) & 15];
    }
    return 2 + bytes.size() * 2;
}

// The letter behind the backslash; 0 for a byte that stands as it is.
constexpr char EscapeOf(uchar byte)
{
    switch (byte) {
    case 0:
        return '0';
    case 8:
        return 'b';
    case 9:
        return 't';
    case 10:
        return 'n';
    case 13:
        return 'r';
    case 26:
        return 'Z';
    case '"':
    case '\'':
    case '\\':
        return static_cast<char>(byte);
    default:
        return 0;
    }
}

// Bytes that the reader of script files drops and that have no escape.
constexpr bool IsLostInFiles(uchar byte)
{
    return (byte >= 1 && byte <= 7) || byte == 11 || byte == 12;
}

struct TEscaped
{
    char *End;         // nullptr: the text cannot stand in quotes
    qsizetype Escapes; // backslashes added
};

#ifdef __SSE2__
// Whether a byte of sixteen may need a look: control characters, quotes, backslash.
inline bool IsClean(__m128i bytes)
{
    const __m128i control = _mm_cmpeq_epi8(_mm_min_epu8(bytes, _mm_set1_epi8(31)), bytes);
    const __m128i quote = _mm_or_si128(_mm_cmpeq_epi8(bytes, _mm_set1_epi8('\'')),
                                       _mm_cmpeq_epi8(bytes, _mm_set1_epi8('"')));
    const __m128i backslash = _mm_cmpeq_epi8(bytes, _mm_set1_epi8('\\'));
    return _mm_movemask_epi8(_mm_or_si128(_mm_or_si128(control, quote), backslash)) == 0;
}
#endif

// Room for twice the bytes and for sixteen more is behind `out`.
TEscaped Escape(QByteArrayView bytes, char *out)
{
    const char *from = bytes.data();
    const char *const end = from + bytes.size();
    qsizetype escapes = 0, zeros = 0;
    while (from != end) {
        const char *stop = end;
#ifdef __SSE2__
        while (end - from >= 16) {
            const __m128i block = _mm_loadu_si128(reinterpret_cast<const __m128i *>(from));
            if (!IsClean(block))
                break;
            _mm_storeu_si128(reinterpret_cast<__m128i *>(out), block);
            from += 16;
            out += 16;
        }
        stop = from + qMin<qsizetype>(16, end - from);
#endif
        for (; from != stop; ++from) {
            const auto byte = static_cast<uchar>(*from);
            if (IsLostInFiles(byte))
                return {nullptr, 0};
            if (const char escape = EscapeOf(byte)) {
                *out++ = '\\';
                *out++ = escape;
                ++escapes;
                zeros += byte == 0;
            } else {
                *out++ = *from;
            }
        }
    }
    // A NUL alone does not make a text be escaped, and raw it would not come back.
    return {zeros > 0 && zeros == escapes ? nullptr : out, escapes};
}

bool IsAscii(QByteArrayView bytes)
{
    const char *at = bytes.data();
    const char *end = at + bytes.size();
    for (; end - at >= 8; at += 8) {
        quint64 word;
        std::memcpy(&word, at, 8);
        if (word & 0x8080808080808080)
            return false;
    }
    for (; at < end; ++at)
        if (*at & 0x80)
            return false;
    return true;
}

int Digit(QByteArrayView bytes, qsizetype at)
{
    return bytes[at] - '0';
}

// Whether every calendar has the day; false leaves the question open.
bool IsOrdinaryDay(QByteArrayView bytes)
{
    if (bytes.size() < 10 || (Digit(bytes, 0) | Digit(bytes, 1) | Digit(bytes, 2)) == 0)
        return false;
    const int month = Digit(bytes, 5) * 10 + Digit(bytes, 6);
    const int day = Digit(bytes, 8) * 10 + Digit(bytes, 9);
    return month >= 1 && month <= 12 && day >= 1 && day <= 28;
}

bool IsCalendarDay(QByteArrayView bytes)
{
    if (bytes.size() < 10)
        return false;
    const int year = bytes.first(4).toByteArray().toInt();
    TDateTime date;
    return TDateTime::TryEncode(year, Digit(bytes, 5) * 10 + Digit(bytes, 6),
                                Digit(bytes, 8) * 10 + Digit(bytes, 9), 0, 0, 0, date);
}

// Whether the text is what the shortest form with 15 digits gives back.
bool IsPlainFloat(QByteArrayView bytes)
{
    if (bytes.startsWith('-'))
        bytes = bytes.sliced(1);
    if (bytes.isEmpty() || bytes.size() > SafeDigits)
        return false;
    qsizetype point = -1;
    for (qsizetype i = 0; i < bytes.size(); ++i) {
        if (bytes[i] == '.' && point < 0)
            point = i;
        else if (bytes[i] < '0' || bytes[i] > '9')
            return false;
    }
    const bool leadingZero = bytes[0] == '0' && bytes.size() > 1;
    if (point < 0)
        return bytes.size() == 1 || bytes[0] != '0';
    // Below a tenth the form may have an exponent.
    const bool small = leadingZero && (point != 1 || bytes.size() < 3 || bytes[2] == '0');
    return point > 0 && !small && bytes.back() != '0' && bytes.back() != '.';
}

} // namespace

TDbmRowFormatter::TDbmRowFormatter(std::vector<TFieldInfo> fields, std::vector<TColumn> columns)
    : FFields(std::move(fields)), FColumns(std::move(columns))
{
    for (const TFieldInfo &field : FFields)
        FKinds.push_back(KindOf(field));
}

TDbmRowFormatter::TKind TDbmRowFormatter::KindOf(const TFieldInfo &field)
{
    switch (field.DataType) {
    case ftSmallint:
    case ftInteger:
    case ftWord:
    case ftLargeint:
    case ftULargeint:
    case ftAutoInc:
        return rkInteger;
    case ftFloat:
        return rkFloat;
    case ftBCD:
        return rkPlain;
    case ftDate:
    case ftTime:
    case ftDateTime:
        return rkDate;
    case ftBytes:
    case ftBlob:
    case ftGeometry:
        return rkBytes;
    default:
        break;
    }
    const bool utf8 = field.IsText && field.Codec && field.Codec->Name().startsWith("utf8");
    return utf8 ? rkUtf8 : rkOther;
}

qint64 TDbmRowFormatter::Append(const TMyQuery::TRowView &row, QByteArray &text)
{
    qint64 size = AppendAscii("(", text);
    for (size_t i = 0; i < FFields.size(); ++i) {
        if (i > 0)
            size += AppendAscii(", ", text);
        if (!FColumns[i].IsKnown)
            continue;
        if (FColumns[i].IsGenerated || (!row.Cells[i] && !FColumns[i].IsNullable))
            size += AppendAscii("DEFAULT", text);
        else if (!row.Cells[i])
            size += AppendAscii("NULL", text);
        else
            size += AppendCell(i, {row.Cells[i], static_cast<qsizetype>(row.Lengths[i])}, text);
    }
    return size + AppendAscii(")", text);
}

qint64 TDbmRowFormatter::AppendCell(size_t column, QByteArrayView bytes, QByteArray &text)
{
    switch (FKinds[column]) {
    case rkInteger:
        return AppendInteger(column, bytes, text);
    case rkFloat:
        return AppendFloat(column, bytes, text);
    case rkPlain:
        return AppendQuoted(bytes, text);
    case rkDate:
        return AppendDate(column, bytes, text);
    case rkBytes:
        return bytes.isEmpty() ? AppendAscii("''", text) : AppendHex(bytes, text);
    case rkUtf8:
        return AppendText(column, bytes, text);
    case rkOther:
        break;
    }
    return AppendValue(column, bytes, text);
}

qint64 TDbmRowFormatter::AppendInteger(size_t column, QByteArrayView bytes, QByteArray &text)
{
    if (bytes == "0" && FFields[column].IsAutoIncrement())
        FNeeds |= rnZeroAutoIncrement;
    const bool plain = bytes.size() == 1 || (bytes.size() <= 18 && bytes[0] != '0');
    return plain && !FFields[column].IsShortYear() ? AppendAscii(bytes, text)
                                                   : AppendValue(column, bytes, text);
}

qint64 TDbmRowFormatter::AppendFloat(size_t column, QByteArrayView bytes, QByteArray &text)
{
    if (FFields[column].IsAutoIncrement() && bytes == "0")
        FNeeds |= rnZeroAutoIncrement;
    return IsPlainFloat(bytes) ? AppendQuoted(bytes, text) : AppendValue(column, bytes, text);
}

qint64 TDbmRowFormatter::AppendDate(size_t column, QByteArrayView bytes, QByteArray &text)
{
    const bool isTime = FFields[column].DataType == ftTime;
    if (!isTime && !IsOrdinaryDay(bytes) && !IsCalendarDay(bytes))
        FNeeds |= rnLaxDates;
    // Only a fraction of nothing and midnight are written in another form than they are read.
    const bool asItIs =
        !bytes.contains('.') && (isTime || bytes.size() == 10 || !bytes.endsWith(" 00:00:00"));
    return asItIs ? AppendQuoted(bytes, text) : AppendValue(column, bytes, text);
}

qint64 TDbmRowFormatter::AppendText(size_t column, QByteArrayView bytes, QByteArray &text)
{
    const TFieldInfo &field = FFields[column];
    if (bytes.isEmpty() && !FColumns[column].HasEmptyMember)
        FNeeds |= rnLaxEnums;
    qint64 size = bytes.size();
    if (!IsAscii(bytes)) {
        if (!field.Codec->TryDecode(bytes, FDecoded))
            return AppendHex(bytes, text);
        size = FDecoded.size();
    }
    const qsizetype start = text.size();
    text.resize(start + bytes.size() * 2 + 18);
    text[start] = '\'';
    const TEscaped escaped = Escape(bytes, text.data() + start + 1);
    if (!escaped.End) {
        text.resize(start);
        const qint64 word = AppendAscii("_" + field.Codec->Name() + " ", text);
        return word + AppendHex(bytes, text);
    }
    *escaped.End = '\'';
    text.resize(escaped.End + 1 - text.constData());
    return size + escaped.Escapes + 2;
}

qint64 TDbmRowFormatter::AppendValue(size_t column, QByteArrayView bytes, QByteArray &text) const
{
    const TFieldInfo &field = FFields[column];
    const TVariant value = TFieldValue::Value(field, bytes);
    const QString literal = TDbmSqlValueUtils::FormatVariantValue(value, true);
    const QByteArray encoded = literal.toUtf8();
    for (const char byte : encoded) {
        if (byte == 0 || IsLostInFiles(static_cast<uchar>(byte))) {
            const qint64 word = AppendAscii("_" + field.Codec->Name() + " ", text);
            return word + AppendHex(bytes, text);
        }
    }
    text.append(encoded);
    return literal.size();
}
