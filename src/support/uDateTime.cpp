#include "support/uDateTime.h"

#include <QDateTime>
#include <cmath>

namespace {

constexpr double SecondsPerDay = 86400;
constexpr double MSecsPerDay = 86400000;

QDate Epoch()
{
    static const QDate epoch(1899, 12, 30);
    return epoch;
}

struct TParts
{
    QDate Date;
    QTime Time;
};

// The time of day counts upwards from midnight also before the epoch, so the whole part is the
// floor.
TParts PartsOf(double days, double unitsPerDay, int msecsPerUnit)
{
    double date = std::floor(days);
    qint64 units = std::llround((days - date) * unitsPerDay);
    if (units >= static_cast<qint64>(unitsPerDay)) {
        date += 1;
        units = 0;
    }
    return {Epoch().addDays(static_cast<qint64>(date)),
            QTime::fromMSecsSinceStartOfDay(static_cast<int>(units * msecsPerUnit))};
}

// Every cell of a date is written once to see whether it is read exactly, and the library's way
// through calendars and formats takes a microsecond.
void PutNumber(QChar *out, int value, int digits)
{
    for (int i = digits - 1; i >= 0; --i, value /= 10)
        out[i] = QLatin1Char(static_cast<char>('0' + value % 10));
}

QString Text(const QDate &date)
{
    int year = 0, month = 0, day = 0;
    date.getDate(&year, &month, &day);
    if (year < 0 || year > 9999)
        return date.toString(u"yyyy-MM-dd");
    QString text(10, u'-');
    PutNumber(text.data(), year, 4);
    PutNumber(text.data() + 5, month, 2);
    PutNumber(text.data() + 8, day, 2);
    return text;
}

QString Text(const QTime &time)
{
    QString text(8, u':');
    PutNumber(text.data(), time.hour(), 2);
    PutNumber(text.data() + 3, time.minute(), 2);
    PutNumber(text.data() + 6, time.second(), 2);
    return text;
}

} // namespace

TDateTime TDateTime::FromQDateTime(const QDateTime &value)
{
    const double days = static_cast<double>(Epoch().daysTo(value.date()));
    return TDateTime(days + value.time().msecsSinceStartOfDay() / MSecsPerDay);
}

TDateTime TDateTime::Now()
{
    // Asking for the zone reads files, and a log asks with every statement. Clocks are set forward
    // and back at whole seconds.
    thread_local qint64 askedSecond = -1;
    thread_local qint64 offset = 0;
    const qint64 now = QDateTime::currentMSecsSinceEpoch();
    if (const qint64 second = now / 1000; second != askedSecond) {
        offset = QDateTime::fromMSecsSinceEpoch(now).offsetFromUtc() * qint64(1000);
        askedSecond = second;
    }
    return FromQDateTime(QDateTime::fromMSecsSinceEpoch(now + offset, Qt::UTC));
}

bool TDateTime::TryEncode(int year, int month, int day, int hour, int minute, int second,
                          TDateTime &value)
{
    const QDate date(year, month, day);
    TDateTime time;
    if (year < 1 || year > 9999 || !date.isValid() || !TryEncodeTime(hour, minute, second, time))
        return false;
    value = TDateTime(static_cast<double>(Epoch().daysTo(date)) + time.Days());
    return true;
}

bool TDateTime::TryEncodeTime(int hour, int minute, int second, TDateTime &value)
{
    if (!QTime::isValid(hour, minute, second))
        return false;
    value = TDateTime((hour * 3600 + minute * 60 + second) / SecondsPerDay);
    return true;
}

bool TDateTime::HasDate() const
{
    return std::trunc(FDays) != 0;
}

bool TDateTime::HasTime() const
{
    return FDays != std::trunc(FDays);
}

QDateTime TDateTime::ToQDateTime() const
{
    const TParts parts = PartsOf(FDays, MSecsPerDay, 1);
    return {parts.Date, parts.Time};
}

QString TDateTime::DateText() const
{
    return Text(PartsOf(FDays, SecondsPerDay, 1000).Date);
}

QString TDateTime::TimeText() const
{
    return Text(PartsOf(FDays, SecondsPerDay, 1000).Time);
}

QString TDateTime::DateTimeText() const
{
    const TParts parts = PartsOf(FDays, SecondsPerDay, 1000);
    return Text(parts.Date) + u' ' + Text(parts.Time);
}
