#pragma once

#include "client/uDataSet.h"

#include <functional>

/// Reads of a dataset's rows. Each As... gives `def` only when the column is absent from the
/// answer; a NULL reads as empty text, 0, date-time 0 or a null variant. A date-time comes in whole
/// seconds.
class TDatasetUtils
{
public:
    /// Moves to the first row and calls back once per row until the end.
    static void ForEach(TDataSet &dataset, const std::function<void(TDataSet &)> &callback);
    static QString AsString(const TDataSet &dataset, const QString &name, const QString &def);
    static int AsInteger(const TDataSet &dataset, const QString &name, int def);
    static qint64 AsLargeint(const TDataSet &dataset, const QString &name, qint64 def);
    static TDateTime AsDateTime(const TDataSet &dataset, const QString &name, TDateTime def);
    static TVariant AsVariant(const TDataSet &dataset, const QString &name, const TVariant &def);
};
