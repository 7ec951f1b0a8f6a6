#include "sql/uDbmIntervalUtils.h"

#include "support/uException.h"
#include "support/uFormat.h"
#include "support/uRegExUtils.h"

#include <QList>

namespace {

using TMember = qint64 TDbmInterval::*;
using I = TDbmInterval;

struct TUnit
{
    const char *Word;
    QList<TMember> Members;
    const char *Pattern; // nullptr for a single unit
    const char *Format;
};

const QList<TUnit> &Units()
{
    static const QList<TUnit> units = {
        {"YEAR", {&I::Years}, nullptr, "%d YEAR"},
        {"QUARTER", {&I::Quarters}, nullptr, "%d QUARTER"},
        {"MONTH", {&I::Months}, nullptr, "%d MONTH"},
        {"WEEK", {&I::Weeks}, nullptr, "%d WEEK"},
        {"DAY", {&I::Days}, nullptr, "%d DAY"},
        {"HOUR", {&I::Hours}, nullptr, "%d HOUR"},
        {"MINUTE", {&I::Minutes}, nullptr, "%d MINUTE"},
        {"SECOND", {&I::Seconds}, nullptr, "%d SECOND"},
        {"MICROSECOND", {&I::Microseconds}, nullptr, "%d MICROSECOND"},
        {"YEAR_MONTH", {&I::Years, &I::Months}, "'(\\d+)-(\\d+)'", "'%d-%d' YEAR_MONTH"},
        {"DAY_HOUR", {&I::Days, &I::Hours}, "'(\\d+) (\\d+)'", "'%d %d' DAY_HOUR"},
        {"DAY_MINUTE",
         {&I::Days, &I::Hours, &I::Minutes},
         "'(\\d+) (\\d+):(\\d+)'",
         "'%d %d:%d' DAY_MINUTE"},
        {"DAY_SECOND",
         {&I::Days, &I::Hours, &I::Minutes, &I::Seconds},
         "'(\\d+) (\\d+):(\\d+):(\\d+)'",
         "'%d %d:%d:%d' DAY_SECOND"},
        {"DAY_MICROSECOND",
         {&I::Days, &I::Hours, &I::Minutes, &I::Seconds, &I::Microseconds},
         "'(\\d+) (\\d+):(\\d+):(\\d+)\\.(\\d+)'",
         "'%d %d:%d:%d.%d' DAY_MICROSECOND"},
        {"HOUR_MINUTE", {&I::Hours, &I::Minutes}, "'(\\d+):(\\d+)'", "'%d:%d' HOUR_MINUTE"},
        {"HOUR_SECOND",
         {&I::Hours, &I::Minutes, &I::Seconds},
         "'(\\d+):(\\d+):(\\d+)'",
         "'%d:%d:%d' HOUR_SECOND"},
        {"HOUR_MICROSECOND",
         {&I::Hours, &I::Minutes, &I::Seconds, &I::Microseconds},
         "'(\\d+):(\\d+):(\\d+)\\.(\\d+)'",
         "'%d:%d:%d.%d' HOUR_MICROSECOND"},
        {"MINUTE_SECOND", {&I::Minutes, &I::Seconds}, "'(\\d+):(\\d+)'", "'%d:%d' MINUTE_SECOND"},
        {"MINUTE_MICROSECOND",
         {&I::Minutes, &I::Seconds, &I::Microseconds},
         "'(\\d+):(\\d+)\\.(\\d+)'",
         "'%d:%d.%d' MINUTE_MICROSECOND"},
        {"SECOND_MICROSECOND",
         {&I::Seconds, &I::Microseconds},
         "'(\\d+)\\.(\\d+)'",
         "'%d.%d' SECOND_MICROSECOND"},
    };
    return units;
}

const TUnit *FindUnit(const QString &word)
{
    for (const TUnit &unit : Units())
        if (word == QLatin1String(unit.Word))
            return &unit;
    return nullptr;
}

qint64 ToNumber(const QString &text)
{
    bool ok = false;
    const qint64 value = text.trimmed().toLongLong(&ok);
    if (!ok)
        throw EException(TFormat::Format("'%s' is not a valid integer value", {text}));
    return value;
}

QString UnitOf(const TDbmInterval &i)
{
    if (i.Years)
        return i.Months ? "YEAR_MONTH" : "YEAR";
    if (i.Quarters)
        return "QUARTER";
    if (i.Months)
        return "MONTH";
    if (i.Weeks)
        return "WEEK";
    const QString start = i.Days ? "DAY" : i.Hours ? "HOUR" : i.Minutes ? "MINUTE" : "";
    const QString end = i.Microseconds ? "MICROSECOND"
                        : i.Seconds    ? "SECOND"
                        : i.Minutes    ? "MINUTE"
                        : i.Hours      ? "HOUR"
                                       : "";
    if (!start.isEmpty())
        return end.isEmpty() || end == start ? start : start + '_' + end;
    if (i.Seconds)
        return i.Microseconds ? "SECOND_MICROSECOND" : "SECOND";
    return end;
}

} // namespace

void TDbmIntervalUtils::ParseValue(const QString &value, const QString &field,
                                   TDbmInterval &interval)
{
    interval = {};
    const TUnit *unit = FindUnit(field);
    if (!unit)
        throw EException(TFormat::Format("Parse interval error. Unknown type (%s).", {field}));
    if (!unit->Pattern) {
        interval.*unit->Members.first() = ToNumber(value);
        return;
    }
    const auto match = TRegExUtils::Match(value, unit->Pattern);
    if (match.lastCapturedIndex() != unit->Members.size())
        throw EException(TFormat::Format("Parse %s interval error.", {unit->Word}));
    for (qsizetype i = 0; i < unit->Members.size(); ++i)
        interval.*unit->Members[i] = ToNumber(match.captured(static_cast<int>(i) + 1));
}

QString TDbmIntervalUtils::FormatValue(const TDbmInterval &interval)
{
    const TUnit *unit = FindUnit(UnitOf(interval));
    if (!unit)
        throw EException("Format interval error. Can not detect type.");
    QList<TFormat::TArgument> args;
    for (const TMember member : unit->Members)
        args.append(interval.*member);
    // Deliberate: this one form goes without its seconds and fails for want of an argument, so that
    // nothing else than was asked for reaches the server.
    if (unit->Members.size() == 5)
        args.removeAt(3);
    return TFormat::Format(unit->Format, args);
}

QString TDbmIntervalUtils::IntervalToDisplayString(const TDbmInterval &interval)
{
    static constexpr struct
    {
        TMember Member;
        const char *Format;
    } pieces[] = {{&I::Years, "%dy"},   {&I::Quarters, "%dq"}, {&I::Months, "%dm"},
                  {&I::Weeks, "%dw"},   {&I::Days, "%dd"},     {&I::Hours, "%dh"},
                  {&I::Minutes, "%dm"}, {&I::Seconds, "%ds"},  {&I::Microseconds, "%dms"}};
    QStringList texts;
    for (const auto &piece : pieces)
        if (interval.*piece.Member != 0)
            texts.append(TFormat::Format(piece.Format, {interval.*piece.Member}));
    return texts.join(' ');
}
