#include "widgets/uTextEditorSearch.h"

#include "widgets/uTextEditorCodec.h"
#include "widgets/uTextEditorControl.h"

#include <QCoreApplication>
#include <algorithm>

namespace {

const qsizetype QuickSize = 4 * 1024 * 1024; // UTF-16 units that are searched while one types
const size_t CountableHits = 10'000;
const qsizetype FirstWindow = 16 * 1024; // UTF-16 units looked at first by a search backwards

QString Tr(const char *text)
{
    return QCoreApplication::translate("TTextEditorSearch", text);
}

QString PatternOf(const TTextEditorSearchOptions &options)
{
    QString pattern = options.RegExp ? options.Text : QRegularExpression::escape(options.Text);
    if (options.WholeWord)
        pattern = QStringLiteral("(?<!\\w)(?:%1)(?!\\w)").arg(pattern);
    // "$" has to stand before CR LF too.
    return QStringLiteral("(*ANYCRLF)") + pattern;
}

QRegularExpression::PatternOptions FlagsOf(const TTextEditorSearchOptions &options)
{
    QRegularExpression::PatternOptions flags =
        QRegularExpression::MultilineOption | QRegularExpression::UseUnicodePropertiesOption;
    if (!options.MatchCase)
        flags |= QRegularExpression::CaseInsensitiveOption;
    return flags;
}

// The search takes no text with half a character in it. A stand-in has the same length.
QString Searchable(QString text)
{
    if (text.isValidUtf16())
        return text;
    for (qsizetype i = 0; i < text.size(); ++i) {
        const bool isPair =
            text[i].isHighSurrogate() && i + 1 < text.size() && text[i + 1].isLowSurrogate();
        if (isPair)
            ++i;
        else if (text[i].isSurrogate())
            text[i] = QChar::ReplacementCharacter;
    }
    return text;
}

} // namespace

void TTextEditorSearch::TextChanged()
{
    FText.reset();
    FOriginal.clear();
    FHits.reset();
}

bool TTextEditorSearch::IsQuick() const
{
    return FControl->Size() <= QuickSize;
}

bool TTextEditorSearch::Prepare(const TTextEditorSearchOptions &options, QString &error)
{
    if (options.Text.isEmpty())
        return false;
    if (!(options == FOptions) || FPattern.pattern().isEmpty()) {
        FOptions = options;
        FPattern = QRegularExpression(PatternOf(options), FlagsOf(options));
        FHits.reset();
    }
    if (!FPattern.isValid()) {
        error = Tr("The expression is wrong: %1").arg(FPattern.errorString());
        return false;
    }
    if (!FText) {
        FOriginal = TTextEditorCodec::Decode(FControl->Range(0, FControl->Size()));
        FText = Searchable(FOriginal);
    }
    return true;
}

TTextEditorSearchResult TTextEditorSearch::Find(const TTextEditorSearchOptions &options,
                                                bool forward)
{
    TTextEditorSearchResult result;
    if (!Prepare(options, result.Error))
        return result;
    const qsizetype from = forward ? SelectionEnd() : SelectionStart();
    std::optional<THit> hit = forward ? Next(from, result.Error) : Previous(from, result.Error);
    // An empty hit at the caret was the last one found already.
    if (forward && hit && hit->Length == 0 && hit->Start == from)
        hit = from < FText->size() ? Next(from + 1, result.Error) : std::nullopt;
    if (!hit && result.Error.isEmpty()) {
        hit = forward ? Next(0, result.Error) : Previous(FText->size() + 1, result.Error);
        result.Wrapped = hit.has_value();
    }
    if (!hit)
        return result;
    result.Found = true;
    Select(*hit);
    CountHits(result, *hit);
    return result;
}

TTextEditorSearchResult
TTextEditorSearch::FindFromSelection(const TTextEditorSearchOptions &options)
{
    FControl->Send(QsciScintilla::SCI_SETEMPTYSELECTION,
                   FControl->Send(QsciScintilla::SCI_GETSELECTIONSTART));
    return Find(options, true);
}

QRegularExpressionMatch TTextEditorSearch::MatchAt(qsizetype from, QString &error) const
{
    // The text is known to be valid. To check it again would cost its whole length at each hit.
    QRegularExpressionMatch match =
        FPattern.match(*FText, from, QRegularExpression::NormalMatch,
                       QRegularExpression::DontCheckSubjectStringMatchOption);
    if (!match.isValid())
        error = Tr("The search was given up, the expression takes too long on this text.");
    return match;
}

std::optional<TTextEditorSearch::THit> TTextEditorSearch::Next(qsizetype from, QString &error) const
{
    const QRegularExpressionMatch match = MatchAt(from, error);
    if (!match.hasMatch())
        return std::nullopt;
    return THit{match.capturedStart(), match.capturedLength()};
}

std::optional<TTextEditorSearch::THit> TTextEditorSearch::Previous(qsizetype before,
                                                                   QString &error) const
{
    // Expressions only match forwards. The nearest hits are looked for first, so that a hit close
    // by does not cost the whole text.
    for (qsizetype window = FirstWindow; error.isEmpty(); window *= 8) {
        const qsizetype from = std::max<qsizetype>(0, before - window);
        const std::optional<THit> hit = Last(from, before, error);
        if (hit || from == 0)
            return hit;
    }
    return std::nullopt;
}

std::optional<TTextEditorSearch::THit> TTextEditorSearch::Last(qsizetype from, qsizetype before,
                                                               QString &error) const
{
    std::optional<THit> last;
    while (from <= FText->size()) {
        const std::optional<THit> hit = Next(from, error);
        if (!hit || hit->Start >= before)
            break;
        last = hit;
        from = hit->Start + std::max<qsizetype>(1, hit->Length);
    }
    return last;
}

