#pragma once

#include "model/uDbmEntityTypes.h"

#include <QIcon>
#include <QString>
#include <functional>

enum TTextDrop : int;
class QAction;
class QWidget;
class TDbmManager;
class TPageFrame;
class TPageManagerFrame;
class TQueryPageFrame;
class TTextEditor;
struct TDbmCommandExecQueryResult;
struct TTableDataSessionData;

/// Opens the pages of one workspace, or finds them by their identity: asking for a page that is
/// open brings it to the front. Refers to the workspace's manager and tab set, which outlive it.
class TAppManagerPageUtils
{
public:
    TAppManagerPageUtils(TDbmManager *manager, TPageManagerFrame *pageManager); // not owned

    void SelectPrevPage();
    void SelectNextPage();
    /// A new query page without identity. `editorHeight` is the height of its result area, 0 for
    /// half of the page.
    void ShowQueryFromText(const QString &text, const QString &usedDatabaseName, int editorHeight,
                           bool activate);
    /// Only if the file exists; found again by the file's name.
    void ShowQueryFromFile(const QString &fileName, const QString &usedDatabaseName,
                           int editorHeight, bool activate);
    /// Opens the file with a text that was not saved to it; without the file when another page
    /// has it. `fileStamp` is as in TQueryPageFrame.
    void RestoreUnsavedText(const QString &fileName, const QString &text, const QString &fileStamp,
                            const QString &usedDatabaseName, int editorHeight, bool activate);
    /// Called with the editor of each query page that is made; `usedDatabase` is the page's.
    using TSqlEditorEvent =
        std::function<void(TTextEditor *editor, std::function<QString()> usedDatabase)>;
    void SetOnSqlEditor(TSqlEditorEvent event) { FOnSqlEditor = std::move(event); }

    /// Called ahead of a query page that goes, when no file has its text.
    using TDropTextEvent = std::function<TTextDrop(const QString &text)>;
    void SetOnDropText(TDropTextEvent event) { FOnDropText = std::move(event); }
    /// The page of a database, found again by its name.
    void ShowSchema(const QString &databaseName, bool activate);
    /// The page of a table or a view, found again by its name.
    void ShowTable(const QString &databaseName, const QString &tableName, bool activate);
    void ShowTable(const QString &databaseName, const QString &tableName,
                   const TTableDataSessionData &data, bool activate);
    /// The page of a renamed table follows; nothing when it is not open.
    void RenameTable(const QString &databaseName, const QString &oldTableName,
                     const QString &newTableName);
    void CloseTable(const QString &databaseName, const QString &tableName);
    /// Does nothing: the place of a page for one user.
    void ShowUser(const QString & /*userName*/, const QString & /*hostName*/, bool /*activate*/) {}
    /// A query page that drops the routine and makes it again; without text when it is unknown.
    void ShowRoutine(const QString &databaseName, const QString &routineName, bool activate);
    void ShowCreateRoutineQuery(const QString &databaseName, TDbmRoutineType routineType,
                                bool activate);
    void ShowExportQueryAsCvs(const TDbmCommandExecQueryResult &execResult);
    void ShowExportQueryAsText(const QString &sql, const TDbmCommandExecQueryResult &execResult);
    void ShowPanelEditor(const QString &caption, const QString &fileNameOrText, bool useFileName,
                         bool readOnly);
    /// Into the active query page, or a new one if another kind of page is active.
    void PasteText(const QString &text);

    TPageFrame *GetActivePage() const;
    bool IsQueryPageActive() const;
    /// Actions of the active query page for the main menu; nullptr without such a page.
    QAction *GetQueryPageSaveAction() const;
    QAction *GetQueryPageSaveAsAction() const;
    QAction *GetQueryPageExecuteAction() const;
    QAction *GetQueryPageExecuteSelectedAction() const;
    QAction *GetQueryPageExportAsCvsAction() const;
    QAction *GetQueryPageExportAsTextAction() const;
    QAction *GetQueryPageDuplicateAction() const;

private:
    using TCreateAction = std::function<TPageFrame *(QWidget *owner)>;
    using TGetAction = QAction *(TQueryPageFrame::*)() const;

    TPageFrame *Show(const QString &id, const QIcon &image, bool activate,
                     const TCreateAction &createAction);
    void HookQueryPage(TQueryPageFrame *page);
    TQueryPageFrame *ActiveQueryPage() const;
    QAction *QueryPageAction(TGetAction getAction) const;

    TDbmManager *FManager;
    TPageManagerFrame *FPageManager;
    TDropTextEvent FOnDropText;
    TSqlEditorEvent FOnSqlEditor;
};
