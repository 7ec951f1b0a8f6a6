#include "pages/query/uQueryPageFrame.h"

#include "app/uAppConfig.h"
#include "pages/data/uDataFrame.h"
#include "pages/query/uEditorFrame.h"
#include "pages/query/uQueryPageControls.h"
#include "shell/uAppDialogs.h"
#include "shell/uFileDialogs.h"
#include "shell/uGuard.h"
#include "support/uFormat.h"
#include "widgets/uTextEditor.h"
#include "widgets/uWaitCursor.h"

#include <QAction>
#include <QClipboard>
#include <QFileInfo>
#include <QGuiApplication>

// The text of a query page, its file, and what becomes of it when the page goes.

void TQueryPageFrame::LoadEditor()
{
    FEditorFrame = New<TSqlEditorFrame>(Controls()->panEditor);
    FEditorFrame->MoveTo(Controls()->panEditor);
    FEditorFrame->Editor().setAccessibleName("SQL");
    if (FOnEditor)
        FOnEditor(&FEditorFrame->Editor());
    // Ahead of the file, which may be one that cannot be read.
    if (FFileName.isEmpty() || !FUnsavedText.isNull())
        FEditorFrame->SetText(FFileName.isEmpty() ? FText : FUnsavedText);
    FEditorFrame->Editor().SetModified(!FUnsavedText.isNull());
    connect(FEditorFrame, &TEditorFrame::OnChange, this, [this] {
        FRevision = NewRevision();
        UpdateActions();
    });
    if (!FFileName.isEmpty())
        LoadFile();
}

void TQueryPageFrame::LoadFile()
{
    TWaitCursor::Show();
    // While the file has not been read, nothing may be typed that could be written over it.
    FEditorFrame->Editor().SetReadOnly(true);
    const QString text = FFile.Load(FFileName);
    FEditorFrame->Editor().SetReadOnly(false);
    // Whoever changed the file since the crash is not overwritten without a question.
    if (!FUnsavedStamp.isEmpty())
        FFile.SetStamp(FUnsavedStamp);
    if (FUnsavedText.isNull()) {
        const QSignalBlocker quiet(FEditorFrame); // nobody has changed anything
        FEditorFrame->SetText(text);
    }
    FEditorFrame->Editor().SetReadOnly(FFile.IsUndecodable());
}

int TQueryPageFrame::NewRevision()
{
    static int last = 0;
    return ++last;
}

bool TQueryPageFrame::MayOverwrite()
{
    return !FFile.IsChangedOnDisk() ||
           TAppDialogs::Execute(
               TFormat::Format("The file \"%s\" was changed by another program. Overwrite it?",
                               {FFileName}),
               [] {});
}

void TQueryPageFrame::Save()
{
    if (FFileName.isEmpty()) {
        SaveAs();
        return;
    }
    if (!MayOverwrite())
        return;
    FEditorFrame->Editor().TrimTrailingSpaces();
    FFile.Save(FEditorFrame->Text());
    FEditorFrame->Editor().SetModified(false);
    UpdateActions();
}

void TQueryPageFrame::SaveAs()
{
    const QFileInfo file(FFileName);
    const TFileDialogs::TOptions options = {
        .Folder = FFileName.isEmpty() ? TAppConfig::ReadLastQueryFolder() : file.path(),
        .DefaultName = FFileName.isEmpty() ? QString() : file.fileName(),
        .Extension = "sql"};
    QString fileName;
    if (!TFileDialogs::Save(this, options, fileName))
        return;
    TAppConfig::WriteLastQueryFolder(QFileInfo(fileName).path());
    FEditorFrame->Editor().TrimTrailingSpaces();
    FFile.SaveAs(fileName, FEditorFrame->Text());
    FEditorFrame->Editor().SetModified(false);
    FFileName = fileName;
    UpdateActions();
    DisplayStatus();
    UpdateId("query." + fileName);
    UpdateTitle();
}

// A modified page with a file is saved without asking, but never over somebody else's change and
// never lost by a disk that refuses: then the user decides.
bool TQueryPageFrame::SaveBeforeClose()
{
    if (!FEditorFrame || FFileName.isEmpty() || !FEditorFrame->Editor().IsModified())
        return true;
    TGuard::Run([this] { Save(); });
    FCloseAsked =
        !FEditorFrame->Editor().IsModified() ||
        TAppDialogs::Execute(
            TFormat::Format("\"%s\" is not saved. Close it all the same?", {FFileName}), [] {});
    return FCloseAsked;
}

bool TQueryPageFrame::DoCloseQuery()
{
    // A cell of the result that is being edited is written first.
    return (!FDataFrame || FDataFrame->CommitEdit()) && SaveBeforeClose() && DropText();
}

void TQueryPageFrame::DoUnload()
{
    if (!FCloseAsked)
        SaveBeforeClose();
    DropText();
    DetachResult();
    if (FEditorFrame)
        FEditorFrame->disconnect(this);
}

void TQueryPageFrame::DoDestroy()
{
    if (!IsLoaded()) // else the text is dropped when the page unloads
        DropText();
    TPageFrame::DoDestroy();
}

bool TQueryPageFrame::DropText()
{
    if (!IsUnsaved() || !FOnDropText || FDroppedRevision == FRevision)
        return true;
    const TTextDrop drop = FOnDropText(GetText());
    // Left to a session that may not close after all, the text is dropped again with the page.
    if (drop == tdSettled)
        FDroppedRevision = FRevision;
    return drop != tdRefused;
}

bool TQueryPageFrame::IsUnsaved() const
{
    if (FEditorFrame && !FFileName.isEmpty())
        return FEditorFrame->Editor().IsModified();
    return FFileName.isEmpty() ? !GetText().isEmpty() : !FUnsavedText.isNull();
}

void TQueryPageFrame::RestoreUnsavedText(const QString &text, const QString &fileStamp)
{
    FUnsavedText = text;
    FUnsavedStamp = fileStamp;
}

QString TQueryPageFrame::GetFileStamp() const
{
    return FEditorFrame ? FFile.Stamp() : FUnsavedStamp;
}

QString TQueryPageFrame::GetText() const
{
    if (FEditorFrame)
        return FEditorFrame->Text();
    return FUnsavedText.isNull() ? FText : FUnsavedText;
}

void TQueryPageFrame::PasteText(const QString &text)
{
    QGuiApplication::clipboard()->setText(text);
    FEditorFrame->PasteText(text);
}