void TTextEditorSearch::Select(THit hit)
{
    const qsizetype start = PositionOf(hit.Start);
    const qsizetype end = PositionOf(hit.Start + hit.Length);
    FControl->Send(QsciScintilla::SCI_SETSEL, start, end);
}

void TTextEditorSearch::CountHits(TTextEditorSearchResult &result, THit hit)
{
    if (!IsQuick())
        return;
    if (!FHits) {
        FHits.emplace();
        auto matches = FPattern.globalMatch(*FText);
        while (matches.hasNext() && FHits->size() <= CountableHits)
            FHits->push_back(matches.next().capturedStart());
    }
    if (FHits->size() > CountableHits)
        return;
    const auto found = std::lower_bound(FHits->begin(), FHits->end(), hit.Start);
    if (found == FHits->end() || *found != hit.Start)
        return; // overlaps one of the counted hits
    result.Index = int(found - FHits->begin()) + 1;
    result.Count = int(FHits->size());
}

TTextEditorSearchResult TTextEditorSearch::Replace(const TTextEditorSearchOptions &options,
                                                   const QString &replacement)
{
    TTextEditorSearchResult result;
    if (FControl->isReadOnly() || !Prepare(options, result.Error))
        return result;
    const qsizetype start = SelectionStart();
    const qsizetype length = SelectionEnd() - start;
    const QRegularExpressionMatch match = MatchAt(start, result.Error);
    if (!result.Error.isEmpty())
        return result;
    const bool isHit =
        match.hasMatch() && match.capturedStart() == start && match.capturedLength() == length;
    if (isHit) {
        const QString text = Expand(replacement, match);
        PutInPlace({start, length}, text);
        const qsizetype position = FControl->Send(QsciScintilla::SCI_GETTARGETEND);
        FControl->Send(QsciScintilla::SCI_SETSEL, position, position);
    }
    return Find(options, true);
}

TTextEditorSearchResult TTextEditorSearch::ReplaceAll(const TTextEditorSearchOptions &options,
                                                      const QString &replacement)
{
    TTextEditorSearchResult result;
    if (FControl->isReadOnly() || !Prepare(options, result.Error))
        return result;
    const QString original = FOriginal;
    QString text;
    qsizetype first = -1;
    qsizetype done = 0;
    for (qsizetype from = 0; from <= original.size();) {
        const QRegularExpressionMatch match = MatchAt(from, result.Error);
        if (!result.Error.isEmpty())
            return result;
        if (!match.hasMatch())
            break;
        if (first < 0)
            first = done = match.capturedStart();
        text += QStringView(original).mid(done, match.capturedStart() - done);
        text += Expand(replacement, match);
        done = match.capturedEnd();
        from = std::max(done, match.capturedStart() + 1);
        ++result.Count;
    }
    if (result.Count == 0)
        return result;
    result.Found = true;
    const qsizetype line = FControl->LineOf(FControl->CaretPosition());
    const qsizetype column = FControl->CaretPosition() - FControl->LineStart(line);
    PutInPlace({first, done - first}, text);
    const qsizetype last = FControl->Send(QsciScintilla::SCI_GETLINECOUNT) - 1;
    const qsizetype target = std::min(line, last);
    const qsizetype position =
        std::min(FControl->LineStart(target) + column, FControl->LineEnd(target));
    FControl->Send(QsciScintilla::SCI_SETEMPTYSELECTION, position);
    return result;
}

void TTextEditorSearch::PutInPlace(THit range, const QString &text)
{
    const qsizetype from = PositionOf(range.Start);
    const qsizetype to = PositionOf(range.Start + range.Length);
    FControl->ReplaceRange(from, to, TTextEditorCodec::Encode(text));
}

QString TTextEditorSearch::Expand(const QString &replacement,
                                  const QRegularExpressionMatch &match) const
{
    if (!FOptions.RegExp)
        return replacement;
    // Taken from the text itself, not from the searched one with its stand-ins.
    const auto captured = [&](int group) {
        return QStringView(FOriginal).mid(std::max<qsizetype>(0, match.capturedStart(group)),
                                          match.capturedLength(group));
    };
    QString text;
    for (qsizetype i = 0; i < replacement.size(); ++i) {
        const QChar c = replacement[i];
        const bool isMark = (c == u'\\' || c == u'$') && i + 1 < replacement.size();
        const QChar next = isMark ? replacement[i + 1] : QChar();
        i += isMark ? 1 : 0;
        if (!isMark)
            text += c;
        else if (next >= u'0' && next <= u'9')
            text += captured(next.unicode() - u'0');
        else if (c == u'\\' && next == u'n')
            text += u'\n';
        else if (c == u'\\' && next == u'r')
            text += u'\r';
        else if (c == u'\\' && next == u't')
            text += u'\t';
        else if (next == c)
            text += c;
        else
            text += QStringView(replacement).mid(i - 1, 2);
    }
    return text;
}

qsizetype TTextEditorSearch::SelectionStart()
{
    return UnitOf(FControl->Send(QsciScintilla::SCI_GETSELECTIONSTART));
}

qsizetype TTextEditorSearch::SelectionEnd()
{
    return UnitOf(FControl->Send(QsciScintilla::SCI_GETSELECTIONEND));
}

qsizetype TTextEditorSearch::UnitOf(qsizetype position) const
{
    if (FText->size() == FControl->Size())
        return position;
    return TTextEditorCodec::UnitsOf(FControl->Range(0, position));
}

qsizetype TTextEditorSearch::PositionOf(qsizetype unit) const
{
    if (FText->size() == FControl->Size())
        return unit;
    return TTextEditorCodec::BytesOf(FControl->Range(0, FControl->Size()), unit);
}
