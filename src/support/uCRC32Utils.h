#pragma once

#include <QString>

/// CRC-32 of IEEE 802.3: reflected, polynomial 0xEDB88320, start value and final inversion
/// 0xFFFFFFFF.
class TCRC32Utils
{
public:
    /// Of `length` bytes, at least 1.
    static quint32 CalculateMemory(const void *buffer, qsizetype length);
    /// Of the text's UTF-16 code units, two bytes each, low byte first; 0xFFFFFFFF for an empty
    /// text.
    static quint32 CalculateString(const QString &text);
};
