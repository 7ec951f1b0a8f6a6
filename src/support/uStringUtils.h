#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

/// Small text operations that are used everywhere. Hexadecimal digits are written in upper case.
class TStringUtils
{
public:
    /// Splits into lines, trims each, joins with one blank; an empty line leaves its blank.
    static QString Compact(const QString &value);
    /// Lines end with CR LF, LF or CR; a text that ends with a line break has no further line.
    static QStringList Lines(const QString &value);
    static QString Concat(const QStringList &values, const QString &separator);
    static QStringList Split(const QString &value, const QString &separator);
    static QString PadLeft(const QString &value, int width, QChar fill = u' ');
    static QString PadRight(const QString &value, int width, QChar fill = u' ');
    /// The text's UTF-8 bytes as digits, and back. Odd and foreign digits end the reading.
    static QString StrToHex(const QString &value);
    static QString HexToStr(const QString &value);
    static QString BytesToHex(const QByteArray &value);
    static QByteArray HexToBytes(const QString &value);
    static QString BinToHex(const void *data, qsizetype size);
};
