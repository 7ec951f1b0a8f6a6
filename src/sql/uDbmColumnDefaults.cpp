#include "sql/uDbmColumnDefaults.h"

#include "sql/uDbmFieldUtils.h"
#include "sql/uDbmSqlValueUtils.h"
#include "support/uRegExUtils.h"
#include "support/uStringUtils.h"

namespace {

constexpr auto CaseBlind = QRegularExpression::CaseInsensitiveOption;

bool IsQuoted(const QString &text)
{
    return text.size() >= 2 && text.startsWith(u'\'') && text.endsWith(u'\'');
}

/// The text of a quoted literal, whichever of the two ways of escaping it uses.
QString Unquote(const QString &literal)
{
    static const QString Escapes = "0btnrZ";
    static const QString Chars = QString::fromLatin1("\0\b\t\n\r\x1a", 6);
    QString text;
    for (qsizetype i = 1; i < literal.size() - 1; ++i) {
        QChar c = literal[i];
        if (c == u'\'')
            ++i; // doubled
        if (c == u'\\' && i + 1 < literal.size() - 1) {
            c = literal[++i];
            const qsizetype escape = Escapes.indexOf(c);
            c = escape < 0 ? c : Chars[escape];
        }
        text += c;
    }
    return text;
}

bool IsNumber(const QString &text)
{
    return TRegExUtils::IsMatch(text, "^-?[0-9.]+(e[-+]?\\d+)?$", CaseBlind);
}

/// A number without the zeros that servers write for its width and decimals.
QString BareNumber(const QString &text)
{
    if (!TRegExUtils::IsMatch(text, "^-?\\d+(\\.\\d+)?$"))
        return text;
    const QString bare = TRegExUtils::Replace(text, "^(-?)0+(?=\\d)", "\\1");
    return bare.contains(u'.') ? TRegExUtils::Replace(bare, "\\.?0+$", "") : bare;
}

/// Whether a text of the model's means what the server's does: midnight is written as its day alone
/// and the zero date as a number.
bool IsSame(const QString &text, const QString &serverText)
{
    const QString day = TRegExUtils::Replace(serverText, " 00:00:00(\\.0+)?$", "");
    return text == (day == u"0000-00-00" ? QString("0") : day) ||
           BareNumber(text) == BareNumber(serverText);
}

} // namespace

void TDbmColumnDefaults::Parse(TDbmFieldDataType dataType, const QString &text,
                               bool isMarkedExpression, TDbmValue &value, QString &serverText) const
{
    value = {};
    serverText.clear();
    if (FFeatures.QuotedDefaults) {
        if (text.compare(u"NULL", Qt::CaseInsensitive) == 0)
            return;
        if (IsQuoted(text))
            ParseLiteral(dataType, Unquote(text), text, value, serverText);
        else if (IsNumber(text) || TRegExUtils::IsMatch(text, "^b'[01]*'$"))
            ParseLiteral(dataType, text, text, value, serverText);
        else
            ParseExpression(dataType, text, value, serverText);
        return;
    }
    // Servers before the mark had no other expressions.
    const bool isMoment = TDbmFieldUtils::IsDate(dataType) &&
                          TRegExUtils::IsMatch(text, "^current_timestamp\\(\\d+\\)$", CaseBlind);
    if (isMarkedExpression || isMoment)
        ParseExpression(dataType, UnescapeExpression(text), value, serverText);
    else
        ParseLiteral(dataType, text, TDbmSqlValueUtils::FormatString(text, true), value,
                     serverText);
}

QString TDbmColumnDefaults::UnescapeExpression(const QString &text)
{
    return TRegExUtils::Replace(text, "\\\\(['\\\\])", "\\1");
}

void TDbmColumnDefaults::ParseLiteral(TDbmFieldDataType dataType, const QString &text,
                                      const QString &literal, TDbmValue &value,
                                      QString &serverText) const
{
    const auto bits = TRegExUtils::Match(text, "^b'([01]*)'$");
    if (dataType == fdtBit && bits.hasMatch()) {
        bool fits = false;
        const qint64 number = bits.captured(1).toLongLong(&fits, 2);
        value.Value = fits ? TVariant(number) : TVariant(text);
        serverText = fits ? QString() : text;
        return;
    }
    const auto hex = TRegExUtils::Match(text, "^0x([0-9A-F]*)$", CaseBlind);
    if ((dataType == fdtBinary || dataType == fdtVarBinary) && hex.hasMatch() &&
        FFeatures.MarkedDefaults) {
        value.Value = TStringUtils::HexToBytes(hex.captured(1));
        serverText = text;
        return;
    }
    TDbmFieldUtils::ParseValue(dataType, text, value);
    // A decimal of thirty digits, a fraction of a second, a date without a day: the value is for
    // showing, the server's text is what is written.
    if (value.ValueType == vtValue && !value.Value.IsString() &&
        !IsSame(TDbmSqlValueUtils::FormatValue(value, false), text))
        serverText = literal;
}

void TDbmColumnDefaults::ParseExpression(TDbmFieldDataType dataType, const QString &text,
                                         TDbmValue &value, QString &serverText) const
{
    const auto now = TRegExUtils::Match(text, "^current_timestamp(?:\\((\\d*)\\))?$", CaseBlind);
    if (now.hasMatch() && TDbmFieldUtils::IsDate(dataType)) {
        value.ValueType = vtCurrentTimeStamp;
        if (!now.captured(1).isEmpty())
            serverText = TDbmSqlValueUtils::FormatCurrentTimeStamp() + '(' + now.captured(1) + ')';
        return;
    }
    value.Value = text;
    serverText = '(' + text + ')';
}
