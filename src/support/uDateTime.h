#pragma once

#include <QString>
#include <compare>

class QDateTime;

/// A point in time or a time of day: days since 1899-12-30, the fraction is the time of day.
/// 0 counts as absent in entities; a field's NULL lives in the variant. Times have no zone.
class TDateTime
{
public:
    constexpr TDateTime() = default;
    explicit constexpr TDateTime(double days) : FDays(days) {}

    static TDateTime FromQDateTime(const QDateTime &value);
    /// The local time of the call.
    static TDateTime Now();
    /// Gives false when the parts are no date of the years 1 to 9999 or no time of one day.
    static bool TryEncode(int year, int month, int day, int hour, int minute, int second,
                          TDateTime &value);
    static bool TryEncodeTime(int hour, int minute, int second, TDateTime &value);

    constexpr double Days() const { return FDays; }
    constexpr bool IsNull() const { return FDays == 0; }
    bool HasDate() const;
    bool HasTime() const;
    /// In local time, rounded to the millisecond.
    QDateTime ToQDateTime() const;

    /// `yyyy-mm-dd`, `hh:mm:ss` and both with a blank between; rounded to the second.
    QString DateText() const;
    QString TimeText() const;
    QString DateTimeText() const;

    constexpr auto operator<=>(const TDateTime &) const = default;

private:
    double FDays = 0;
};
