#include "pages/data/uRecordValues.h"

#include "model/uDbmEntities.h"
#include "sql/uDbmFieldUtils.h"
#include "support/uException.h"
#include "support/uFormat.h"

#include <QRegularExpression>

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
    if (!isNumber)
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
    return bits <= quint64(std::numeric_limits<qint64>::max()) ? TVariant(qint64(bits))
                                                               : TVariant(bits);
}

TVariant TRecordValues::Date(const TDbmFieldEntity &field, const QString &text)
{
    const bool isTime = field.FieldType.DataType == fdtTime;
    const bool isYear = field.FieldType.DataType == fdtYear;
    const QRegularExpression pattern(isYear   ? QStringLiteral(R"(^\d{1,4}$)")
                                     : isTime ? TimePattern
                                              : DatePattern);
    if (!pattern.match(text).hasMatch())
        Refuse(field, text);
    return text; // the server's own form says more than a date-time holds
}

TVariant TRecordValues::Bytes(const QString &text)
{
    static const QRegularExpression hex(QStringLiteral("^0x([0-9a-fA-F]{2})*$"));
    if (hex.match(text).hasMatch())
        return QByteArray::fromHex(text.mid(2).toLatin1());
    return text;
}

QString TRecordValues::ToText(const TVariant &value)
{
    if (value.IsBytes())
        return "0x" + QString::fromLatin1(value.As<QByteArray>().toHex().toUpper());
    if (value.IsBool())
        return value.As<bool>() ? "1" : "0";
    return value.ToString();
}

QString TRecordValues::SizeText(const TVariant &value)
{
    return value.IsBytes() ? TFormat::SizeText(value.As<QByteArray>().size()) : QString("NULL");
}
