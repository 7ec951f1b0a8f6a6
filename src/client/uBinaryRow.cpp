#include "client/uBinaryRow.h"

#include <QtEndian>
#include <algorithm>
#include <bit>
#include <charconv>
#include <cmath>
#include <cstring>
#include <mysql.h>

namespace {

constexpr uint NotFixed = 31;       // decimals of a double that has no fixed number of them
constexpr uint MostFraction = 6;    // digits of a second
constexpr size_t LongestText = 384; // a double of 309 digits and 30 decimals is the longest
constexpr int MostPlainDigits = 15; // zeros that a double is written with, not an exponent
constexpr int SingleDigits = 6;     // that a FLOAT shows, fewer than it has
constexpr uchar Positive = 0;

int FieldType(const st_mysql_field &field)
{
    return static_cast<int>(field.type);
}

quint64 UnsignedAt(const uchar *at, int size)
{
    quint64 value = 0;
    std::memcpy(&value, at, static_cast<size_t>(size));
    return qFromLittleEndian(value);
}

qint64 SignedAt(const uchar *at, int size)
{
    const int shift = 64 - size * 8;
    return static_cast<qint64>(UnsignedAt(at, size) << shift) >> shift;
}

char *PutDigits(char *out, quint64 value, uint count)
{
    for (uint i = count; i > 0; --i, value /= 10)
        out[i - 1] = static_cast<char>('0' + value % 10);
    return out + count;
}

char *PutFraction(char *out, uint microseconds, uint digits)
{
    if (digits == 0)
        return out;
    *out++ = '.';
    for (uint i = digits; i < MostFraction; ++i)
        microseconds /= 10;
    return PutDigits(out, microseconds, digits);
}

char *PutClock(char *out, const uchar *at)
{
    for (int i = 0; i < 3; ++i) {
        if (i > 0)
            *out++ = ':';
        out = PutDigits(out, at[i], 2);
    }
    return out;
}

// Digits of the shortest number that reads back as the same value, and the place of the point.
struct TShortest
{
    char Digits[24];
    int Count = 0;
    int Point = 0;

    explicit TShortest(double value)
    {
        char text[40];
        Read(text,
             std::to_chars(text, text + sizeof text, value, std::chars_format::scientific).ptr);
    }

    /// With so many digits at most.
    TShortest(double value, int digits)
    {
        char text[40];
        Read(text, std::to_chars(text, text + sizeof text, value, std::chars_format::scientific,
                                 digits - 1)
                       .ptr);
        while (Count > 1 && Digits[Count - 1] == '0')
            --Count;
    }

private:
    void Read(const char *at, const char *end)
    {
        for (; at != end && *at != 'e'; ++at)
            if (*at != '.')
                Digits[Count++] = *at;
        ++at;
        at += *at == '+';
        std::from_chars(at, end, Point);
        ++Point;
    }
};

char *PutPlain(char *out, const TShortest &number)
{
    if (number.Point <= 0) {
        *out++ = '0';
        *out++ = '.';
        out = std::fill_n(out, -number.Point, '0');
    }
    for (int i = 0; i < number.Count; ++i) {
        if (i > 0 && i == number.Point)
            *out++ = '.';
        *out++ = number.Digits[i];
    }
    return std::fill_n(out, qMax(0, number.Point - number.Count), '0');
}

char *PutExponent(char *out, const TShortest &number)
{
    *out++ = number.Digits[0];
    if (number.Count > 1) {
        *out++ = '.';
        out = std::copy_n(number.Digits + 1, number.Count - 1, out);
    }
    *out++ = 'e';
    return std::to_chars(out, out + 8, number.Point - 1).ptr;
}

// With so many decimals; behind the digits that tell the value the server writes zeros.
char *PutFixed(char *out, double value, int decimals)
{
    const TShortest number(std::abs(value));
    const int known = qMax(0, number.Count - number.Point);
    if (known > decimals)
        return std::to_chars(out, out + LongestText, value, std::chars_format::fixed, decimals).ptr;
    if (std::signbit(value))
        *out++ = '-';
    out = PutPlain(out, number);
    if (known == 0 && decimals > 0)
        *out++ = '.';
    return std::fill_n(out, decimals - known, '0');
}

// As the server writes a double: plain digits, unless that takes zeros that say nothing.
char *PutFloating(char *out, double value, bool isSingle)
{
    if (std::signbit(value)) {
        *out++ = '-';
        value = -value;
    }
    const TShortest number = isSingle ? TShortest(value, SingleDigits) : TShortest(value);
    const bool plain = number.Point > -MostPlainDigits &&
                       (number.Point <= MostPlainDigits || number.Count > number.Point);
    return plain ? PutPlain(out, number) : PutExponent(out, number);
}

// Bytes behind a length of one to nine bytes (the protocol's length-encoded integer).
const uchar *TakeLength(const uchar *at, quint64 &length)
{
    const auto wide = [&](int size) {
        length = UnsignedAt(at + 1, size);
        return at + 1 + size;
    };
    switch (*at) {
    case 252:
        return wide(2);
    case 253:
        return wide(3);
    case 254:
        return wide(8);
    default:
        length = *at;
        return at + 1;
    }
}

// Zeros in front, up to the width that the column was declared with.
char *FillZeros(char *start, char *end, qint64 width)
{
    const qint64 missing = width - (end - start);
    if (missing <= 0)
        return end;
    std::memmove(start + missing, start, static_cast<size_t>(end - start));
    std::memset(start, '0', static_cast<size_t>(missing));
    return end + missing;
}

bool HasFraction(const st_mysql_field &field)
{
    switch (FieldType(field)) {
    case MYSQL_TYPE_TIME:
    case MYSQL_TYPE_DATETIME:
    case MYSQL_TYPE_TIMESTAMP:
        return true;
    default:
        return false;
    }
}

} // namespace

