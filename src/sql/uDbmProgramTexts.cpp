#include "sql/uDbmProgramTexts.h"

#include "sql/uDatasetUtils.h"
#include "sql/uDbmQuotedText.h"
#include "support/uRegExUtils.h"

namespace {

constexpr auto CaseBlind = QRegularExpression::CaseInsensitiveOption;

qsizetype EndOfParameters(const QString &masked)
{
    int depth = 0;
    for (qsizetype i = masked.indexOf(u'('); i >= 0 && i < masked.size(); ++i) {
        if (masked[i] == u'(')
            ++depth;
        else if (masked[i] == u')' && --depth == 0)
            return i + 1;
    }
    return -1;
}

// Behind the parameters and what a function returns the server writes each clause on a line.
qsizetype StartOfRoutine(const QString &masked)
{
    static const QRegularExpression clause(
        "\\G    (LANGUAGE SQL|(NOT )?DETERMINISTIC|(NO|CONTAINS|READS|MODIFIES) SQL( DATA)?|"
        "SQL SECURITY (INVOKER|DEFINER)|COMMENT x*)\\n");
    const qsizetype parameters = EndOfParameters(masked);
    const qsizetype line = parameters < 0 ? -1 : masked.indexOf(u'\n', parameters);
    if (line < 0)
        return -1;
    qsizetype at = line + 1;
    for (;;) {
        const QRegularExpressionMatch match = clause.match(masked, at);
        if (!match.hasMatch())
            return at;
        at = match.capturedEnd();
    }
}

qsizetype EndOfMatch(const QString &masked, const QString &pattern)
{
    return TRegExUtils::Match(masked, pattern, CaseBlind).capturedEnd();
}

} // namespace

QString TDbmProgramTexts::Body(const QString &kind, const QString &create)
{
    const QString masked = TDbmQuotedText::Masked(create);
    const qsizetype start = kind == u"TRIGGER"
                                ? EndOfMatch(masked, "\\bFOR\\s+EACH\\s+ROW\\b\\s*"
                                                     "((FOLLOWS|PRECEDES)\\s+\\S+\\s*)?")
                            : kind == u"EVENT" ? EndOfMatch(masked, "\\bDO\\s+")
                                               : StartOfRoutine(masked);
    return start < 0 ? QString() : create.mid(start);
}

QString TDbmProgramTexts::ParseBody(const QString &kind, const TDataSet &row)
{
    return Body(kind, TDatasetUtils::AsString(row, Column(kind), {}));
}

QString TDbmProgramTexts::Column(const QString &kind)
{
    if (kind == u"TRIGGER")
        return "SQL Original Statement";
    return "Create " + kind.left(1) + kind.mid(1).toLower();
}
