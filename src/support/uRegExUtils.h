#pragma once

#include <QRegularExpression>
#include <QString>
#include <functional>

/// The regular expression calls of the system, all on PCRE2. Compiled expressions are kept per
/// thread, since the same few run over every line of a script and every row of an answer.
class TRegExUtils
{
public:
    using TOptions = QRegularExpression::PatternOptions;
    using TMatchAction = std::function<void(const QRegularExpressionMatch &)>;

    static bool IsMatch(const QString &text, const QString &pattern, TOptions options = {});
    /// The first match; hasMatch() is false when there is none. lastCapturedIndex() tells which
    /// groups took part.
    static QRegularExpressionMatch Match(const QString &text, const QString &pattern,
                                         TOptions options = {});
    static void ForEachMatch(const QString &text, const QString &pattern,
                             const TMatchAction &action, TOptions options = {});
    static QString Replace(const QString &text, const QString &pattern, const QString &with,
                           TOptions options = {});
};
