#include "support/uStringUtils.h"

#include "support/uTextCoding.h"

#include <array>

namespace {

constexpr std::array<qint8, 256> MakeDigitValues()
{
    std::array<qint8, 256> values{};
    values.fill(-1);
    for (int digit = 0; digit < 10; ++digit)
        values[static_cast<size_t>('0' + digit)] = static_cast<qint8>(digit);
    for (int digit = 10; digit < 16; ++digit) {
        values[static_cast<size_t>('A' + digit - 10)] = static_cast<qint8>(digit);
        values[static_cast<size_t>('a' + digit - 10)] = static_cast<qint8>(digit);
    }
    return values;
}

// Texts of many megabytes come by here; a table costs a quarter of three comparisons a digit.
constexpr std::array<qint8, 256> DigitValues = MakeDigitValues();

int DigitValue(QChar digit)
{
    return digit.unicode() < 256 ? DigitValues[digit.unicode()] : -1;
}

} // namespace

QString TStringUtils::Compact(const QString &value)
{
    if (!value.contains(u'\n') && !value.contains(u'\r'))
        return value.trimmed();
    QStringList lines;
    for (const QString &line : Lines(value))
        lines += line.trimmed();
    return lines.join(u' ');
}

QStringList TStringUtils::Lines(const QString &value)
{
    QStringList lines;
    qsizetype start = 0;
    for (qsizetype i = 0; i < value.size(); ++i) {
        if (value[i] != u'\r' && value[i] != u'\n')
            continue;
        lines += value.mid(start, i - start);
        if (value[i] == u'\r' && i + 1 < value.size() && value[i + 1] == u'\n')
            ++i;
        start = i + 1;
    }
    if (start < value.size())
        lines += value.mid(start);
    return lines;
}

QString TStringUtils::Concat(const QStringList &values, const QString &separator)
{
    return values.join(separator);
}

QStringList TStringUtils::Split(const QString &value, const QString &separator)
{
    return value.isEmpty() ? QStringList() : value.split(separator);
}

QString TStringUtils::PadLeft(const QString &value, int width, QChar fill)
{
    return value.rightJustified(width, fill);
}

QString TStringUtils::PadRight(const QString &value, int width, QChar fill)
{
    return value.leftJustified(width, fill);
}

QString TStringUtils::StrToHex(const QString &value)
{
    return BytesToHex(value.toUtf8());
}

QString TStringUtils::HexToStr(const QString &value)
{
    bool ok = false;
    return TTextCoding::DecodeUtf8(HexToBytes(value), ok);
}

QString TStringUtils::BytesToHex(const QByteArray &value)
{
    return BinToHex(value.constData(), value.size());
}

QByteArray TStringUtils::HexToBytes(const QString &value)
{
    QByteArray bytes(value.size() / 2, Qt::Uninitialized);
    char *out = bytes.data();
    for (qsizetype i = 0; i + 1 < value.size(); i += 2) {
        const int high = DigitValue(value[i]);
        const int low = DigitValue(value[i + 1]);
        if (high < 0 || low < 0)
            break;
        *out++ = static_cast<char>(high * 16 + low);
    }
    bytes.truncate(out - bytes.constData());
    return bytes;
}

QString TStringUtils::BinToHex(const void *data, qsizetype size)
{
    static const char16_t digits[] = u"0123456789ABCDEF";
    const auto *bytes = static_cast<const unsigned char *>(data);
    QString text(size * 2, Qt::Uninitialized);
    QChar *out = text.data();
    for (qsizetype i = 0; i < size; ++i) {
        *out++ = digits[bytes[i] >> 4];
        *out++ = digits[bytes[i] & 15];
    }
    return text;
}
