#include "pages/query/uEditorFrame.h"

#include "widgets/uTextEditor.h"

#include <QVBoxLayout>

TEditorFrame::TEditorFrame(QWidget *owner) : TBaseFrame(owner) {}

void TEditorFrame::DoCreate()
{
    FEditor = CreateEditor();
    FEditor->setObjectName("edEditor");
    FEditor->SetBorderVisible(false);
    auto *column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->addWidget(FEditor);
    setFocusProxy(FEditor);
    connect(FEditor, &TTextEditor::OnChange, this, &TEditorFrame::OnChange);
}

TTextEditor *TEditorFrame::CreateEditor()
{
    return new TTextEditor(this);
}

QString TEditorFrame::Text() const
{
    return FEditor->Text();
}

void TEditorFrame::SetText(const QString &text)
{
    FEditor->SetText(text);
}

void TEditorFrame::PasteText(const QString &text)
{
    FEditor->PasteText(text);
}

TSqlEditorFrame::TSqlEditorFrame(QWidget *owner) : TEditorFrame(owner) {}

TTextEditor *TSqlEditorFrame::CreateEditor()
{
    return new TSqlTextEditor(this);
}

void TSqlEditorFrame::SetActiveLineColor(const QColor &color)
{
    Editor().SetActiveLineColor(color);
}
