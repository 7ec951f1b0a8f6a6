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
    FEditorFrame->SetText(text);
}
