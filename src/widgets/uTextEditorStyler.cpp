#include "widgets/uTextEditorStyler.h"

#include "widgets/uTextEditorControl.h"

#include <QLocale>
#include <QTimer>
#include <algorithm>

namespace {

const qsizetype LongLine = 64 * 1024;        // bytes; measuring as many takes some 30 ms
const qsizetype ShownAround = 16 * 1024;     // bytes shown of a long line to each side of the caret
const qsizetype FirstPiece = 1024 * 1024;    // bytes styled at once in a paint
const qsizetype LaterPiece = 1024 * 1024;    // bytes styled at once between events
const qsizetype BlockSize = 64 * 1024;       // bytes given to the component at once
const qsizetype StateDistance = 1024 * 1024; // bytes read at most for the state of a line

bool IsTail(char byte)
{
    return (byte & 0xC0) == 0x80;
}

} // namespace

TTextEditorStyler::TTextEditorStyler(TTextEditorControl *control)
    : QObject(control), FControl(control)
{
    control->Send(QsciScintilla::SCI_SETLEXER, QsciScintilla::SCLEX_CONTAINER);
    control->Send(QsciScintilla::SCI_ANNOTATIONSETVISIBLE, QsciScintilla::ANNOTATION_STANDARD);
    connect(control, &QsciScintilla::SCN_STYLENEEDED, this, &TTextEditorStyler::StyleNeeded);
    connect(control, &QsciScintilla::SCN_UPDATEUI, this, &TTextEditorStyler::UpdateUi);
    connect(control, &QsciScintilla::SCN_MODIFIED, this,
            [this](int position, int type, const char *, int length) {
                Modified(position, type, length);
            });
}

void TTextEditorStyler::SetLineStyler(TLineStyler styler)
{
    FLineStyler = std::move(styler);
    FValidEnd = 0;
    FControl->Send(QsciScintilla::SCI_STARTSTYLING, 0);
    FControl->viewport()->update();
}

qsizetype TTextEditorStyler::StyledTo() const
{
    return FControl->Send(QsciScintilla::SCI_GETENDSTYLED);
}

bool TTextEditorStyler::IsLongLine(qsizetype line) const
{
    return FControl->Send(QsciScintilla::SCI_LINELENGTH, line) > LongLine;
}

int TTextEditorStyler::LineState(qsizetype line)
{
    const qsizetype end = FControl->LineEnd(line);
    if (end - StyledTo() > StateDistance)
        return -1;
    StyleUpTo(end + 1, StateDistance * 2);
    return int(FControl->Send(QsciScintilla::SCI_GETLINESTATE, line));
}

void TTextEditorStyler::StyleNeeded(int position)
{
    FTarget = std::max<qsizetype>(FTarget, position);
    StyleUpTo(position, FirstPiece);
    if (StyledTo() >= FTarget || FContinuing)
        return;
    FContinuing = true;
    QTimer::singleShot(0, this, &TTextEditorStyler::Continue);
}

void TTextEditorStyler::Continue()
{
    FTarget = std::min(FTarget, FControl->Size());
    StyleUpTo(FTarget, LaterPiece);
    FContinuing = StyledTo() < FTarget;
    if (FContinuing)
        QTimer::singleShot(0, this, &TTextEditorStyler::Continue);
    else
        FTarget = 0;
}

void TTextEditorStyler::Modified(int position, int type, int length)
{
    if (type & QsciScintilla::SC_MOD_INSERTTEXT) {
        if (position < FValidEnd)
            FValidEnd += length;
        if (position < FChangedEnd)
            FChangedEnd += length;
        FChangedEnd = std::max<qsizetype>(FChangedEnd, position + length);
        if (length > LongLine)
            HideLongLines(position, position + length);
    } else if (type & QsciScintilla::SC_MOD_DELETETEXT) {
        const auto shift = [&](qsizetype end) {
            return end > position ? std::max<qsizetype>(position, end - length) : end;
        };
        FValidEnd = shift(FValidEnd);
        FChangedEnd = std::max<qsizetype>(shift(FChangedEnd), position);
    }
}

