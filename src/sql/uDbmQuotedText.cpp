#include "sql/uDbmQuotedText.h"

#include "support/uRegExUtils.h"

#include <algorithm>

namespace {

// Possessive, so that a text of megabytes needs no stack. Both ways of escaping are known.
const QString Quotes =
    QStringLiteral("'(?:[^'\\\\]|''|\\\\.)*+'|`(?:[^`]|``)*+`|\"(?:[^\"\\\\]|\"\"|\\\\.)*+\"");
const QString Comments = QStringLiteral("/\\*.*?\\*/|--\\s[^\\r\\n]*|#[^\\r\\n]*");

constexpr auto Options =
    QRegularExpression::DotMatchesEverythingOption | QRegularExpression::UseUnicodePropertiesOption;

QString Quoted(const QString &name, QChar quote)
{
    return quote + QString(name).replace(quote, QString(2, quote)) + quote;
}

QString ReplaceTokens(const QString &text, const QString &pattern, const QStringList &spellings,
                      const QString &with)
{
    QString replaced;
    qsizetype done = 0;
    TRegExUtils::ForEachMatch(
        text, pattern,
        [&](const QRegularExpressionMatch &match) {
            if (!spellings.contains(match.captured(), Qt::CaseInsensitive))
                return;
            replaced += text.mid(done, match.capturedStart() - done) + with;
            done = match.capturedEnd();
        },
        Options);
    return replaced + text.mid(done);
}

} // namespace

QString TDbmQuotedText::Masked(const QString &text)
{
    QString masked = text;
    TRegExUtils::ForEachMatch(
        text, Quotes + '|' + Comments,
        [&](const QRegularExpressionMatch &match) {
            std::fill_n(masked.begin() + match.capturedStart(), match.capturedLength(), u'x');
        },
        Options);
    return masked;
}

QString TDbmQuotedText::RenameColumn(const QString &expression, const QString &oldName,
                                     const QString &newName)
{
    const QString with = Quoted(newName, u'`');
    const QString renamed =
        ReplaceTokens(expression, Quotes, {Quoted(oldName, u'`'), Quoted(oldName, u'"')}, with);
    if (renamed != expression)
        return renamed;
    // A server told not to quote writes names bare. A word in front of a bracket is a function.
    return ReplaceTokens(expression, Quotes + "|[\\w$]++(?!\\()", {oldName}, with);
}
