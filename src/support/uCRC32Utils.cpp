#include "support/uCRC32Utils.h"

#include <array>

namespace {

constexpr quint32 Polynomial = 0xEDB88320;

constexpr std::array<quint32, 256> MakeTable()
{
    std::array<quint32, 256> table{};
    for (quint32 i = 0; i < 256; ++i) {
        quint32 value = i;
        for (int bit = 0; bit < 8; ++bit)
            value = value & 1 ? (value >> 1) ^ Polynomial : value >> 1;
        table[i] = value;
    }
    return table;
}

constexpr std::array<quint32, 256> Table = MakeTable();

constexpr quint32 Next(quint32 crc, quint8 byte)
{
    return Table[(crc ^ byte) & 0xFF] ^ (crc >> 8);
}

} // namespace

quint32 TCRC32Utils::CalculateMemory(const void *buffer, qsizetype length)
{
    const auto *bytes = static_cast<const quint8 *>(buffer);
    quint32 crc = 0xFFFFFFFF;
    for (qsizetype i = 0; i < length; ++i)
        crc = Next(crc, bytes[i]);
    return ~crc;
}

quint32 TCRC32Utils::CalculateString(const QString &text)
{
    if (text.isEmpty())
        return 0xFFFFFFFF;
    quint32 crc = 0xFFFFFFFF;
    for (const QChar unit : text) {
        crc = Next(crc, unit.cell());
        crc = Next(crc, unit.row());
    }
    return ~crc;
}
