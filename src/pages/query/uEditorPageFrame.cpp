#include "pages/query/uEditorPageFrame.h"

#include "pages/query/uEditorFrame.h"
#include "pages/query/uTextDocumentFile.h"
#include "shell/uFileDialogs.h"
#include "shell/uGuard.h"
#include "widgets/uIcons.h"
#include "widgets/uTextEditor.h"
#include "widgets/uToolBar.h"
#include "widgets/uWaitCursor.h"

#include <QAction>
#include <QVBoxLayout>

TEditorPageFrame::TEditorPageFrame(QWidget *owner) : TPageFrame(owner) {}

void TEditorPageFrame::Initialize(const QString &title, const QString &fileNameOrText,
                                  bool useFileName, bool readOnly)
{
    FTitle = title;
    FFileNameOrText = fileNameOrText;
    FUseFileName = useFileName;
    FReadOnly = readOnly;
}

void TEditorPageFrame::DoCreate()
{
    TPageFrame::DoCreate();
    auto *column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    auto *toolBar = new TToolBar(this, "tbrEditor");
    actSave = toolBar->addAction(TIcons::Icon("save"), "Save");
    actSave->setObjectName("actSave");
    connect(actSave, &QAction::triggered, this, [this] { TGuard::Run([this] { Save(); }); });
    column->addWidget(toolBar);
    panEditor = new QWidget(this);
    panEditor->setObjectName("panEditor");
    column->addWidget(panEditor, 1);
}

void TEditorPageFrame::DoLoad()
{
    FEditorFrame = New<TEditorFrame>(panEditor);
    FEditorFrame->MoveTo(panEditor);
    FEditorFrame->Editor().setAccessibleName("Text");
    bool readOnly = FReadOnly;
    if (FUseFileName) {
        TWaitCursor::Show();
        TTextDocumentFile file;
        FEditorFrame->SetText(file.Load(FFileNameOrText));
        readOnly = readOnly || file.IsUndecodable();
    } else {
        FEditorFrame->SetText(FFileNameOrText);
    }
    FEditorFrame->Editor().SetReadOnly(readOnly);
    FEditorFrame->setFocus(); // a new page was activated before it had an editor
}

void TEditorPageFrame::DoActivate()
{
    if (FEditorFrame)
        FEditorFrame->setFocus();
}

QString TEditorPageFrame::GetText() const
{
    return FEditorFrame ? FEditorFrame->Text() : FFileNameOrText;
}

void TEditorPageFrame::Save()
{
    QString fileName;
    if (!TFileDialogs::Save(this, {.DefaultName = "export.txt", .Extension = "txt"}, fileName))
        return;
    TTextDocumentFile file;
    file.SaveAs(fileName, FEditorFrame->Text());
    FEditorFrame->Editor().SetModified(false);
}
