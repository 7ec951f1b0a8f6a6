#include "sql/uDbmFieldUtils.h"

#include "sql/uDbmSqlValueUtils.h"
#include "support/uException.h"
#include "support/uFormat.h"
#include "support/uRegExUtils.h"

#include <QHash>

namespace {

struct TDataTypeWords
{
    TDbmFieldDataType DataType;
    QStringList Words; // the first is written, all are read
};

const QList<TDataTypeWords> &DataTypes()
{
    static const QList<TDataTypeWords> types = {
        {fdtTinyint, {"TINYINT"}},
        {fdtBool, {"BOOL", "BOOLEAN"}},
        {fdtSmallint, {"SMALLINT"}},
        {fdtMediumint, {"MEDIUMINT"}},
        {fdtInt, {"INT", "INTEGER"}},
        {fdtBigint, {"BIGINT"}},
        {fdtFloat, {"FLOAT"}},
        {fdtDouble, {"DOUBLE", "REAL"}},
        {fdtDecimal, {"DECIMAL", "DEC", "NUMERIC", "FIXED"}},
        {fdtDate, {"DATE"}},
        {fdtDateTime, {"DATETIME"}},
        {fdtTimeStamp, {"TIMESTAMP"}},
        {fdtTime, {"TIME"}},
        {fdtYear, {"YEAR"}},
        {fdtChar, {"CHAR"}},
        {fdtVarChar, {"VARCHAR"}},
        {fdtBinary, {"BINARY"}},
        {fdtVarBinary, {"VARBINARY"}},
        {fdtTinyBlob, {"TINYBLOB"}},
        {fdtTinyText, {"TINYTEXT"}},
        {fdtBlob, {"BLOB"}},
        {fdtText, {"TEXT"}},
        {fdtMediumBlob, {"MEDIUMBLOB"}},
        {fdtMediumText, {"MEDIUMTEXT"}},
        {fdtLongBlob, {"LONGBLOB"}},
        {fdtLongText, {"LONGTEXT"}},
        {fdtEnum, {"ENUM"}},
        {fdtSet, {"SET"}},
        {fdtBit, {"BIT"}},
    };
    return types;
}

qint32 ToLength(QStringView text)
{
    bool ok = false;
    const qint32 value = text.trimmed().toInt(&ok);
    if (!ok)
        throw EException(TFormat::Format("'%s' is not a valid integer value", {text.toString()}));
    return value;
}

bool IsBetween(TDbmFieldDataType dataType, TDbmFieldDataType first, TDbmFieldDataType last)
{
    return dataType >= first && dataType <= last;
}

void ParseArguments(const QString &text, TDbmFieldType &fieldType)
{
    const TDbmFieldDataType dataType = fieldType.DataType;
    if (TDbmFieldUtils::HaveDecimals(dataType)) {
        const qsizetype comma = text.indexOf(u',');
        fieldType.Length = ToLength(QStringView(text).left(qMax<qsizetype>(comma, 0)));
        fieldType.Decimals = ToLength(QStringView(text).mid(comma + 1));
    } else if (TDbmFieldUtils::HaveLength(dataType)) {
        fieldType.Length = ToLength(text);
        if (dataType == fdtTinyint && fieldType.Length == 1)
            fieldType.DataType = fdtBool;
    } else if (TDbmFieldUtils::HaveValues(dataType)) {
        TRegExUtils::ForEachMatch(text, "\\'([^']+)\\'", [&](const QRegularExpressionMatch &match) {
            fieldType.Values.append(match.captured(1));
        });
    }
}

/// Without blanks and letter case outside of quotes, so that two texts of one type are equal.
QString Canonical(const QString &typeText)
{
    QString text;
    bool inside = false;
    for (const QChar c : typeText) {
        if (c == u'\'')
            inside = !inside;
        if (inside || !c.isSpace())
            text += inside ? c : c.toLower();
    }
    return text;
}

} // namespace

QString TDbmFieldUtils::FormatDataType(TDbmFieldDataType dataType)
{
    for (const TDataTypeWords &type : DataTypes())
        if (type.DataType == dataType)
            return type.Words.first();
    throw EException("Unknown field data type.");
}

TDbmFieldDataType TDbmFieldUtils::ParseDataType(const QString &text)
{
    static const QHash<QString, TDbmFieldDataType> byWord = [] {
        QHash<QString, TDbmFieldDataType> words;
        for (const TDataTypeWords &type : DataTypes())
            for (const QString &word : type.Words)
                words.insert(word, type.DataType);
        return words;
    }();
    const auto found = byWord.constFind(text.toUpper());
    if (found == byWord.constEnd())
        throw EException(TFormat::Format("Parse error: unknown field data type \"%s\"", {text}));
    return *found;
}

