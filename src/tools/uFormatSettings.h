#pragma once

#include <QByteArray>
#include <QLocale>
#include <QString>
#include <vector>

/// How dates, times and numbers are written.
struct TFormatSettings
{
    QString ShortDateFormat; // d, m and y, one to four of each; "/" stands for the separator
    QString LongTimeFormat;  // H or h, mm, ss, AP; ":" stands for the separator
    QString DateSeparator;
    QString TimeSeparator;
    QString DecimalSeparator;
    QLocale Locale; // gives the names of months and days

    /// Years come with all of their digits: a file outlives its century. A locale without a
    /// country has dates and times as the server writes them.
    static TFormatSettings Of(const QLocale &locale);
    static TFormatSettings System() { return Of(QLocale::system()); }

    /// Whether dates and times come out as the server sends them.
    bool IsServers() const;
};

struct TDateTimeParts
{
    int Year = 0, Month = 0, Day = 0;
    int Hour = 0, Minute = 0, Second = 0;
};

/// A format that was taken apart once, for values by the million.
class TDateTimeFormat
{
public:
    static TDateTimeFormat OfDate(const TFormatSettings &settings);
    static TDateTimeFormat OfTime(const TFormatSettings &settings);

    void AppendTo(QByteArray &text, const TDateTimeParts &parts) const;

private:
    enum TKind {
        fkLiteral,
        fkYear,
        fkMonth,
        fkMonthName,
        fkDay,
        fkDayName,
        fkHour,
        fkHour12,
        fkMinute,
        fkSecond,
        fkHalfOfDay
    };
    struct TPart
    {
        TKind Kind;
        int Width = 0;
        QByteArray Text;
    };

    static TDateTimeFormat Parse(const QString &format, QChar placeholder, const QString &separator,
                                 TPart (*part)(const QString &run));
    static TPart DatePart(const QString &run);
    static TPart TimePart(const QString &run);
    QByteArray Name(const TPart &part, const TDateTimeParts &parts) const;

    std::vector<TPart> FParts;
    QLocale FLocale;
};
