#include "widgets/uTextEditorActions.h"

#include "widgets/uTextEditor.h"
#include "widgets/uTextEditorCommands.h"
#include "widgets/uTextEditorControl.h"

#include <QAction>
#include <QMenu>

struct TTextEditorActions::TEntry
{
    const char *Name;
    QString Caption;
    QList<QKeySequence> Keys;
    // What is bound in the component already shows its keys in the menu but does not take them.
    bool IsOwnKey;
    std::function<void()> Handler;
};

TTextEditorActions::TTextEditorActions(TTextEditor *editor) : QObject(editor), FEditor(editor)
{
    auto *control = static_cast<TTextEditorControl *>(editor->Editor());
    const auto send = [control](int message) { return [=] { control->Send(message); }; };
    const auto key = [](const char *text) { return QKeySequence(QLatin1String(text)); };
    using TSci = QsciScintilla;
    const TEntry entries[] = {
        {"actUndo", tr("Undo"), {key("Ctrl+Z")}, false, send(TSci::SCI_UNDO)},
        {"actRedo", tr("Redo"), {key("Ctrl+Y")}, false, send(TSci::SCI_REDO)},
        {"actCut", tr("Cut"), {key("Ctrl+X")}, false, [=] { control->Cut(); }},
        {"actCopy", tr("Copy"), {key("Ctrl+C")}, false, send(TSci::SCI_COPY)},
        {"actPaste", tr("Paste"), {key("Ctrl+V")}, false, [=] { control->Paste(); }},
        {"actDelete", tr("Delete"), {key("Del")}, false, [=] { control->DeleteSelection(); }},
        {"actSelectAll", tr("Select All"), {key("Ctrl+A")}, false, send(TSci::SCI_SELECTALL)},
        {"actFind", tr("Find..."), {key("Ctrl+F")}, true, [=] { editor->OpenSearch(false); }},
        {"actFindNext", tr("Find Next"), {key("F3")}, true, [=] { editor->FindNext(true); }},
        {"actFindPrev",
         tr("Find Previous"),
         {key("Shift+F3")},
         true,
         [=] { editor->FindNext(false); }},
        {"actReplace", tr("Replace..."), {key("Ctrl+H")}, true, [=] { editor->OpenSearch(true); }},
        {"actToggleComment",
         tr("Toggle Comment"),
         {key("Ctrl+/")},
         true,
         [=] { TTextEditorCommands::ToggleComment(*control); }},
        {"actZoomIn",
         tr("Zoom In"),
         {key("Ctrl++"), key("Ctrl+=")},
         true,
         [=] { control->zoomIn(); }},
        {"actZoomOut", tr("Zoom Out"), {key("Ctrl+-")}, true, [=] { control->zoomOut(); }},
        {"actZoomReset", tr("Actual Size"), {key("Ctrl+0")}, true, [=] { control->zoomTo(0); }},
    };
    for (const TEntry &entry : entries)
        Add(entry);
}

QAction *TTextEditorActions::Add(const TEntry &entry)
{
    auto *action = new QAction(entry.Caption, FEditor);
    action->setObjectName(QLatin1String(entry.Name));
    if (entry.IsOwnKey) {
        action->setShortcuts(entry.Keys);
        action->setShortcutContext(Qt::WidgetWithChildrenShortcut);
        FEditor->addAction(action);
    } else {
        action->setText(entry.Caption + u'\t' +
                        entry.Keys.first().toString(QKeySequence::NativeText));
    }
    connect(action, &QAction::triggered, this, entry.Handler);
    return action;
}

QAction *TTextEditorActions::Find(const char *name) const
{
    return FEditor->findChild<QAction *>(QLatin1String(name), Qt::FindDirectChildrenOnly);
}

void TTextEditorActions::UpdateStates()
{
    auto *control = static_cast<TTextEditorControl *>(FEditor->Editor());
    const bool canWrite = !FEditor->IsReadOnly();
    const bool hasSelection = FEditor->HasSelection();
    Find("actUndo")->setEnabled(canWrite && control->isUndoAvailable());
    Find("actRedo")->setEnabled(canWrite && control->isRedoAvailable());
    Find("actCut")->setEnabled(canWrite && hasSelection);
    Find("actCopy")->setEnabled(hasSelection);
    Find("actPaste")->setEnabled(canWrite && control->Send(QsciScintilla::SCI_CANPASTE));
    Find("actDelete")->setEnabled(canWrite && hasSelection);
    Find("actSelectAll")->setEnabled(control->Size() > 0);
}

void TTextEditorActions::Popup(const QPoint &globalPosition)
{
    UpdateStates();
    auto *menu = new QMenu(FEditor);
    menu->setObjectName(QStringLiteral("editorMenu"));
    menu->setAttribute(Qt::WA_DeleteOnClose);
    const bool canWrite = !FEditor->IsReadOnly();
    Find("actReplace")->setVisible(canWrite);
    Find("actToggleComment")->setVisible(canWrite);
    for (const char *name : {"actUndo", "actRedo", "", "actCut", "actCopy", "actPaste", "actDelete",
                             "", "actSelectAll", "", "actFind", "actReplace", "actToggleComment"}) {
        if (*name)
            menu->addAction(Find(name));
        else
            menu->addSeparator();
    }
    menu->popup(globalPosition);
}
