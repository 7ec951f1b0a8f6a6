#include "sql/uDbmRowFormatter.h"

#include "client/uFieldValue.h"
#include "sql/uDbmSqlValueUtils.h"
#include "sql/uRawValues.h"

#include <cstring>
#ifdef __SSE2__
#include <emmintrin.h>
#endif

namespace {

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
    if (TRawValues::IsZero(bytes) && FFields[column].IsAutoIncrement())
        FNeeds |= rnZeroAutoIncrement;
    const bool plain = bytes.size() == 1 || (bytes.size() <= 18 && bytes[0] != '0');
    return plain && !FFields[column].IsShortYear() ? PutAscii(bytes, out)
                                                   : PutValue(column, bytes, out);
}

char *TDbmRowFormatter::PutFloat(size_t column, QByteArrayView bytes, char *out)
{
    if (TRawValues::IsZero(bytes) && FFields[column].IsAutoIncrement())
        FNeeds |= rnZeroAutoIncrement;
    // More digits than a literal would keep stand as the server wrote them.
    const bool asItIs = TRawValues::IsPlainFloat(bytes) || TRawValues::IsLongNumber(bytes);
    return asItIs ? PutQuoted(bytes, out) : PutValue(column, bytes, out);
}

char *TDbmRowFormatter::PutDate(size_t column, QByteArrayView bytes, char *out)
{
    const bool isTime = FFields[column].DataType == ftTime;
    if (!isTime && !TRawValues::IsOrdinaryDay(bytes) && !TRawValues::IsCalendarDay(bytes))
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
    const qint64 units = TRawValues::CountUnits(bytes);
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