bool TDbmFieldUtils::IsOrdinal(TDbmFieldDataType dataType)
{
    return dataType == fdtTinyint || IsBetween(dataType, fdtSmallint, fdtBigint);
}

bool TDbmFieldUtils::IsNumeric(TDbmFieldDataType dataType)
{
    return IsBetween(dataType, fdtFloat, fdtDecimal);
}

bool TDbmFieldUtils::IsDate(TDbmFieldDataType dataType)
{
    return IsBetween(dataType, fdtDate, fdtTime);
}

bool TDbmFieldUtils::IsString(TDbmFieldDataType dataType)
{
    return IsBetween(dataType, fdtChar, fdtVarBinary) || IsText(dataType) || HaveValues(dataType);
}

bool TDbmFieldUtils::IsText(TDbmFieldDataType dataType)
{
    return dataType == fdtTinyText || dataType == fdtText || dataType == fdtMediumText ||
           dataType == fdtLongText;
}

bool TDbmFieldUtils::IsBlob(TDbmFieldDataType dataType)
{
    return dataType == fdtTinyBlob || dataType == fdtBlob || dataType == fdtMediumBlob ||
           dataType == fdtLongBlob;
}

bool TDbmFieldUtils::HaveLength(TDbmFieldDataType dataType)
{
    return HaveUnsigned(dataType) || IsBetween(dataType, fdtYear, fdtVarBinary) ||
           dataType == fdtBit;
}

bool TDbmFieldUtils::HaveValues(TDbmFieldDataType dataType)
{
    return dataType == fdtEnum || dataType == fdtSet;
}

bool TDbmFieldUtils::HaveUnsigned(TDbmFieldDataType dataType)
{
    return IsOrdinal(dataType) || IsNumeric(dataType);
}

bool TDbmFieldUtils::HaveDefault(TDbmFieldDataType dataType)
{
    return !IsText(dataType) && !IsBlob(dataType);
}

TDbmFieldTypeAttrs TDbmFieldUtils::GetAttributes(TDbmFieldDataType dataType)
{
    static constexpr struct
    {
        TDbmFieldTypeAttr Attr;
        bool (*Have)(TDbmFieldDataType);
    } attributes[] = {
        {ftaLength, HaveLength},     {ftaDecimals, HaveDecimals}, {ftaValues, HaveValues},
        {ftaNullable, HaveNullable}, {ftaUnsigned, HaveUnsigned}, {ftaAutoinc, HaveAutoInc},
        {ftaZerofill, HaveZerofill}, {ftaBinary, HaveBinary},     {ftaCharset, HaveCharset},
        {ftaDefValue, HaveDefault},
    };
    TDbmFieldTypeAttrs attrs;
    for (const auto &attribute : attributes)
        if (attribute.Have(dataType))
            attrs.Include(attribute.Attr);
    return attrs;
}

bool TDbmFieldUtils::HaveAttribute(TDbmFieldDataType dataType, TDbmFieldTypeAttr attr)
{
    return GetAttributes(dataType).Contains(attr);
}

void TDbmFieldUtils::ParseType(const QString &text, TDbmFieldType &fieldType,
                               const QString &collation)
{
    fieldType = {};
    const qsizetype open = text.indexOf(u'(');
    const qsizetype blank = text.indexOf(u' ');
    const QString name = text.left(open >= 0 ? open : blank);
    fieldType.DataType = ParseDataType(name);
    if (open >= 0) {
        const qsizetype close = text.indexOf(u')');
        const QString arguments = text.mid(open + 1, close < 0 ? -1 : close - open - 1);
        if (!arguments.isEmpty())
            ParseArguments(arguments, fieldType);
    }
    fieldType.Attrs = GetAttributes(fieldType.DataType);
    // Few types say either, and a list has thousands of columns.
    const auto says = [&](QStringView word) {
        return text.contains(word, Qt::CaseInsensitive) &&
               QString(text).remove(name).contains(word, Qt::CaseInsensitive);
    };
    fieldType.Unsigned = says(u"UNSIGNED");
    fieldType.Zerofill = says(u"ZEROFILL");
    fieldType.Binary = collation.endsWith(u"_bin", Qt::CaseInsensitive);
    fieldType.Collation = collation;
}

