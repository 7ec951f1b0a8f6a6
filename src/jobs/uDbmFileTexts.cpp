#include "jobs/uDbmFileTexts.h"

#include "support/uRegExUtils.h"

#include <algorithm>

namespace {

// Quoted parts and comments, possessive, so that a long one needs no stack.
const QString Parts = QStringLiteral("'(?:[^'\\\\]|''|\\\\.)*+'|\"(?:[^\"\\\\]|\"\"|\\\\.)*+\"|"
                                     "`(?:[^`]|``)*+`|/\\*.*?\\*/|--\\s[^\\n]*|#[^\\n]*");

constexpr auto Multiline = QRegularExpression::DotMatchesEverythingOption;
constexpr auto CaseBlind = QRegularExpression::CaseInsensitiveOption;

// Inside quotes every line end comes back as CR LF, blanks ahead of it are cut off, and lines that
// look empty, like comments or like commands of the reader are dropped.
bool IsChanged(const QString &quoted)
{
    return TRegExUtils::IsMatch(
        quoted, "(?<!\\r)\\n|[ \\t]\\r?\\n|\\n[ \\t]*(?:#|--|DELIMITER|\\r?\\n)", CaseBlind);
}

QString FittedPart(QString part, bool hasEscapes)
{
    const QChar first = part[0];
    if (first == u'/' && TRegExUtils::IsMatch(part, "\\n[ \\t]*(?:#|--)"))
        return part.replace(u'\n', u' ');
    if (hasEscapes && (first == u'\'' || first == u'"') && IsChanged(part))
        return part.replace(u'\r', "\\r").replace(u'\n', "\\n");
    return part;
}

bool BeginsItsLine(const QString &text, qsizetype at)
{
    const qsizetype line = at > 0 ? text.lastIndexOf(u'\n', at - 1) + 1 : 0;
    return QStringView(text).sliced(line, at - line).trimmed().isEmpty();
}

bool IsDropped(const QString &text, qsizetype at)
{
    const QChar c = text[at];
    if (c == u'\r')
        return at + 1 < text.size() && text[at + 1] != u'\n';
    return c < QChar(14) && c != u'\t' && c != u'\n';
}

} // namespace

bool TDbmFileTexts::HasDropped(const QString &text)
{
    for (qsizetype i = 0; i < text.size(); ++i)
        if (text[i] < QChar(14) && IsDropped(text, i))
            return true;
    return false;
}

bool TDbmFileTexts::NeedsDigits(const QString &text)
{
    return std::any_of(text.begin(), text.end(),
                       [](QChar c) { return c < u'\b' || c == u'\v' || c == u'\f'; });
}

QString TDbmFileTexts::Fitted(const QString &body, bool hasEscapes)
{
    QString fitted;
    qsizetype done = 0;
    TRegExUtils::ForEachMatch(
        body, Parts,
        [&](const QRegularExpressionMatch &match) {
            fitted += QStringView(body).sliced(done, match.capturedStart() - done);
            fitted += FittedPart(match.captured(), hasEscapes);
            done = match.capturedEnd();
        },
        Multiline);
    fitted += QStringView(body).sliced(done);
    return TRegExUtils::Replace(fitted, "(\\n[ \\t]*)(DELIMITER)", "\\1/**/\\2", CaseBlind);
}

QString TDbmFileTexts::FittedNames(const QString &text)
{
    QString fitted = text;
    TRegExUtils::ForEachMatch(
        text, Parts,
        [&](const QRegularExpressionMatch &match) {
            if (text[match.capturedStart()] != u'`')
                return;
            for (qsizetype i = match.capturedStart(); i < match.capturedEnd(); ++i)
                if (text[i] < QChar(14) && text[i] != u'\t')
                    fitted[i] = u'_';
        },
        Multiline);
    return fitted;
}

QStringList TDbmFileTexts::Losses(const QString &body)
{
    bool comments = false;
    bool texts = false;
    TRegExUtils::ForEachMatch(
        body, Parts,
        [&](const QRegularExpressionMatch &match) {
            const QChar first = body[match.capturedStart()];
            if (first == u'-' || first == u'#')
                comments = comments || BeginsItsLine(body, match.capturedStart());
            else if (first != u'/')
                texts = texts || IsChanged(match.captured());
        },
        Multiline);
    QStringList losses;
    if (comments)
        losses += "comment lines";
    if (texts)
        losses += "line ends inside quoted texts";
    return losses;
}

QString TDbmFileTexts::Delimiter(const QString &program)
{
    // As the reader sees it: what it drops may stand inside a delimiter, what it trims behind one.
    QString read;
    for (qsizetype i = 0; i < program.size(); ++i)
        if (program[i] != u'\r' && !IsDropped(program, i))
            read += program[i];
    const auto isFree = [&](const QString &delimiter) {
        return !TRegExUtils::IsMatch(
            read, QRegularExpression::escape(delimiter) + "[\\x00-\\x20]*\\n", CaseBlind);
    };
    for (const char *delimiter : {"$$", "//", "$$$"})
        if (isFree(delimiter))
            return delimiter;
    QString delimiter;
    for (int i = 1; delimiter.isEmpty() || !isFree(delimiter); ++i)
        delimiter = QString("$end%1$").arg(i); // lower case: so it comes back from the file
    return delimiter;
}

QString TDbmFileTexts::HexLiteral(const QString &text)
{
    return "_utf8mb4 0x" + QString::fromLatin1(text.toUtf8().toHex().toUpper());
}
