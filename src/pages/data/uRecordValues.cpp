#include "pages/data/uRecordValues.h"

#include "model/uDbmEntities.h"
#include "sql/uDbmFieldUtils.h"
#include "support/uException.h"
#include "support/uFormat.h"

#include <QRegularExpression>
#include <QtEndian>
#include <cmath>

namespace {

// Also zero dates, fractions of a second, and times of more than a day.
const QString DatePattern =
    QStringLiteral(R"(^\d{2,4}-\d{1,2}-\d{1,2}([ T]\d{1,2}:\d{1,2}(:\d{1,2}(\.\d*)?)?)?$)");
const QString TimePattern = QStringLiteral(R"(^-?(\d+ )?\d{1,3}(:\d{1,2}){1,2}(\.\d*)?$)");

[[noreturn]] void Refuse(const TDbmFieldEntity &field, const QString &text)
{
    throw EConvertError(
        TFormat::Format("\"%s\" is not a value of the field \"%s\".", {text, field.FieldName}));
}

} // namespace

TVariant TRecordValues::FromText(const TDbmFieldEntity &field, const QString &text)
{
    const QString trimmed = text.trimmed();
    if (trimmed.isEmpty())
        return Empty(field);
    const TDbmFieldDataType type = field.FieldType.DataType;
    if (TDbmFieldUtils::IsOrdinal(type) || TDbmFieldUtils::IsNumeric(type))
        return Number(field, trimmed);
    if (type == fdtBit)
        return Bit(field, trimmed);
    if (TDbmFieldUtils::IsDate(type))
        return Date(field, trimmed);
    if (type == fdtBinary || type == fdtVarBinary)
        return Bytes(trimmed);
    return trimmed;
}

TVariant TRecordValues::Empty(const TDbmFieldEntity &field)
{
    const TDbmFieldDataType type = field.FieldType.DataType;
    if (TDbmFieldUtils::IsText(type))
        return field.Nullable ? TVariant() : TVariant(QString());
    return TDbmFieldUtils::IsString(type) ? TVariant(QString()) : TVariant();
}

TVariant TRecordValues::Number(const TDbmFieldEntity &field, const QString &text)
{
    bool isNumber = false;
    const qint64 whole = text.toLongLong(&isNumber);
    if (isNumber && QString::number(whole) == text)
        return whole;
    const double number = text.toDouble(&isNumber);
    if (!isNumber || !std::isfinite(number)) // "nan" is a number to Qt
        Refuse(field, text);
    return QString::number(number, 'g', 15) == text ? TVariant(number) : TVariant(text);
}

// As text it would be taken for the bits of its characters.
TVariant TRecordValues::Bit(const TDbmFieldEntity &field, const QString &text)
{
    bool isNumber = false;
    const quint64 bits = text.toULongLong(&isNumber);
    if (!isNumber)
        Refuse(field, text);
    if (bits <= quint64(std::numeric_limits<qint64>::max()))
        return TVariant(qint64(bits));
    // There is no literal for such a number; its bytes are the bits.
    const quint64 bytes = qToBigEndian(bits);
    return QByteArray(reinterpret_cast<const char *>(&bytes), sizeof(bytes));
}

TVariant TRecordValues::Date(const TDbmFieldEntity &field, const QString &text)
{
    const bool isTime = field.FieldType.DataType == fdtTime;
    const QRegularExpression pattern(isTime ? TimePattern : DatePattern);
    if (!pattern.match(text).hasMatch())
        Refuse(field, text);
    return text; // the server's own form says more than a date-time holds
}

TVariant TRecordValues::Bytes(const QString &text)
{
    static const QRegularExpression hex(QStringLiteral("^0x([0-9a-fA-F]{2})*$"));
    if (!hex.match(text).hasMatch())
        return text;
    const QByteArray bytes = QByteArray::fromHex(text.mid(2).toLatin1());
    return bytes.isEmpty() ? TVariant("") : TVariant(bytes); // 0x alone is no literal
}

QString TRecordValues::ToText(const TVariant &value)
{
    if (value.IsBytes())
        return "0x" + QString::fromLatin1(value.As<QByteArray>().toHex().toUpper());
    if (value.IsBool())
        return value.As<bool>() ? "1" : "0";
    return value.ToString();
}

QStringList TRecordValues::MembersOf(const QString &typeText)
{
    static const QRegularExpression member(QStringLiteral(R"('((?:[^'\\]|''|\\.)*+)')"),
                                           QRegularExpression::DotMatchesEverythingOption);
    QStringList members;
    for (auto all = member.globalMatch(typeText); all.hasNext();) {
        QString text = all.next().captured(1).replace("''", "'");
        for (qsizetype at = text.indexOf(u'\\'); at >= 0; at = text.indexOf(u'\\', at + 1)) {
            const QChar c = text.size() > at + 1 ? text[at + 1] : QChar(u'\\');
            text.replace(at, 2, c == u'n' ? u'\n' : c == u'r' ? u'\r' : c == u'0' ? QChar(0) : c);
        }
        members += text;
    }
    return members;
}

QString TRecordValues::SizeText(const TVariant &value)
{
    return value.IsBytes() ? TFormat::SizeText(value.As<QByteArray>().size()) : QString("NULL");
}
