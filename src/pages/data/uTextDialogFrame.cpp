#include "pages/data/uTextDialogFrame.h"

#include "pages/query/uEditorFrame.h"
#include "widgets/uTextEditor.h"

#include <QVBoxLayout>

void TTextDialogFrame::DoCreate()
{
    auto *column = new QVBoxLayout(this);
    auto *panEditor = new QWidget(this);
    FEditorFrame = New<TEditorFrame>(panEditor);
    FEditorFrame->MoveTo(panEditor);
    FEditorFrame->Editor().SetGutterVisible(false);
    FEditorFrame->Editor().setAccessibleName("Text");
    column->addWidget(panEditor);
    resize(fontMetrics().averageCharWidth() * 90, fontMetrics().height() * 30);
}

void TTextDialogFrame::SetParams(const QString &title, const QString &text)
{
    FTitle = title;
    FEditorFrame->SetText(text);
}

QString TTextDialogFrame::GetResultText() const
{
    return FEditorFrame->Text();
}
