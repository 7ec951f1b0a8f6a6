#pragma once

#include "core/uDacMySqlError.h"
#include "core/uDbmCommand.h"
#include "pages/query/uTextDocumentFile.h"
#include "shell/uPageFrame.h"

#include <memory>

class QAction;
class TDataFrame;
class TField;
class TDbmManager;
class TQueryExplainFrame;
class TQueryLogFrame;
class TQueryPageControls;
class TSqlEditorFrame;
class TTextEditor;

/// What becomes of the text of a page that goes.
enum TTextDrop : int {
    tdSettled,   // it is kept, or the user gave it up
    tdBySession, // whoever closes the page with others keeps it, if the close comes about
    tdRefused    // the page must stay
};

/// A SQL editor above the result of what was run: rows, plan and log. Running blocks the page until
/// the server has answered. The text, its file, the chosen database and the height of the result
/// area are what a session keeps.
class TQueryPageFrame : public TPageFrame
{
    Q_OBJECT
public:
    explicit TQueryPageFrame(QWidget *owner);
    ~TQueryPageFrame() override;

    /// One of the two, before the page loads. `resultHeight` in pixels, 0 for half of the page. The
    /// manager is not owned.
    void InitializeFromFile(TDbmManager *manager, const QString &fileName, int resultHeight,
                            const QString &usedDatabaseName);
    void InitializeFromText(TDbmManager *manager, const QString &text, int resultHeight,
                            const QString &usedDatabaseName);

    QString GetText() const;
    /// Whether the text, or a change of it, stands in no file.
    bool IsUnsaved() const;
    /// Changes of the file's text that a crash kept from being saved; before the page loads.
    /// `fileStamp` is what GetFileStamp gave with that text; empty when it is not known.
    void RestoreUnsavedText(const QString &text, const QString &fileStamp);
    /// Of the file as this page knows it.
    QString GetFileStamp() const;
    /// Another number after each change of the text, and in each page.
    int Revision() const { return FRevision; }
    QString GetFileName() const { return FFileName; }
    int GetResultHeight() const;
    QString GetUsedDatabaseName() const;
    /// Puts the text on the clipboard and pastes it at the caret.
    void PasteText(const QString &text);

    /// Called when the editor is there.
    void SetOnEditor(std::function<void(TTextEditor *editor)> event)
    {
        FOnEditor = std::move(event);
    }
    /// Called when the page is about to go with a text that no file has.
    using TDropTextEvent = std::function<TTextDrop(const QString &text)>;
    void SetOnDropText(TDropTextEvent event) { FOnDropText = std::move(event); }

    QAction *GetSaveAction() const;
    QAction *GetSaveAsAction() const;
    QAction *GetExecuteAction() const;
    QAction *GetExecuteSelectedAction() const;
    QAction *GetExportAsCvsAction() const;
    QAction *GetExportAsTextAction() const;
    QAction *GetDuplicateAction() const;

    /// The text that was submitted last, and the outcome of the last run; owned by the page.
    const QString &GetExecutedText() const { return FExecutedText; }
    const TDbmCommandExecQueryResult &GetExecResult() const { return FExecResult; }

Q_SIGNALS:
    void OnDuplicate();
    void OnExportAsText();
    void OnExportAsCvs();

protected:
    QString DoGetTitle() const override;
    bool DoCloseQuery() override;
    void DoLoad() override;
    void DoUnload() override;
    void DoDestroy() override;
    void DoActivate() override;

private:
    /// Made when they are first asked for: most pages of a session are never looked at.
    TQueryPageControls *Controls() const;
    void ConnectActions();
    void LoadEditor();
    void LoadFile();
    static int NewRevision();
    void FillDatabases();
    void ExecuteQuery(bool selectedOnly);
    void DetachResult();
    void UseDatabase();
    void RunStatements(const QString &text);
    void DisplayResults();
    void DisplayError();
    void DisplayStatus();
    void MarkTabsDirty();
    void GotoTab(int tab);
    void PrepareResultTab(int tab);
    void PrepareDataTab(bool dirty);
    QStringList MembersOf(const TField &field) const;
    void PrepareExplainTab(bool dirty);
    void PrepareLogTab(bool dirty);
    TMyQuery *ActiveDataset() const; // nullptr without rows
    void UpdateActions();
    void Save();
    void SaveAs();
    bool MayOverwrite();
    bool SaveBeforeClose();
    bool DropText();

    TDbmManager *FManager = nullptr;
    QString FFileName;
    QString FText;
    QString FUnsavedText;  // null when there is none
    QString FUnsavedStamp; // of the file that FUnsavedText changes; empty when it is not known
    int FRevision = NewRevision();
    int FDroppedRevision = -1;
    TDropTextEvent FOnDropText;
    std::function<void(TTextEditor *editor)> FOnEditor;
    QString FUsedDatabaseName;
    int FResultHeight = 0;
    TTextDocumentFile FFile;
    bool FExecuted = false;
    QString FExecutedText;
    TDbmCommandExecQueryResult FExecResult;
    bool FIsResult = false;
    std::unique_ptr<EDacMySqlError> FMySqlError;
    bool FTabDirty[3] = {true, true, true};
    bool FCloseAsked = false;

    mutable TQueryPageControls *FControls = nullptr; // child
    TSqlEditorFrame *FEditorFrame = nullptr;         // child widgets
    TDataFrame *FDataFrame = nullptr;
    TQueryExplainFrame *FExplainFrame = nullptr;
    TQueryLogFrame *FLogFrame = nullptr;
};
