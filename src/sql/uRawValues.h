#pragma once

#include <QByteArrayView>

/// What can be told of a value by the bytes that the server sent, without making a value of them.
class TRawValues
{
public:
    static bool IsAscii(QByteArrayView bytes);
    /// UTF-16 units of a text; -1 when the bytes are no UTF-8.
    static qint64 CountUnits(QByteArrayView bytes);
    static bool IsZero(QByteArrayView bytes) { return bytes.size() == 1 && bytes[0] == '0'; }
    /// Whether every calendar has the day at the front; false leaves the question open.
    static bool IsOrdinaryDay(QByteArrayView bytes);
    static bool IsCalendarDay(QByteArrayView bytes);
    /// Whether the text is what the shortest form with 15 digits gives back.
    static bool IsPlainFloat(QByteArrayView bytes);
    /// More digits than a double brings back.
    static bool IsLongNumber(QByteArrayView bytes);
};
