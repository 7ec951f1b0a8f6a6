#include "pages/query/uCodeCompletion.h"

#include "shell/uGuard.h"
#include "widgets/uCompletionList.h"
#include "widgets/uTextEditor.h"
#include "widgets/uTextEditorQsci.h"

#include <QKeyEvent>
#include <QTimer>

namespace {

constexpr QChar TriggerChar = u'.';
constexpr QChar EndOfTokenChr = u' '; // the only one: brackets and points belong to a word

} // namespace

TCodeCompletion::TCodeCompletion(TTextEditor *editor)
    : QObject(editor), FEditor(editor), FManager(*this), FList(new TCompletionList(editor))
{
    FEditor->Editor()->installEventFilter(this);
    FEditor->Editor()->viewport()->installEventFilter(this);
    connect(FList, &TCompletionList::OnChosen, this, &TCodeCompletion::Insert);
    connect(FEditor->Editor(), &QsciScintilla::textChanged, this,
            [this] { FManager.DataModified(); });
}

TCodeCompletion::~TCodeCompletion()
{
    delete FList; // child of the window, which outlives the editor
}

void TCodeCompletion::Execute()
{
    if (FEditor->IsReadOnly() || !TryFindMatches()) {
        Cancel();
        return;
    }
    QStringList texts;
    for (const TCodeCompleteMatch &match : std::as_const(FMatches))
        texts += match.Item.DisplayValue;
    if (FList->isVisible())
        FList->SetTexts(texts);
    else
        FList->Open(texts, FEditor->PointUnderCaret(FMatches.first().Replaces),
                    FEditor->LineHeight());
}

void TCodeCompletion::Cancel()
{
    FList->hide();
}

bool TCodeCompletion::TryFindMatches()
{
    FMatches = FManager.Matches();
    return !FMatches.isEmpty();
}

bool TCodeCompletion::eventFilter(QObject *watched, QEvent *event)
{
    switch (event->type()) {
    case QEvent::ShortcutOverride: {
        // Keys of an open list are not to be taken by menus and the editor's own shortcuts.
        auto *key = static_cast<QKeyEvent *>(event);
        const bool opens = key->key() == Qt::Key_Space && key->modifiers() == Qt::ControlModifier;
        if (!opens && !(FList->isVisible() && key->key() == Qt::Key_Escape))
            return false;
        event->accept();
        return true;
    }
    case QEvent::KeyPress:
        return watched == FEditor->Editor() && KeyPressed(static_cast<QKeyEvent *>(event));
    case QEvent::FocusOut:
    case QEvent::Wheel:
    case QEvent::MouseButtonPress:
    case QEvent::Hide:
        Cancel();
        return false;
    default:
        return false;
    }
}

bool TCodeCompletion::KeyPressed(QKeyEvent *key)
{
    if (key->key() == Qt::Key_Space && key->modifiers() == Qt::ControlModifier) {
        TGuard::Run([this] { Execute(); });
        return true;
    }
    // Keys may come faster than the list follows them.
    if (FList->isVisible() && std::exchange(FUpdates, false))
        TGuard::Run([this] { Execute(); });
    if (FList->TakeKey(key))
        return true;
    const QString text = key->text();
    if (FList->isVisible() && text == EndOfTokenChr && key->modifiers() == Qt::NoModifier)
        Insert(FList->CurrentRow());
    const bool opens = text == TriggerChar && !FEditor->IsReadOnly();
    if ((opens || FList->isVisible()) && !std::exchange(FUpdates, true))
        QTimer::singleShot(0, this, [this, opens] {
            if (!std::exchange(FUpdates, false))
                return;
            if (opens || FList->isVisible())
                TGuard::Run([this] { Execute(); });
        });
    return false;
}

void TCodeCompletion::Insert(int row)
{
    Cancel();
    if (row < 0 || row >= FMatches.size())
        return;
    const TCodeCompleteMatch match = FMatches[row];
    FEditor->ReplaceBeforeCaret(match.Replaces, match.Item.InsertValue);
}

QString TCodeCompletion::Text() const
{
    return FEditor->Text();
}

QString TCodeCompletion::LineBeforeCaret() const
{
    return FEditor->LineBeforeCaret();
}

qint32 TCodeCompletion::CaretLine() const
{
    return static_cast<qint32>(FEditor->CaretLine()) + 1;
}

qint32 TCodeCompletion::CaretChar() const
{
    return static_cast<qint32>(FEditor->CaretColumn()) + 1;
}
