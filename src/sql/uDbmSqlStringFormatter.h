#pragma once

#include <QString>

/// Escapes text for a quoted literal. Any thread: the escape table is read-only.
///
/// Names, comments and passwords pass through here wherever a template has them in quotes, and not
/// only values: an object whose name or comment holds a quote has to be found, dumped and changed
/// like any other, a comment that nobody edited has to go back as it was, and a password has to be
/// set as it was typed. A text with nothing to escape is sent to the byte as it stands. Names in
/// backticks are not escaped by the formatters.
class TDbmSqlStringFormatter
{
public:
    /// The escaped text without quotes. A text with nothing to escape comes back as it is, without
    /// an allocation.
    static QString Format(const QString &value);
};
