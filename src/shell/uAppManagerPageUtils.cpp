#include "shell/uAppManagerPageUtils.h"

#include "app/uAppSession.h"
#include "model/uDbmManager.h"
#include "model/uDbmRoutineList.h"
#include "pages/query/uEditorPageFrame.h"
#include "pages/query/uQueryPageFrame.h"
#include "pages/schema/uSchemaPageFrame.h"
#include "pages/structure/uTablePageFrame.h"
#include "shell/uAppDialogs.h"
#include "shell/uAppManagerPageIdFormatters.h"
#include "shell/uPageManagerFrame.h"
#include "tools/uDatasetExportText.h"
#include "tools/uDbmQueryTextResultFormatter.h"
#include "widgets/uIcons.h"

#include <QFileInfo>

TAppManagerPageUtils::TAppManagerPageUtils(TDbmManager *manager, TPageManagerFrame *pageManager)
    : FManager(manager), FPageManager(pageManager)
{}

void TAppManagerPageUtils::SelectPrevPage()
{
    FPageManager->SelectPrevPage();
}

void TAppManagerPageUtils::SelectNextPage()
{
    FPageManager->SelectNextPage();
}

TPageFrame *TAppManagerPageUtils::Show(const QString &id, const QIcon &image, bool activate,
                                       const TCreateAction &createAction)
{
    return FPageManager->AddPage(id, createAction, image, activate);
}

void TAppManagerPageUtils::ShowQueryFromText(const QString &text, const QString &usedDatabaseName,
                                             int editorHeight, bool activate)
{
    Show({}, TIcons::Icon("query"), activate, [&](QWidget *owner) {
        auto *page = TBaseFrame::New<TQueryPageFrame>(owner);
        page->InitializeFromText(FManager, text, editorHeight, usedDatabaseName);
        HookQueryPage(page);
        return page;
    });
}

void TAppManagerPageUtils::ShowQueryFromFile(const QString &fileName,
                                             const QString &usedDatabaseName, int editorHeight,
                                             bool activate)
{
    if (QFileInfo(fileName).isFile())
        RestoreUnsavedText(fileName, {}, {}, usedDatabaseName, editorHeight, activate);
}

void TAppManagerPageUtils::RestoreUnsavedText(const QString &fileName, const QString &text,
                                              const QString &fileStamp,
                                              const QString &usedDatabaseName, int editorHeight,
                                              bool activate)
{
    const QString id = "query." + fileName;
    TPageFrame *other = nullptr;
    // Two pages may have been saved as one file. The second text is in no file all the same.
    if (!text.isEmpty() && FPageManager->TryGetPage(id, other)) {
        ShowQueryFromText(text, usedDatabaseName, editorHeight, activate);
        return;
    }
    Show(id, TIcons::Icon("query"), activate, [&](QWidget *owner) {
        auto *page = TBaseFrame::New<TQueryPageFrame>(owner);
        page->InitializeFromFile(FManager, fileName, editorHeight, usedDatabaseName);
        page->RestoreUnsavedText(text, fileStamp);
        HookQueryPage(page);
        return page;
    });
}

void TAppManagerPageUtils::HookQueryPage(TQueryPageFrame *page)
{
    page->SetOnDropText(
        [this](const QString &text) { return FOnDropText ? FOnDropText(text) : tdSettled; });
    QObject::connect(page, &TQueryPageFrame::OnDuplicate, page, [this, page] {
        ShowQueryFromText(page->GetText(), page->GetUsedDatabaseName(), page->GetResultHeight(),
                          true);
    });
    page->SetOnEditor([this, page](TTextEditor *editor) {
        if (FOnSqlEditor)
            FOnSqlEditor(editor, [page] { return page->GetUsedDatabaseName(); });
    });
    QObject::connect(page, &TQueryPageFrame::OnExportAsCvs, page,
                     [this, page] { ShowExportQueryAsCvs(page->GetExecResult()); });
    QObject::connect(page, &TQueryPageFrame::OnExportAsText, page, [this, page] {
        ShowExportQueryAsText(page->GetExecutedText(), page->GetExecResult());
    });
}

void TAppManagerPageUtils::ShowSchema(const QString &databaseName, bool activate)
{
    Show(TAppManagerPageIdFormatters::FormatSchemaId(databaseName), TIcons::Icon("database"),
         activate, [&](QWidget *owner) {
             auto *page = TBaseFrame::New<TSchemaPageFrame>(owner);
             page->SetParams(FManager, databaseName);
             return page;
         });
}

void TAppManagerPageUtils::ShowTable(const QString &databaseName, const QString &tableName,
                                     bool activate)
{
    ShowTable(databaseName, tableName, TAppSession::GetDefaultDataPageData(), activate);
}

void TAppManagerPageUtils::ShowTable(const QString &databaseName, const QString &tableName,
                                     const TTableDataSessionData &data, bool activate)
{
    // What it is comes out when the page is drawn: a page that is only restored reads nothing.
    Show(TAppManagerPageIdFormatters::FormatTableId(databaseName, tableName), TIcons::Icon("table"),
         activate, [&](QWidget *owner) {
             auto *page = TBaseFrame::New<TTablePageFrame>(owner);
             page->SetParams(FManager, databaseName, tableName);
             page->SetDataSessionData(data);
             QObject::connect(page, &TTablePageFrame::OnUpdateImage, page,
                              [this, page](const QString &name) {
                                  FPageManager->SetPageImage(page, TIcons::Icon(name));
                              });
             return page;
         });
}

