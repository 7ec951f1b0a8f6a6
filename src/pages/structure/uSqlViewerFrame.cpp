#include "pages/structure/uSqlViewerFrame.h"

#include "pages/query/uEditorFrame.h"
#include "widgets/uTextEditor.h"

void TSqlViewerFrame::DoCreate()
{
    FEditorFrame = New<TSqlEditorFrame>(this);
    FEditorFrame->MoveTo(this);
    FEditorFrame->Editor().setAccessibleName("SQL");
    FEditorFrame->Editor().SetGutterVisible(false);
    FEditorFrame->Editor().SetReadOnly(true);
    FEditorFrame->Editor().SetTabInput(false);
    FEditorFrame->SetActiveLineColor(Qt::transparent);
    setFocusProxy(FEditorFrame);
}

void TSqlViewerFrame::SetContent(const QString &text)
{
    // Any change anywhere draws the page anew; who reads in it must not lose the place.
    if (text == FEditorFrame->Text())
        return;
    TTextEditor &editor = FEditorFrame->Editor();
    const qsizetype line = editor.CaretLine(), column = editor.CaretColumn();
    FEditorFrame->SetText(text);
    editor.SetCaret(line, column);
}
