#include "jobs/uDbmSqlModes.h"

namespace {

// Of two servers of different kinds each knows these, and they are what a program's text depends
// on.
const QStringList CommonModes{"ALLOW_INVALID_DATES",
                              "ANSI_QUOTES",
                              "ERROR_FOR_DIVISION_BY_ZERO",
                              "HIGH_NOT_PRECEDENCE",
                              "IGNORE_SPACE",
                              "NO_AUTO_VALUE_ON_ZERO",
                              "NO_BACKSLASH_ESCAPES",
                              "NO_ENGINE_SUBSTITUTION",
                              "NO_UNSIGNED_SUBTRACTION",
                              "NO_ZERO_DATE",
                              "NO_ZERO_IN_DATE",
                              "ONLY_FULL_GROUP_BY",
                              "PAD_CHAR_TO_FULL_LENGTH",
                              "PIPES_AS_CONCAT",
                              "REAL_AS_FLOAT",
                              "STRICT_ALL_TABLES",
                              "STRICT_TRANS_TABLES"};
// Without these the text of a program is another text or none.
const QStringList SyntaxModes{"ANSI_QUOTES",          "HIGH_NOT_PRECEDENCE", "IGNORE_SPACE",
                              "NO_BACKSLASH_ESCAPES", "PIPES_AS_CONCAT",     "REAL_AS_FLOAT"};
// Names for several of the others, and one that concerns accounts.
const QStringList SilentModes{"ANSI", "TRADITIONAL", "NO_AUTO_CREATE_USER"};

// Sorted.
QStringList Common(const QStringList &one, const QStringList &other)
{
    QStringList both;
    for (const QString &word : one)
        if (other.contains(word))
            both += word;
    both.sort();
    return both;
}

} // namespace

TDbmSqlModes::TFit TDbmSqlModes::Fit(const QString &made, const QString &here, bool isOtherKind,
                                     bool intoFile)
{
    const QStringList madeWords = made.split(u',', Qt::SkipEmptyParts);
    const QStringList hereWords = here.split(u',', Qt::SkipEmptyParts);
    TFit fit;
    QStringList known = CommonModes;
    for (const QString &word : madeWords) {
        if (known.contains(word) || hereWords.contains(word) || SilentModes.contains(word))
            continue;
        if (intoFile || isOtherKind)
            fit.Lost += word;
        else
            known += word;
    }
    const QStringList wanted = Common(madeWords, known);
    const QStringList syntax = Common(madeWords, SyntaxModes);
    // A file changes modes only for what would not load otherwise, or as something else, on any
    // server with modes of the usual kind.
    const bool hasToBeSet =
        intoFile && (!syntax.isEmpty() || !Common(hereWords, SyntaxModes).isEmpty());
    const bool isOther = wanted != Common(hereWords, known);
    if (hasToBeSet || (isOther && !intoFile))
        fit.Mode = wanted.isEmpty() ? QString("") : wanted.join(u',');
    else if (isOther)
        fit.Lost += u'"' + wanted.join(u',') + u'"';
    return fit;
}
