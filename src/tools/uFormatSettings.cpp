#include "tools/uFormatSettings.h"

#include "support/uLocaleFormats.h"

#include <QDate>
#include <QRegularExpression>

namespace {

const QString ServersDate = QStringLiteral("yyyy/mm/dd");
const QString ServersTime = QStringLiteral("HH:mm:ss");

// Puts the placeholder where the format has its separator, and gives the separator. A language
// that writes units or blanks between the numbers has none: they stay, and the placeholder is
// given.
QString TakeSeparator(QString &format, QChar placeholder)
{
    // Marks of direction stand beside the separator in right-to-left languages.
    format.remove(QRegularExpression("[\\x{200e}\\x{200f}]"));
    static const QRegularExpression quoted("'[^']*'"), mark("(?<=[A-Za-z])\\p{P}");
    const QString separator = mark.match(QString(format).remove(quoted)).captured();
    if (separator.isEmpty())
        return placeholder;
    format.replace(separator, placeholder);
    return separator;
}

void AppendNumber(QByteArray &text, int value, int width)
{
    char digits[12];
    int count = 0;
    do {
        digits[count++] = static_cast<char>('0' + value % 10);
        value /= 10;
    } while (value > 0);
    while (count < width)
        digits[count++] = '0';
    while (count > 0)
        text += digits[--count];
}

} // namespace

TFormatSettings TFormatSettings::Of(const QLocale &locale)
{
    if (locale.language() == QLocale::C)
        return {ServersDate, ServersTime, "-", ":", ".", locale};
    TFormatSettings settings;
    settings.Locale = locale;
    settings.DecimalSeparator = locale.decimalPoint();
    QString &date = settings.ShortDateFormat;
    date = locale.dateFormat(QLocale::ShortFormat).replace(u'M', u'm');
    if (!date.contains("yyyy"))
        date.replace("yy", "yyyy");
    settings.DateSeparator = TakeSeparator(date, u'/');
    QString &time = settings.LongTimeFormat;
    time = TLocaleFormats::LongTime(locale);
    settings.TimeSeparator = TakeSeparator(time, u':');
    return settings;
}

bool TFormatSettings::IsServers() const
{
    return ShortDateFormat == ServersDate && DateSeparator == "-" &&
           LongTimeFormat == ServersTime && TimeSeparator == ":";
}

TDateTimeFormat TDateTimeFormat::OfDate(const TFormatSettings &settings)
{
    TDateTimeFormat format =
        Parse(settings.ShortDateFormat, u'/', settings.DateSeparator, &TDateTimeFormat::DatePart);
    format.FLocale = settings.Locale;
    return format;
}

TDateTimeFormat TDateTimeFormat::OfTime(const TFormatSettings &settings)
{
    TDateTimeFormat format =
        Parse(settings.LongTimeFormat, u':', settings.TimeSeparator, &TDateTimeFormat::TimePart);
    format.FLocale = settings.Locale;
    bool hasHalf = false;
    for (const TPart &part : format.FParts)
        hasHalf = hasHalf || part.Kind == fkHalfOfDay;
    for (TPart &part : format.FParts) {
        if (hasHalf && part.Kind == fkHour)
            part.Kind = fkHour12;
    }
    return format;
}

TDateTimeFormat TDateTimeFormat::Parse(const QString &format, QChar placeholder,
                                       const QString &separator, TPart (*part)(const QString &run))
{
    TDateTimeFormat result;
    static const QRegularExpression runs("'([^']*)'?|([Aa][Pp])|(.)\\3*");
    for (auto it = runs.globalMatch(format); it.hasNext();) {
        const QRegularExpressionMatch match = it.next();
        const QString run = match.captured();
        if (run[0] == u'\'')
            result.FParts.push_back({fkLiteral, 0, match.captured(1).toUtf8()});
        else if (run[0] == placeholder)
            result.FParts.push_back({fkLiteral, 0, separator.repeated(run.size()).toUtf8()});
        else
            result.FParts.push_back(part(run));
    }
    return result;
}

TDateTimeFormat::TPart TDateTimeFormat::DatePart(const QString &run)
{
    const int count = static_cast<int>(run.size());
    switch (run[0].toLower().unicode()) {
    case u'd':
        return {count > 2 ? fkDayName : fkDay, count, {}};
    case u'm':
        return {count > 2 ? fkMonthName : fkMonth, count, {}};
    case u'y':
        return {fkYear, count > 2 ? 4 : 2, {}};
    default:
        return {fkLiteral, 0, run.toUtf8()};
    }
}

TDateTimeFormat::TPart TDateTimeFormat::TimePart(const QString &run)
{
    const int width = static_cast<int>(qMin<qsizetype>(run.size(), 2));
    switch (run[0].unicode()) {
    case u'H':
    case u'h':
        return {fkHour, width, {}};
    case u'm':
        return {fkMinute, width, {}};
    case u's':
        return {fkSecond, width, {}};
    case u'A':
    case u'a':
        return {fkHalfOfDay, 0, {}};
    default:
        return {fkLiteral, 0, run.toUtf8()};
    }
}

void TDateTimeFormat::AppendTo(QByteArray &text, const TDateTimeParts &parts) const
{
    for (const TPart &part : FParts) {
        switch (part.Kind) {
        case fkLiteral:
            text += part.Text;
            break;
        case fkYear:
            AppendNumber(text, part.Width == 2 ? parts.Year % 100 : parts.Year, part.Width);
            break;
        case fkMonth:
            AppendNumber(text, parts.Month, part.Width);
            break;
        case fkDay:
            AppendNumber(text, parts.Day, part.Width);
            break;
        case fkHour:
            AppendNumber(text, parts.Hour, part.Width);
            break;
        case fkHour12:
            AppendNumber(text, (parts.Hour + 11) % 12 + 1, part.Width);
            break;
        case fkMinute:
            AppendNumber(text, parts.Minute, part.Width);
            break;
        case fkSecond:
            AppendNumber(text, parts.Second, part.Width);
            break;
        case fkMonthName:
        case fkDayName:
        case fkHalfOfDay:
            text += Name(part, parts);
            break;
        }
    }
}

QByteArray TDateTimeFormat::Name(const TPart &part, const TDateTimeParts &parts) const
{
    if (part.Kind == fkHalfOfDay)
        return (parts.Hour < 12 ? FLocale.amText() : FLocale.pmText()).toUtf8();
    const auto form = part.Width == 3 ? QLocale::ShortFormat : QLocale::LongFormat;
    if (part.Kind == fkMonthName)
        return FLocale.monthName(parts.Month, form).toUtf8();
    return FLocale.dayName(QDate(parts.Year, parts.Month, parts.Day).dayOfWeek(), form).toUtf8();
}
