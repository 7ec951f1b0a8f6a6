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

char *PutAscii(QByteArrayView bytes, char *out)
{
    std::memcpy(out, bytes.data(), static_cast<size_t>(bytes.size()));
    return out + bytes.size();
}

char *PutQuoted(QByteArrayView bytes, char *out)
{
    *out++ = '\'';
    out = PutAscii(bytes, out);
    *out++ = '\'';
    return out;
}

char *PutHex(QByteArrayView bytes, char *out)
{
    static constexpr char Digits[] = "0123456789ABCDEF";
    *out++ = '0';
    *out++ = 'x';
    for (const char byte : bytes) {
        *out++ = Digits[static_cast<uchar>(byte) >> 4];
        *out++ = Digits[static_cast<uchar>(byte) & 15];
    }
    return out;
}

char *PutHexText(const TFieldInfo &field, QByteArrayView bytes, char *out)
{
    *out++ = '_';
    out = PutAscii(field.Codec->Name(), out);
    *out++ = ' ';
    return PutHex(bytes, out);
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

// Gives the end of what was written, or nullptr for a text that cannot stand in quotes. Room for
// twice the bytes and for sixteen more is behind `out`.
char *Escape(QByteArrayView bytes, char *out)
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
                return nullptr;
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
    return zeros > 0 && zeros == escapes ? nullptr : out;
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

// Bytes of the character that begins with this one, ASCII not among them; 0 for none.
int SequenceSize(uchar lead)
{
    if (lead >= 0xF0)
        return lead <= 0xF4 ? 4 : 0;
    if (lead >= 0xE0)
        return 3;
    return lead >= 0xC2 ? 2 : 0;
}

// The second byte rules out forms that are too long, surrogates and what lies above the last code.
bool IsSequence(const uchar *at, int size)
{
    for (int i = 1; i < size; ++i)
        if ((at[i] & 0xC0) != 0x80)
            return false;
    switch (at[0]) {
    case 0xE0:
        return at[1] >= 0xA0;
    case 0xED:
        return at[1] < 0xA0;
    case 0xF0:
        return at[1] >= 0x90;
    case 0xF4:
        return at[1] < 0x90;
    default:
        return true;
    }
}

// UTF-16 units of a text; -1 when the bytes are no UTF-8.
qint64 CountUnits(QByteArrayView bytes)
{
    if (IsAscii(bytes))
        return bytes.size();
    const auto *at = reinterpret_cast<const uchar *>(bytes.data());
    const auto *const end = at + bytes.size();
    qint64 units = 0;
    while (at < end) {
        if (*at < 0x80) {
            ++at;
            ++units;
            continue;
        }
        const int size = SequenceSize(*at);
        if (size == 0 || end - at < size || !IsSequence(at, size))
            return -1;
        at += size;
        units += size == 4 ? 2 : 1;
    }
    return units;
}

bool IsZero(QByteArrayView bytes)
{
    return bytes.size() == 1 && bytes[0] == '0';
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

// Digits of a number without the zeros at both ends.
qsizetype SignificantDigits(QByteArrayView bytes)
{
    qsizetype count = 0, zeros = 0;
    for (const char c : bytes) {
        if (c == 'e' || c == 'E')
            break;
        if (c == '0') {
            ++zeros;
        } else if (c >= '1' && c <= '9') {
            count += count > 0 ? zeros + 1 : 1;
            zeros = 0;
        }
    }
    return count;
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
    const qsizetype start = text.size();
    text.resize(start + LargestSize(row));
    char *out = text.data() + start;
    char *const first = out;
    FExtraBytes = 0;
    *out++ = '(';
    for (size_t i = 0; i < FFields.size(); ++i) {
        if (i > 0)
            out = PutAscii(", ", out);
        if (!FColumns[i].IsKnown)
            continue;
        if (FColumns[i].IsGenerated || (!row.Cells[i] && !FColumns[i].IsNullable))
            out = PutAscii("DEFAULT", out);
        else if (!row.Cells[i])
            out = PutAscii("NULL", out);
        else
            out = PutCell(i, {row.Cells[i], static_cast<qsizetype>(row.Lengths[i])}, out);
    }
    *out++ = ')';
    text.resize(start + (out - first));
    return out - first - FExtraBytes;
}

// Bytes that the row may take at most: each byte of a text may become an escape, hexadecimal digits
// or, from another character set, three bytes with an escape each.
qsizetype TDbmRowFormatter::LargestSize(const TMyQuery::TRowView &row) const
{
    constexpr qsizetype Around = 64; // quotes, separators, a character set's name, a date's text
    qsizetype size = 2;
    for (size_t i = 0; i < FFields.size(); ++i)
        size += static_cast<qsizetype>(row.Lengths[i]) * (FKinds[i] == rkOther ? 6 : 2) + Around;
    return size;
}

char *TDbmRowFormatter::PutCell(size_t column, QByteArrayView bytes, char *out)
{
    switch (FKinds[column]) {
    case rkInteger:
        return PutInteger(column, bytes, out);
    case rkFloat:
        return PutFloat(column, bytes, out);
    case rkPlain:
        return PutQuoted(bytes, out);
    case rkDate:
        return PutDate(column, bytes, out);
    case rkBytes:
        return bytes.isEmpty() ? PutAscii("''", out) : PutHex(bytes, out);
    case rkUtf8:
        return PutText(column, bytes, out);
    case rkOther:
        break;
    }
    return PutValue(column, bytes, out);
}

char *TDbmRowFormatter::PutInteger(size_t column, QByteArrayView bytes, char *out)
{
    if (IsZero(bytes) && FFields[column].IsAutoIncrement())
        FNeeds |= rnZeroAutoIncrement;
    const bool plain = bytes.size() == 1 || (bytes.size() <= 18 && bytes[0] != '0');
    return plain && !FFields[column].IsShortYear() ? PutAscii(bytes, out)
                                                   : PutValue(column, bytes, out);
}

char *TDbmRowFormatter::PutFloat(size_t column, QByteArrayView bytes, char *out)
{
    if (IsZero(bytes) && FFields[column].IsAutoIncrement())
        FNeeds |= rnZeroAutoIncrement;
    // More digits than a literal would keep stand as the server wrote them.
    const bool asItIs = IsPlainFloat(bytes) || SignificantDigits(bytes) > SafeDigits;
    return asItIs ? PutQuoted(bytes, out) : PutValue(column, bytes, out);
}

char *TDbmRowFormatter::PutDate(size_t column, QByteArrayView bytes, char *out)
{
    const bool isTime = FFields[column].DataType == ftTime;
    if (!isTime && !IsOrdinaryDay(bytes) && !IsCalendarDay(bytes))
        FNeeds |= rnLaxDates;
    // Only a fraction of nothing and midnight are written in another form than they are read.
    const bool asItIs =
        !bytes.contains('.') && (isTime || bytes.size() == 10 || !bytes.endsWith(" 00:00:00"));
    return asItIs ? PutQuoted(bytes, out) : PutValue(column, bytes, out);
}

char *TDbmRowFormatter::PutText(size_t column, QByteArrayView bytes, char *out)
{
    if (bytes.isEmpty() && !FColumns[column].HasEmptyMember)
        FNeeds |= rnLaxEnums;
    const qint64 units = CountUnits(bytes);
    if (units < 0)
        return PutHex(bytes, out);
    *out = '\'';
    char *const end = Escape(bytes, out + 1);
    if (!end)
        return PutHexText(FFields[column], bytes, out);
    FExtraBytes += bytes.size() - units;
    *end = '\'';
    return end + 1;
}

char *TDbmRowFormatter::PutValue(size_t column, QByteArrayView bytes, char *out)
{
    const TFieldInfo &field = FFields[column];
    const TVariant value = TFieldValue::Value(field, bytes);
    const QString literal = TDbmSqlValueUtils::FormatVariantValue(value, true);
    const QByteArray encoded = literal.toUtf8();
    for (const char byte : encoded)
        if (byte == 0 || IsLostInFiles(static_cast<uchar>(byte)))
            return PutHexText(field, bytes, out);
    FExtraBytes += encoded.size() - literal.size();
    return PutAscii(encoded, out);
}
