#include "support/uFormat.h"

#include "support/uException.h"

#include <QStringView>
#include <algorithm>

namespace {

struct TDirective
{
    int Width = 0;
    int Precision = -1;
    QChar Kind;
    qsizetype Length = 0; // characters behind the per cent sign
};

int ReadNumber(QStringView text, qsizetype &at)
{
    // More than any width; a longer number in a text that is no format must not run over.
    constexpr int most = 100000;
    int number = 0;
    while (at < text.size() && text[at].isDigit())
        number = std::min(number * 10 + text[at++].digitValue(), most);
    return number;
}

bool TryReadDirective(QStringView text, TDirective &directive)
{
    qsizetype at = 0;
    directive.Width = ReadNumber(text, at);
    if (at < text.size() && text[at] == u'.') {
        ++at;
        directive.Precision = ReadNumber(text, at);
    }
    if (at >= text.size() || !QStringView(u"sdufn%").contains(text[at]))
        return false;
    directive.Kind = text[at];
    directive.Length = at + 1;
    return true;
}

QString WithThousands(QString digits)
{
    const qsizetype point = digits.indexOf(u'.');
    qsizetype at = (point < 0 ? digits.size() : point) - 3;
    const qsizetype first = digits.startsWith(u'-') ? 1 : 0;
    for (; at > first; at -= 3)
        digits.insert(at, u',');
    return digits;
}

[[noreturn]] void ThrowBadArgument(const QString &format)
{
    throw EException("Format \"" + format + "\" does not fit its arguments.");
}

QString IntegerText(const TFormat::TArg &arg, int precision, const QString &format)
{
    QString digits;
    if (const auto *number = std::get_if<qint64>(&arg))
        digits = QString::number(*number);
    else if (const auto *positive = std::get_if<quint64>(&arg))
        digits = QString::number(*positive);
    else
        ThrowBadArgument(format);
    const bool negative = digits.startsWith(u'-');
    if (negative)
        digits.remove(0, 1);
    digits = digits.rightJustified(precision < 0 ? 0 : precision, u'0');
    return negative ? u'-' + digits : digits;
}

double NumberOf(const TFormat::TArg &arg, const QString &format)
{
    if (const auto *real = std::get_if<double>(&arg))
        return *real;
    if (const auto *number = std::get_if<qint64>(&arg))
        return static_cast<double>(*number);
    if (const auto *positive = std::get_if<quint64>(&arg))
        return static_cast<double>(*positive);
    ThrowBadArgument(format);
}

QString ArgumentText(const TDirective &directive, const TFormat::TArg &arg, const QString &format)
{
    const int decimals = directive.Precision < 0 ? 2 : directive.Precision;
    switch (directive.Kind.unicode()) {
    case 's':
        if (const auto *text = std::get_if<QString>(&arg))
            return directive.Precision < 0 ? *text : text->left(directive.Precision);
        ThrowBadArgument(format);
    case 'f':
        return QString::number(NumberOf(arg, format), 'f', decimals);
    case 'n':
        return WithThousands(QString::number(NumberOf(arg, format), 'f', decimals));
    default:
        return IntegerText(arg, directive.Precision, format);
    }
}

} // namespace

QString TFormat::Format(const QString &format, const QList<TArgument> &args)
{
    QString text;
    text.reserve(format.size() + 16 * args.size());
    qsizetype next = 0;
    for (qsizetype i = 0; i < format.size(); ++i) {
        TDirective directive;
        if (format[i] != u'%' || !TryReadDirective(QStringView(format).mid(i + 1), directive)) {
            text += format[i];
            continue;
        }
        i += directive.Length;
        if (directive.Kind == u'%') {
            text += u'%';
            continue;
        }
        if (next >= args.size())
            ThrowBadArgument(format);
        text += ArgumentText(directive, args[next++].Value(), format)
                    .rightJustified(directive.Width, u' ');
    }
    return text;
}

QString TFormat::FloatText(double value)
{
    QString text = QString::number(value, 'g', 15);
    const qsizetype exponent = text.indexOf(u'e');
    if (exponent < 0)
        return text;
    const int power = text.mid(exponent + 1).toInt();
    if (power == -5) { // where Qt takes to exponents one place too early
        const QString sign = value < 0 ? "-" : "";
        return sign + "0.0000" + text.left(exponent).remove(u'-').remove(u'.');
    }
    return text.left(exponent) + u'E' + QString::number(power);
}

QString TFormat::SizeText(double bytes)
{
    static const char *const units[] = {"B", "KB", "MB", "GB", "TB", "PB", "EB", "ZB", "YB"};
    int divided = 0;
    while (bytes >= 1024 && divided < 8) {
        bytes /= 1024;
        ++divided;
    }
    return Format(divided == 0 ? "%.0f %s" : "%.1f %s", {bytes, units[divided]});
}

QString TFormat::DurationText(qint64 seconds)
{
    const qint64 days = seconds / 86400;
    const QString time =
        Format("%2.2u:%2.2u:%2.2u", {seconds / 3600 % 24, seconds / 60 % 60, seconds % 60});
    return days == 0 ? time : QString::number(days) + u' ' + time;
}
