#include "sql/uDbmRowFormatter.h"

#include "client/uFieldValue.h"
#include "sql/uDbmSqlValueUtils.h"
#include "sql/uRawValues.h"

#include <array>
#include <bit>
#include <cstring>
#ifdef __SSE2__
#include <emmintrin.h>
#endif

namespace {

// Most cells are shorter than a call of memcpy is worth: two copies of a fixed size overlap.
template <typename T>
void CopyEnds(char *out, const char *from, size_t size)
{
    T first, last;
    std::memcpy(&first, from, sizeof first);
    std::memcpy(&last, from + size - sizeof last, sizeof last);
    std::memcpy(out, &first, sizeof first);
    std::memcpy(out + size - sizeof last, &last, sizeof last);
}

char *PutAscii(QByteArrayView bytes, char *out)
{
    const auto size = static_cast<size_t>(bytes.size());
    if (size > 16)
        std::memcpy(out, bytes.data(), size);
    else if (size >= 8)
        CopyEnds<quint64>(out, bytes.data(), size);
    else if (size >= 4)
        CopyEnds<quint32>(out, bytes.data(), size);
    else
        for (size_t i = 0; i < size; ++i)
            out[i] = bytes.data()[i];
    return out + size;
}

char *PutQuoted(QByteArrayView bytes, char *out)
{
    *out++ = '\'';
    out = PutAscii(bytes, out);
    *out++ = '\'';
    return out;
}

// The two digits of each byte.
constexpr auto HexPairs = [] {
    constexpr char Digits[] = "0123456789ABCDEF";
    std::array<std::array<char, 2>, 256> pairs{};
    for (size_t i = 0; i < pairs.size(); ++i)
        pairs[i] = {Digits[i >> 4], Digits[i & 15]};
    return pairs;
}();

char *PutHex(QByteArrayView bytes, char *out)
{
    *out++ = '0';
    *out++ = 'x';
    for (const char byte : bytes) {
        std::memcpy(out, HexPairs[static_cast<uchar>(byte)].data(), 2);
        out += 2;
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

/// Writes a text's bytes as they stand between quotes. Room for twice the bytes and for sixteen
/// more is behind `out`.
class TEscaper
{
public:
    explicit TEscaper(char *out) : FOut(out) {}

    /// Gives the end of what was written, or nullptr for a text that cannot stand in quotes.
    char *Run(QByteArrayView bytes)
    {
        const char *from = bytes.data();
        const char *const end = from + bytes.size();
#ifdef __SSE2__
        while (end - from >= BlockSize)
            if (!PutBlock(from))
                return nullptr;
        if (PutCleanRest(from, end - from))
            from = end;
#endif
        for (; from != end; ++from)
            if (!Put(*from))
                return nullptr;
        // A NUL alone does not make a text be escaped, and raw it would not come back.
        return FZeros > 0 && FZeros == FEscapes ? nullptr : FOut;
    }

private:
    bool Put(char c)
    {
        const auto byte = static_cast<uchar>(c);
        if (IsLostInFiles(byte))
            return false;
        if (const char escape = EscapeOf(byte)) {
            *FOut++ = '\\';
            *FOut++ = escape;
            ++FEscapes;
            FZeros += byte == 0;
        } else {
            *FOut++ = c;
        }
        return true;
    }

#ifdef __SSE2__
    static constexpr qsizetype BlockSize = 16;

    // A bit for each byte that may need a look: control characters, quotes, backslash.
    static unsigned Doubtful(__m128i bytes)
    {
        const __m128i control = _mm_cmpeq_epi8(_mm_min_epu8(bytes, _mm_set1_epi8(31)), bytes);
        const __m128i quote = _mm_or_si128(_mm_cmpeq_epi8(bytes, _mm_set1_epi8('\'')),
                                           _mm_cmpeq_epi8(bytes, _mm_set1_epi8('"')));
        const __m128i backslash = _mm_cmpeq_epi8(bytes, _mm_set1_epi8('\\'));
        return static_cast<unsigned>(
            _mm_movemask_epi8(_mm_or_si128(_mm_or_si128(control, quote), backslash)));
    }

    // Up to the first byte that may need a look, and that one.
    bool PutBlock(const char *&from)
    {
        const __m128i block = _mm_loadu_si128(reinterpret_cast<const __m128i *>(from));
        _mm_storeu_si128(reinterpret_cast<__m128i *>(FOut), block);
        const unsigned doubtful = Doubtful(block);
        const int clean = doubtful == 0 ? BlockSize : std::countr_zero(doubtful);
        from += clean;
        FOut += clean;
        return doubtful == 0 || Put(*from++);
    }

    bool PutCleanRest(const char *from, qsizetype size)
    {
        alignas(BlockSize) char rest[BlockSize] = {};
        PutAscii({from, size}, rest);
        const __m128i block = _mm_load_si128(reinterpret_cast<const __m128i *>(rest));
        if (Doubtful(block) & ((1u << size) - 1))
            return false;
        _mm_storeu_si128(reinterpret_cast<__m128i *>(FOut), block);
        FOut += size;
        return true;
    }
#endif

    char *FOut;
    qsizetype FEscapes = 0, FZeros = 0;
};

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
    if (FColumns[column].IsMoment && !bytes.startsWith("0000"))
        FNeeds |= rnUtcTimes;
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
    if (FCodec && !Fits(bytes))
        return PutHexText(FFields[column], bytes, out);
    *out = '\'';
    char *const end = TEscaper(out + 1).Run(bytes);
    if (!end)
        return PutHexText(FFields[column], bytes, out);
    FExtraBytes += bytes.size() - units;
    *end = '\'';
    return end + 1;
}

bool TDbmRowFormatter::Fits(QByteArrayView bytes) const
{
    QByteArray encoded;
    return FCodec->TryEncode(QString::fromUtf8(bytes), encoded);
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
