#include "widgets/uTextEditorControl.h"

#include "widgets/uTextEditorCodec.h"
#include "widgets/uTextEditorCommands.h"

#include <QClipboard>
#include <QContextMenuEvent>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QMimeData>
#include <algorithm>
#include <memory>

namespace {

const int TabWidth = 4; // columns

// The keys with Ctrl and a character that the component may keep. All others stay with the
// windows around it, which have their own use for most of them.
const int EditingKeys[] = {Qt::Key_A, Qt::Key_C, Qt::Key_D, Qt::Key_V,
                           Qt::Key_X, Qt::Key_Y, Qt::Key_Z};

bool IsForeignKey(int combination)
{
    if (!(combination & Qt::ControlModifier))
        return false;
    const int key = combination & ~int(Qt::KeyboardModifierMask);
    if (key >= Qt::Key_Escape)
        return false;
    const bool plain = !(combination & (Qt::ShiftModifier | Qt::AltModifier));
    return !plain || !std::ranges::count(EditingKeys, key);
}

bool IsEnter(const QKeyEvent *event)
{
    return event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
}

} // namespace

TTextEditorControl::TTextEditorControl(QWidget *parent) : QsciScintilla(parent)
{
    SetOptions();
    LimitKeys();
}

long TTextEditorControl::Send(unsigned int message, qsizetype wParam, qsizetype lParam) const
{
    return SendScintilla(message, static_cast<unsigned long>(wParam), static_cast<long>(lParam));
}

long TTextEditorControl::Send(unsigned int message, qsizetype wParam, const char *lParam) const
{
    return SendScintilla(message, static_cast<uintptr_t>(wParam), lParam);
}

void TTextEditorControl::SetOptions()
{
    setUtf8(true);
    setFrameShape(QFrame::NoFrame);
    setWrapMode(WrapNone);
    setAutoIndent(true);
    setIndentationsUseTabs(false);
    setTabWidth(TabWidth);
    setIndentationGuides(false);
    setBackspaceUnindents(true);
    setBraceMatching(NoBraceMatch);
    setAutoCompletionSource(AcsNone);
    for (int margin = 0; margin < margins(); ++margin)
        setMarginWidth(margin, 0);
    Send(SCI_SETVIRTUALSPACEOPTIONS, SCVS_RECTANGULARSELECTION | SCVS_USERACCESSIBLE);
    Send(SCI_SETMULTIPLESELECTION, false);
    Send(SCI_SETADDITIONALSELECTIONTYPING, true);
    Send(SCI_SETSCROLLWIDTH, 1);
    Send(SCI_SETSCROLLWIDTHTRACKING, true);
    Send(SCI_SETLAYOUTCACHE, SC_CACHE_PAGE);
    Send(SCI_SETPOSITIONCACHE, 4096);
    // Notes of styles and line states are of no use above and would come once a line.
    Send(SCI_SETMODEVENTMASK, SC_MOD_INSERTTEXT | SC_MOD_DELETETEXT);
}

void TTextEditorControl::LimitKeys()
{
    for (QsciCommand *command : standardCommands()->commands()) {
        if (IsForeignKey(command->key()))
            command->setKey(0);
        if (IsForeignKey(command->alternateKey()))
            command->setAlternateKey(0);
    }
    if (QsciCommand *redo = standardCommands()->find(QsciCommand::Redo))
        redo->setAlternateKey(int(Qt::ControlModifier) | Qt::ShiftModifier | Qt::Key_Z);
}

QByteArrayView TTextEditorControl::Range(qsizetype from, qsizetype to) const
{
    if (to <= from)
        return {};
    const long address = Send(SCI_GETRANGEPOINTER, from, to - from);
    return {reinterpret_cast<const char *>(address), to - from};
}

QByteArrayView TTextEditorControl::LineRange(qsizetype line) const
{
    return Range(LineStart(line), LineEnd(line));
}

void TTextEditorControl::ReplaceRange(qsizetype from, qsizetype to, const QByteArray &bytes)
{
    Send(SCI_SETTARGETRANGE, from, to);
    Send(SCI_REPLACETARGET, bytes.size(), bytes.constData());
}

bool TTextEditorControl::HasPopup() const
{
    return Send(SCI_AUTOCACTIVE) || Send(SCI_CALLTIPACTIVE);
}

QsciCommand *TTextEditorControl::CommandOf(const QKeyEvent *event) const
{
    const auto modifiers = event->modifiers() & ~Qt::KeypadModifier;
    return standardCommands()->boundTo(event->key() | int(modifiers));
}

void TTextEditorControl::Cut()
{
    if (isReadOnly())
        return;
    Send(SCI_COPY);
    DeleteSelection();
}

void TTextEditorControl::Paste()
{
    const QString text = QGuiApplication::clipboard()->text();
    if (text.contains(QChar::Null)) {
        TTextEditorCommands::Paste(*this, text);
        return;
    }
    Send(SCI_BEGINUNDOACTION);
    DeleteLongSelection();
    Send(SCI_PASTE);
    Send(SCI_ENDUNDOACTION);
}

