#include "sql/uRawValues.h"

#include "support/uDateTime.h"

#include <cstring>

namespace {

constexpr qsizetype SafeDigits = 15; // a double brings so many decimal digits back

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

int Digit(QByteArrayView bytes, qsizetype at)
{
    return bytes[at] - '0';
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

} // namespace

bool TRawValues::IsAscii(QByteArrayView bytes)
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

qint64 TRawValues::CountUnits(QByteArrayView bytes)
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
        // Most letters beyond ASCII take two bytes.
        if (*at >= 0xC2 && *at < 0xE0 && end - at >= 2 && (at[1] & 0xC0) == 0x80) {
            at += 2;
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

bool TRawValues::IsOrdinaryDay(QByteArrayView bytes)
{
    if (bytes.size() < 10 || (Digit(bytes, 0) | Digit(bytes, 1) | Digit(bytes, 2)) == 0)
        return false;
    const int month = Digit(bytes, 5) * 10 + Digit(bytes, 6);
    const int day = Digit(bytes, 8) * 10 + Digit(bytes, 9);
    return month >= 1 && month <= 12 && day >= 1 && day <= 28;
}

bool TRawValues::IsCalendarDay(QByteArrayView bytes)
{
    if (bytes.size() < 10)
        return false;
    const int year =
        ((Digit(bytes, 0) * 10 + Digit(bytes, 1)) * 10 + Digit(bytes, 2)) * 10 + Digit(bytes, 3);
    TDateTime date;
    return TDateTime::TryEncode(year, Digit(bytes, 5) * 10 + Digit(bytes, 6),
                                Digit(bytes, 8) * 10 + Digit(bytes, 9), 0, 0, 0, date);
}

bool TRawValues::IsPlainFloat(QByteArrayView bytes)
{
    if (bytes.startsWith('-'))
        bytes = bytes.sliced(1);
    if (bytes.isEmpty() || bytes.size() > SafeDigits + 1)
        return false;
    qsizetype point = -1;
    for (qsizetype i = 0; i < bytes.size(); ++i) {
        if (bytes[i] == '.' && point < 0)
            point = i;
        else if (bytes[i] < '0' || bytes[i] > '9')
            return false;
    }
    if (point < 0)
        return bytes.size() <= SafeDigits && (bytes.size() == 1 || bytes[0] != '0');
    const bool leadingZero = bytes[0] == '0' && bytes.size() > 1;
    // Below a tenth the form may have an exponent.
    const bool small = leadingZero && (point != 1 || bytes.size() < 3 || bytes[2] == '0');
    return point > 0 && !small && bytes.back() != '0' && bytes.back() != '.';
}

bool TRawValues::IsLongNumber(QByteArrayView bytes)
{
    return SignificantDigits(bytes) > SafeDigits;
}
