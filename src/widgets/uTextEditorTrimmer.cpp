#include "widgets/uTextEditorTrimmer.h"

#include "widgets/uTextEditorControl.h"

#include <algorithm>

namespace {

// An indicator that draws nothing moves with the text it lies on; no list of places has to.
const int TypedMark = QsciScintilla::INDIC_CONTAINER;

bool IsBlank(char c)
{
    return c == ' ' || c == '\t';
}

} // namespace

TTextEditorTrimmer::TTextEditorTrimmer(TTextEditorControl *control)
    : QObject(control), FControl(control)
{
    control->Send(QsciScintilla::SCI_INDICSETSTYLE, TypedMark, QsciScintilla::INDIC_HIDDEN);
    connect(control, &QsciScintilla::SCN_UPDATEUI, this, &TTextEditorTrimmer::UpdateUi);
    connect(control, &TTextEditorControl::OnNewLine, this, [this] { Trim(false); });
    connect(control, &QsciScintilla::SCN_MODIFIED, this,
            [this](int position, int type, const char *text, int length) {
                Modified(position, type, text, length);
            });
}

void TTextEditorTrimmer::TrimAll()
{
    Trim(true);
}

void TTextEditorTrimmer::Modified(int position, int type, const char *text, int length)
{
    const bool isTyping = (type & QsciScintilla::SC_MOD_INSERTTEXT) &&
                          (type & QsciScintilla::SC_PERFORMED_USER) && !FLoading;
    if (!isTyping || !std::all_of(text, text + length, IsBlank))
        return;
    FHasTyped = true;
    FControl->Send(QsciScintilla::SCI_SETINDICATORCURRENT, TypedMark);
    FControl->Send(QsciScintilla::SCI_SETINDICATORVALUE, 1);
    FControl->Send(QsciScintilla::SCI_INDICATORFILLRANGE, position, length);
}

void TTextEditorTrimmer::UpdateUi(int updated)
{
    if (updated & QsciScintilla::SC_UPDATE_SELECTION)
        Trim(false);
}

void TTextEditorTrimmer::Trim(bool withCaretLine)
{
    // A change here would take away what the user may still want to redo.
    const bool canTrim = FHasTyped && !FTrimming && !FControl->isReadOnly() &&
                         !FControl->Send(QsciScintilla::SCI_CANREDO);
    if (!canTrim)
        return;
    FTrimming = true;
    const qsizetype caretLine = FControl->LineOf(FControl->CaretPosition());
    FHasTyped = false;
    FControl->Send(QsciScintilla::SCI_BEGINUNDOACTION);
    for (qsizetype position = 0; position < FControl->Size();) {
        if (!IsTyped(position)) {
            const qsizetype next =
                FControl->Send(QsciScintilla::SCI_INDICATOREND, TypedMark, position);
            if (next <= position)
                break;
            position = next;
            continue;
        }
        const qsizetype line = FControl->LineOf(position);
        if (line == caretLine && !withCaretLine)
            FHasTyped = true;
        else
            TrimLine(line);
        position = FControl->LineEnd(line) + 1;
    }
    FControl->Send(QsciScintilla::SCI_ENDUNDOACTION);
    FTrimming = false;
}

void TTextEditorTrimmer::TrimLine(qsizetype line)
{
    const qsizetype from = TypedTailStart(line);
    const qsizetype end = FControl->LineEnd(line);
    if (from < end && !(FIsInString && FIsInString(line)))
        FControl->ReplaceRange(from, end, {});
    Forget(FControl->LineStart(line), FControl->LineEnd(line));
}

qsizetype TTextEditorTrimmer::TypedTailStart(qsizetype line) const
{
    const qsizetype start = FControl->LineStart(line);
    qsizetype from = FControl->LineEnd(line);
    while (from > start && IsTyped(from - 1) &&
           IsBlank(char(FControl->Send(QsciScintilla::SCI_GETCHARAT, from - 1))))
        --from;
    return from;
}

bool TTextEditorTrimmer::IsTyped(qsizetype position) const
{
    return FControl->Send(QsciScintilla::SCI_INDICATORVALUEAT, TypedMark, position) != 0;
}

void TTextEditorTrimmer::Forget(qsizetype from, qsizetype to)
{
    FControl->Send(QsciScintilla::SCI_SETINDICATORCURRENT, TypedMark);
    FControl->Send(QsciScintilla::SCI_INDICATORCLEARRANGE, from, to - from);
}