void TTextEditorControl::DeleteSelection()
{
    if (!DeleteLongSelection() && !Send(SCI_GETSELECTIONEMPTY))
        Send(SCI_CLEAR);
}

bool TTextEditorControl::DeleteLongSelection()
{
    const qsizetype from = Send(SCI_GETSELECTIONSTART);
    const qsizetype length = Send(SCI_GETSELECTIONEND) - from;
    // A shorter one has nothing hidden in it.
    if (length < ShownAtCaret || Send(SCI_SELECTIONISRECTANGLE) || isReadOnly())
        return false;
    Send(SCI_DELETERANGE, from, length);
    Send(SCI_SETEMPTYSELECTION, from);
    return true;
}

bool TTextEditorControl::event(QEvent *event)
{
    // The component would claim Escape for itself, and no dialog around it could be left by it.
    const bool isEscape = event->type() == QEvent::ShortcutOverride &&
                          static_cast<QKeyEvent *>(event)->key() == Qt::Key_Escape;
    if (isEscape && !HasPopup()) {
        event->ignore();
        return false;
    }
    return QsciScintilla::event(event);
}

void TTextEditorControl::keyPressEvent(QKeyEvent *event)
{
    if (event->key() == Qt::Key_Escape && !HasPopup()) {
        event->ignore();
        Q_EMIT OnEscape(event);
        return;
    }
    const bool control =
        (event->modifiers() & Qt::ControlModifier) && !(event->modifiers() & Qt::AltModifier);
    const QsciCommand *command = CommandOf(event);
    if (command && command->command() == QsciCommand::Paste) {
        Paste();
        return;
    }
    if (control && !HasPopup() && !command) {
        // Else the component would write the key's character into the text.
        event->ignore();
        return;
    }
    if (HasPopup() || isReadOnly())
        QsciScintilla::keyPressEvent(event);
    else
        Edit(event);
}

void TTextEditorControl::Edit(QKeyEvent *event)
{
    const QsciCommand *command = CommandOf(event);
    if (command && command->command() == QsciCommand::SelectionCut)
        return Cut();
    const bool isDelete = command && (command->command() == QsciCommand::Delete ||
                                      command->command() == QsciCommand::DeleteBack);
    const bool isText = !command && !event->text().isEmpty() && event->text().at(0).isPrint();
    const bool isReplaced = (isDelete || isText || IsEnter(event)) &&
                            Send(SCI_GETSELECTIONEND) - Send(SCI_GETSELECTIONSTART) >= ShownAtCaret;
    // A group of its own for each letter would be undone letter by letter.
    const bool isGroup = isReplaced || IsEnter(event);
    if (isGroup)
        Send(SCI_BEGINUNDOACTION);
    const bool isDeleted = isReplaced && DeleteLongSelection();
    if (!isDeleted || !isDelete)
        QsciScintilla::keyPressEvent(event);
    if (IsEnter(event))
        Q_EMIT OnNewLine();
    if (isGroup)
        Send(SCI_ENDUNDOACTION);
}

void TTextEditorControl::inputMethodEvent(QInputMethodEvent *event)
{
    if (!event->commitString().isEmpty())
        DeleteLongSelection();
    QsciScintilla::inputMethodEvent(event);
}

void TTextEditorControl::contextMenuEvent(QContextMenuEvent *event)
{
    QPoint position = event->globalPos();
    if (event->reason() == QContextMenuEvent::Keyboard) {
        const qsizetype caret = CaretPosition();
        const int x = int(Send(SCI_POINTXFROMPOSITION, 0, caret));
        const int y = int(Send(SCI_POINTYFROMPOSITION, 0, caret)) + textHeight(0);
        position = viewport()->mapToGlobal(QPoint(x, y));
    }
    Q_EMIT OnMenu(position);
    event->accept();
}

bool TTextEditorControl::focusNextPrevChild(bool next)
{
    if (FTabInput)
        return QsciScintilla::focusNextPrevChild(next);
    return QAbstractScrollArea::focusNextPrevChild(next);
}

QByteArray TTextEditorControl::fromMimeData(const QMimeData *source, bool &rectangular) const
{
    QsciScintilla::fromMimeData(source, rectangular);
    return TTextEditorCodec::Encode(source->text());
}

QMimeData *TTextEditorControl::toMimeData(const QByteArray &text, bool rectangular) const
{
    std::unique_ptr<QMimeData> data(QsciScintilla::toMimeData(text, rectangular));
    // The component hands a copy over in which each NUL has become a blank.
    const QByteArrayView selected = Range(Send(SCI_GETSELECTIONSTART), Send(SCI_GETSELECTIONEND));
    const bool isSelected = !rectangular && selected.size() == text.size();
    data->setText(TTextEditorCodec::Decode(isSelected ? selected : QByteArrayView(text)));
    return data.release();
}
