#pragma once

#include "model/uDbmEntityTypes.h"

/// The interval of a recurring event between the server's pair of value and unit, the record, and
/// the text of an EVERY clause.
class TDbmIntervalUtils
{
public:
    static TDbmInterval NullInterval() { return {}; }
    /// `value` and `field` as INTERVAL_VALUE and INTERVAL_FIELD. Raises EException for a unit that
    /// is not known or a value that is not of the unit's form.
    static void ParseValue(const QString &value, const QString &field, TDbmInterval &interval);
    /// The unit follows from which members are not zero; smaller ones that it has no room for are
    /// left out. Raises EException when all are zero.
    static QString FormatValue(const TDbmInterval &interval);
    /// "1d 2h"; empty for the null interval.
    static QString IntervalToDisplayString(const TDbmInterval &interval);
};
