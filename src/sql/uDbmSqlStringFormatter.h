#pragma once

#include <QString>

/// Escapes text for a quoted literal. Any thread: the escape table is read-only.
class TDbmSqlStringFormatter
{
public:
    /// The escaped text without quotes. A text with nothing to escape comes back as it is, without
    /// an allocation.
    static QString Format(const QString &value);
};
