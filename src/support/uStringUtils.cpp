#include "support/uStringUtils.h"

#include "support/uTextCoding.h"

namespace {

int DigitValue(QChar digit)
{
    const char16_t c = digit.unicode();
    if (c >= u'0' && c <= u'9')
        return c - u'0';
    if (c >= u'A' && c <= u'F')
        return c - u'A' + 10;
    if (c >= u'a' && c <= u'f')
        return c - u'a' + 10;
    return -1;
}

} // namespace

QString TStringUtils::Compact(const QString &value)
{
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
    QByteArray bytes;
    bytes.reserve(value.size() / 2);
    for (qsizetype i = 0; i + 1 < value.size(); i += 2) {
        const int high = DigitValue(value[i]);
        const int low = DigitValue(value[i + 1]);
        if (high < 0 || low < 0)
            break;
        bytes += static_cast<char>(high * 16 + low);
    }
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