void TTextEditorStyler::StyleUpTo(qsizetype target, qsizetype byteLimit)
{
    target = std::min(target, FControl->Size());
    TPlace place = PlaceAt(StyledTo());
    const qsizetype stop = place.Position + byteLimit;
    while (place.Position < target && place.Position < stop) {
        const qsizetype start = place.Position;
        FControl->Send(QsciScintilla::SCI_STARTSTYLING, start);
        const bool joined = StyleBlock(place, std::min(target, stop));
        FControl->Send(QsciScintilla::SCI_SETSTYLINGEX, place.Position - start, FStyles.data());
        if (joined) {
            // From here on nothing can come out otherwise than before.
            place = PlaceAt(FValidEnd);
            FControl->Send(QsciScintilla::SCI_STARTSTYLING, place.Position);
        }
    }
    FValidEnd = std::max(FValidEnd, place.Position);
    if (place.Position > FChangedEnd || place.Position == FControl->Size())
        FChangedEnd = -1;
}

void TTextEditorStyler::HideLongLines(qsizetype from, qsizetype to)
{
    // The caret may be measured before the first paint asks for styles.
    const qsizetype styledTo = std::min(StyledTo(), from);
    const qsizetype last = FControl->LineOf(to);
    for (qsizetype line = FControl->LineOf(from); line <= last; ++line) {
        if (!IsLongLine(line))
            continue;
        FControl->Send(QsciScintilla::SCI_STARTSTYLING, FControl->LineStart(line));
        FControl->Send(QsciScintilla::SCI_SETSTYLING,
                       FControl->LineEnd(line) - FControl->LineStart(line), HiddenStyle);
    }
    FControl->Send(QsciScintilla::SCI_STARTSTYLING, styledTo);
}

TTextEditorStyler::TPlace TTextEditorStyler::PlaceAt(qsizetype position) const
{
    const qsizetype line = FControl->LineOf(position);
    const bool isFirst = line == 0;
    const long state = isFirst ? 0 : FControl->Send(QsciScintilla::SCI_GETLINESTATE, line - 1);
    return {line, FControl->LineStart(line), int(state)};
}

bool TTextEditorStyler::StyleBlock(TPlace &place, qsizetype target)
{
    if (FStyles.capacity() > size_t(FirstPiece))
        FStyles = {}; // held the styles of a huge line
    FStyles.clear();
    while (place.Position < target && qsizetype(FStyles.size()) < BlockSize) {
        const bool isUnchanged = place.Position > FChangedEnd && place.Position < FValidEnd;
        const long oldState = FControl->Send(QsciScintilla::SCI_GETLINESTATE, place.Line);
        StyleLine(place);
        if (isUnchanged && place.State == oldState && place.Position < FValidEnd)
            return true;
    }
    return false;
}

void TTextEditorStyler::StyleLine(TPlace &place)
{
    const qsizetype length = FControl->Send(QsciScintilla::SCI_LINELENGTH, place.Line);
    const bool isLong = length > LongLine;
    const size_t before = FStyles.size();
    FStyles.resize(before + size_t(length), 0);
    char *styles = FStyles.data() + before;
    if (FLineStyler) {
        const QByteArrayView text = FControl->Range(place.Position, place.Position + length);
        const int state = FLineStyler(text.data(), length, place.State, styles);
        FControl->Send(QsciScintilla::SCI_SETLINESTATE, place.Line, state);
        place.State = state;
    }
    if (isLong)
        HideFarPart(place, styles);
    QueueNote(place.Line, isLong);
    place.Position += length;
    ++place.Line;
}

