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

} // namespace

TDateTime TDateTime::FromQDateTime(const QDateTime &value)
{
    const double days = static_cast<double>(Epoch().daysTo(value.date()));
    return TDateTime(days + value.time().msecsSinceStartOfDay() / MSecsPerDay);
}

TDateTime TDateTime::Now()
{
    return FromQDateTime(QDateTime::currentDateTime());
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
    return PartsOf(FDays, SecondsPerDay, 1000).Date.toString(u"yyyy-MM-dd");
}

QString TDateTime::TimeText() const
{
    return PartsOf(FDays, SecondsPerDay, 1000).Time.toString(u"hh:mm:ss");
}

QString TDateTime::DateTimeText() const
{
    const TParts parts = PartsOf(FDays, SecondsPerDay, 1000);
    return parts.Date.toString(u"yyyy-MM-dd") + u' ' + parts.Time.toString(u"hh:mm:ss");
}
