#include "support/uRegExUtils.h"

#include "support/uException.h"

#include <QHash>
#include <utility>

namespace {

// Patterns with an object's name in them come and go, so the cache starts anew when it is full.
constexpr qsizetype MostKept = 500;

QRegularExpression Compiled(const QString &pattern, TRegExUtils::TOptions options)
{
    thread_local QHash<std::pair<QString, int>, QRegularExpression> cache;
    const auto key = std::make_pair(pattern, static_cast<int>(options));
    auto found = cache.find(key);
    if (found == cache.end()) {
        QRegularExpression expression(pattern, options);
        if (!expression.isValid())
            throw EException("Regular expression \"" + pattern + "\": " + expression.errorString());
        if (cache.size() >= MostKept)
            cache.clear();
        found = cache.insert(key, expression);
    }
    return *found;
}

} // namespace

bool TRegExUtils::IsMatch(const QString &text, const QString &pattern, TOptions options)
{
    return Match(text, pattern, options).hasMatch();
}

QRegularExpressionMatch TRegExUtils::Match(const QString &text, const QString &pattern,
                                           TOptions options)
{
    return Compiled(pattern, options).match(text);
}

void TRegExUtils::ForEachMatch(const QString &text, const QString &pattern,
                               const TMatchAction &action, TOptions options)
{
    auto matches = Compiled(pattern, options).globalMatch(text);
    while (matches.hasNext())
        action(matches.next());
}

QString TRegExUtils::Replace(const QString &text, const QString &pattern, const QString &with,
                             TOptions options)
{
    QString result = text;
    result.replace(Compiled(pattern, options), with);
    return result;
}