void TTextEditorStyler::HideFarPart(const TPlace &place, char *styles) const
{
    // The line end stays: the caret does not stop before hidden text but behind it, and would go
    // to the next line.
    const QByteArrayView text = FControl->LineRange(place.Line);
    const qsizetype length = text.size();
    const qsizetype caret = FControl->CaretPosition();
    const qsizetype middle = FControl->LineOf(caret) == place.Line ? caret - place.Position : 0;
    qsizetype from = std::max<qsizetype>(0, middle - ShownAround);
    qsizetype to = std::min(length, std::max(middle, ShownAround) + ShownAround);
    while (from > 0 && IsTail(text[from]))
        --from;
    while (to < length && IsTail(text[to]))
        ++to;
    std::fill(styles, styles + from, char(HiddenStyle));
    std::fill(styles + to, styles + length, char(HiddenStyle));
}

void TTextEditorStyler::UpdateUi(int updated)
{
    if (updated & (QsciScintilla::SC_UPDATE_SELECTION | QsciScintilla::SC_UPDATE_CONTENT))
        MoveWindowToCaret();
}

void TTextEditorStyler::MoveWindowToCaret()
{
    const qsizetype caret = FControl->CaretPosition();
    const qsizetype line = FControl->LineOf(caret);
    if (!IsLongLine(line) || StyledTo() < caret)
        return;
    const qsizetype start = FControl->LineStart(line);
    const qsizetype last = std::max(start, FControl->LineEnd(line) - 1);
    const auto isHidden = [&](qsizetype position) {
        const qsizetype inLine = std::clamp(position, start, last);
        return FControl->Send(QsciScintilla::SCI_GETSTYLEAT, inLine) == HiddenStyle;
    };
    if (!isHidden(caret - TTextEditorControl::ShownAtCaret) && !isHidden(caret) &&
        !isHidden(caret + TTextEditorControl::ShownAtCaret))
        return;
    const qsizetype styledTo = StyledTo();
    TPlace place = PlaceAt(start);
    FStyles.clear();
    StyleLine(place);
    FControl->Send(QsciScintilla::SCI_STARTSTYLING, start);
    FControl->Send(QsciScintilla::SCI_SETSTYLINGEX, place.Position - start, FStyles.data());
    FControl->Send(QsciScintilla::SCI_STARTSTYLING, std::max(styledTo, place.Position));
    ScrollToCaret();
}

void TTextEditorStyler::ScrollToCaret()
{
    // The component scrolls as little as it must. From an offset of the part shown before that
    // would leave the caret at an edge, with nothing to be seen beside it.
    const qsizetype caret = FControl->CaretPosition();
    FControl->Send(QsciScintilla::SCI_SETXOFFSET, 0);
    const long x = FControl->Send(QsciScintilla::SCI_POINTXFROMPOSITION, 0, caret);
    const int width = FControl->viewport()->width();
    if (x > width)
        FControl->Send(QsciScintilla::SCI_SETXOFFSET, x - width / 2);
    FControl->Send(QsciScintilla::SCI_SCROLLCARET);
}

void TTextEditorStyler::QueueNote(qsizetype line, bool isLong)
{
    const bool hasNote = FControl->Send(QsciScintilla::SCI_ANNOTATIONGETLINES, line) > 0;
    if (isLong == hasNote)
        return;
    // Styles are asked for in the middle of a paint, where no line may change its height.
    if (FNoteLines.isEmpty())
        QTimer::singleShot(0, this, &TTextEditorStyler::WriteNotes);
    FNoteLines.insert(line);
}

void TTextEditorStyler::WriteNotes()
{
    for (const qsizetype line : std::exchange(FNoteLines, {})) {
        const qsizetype length = FControl->Send(QsciScintilla::SCI_LINELENGTH, line);
        if (length <= LongLine) {
            FControl->Send(QsciScintilla::SCI_ANNOTATIONSETTEXT, line, nullptr);
            continue;
        }
        const QString note = tr("This line is %1 long. Only the part around the caret is shown.")
                                 .arg(QLocale::c().formattedDataSize(length));
        FControl->Send(QsciScintilla::SCI_ANNOTATIONSETTEXT, line, note.toUtf8().constData());
        FControl->Send(QsciScintilla::SCI_ANNOTATIONSETSTYLE, line,
                       QsciScintilla::STYLE_LINENUMBER);
    }
}