void TAppManagerPageUtils::RenameTable(const QString &databaseName, const QString &oldTableName,
                                       const QString &newTableName)
{
    TPageFrame *page = nullptr;
    if (!FPageManager->TryGetPage(
            TAppManagerPageIdFormatters::FormatTableId(databaseName, oldTableName), page))
        return;
    static_cast<TTablePageFrame *>(page)->SetParams(FManager, databaseName, newTableName);
    page->UpdateTitle();
    page->UpdateId(TAppManagerPageIdFormatters::FormatTableId(databaseName, newTableName));
}

void TAppManagerPageUtils::CloseTable(const QString &databaseName, const QString &tableName)
{
    TPageFrame *page = nullptr;
    if (FPageManager->TryGetPage(
            TAppManagerPageIdFormatters::FormatTableId(databaseName, tableName), page))
        FPageManager->ClosePage(page);
}

void TAppManagerPageUtils::ShowRoutine(const QString &databaseName, const QString &routineName,
                                       bool activate)
{
    QString text;
    std::shared_ptr<TDbmRoutineItem> routine;
    if (FManager->TryGetRoutine(databaseName, routineName, routine)) {
        TDbmRoutineEntity entity = routine->Entity();
        const QString params =
            FManager->Commands().Routines().ExecuteSelectWhole(databaseName, entity);
        TDbmFormatters &formatters = FManager->Formatters();
        text = QStringList{formatters.Routines().FormatDelete(databaseName, entity) + ';', "",
                           formatters.Other().FormatDelimiter("$$"), "",
                           formatters.Routines().FormatCreate(databaseName, entity, params)}
                   .join("\r\n");
    }
    ShowQueryFromText(text, databaseName, 0, activate);
}

void TAppManagerPageUtils::ShowCreateRoutineQuery(const QString &databaseName,
                                                  TDbmRoutineType routineType, bool activate)
{
    TDbmRoutineEntity entity;
    entity.RoutineType = routineType;
    entity.Definition = "BEGIN\r\n\r\nEND";
    TDbmFormatters &formatters = FManager->Formatters();
    const QStringList lines = {formatters.Other().FormatDelimiter("$$"), "",
                               formatters.Routines().FormatCreate(databaseName, entity, {})};
    ShowQueryFromText(lines.join("\r\n"), databaseName, 0, activate);
}

void TAppManagerPageUtils::ShowExportQueryAsCvs(const TDbmCommandExecQueryResult &execResult)
{
    TDatasetExportText exporter;
    if (!TAppDialogs::ExportCSVOptions(exporter.FOptions))
        return;
    QString text;
    exporter.FDataset = execResult.Query;
    exporter.ExportAsText(text);
    ShowPanelEditor("Result as CSV", text, false, true);
}

void TAppManagerPageUtils::ShowExportQueryAsText(const QString &sql,
                                                 const TDbmCommandExecQueryResult &execResult)
{
    QString text;
    TDbmQueryTextResultFormatter formatter;
    formatter.Execute(sql, execResult.Query, text, execResult.ExecTime);
    ShowPanelEditor("Result as text", text, false, true);
}

void TAppManagerPageUtils::ShowPanelEditor(const QString &caption, const QString &fileNameOrText,
                                           bool useFileName, bool readOnly)
{
    Show({}, TIcons::Icon("text-page"), true, [&](QWidget *owner) {
        auto *page = TBaseFrame::New<TEditorPageFrame>(owner);
        page->Initialize(caption, fileNameOrText, useFileName, readOnly);
        return page;
    });
}

void TAppManagerPageUtils::PasteText(const QString &text)
{
    if (!IsQueryPageActive())
        ShowQueryFromText({}, {}, 0, true);
    ActiveQueryPage()->PasteText(text);
}

TPageFrame *TAppManagerPageUtils::GetActivePage() const
{
    return FPageManager->ActivePage();
}

bool TAppManagerPageUtils::IsQueryPageActive() const
{
    return ActiveQueryPage() != nullptr;
}

TQueryPageFrame *TAppManagerPageUtils::ActiveQueryPage() const
{
    return qobject_cast<TQueryPageFrame *>(FPageManager->ActivePage());
}

QAction *TAppManagerPageUtils::QueryPageAction(TGetAction getAction) const
{
    TQueryPageFrame *page = ActiveQueryPage();
    return page ? (page->*getAction)() : nullptr;
}

QAction *TAppManagerPageUtils::GetQueryPageSaveAction() const
{
    return QueryPageAction(&TQueryPageFrame::GetSaveAction);
}

QAction *TAppManagerPageUtils::GetQueryPageSaveAsAction() const
{
    return QueryPageAction(&TQueryPageFrame::GetSaveAsAction);
}

QAction *TAppManagerPageUtils::GetQueryPageExecuteAction() const
{
    return QueryPageAction(&TQueryPageFrame::GetExecuteAction);
}

QAction *TAppManagerPageUtils::GetQueryPageExecuteSelectedAction() const
{
    return QueryPageAction(&TQueryPageFrame::GetExecuteSelectedAction);
}

QAction *TAppManagerPageUtils::GetQueryPageExportAsCvsAction() const
{
    return QueryPageAction(&TQueryPageFrame::GetExportAsCvsAction);
}

QAction *TAppManagerPageUtils::GetQueryPageExportAsTextAction() const
{
    return QueryPageAction(&TQueryPageFrame::GetExportAsTextAction);
}

QAction *TAppManagerPageUtils::GetQueryPageDuplicateAction() const
{
    return QueryPageAction(&TQueryPageFrame::GetDuplicateAction);
}