QString TDbmFieldUtils::FormatTypeWord(const TDbmFieldType &fieldType)
{
    const QString word = FormatDataType(fieldType.DataType);
    const TDbmFieldDataType dataType = fieldType.DataType;
    if (HaveValues(dataType)) {
        QStringList values;
        for (const QString &value : fieldType.Values)
            values.append(u'\'' + value + u'\'');
        return word + '(' + values.join(", ") + ')';
    }
    if (IsOrdinal(dataType))
        return fieldType.Length == 0 ? word : TFormat::Format("%s(%d)", {word, fieldType.Length});
    if (IsString(dataType) && HaveLength(dataType))
        return TFormat::Format("%s(%d)", {word, fieldType.Length == 0 ? 255 : fieldType.Length});
    if (IsNumeric(dataType) && fieldType.Length != 0)
        return TFormat::Format("%s(%d,%d)", {word, fieldType.Length, fieldType.Decimals});
    return word;
}

void TDbmFieldUtils::FormatType(const TDbmFieldType &fieldType, const QString &tableCollation,
                                QString &text)
{
    QStringList lines{FormatTypeWord(fieldType)};
    if (HaveUnsigned(fieldType.DataType)) {
        if (fieldType.Unsigned)
            lines.append("UNSIGNED");
        if (fieldType.Zerofill)
            lines.append("ZEROFILL");
    }
    const QString charset = FormatCharset(fieldType, tableCollation);
    if (!charset.isEmpty())
        lines.append(charset);
    text = lines.join("\r\n");
}

QString TDbmFieldUtils::FormatCharset(const TDbmFieldType &fieldType, const QString &tableCollation)
{
    const TDbmFieldDataType dataType = fieldType.DataType;
    if (!IsString(dataType) || dataType == fdtBinary || dataType == fdtVarBinary)
        return {};
    // The word stands for the one collation <charset>_bin. Beside another binary collation it would
    // turn the column into that one, so the collation alone is written then.
    const QString &collation = fieldType.Collation;
    if (fieldType.Binary && collation.endsWith(u"_bin", Qt::CaseInsensitive) &&
        collation.count(u'_') > 1)
        return "COLLATE " + collation;
    QStringList lines;
    if (fieldType.Binary)
        lines.append("BINARY");
    if (!collation.isEmpty() && collation != tableCollation)
        lines.append("COLLATE " + collation);
    return lines.join("\r\n");
}

bool TDbmFieldUtils::IsExactType(const TDbmFieldType &fieldType, const QString &serverText)
{
    if (fieldType.DataType == fdtUnknown)
        return false;
    if (fieldType.DataType == fdtBool)
        return Canonical(serverText) == u"tinyint(1)";
    TDbmFieldType bare = fieldType;
    bare.Binary = false;
    bare.Collation.clear();
    QString text;
    FormatType(bare, QString(), text);
    return Canonical(text) == Canonical(serverText);
}

QStringList TDbmFieldUtils::Members(const QString &serverText)
{
    QStringList members;
    TRegExUtils::ForEachMatch(
        serverText, "'((?:[^'\\\\]|''|\\\\.)*+)'",
        [&](const QRegularExpressionMatch &match) { members.append(match.captured(1)); });
    return members;
}

QStringList TDbmFieldUtils::WholeMembers(const QStringList &values, const QStringList &parsed,
                                         const QString &serverText)
{
    QStringList whole = Members(serverText);
    if (whole == parsed)
        return values;
    QStringList stayed;
    QStringList added = values;
    for (const QString &value : parsed) {
        added.removeAll(value);
        if (values.contains(value))
            stayed.append(value);
        else if (whole.removeAll(value) == 0)
            return values;
    }
    return values == stayed + added ? whole + added : values;
}

void TDbmFieldUtils::ParseValue(TDbmFieldDataType dataType, const TDataSet &row,
                                const QString &fieldName, TDbmValue &value)
{
    const TField &field = row.FieldByName(fieldName);
    value = {};
    if (!field.IsNull())
        ParseValue(dataType, field.AsString(), value);
}

void TDbmFieldUtils::ParseValue(TDbmFieldDataType dataType, const QString &text, TDbmValue &value)
{
    const TVariant def = 0;
    value = {};
    if (IsOrdinal(dataType))
        value.Value = TDbmSqlValueUtils::ParseInt(text, def);
    else if (IsNumeric(dataType))
        value.Value = TDbmSqlValueUtils::ParseFloat(text, def);
    else if (IsDate(dataType) && TDbmSqlValueUtils::IsCurrentTimeStamp(text))
        value.ValueType = vtCurrentTimeStamp;
    else if (dataType == fdtTime)
        value.Value = TDbmSqlValueUtils::ParseTime(text, def);
    else if (dataType == fdtDate)
        value.Value = TDbmSqlValueUtils::ParseDate(text, def);
    else if (dataType == fdtDateTime || dataType == fdtTimeStamp)
        value.Value = TDbmSqlValueUtils::ParseDateTime(text, def);
    else
        value.Value = TDbmSqlValueUtils::ParseString(text);
}