bool TBinaryRow::CanShow(const st_mysql_field &field)
{
    // Types that are newer than the library's table of them.
    if (FieldType(field) > MYSQL_TYPE_TIME2 && FieldType(field) < MYSQL_TYPE_JSON)
        return false;
    // An expression may leave open how many digits of a second it has.
    return !(HasFraction(field) && field.decimals > MostFraction);
}

TBinaryRow::TBinaryRow(const st_mysql_field *fields, uint count)
    : FFields(fields), FCells(count), FLengths(count), FTexts(count * LongestText)
{}

const uchar *TBinaryRow::Take(uint column, const uchar *at)
{
    const st_mysql_field &field = FFields[column];
    if (!at) {
        FCells[column] = nullptr;
        FLengths[column] = 0;
        return nullptr;
    }
    FCells[column] = FNext;
    switch (FieldType(field)) {
    case MYSQL_TYPE_TINY:
        at = TakeInteger(field, at, 1);
        break;
    case MYSQL_TYPE_SHORT:
    case MYSQL_TYPE_YEAR:
        at = TakeInteger(field, at, 2);
        break;
    case MYSQL_TYPE_INT24:
    case MYSQL_TYPE_LONG:
        at = TakeInteger(field, at, 4);
        break;
    case MYSQL_TYPE_LONGLONG:
        at = TakeInteger(field, at, 8);
        break;
    case MYSQL_TYPE_FLOAT:
        at = TakeFloating(field, at, sizeof(float));
        break;
    case MYSQL_TYPE_DOUBLE:
        at = TakeFloating(field, at, sizeof(double));
        break;
    case MYSQL_TYPE_DATE:
    case MYSQL_TYPE_DATETIME:
    case MYSQL_TYPE_TIMESTAMP:
        at = TakeDate(field, at);
        break;
    case MYSQL_TYPE_TIME:
        at = TakeTime(field, at);
        break;
    default: {
        quint64 length;
        at = TakeLength(at, length);
        FCells[column] = reinterpret_cast<const char *>(at);
        FLengths[column] = length;
        return at + length;
    }
    }
    FLengths[column] = static_cast<unsigned long>(FNext - FCells[column]);
    return at;
}

const uchar *TBinaryRow::TakeInteger(const st_mysql_field &field, const uchar *at, int size)
{
    char *const start = FNext;
    const bool isYear = FieldType(field) == MYSQL_TYPE_YEAR;
    FNext = (field.flags & UNSIGNED_FLAG) || isYear
                ? std::to_chars(FNext, FNext + LongestText, UnsignedAt(at, size)).ptr
                : std::to_chars(FNext, FNext + LongestText, SignedAt(at, size)).ptr;
    if (isYear || (field.flags & ZEROFILL_FLAG))
        FNext = FillZeros(start, FNext, static_cast<qint64>(field.length));
    return at + size;
}

const uchar *TBinaryRow::TakeFloating(const st_mysql_field &field, const uchar *at, int size)
{
    const bool isSingle = size == sizeof(float);
    const double value =
        isSingle
            ? static_cast<double>(std::bit_cast<float>(static_cast<quint32>(UnsignedAt(at, size))))
            : std::bit_cast<double>(UnsignedAt(at, size));
    char *const start = FNext;
    FNext = field.decimals >= NotFixed ? PutFloating(FNext, value, isSingle)
                                       : PutFixed(FNext, value, static_cast<int>(field.decimals));
    if (field.flags & ZEROFILL_FLAG)
        FNext = FillZeros(start, FNext, static_cast<qint64>(field.length));
    return at + size;
}

const uchar *TBinaryRow::TakeDate(const st_mysql_field &field, const uchar *at)
{
    // What is nothing at its end is not sent.
    uchar parts[11] = {};
    const uchar size = *at++;
    std::memcpy(parts, at, qMin<size_t>(size, sizeof parts));
    FNext = PutDigits(FNext, UnsignedAt(parts, 2), 4);
    *FNext++ = '-';
    FNext = PutDigits(FNext, parts[2], 2);
    *FNext++ = '-';
    FNext = PutDigits(FNext, parts[3], 2);
    if (FieldType(field) != MYSQL_TYPE_DATE) {
        *FNext++ = ' ';
        FNext = PutClock(FNext, parts + 4);
        FNext = PutFraction(FNext, static_cast<uint>(UnsignedAt(parts + 7, 4)), field.decimals);
    }
    return at + size;
}

const uchar *TBinaryRow::TakeTime(const st_mysql_field &field, const uchar *at)
{
    uchar parts[12] = {};
    const uchar size = *at++;
    std::memcpy(parts, at, qMin<size_t>(size, sizeof parts));
    if (parts[0] != Positive)
        *FNext++ = '-';
    const quint64 hours = UnsignedAt(parts + 1, 4) * 24 + parts[5];
    FNext = PutDigits(FNext, hours, hours > 99 ? 3 : 2);
    *FNext++ = ':';
    FNext = PutDigits(FNext, parts[6], 2);
    *FNext++ = ':';
    FNext = PutDigits(FNext, parts[7], 2);
    FNext = PutFraction(FNext, static_cast<uint>(UnsignedAt(parts + 8, 4)), field.decimals);
    return at + size;
}
