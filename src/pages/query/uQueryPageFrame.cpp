#include "pages/query/uQueryPageFrame.h"

#include "core/uDbmErrorNames.h"
#include "model/uDbmFieldList.h"
#include "model/uDbmManager.h"
#include "model/uDbmTableList.h"
#include "pages/data/uDataFrame.h"
#include "pages/data/uFieldKinds.h"
#include "pages/data/uRecordValues.h"
#include "pages/query/uEditorFrame.h"
#include "pages/query/uQueryExplainFrame.h"
#include "pages/query/uQueryLogFrame.h"
#include "pages/query/uQueryPageControls.h"
#include "shell/uAppDialogs.h"
#include "shell/uAppMessages.h"
#include "shell/uGuard.h"
#include "sql/uDbmRoutineGuard.h"
#include "support/uFormat.h"
#include "widgets/uDropDownCombo.h"
#include "widgets/uTextEditor.h"

#include <QAction>
#include <QFileInfo>

TQueryPageFrame::TQueryPageFrame(QWidget *owner) : TPageFrame(owner) {}

TQueryPageFrame::~TQueryPageFrame() = default;

void TQueryPageFrame::InitializeFromFile(TDbmManager *manager, const QString &fileName,
                                         int resultHeight, const QString &usedDatabaseName)
{
    InitializeFromText(manager, {}, resultHeight, usedDatabaseName);
    FFileName = fileName;
}

void TQueryPageFrame::InitializeFromText(TDbmManager *manager, const QString &text,
                                         int resultHeight, const QString &usedDatabaseName)
{
    FManager = manager;
    FText = text;
    FResultHeight = resultHeight;
    FUsedDatabaseName = usedDatabaseName;
}

TQueryPageControls *TQueryPageFrame::Controls() const
{
    if (FControls)
        return FControls;
    auto *self = const_cast<TQueryPageFrame *>(this);
    FControls = new TQueryPageControls(self);
    self->ConnectActions();
    // What is made on a page that is seen already is not seen by itself.
    for (QWidget *child : findChildren<QWidget *>(QString(), Qt::FindDirectChildrenOnly))
        if (!child->testAttribute(Qt::WA_WState_ExplicitShowHide))
            child->show();
    return FControls;
}

void TQueryPageFrame::ConnectActions()
{
    const auto on = [this](QAction *action, auto work) {
        connect(action, &QAction::triggered, this, [this, work] { TGuard::Run(work); });
    };
    on(FControls->actExecute, [this] { ExecuteQuery(false); });
    on(FControls->actExecuteSelected, [this] { ExecuteQuery(true); });
    on(FControls->actSave, [this] { Save(); });
    on(FControls->actSaveAs, [this] { SaveAs(); });
    on(FControls->actDuplicate, [this] { Q_EMIT OnDuplicate(); });
    on(FControls->actExportAsCVS, [this] {
        if (ActiveDataset())
            Q_EMIT OnExportAsCvs();
    });
    on(FControls->actExportAsText, [this] {
        if (ActiveDataset())
            Q_EMIT OnExportAsText();
    });
    on(FControls->actGotoResult, [this] { GotoTab(qrtResult); });
    on(FControls->actGotoExplain, [this] { GotoTab(qrtExplain); });
    on(FControls->actGotoLog, [this] { GotoTab(qrtLog); });
    connect(FControls->cbxUse, &TDropDownCombo::OnDropDown, this, [this] {
        TGuard::Run([this] {
            FManager->Databases().RequestNames();
            FillDatabases();
        });
    });
}

void TQueryPageFrame::DoLoad()
{
    Controls()->SetResultHeight(FResultHeight > 0 ? FResultHeight : height() / 2);
    const bool bound = FManager->IsDatabaseConnection();
    Controls()->SetUseVisible(!bound);
    LoadEditor();
    MarkTabsDirty();
    Controls()->actGotoResult->trigger();
    if (!bound) {
        Controls()->cbxUse->addItem("(none)");
        if (!FUsedDatabaseName.isEmpty())
            Controls()->cbxUse->addItem(FUsedDatabaseName);
        Controls()->cbxUse->setCurrentIndex(Controls()->cbxUse->count() - 1);
        FillDatabases();
    }
    DisplayResults();
    UpdateActions();
    FEditorFrame->setFocus(); // a new page was activated before it had an editor
}

void TQueryPageFrame::DoActivate()
{
    if (FEditorFrame)
        FEditorFrame->setFocus();
}

// No account sees no database at all: an empty list is one that could not be read, and the choice
// waits for the server to come back.
void TQueryPageFrame::FillDatabases()
{
    if (FManager->Databases().Count() == 0)
        return;
    TDropDownCombo *combo = Controls()->cbxUse;
    const QString selected = GetUsedDatabaseName();
    QStringList names = {"(none)"};
    FManager->Databases().ForEach([&](TDbmDatabaseItem &item) { names += item.Name(); });
    const QSignalBlocker blocker(combo);
    combo->clear();
    combo->addItems(names);
    combo->setCurrentIndex(selected.isEmpty() ? 0 : std::max(0, int(names.indexOf(selected))));
}

void TQueryPageFrame::ExecuteQuery(bool selectedOnly)
{
    // What is being typed into the result is written ahead of its end.
    if (FDataFrame && !FDataFrame->CommitEdit())
        return;
    DetachResult();
    try {
        UseDatabase();
        const QString text =
            selectedOnly ? FEditorFrame->Editor().SelectedText() : FEditorFrame->Text();
        FIsResult = true;
        RunStatements(text);
        FExecuted = true;
        FExecutedText = text;
    } catch (...) {
        // What was shown is gone already; the views must not go on showing it.
        DisplayResults();
        throw;
    }
    DisplayResults();
}

// The views must never refer to a result that is gone.
void TQueryPageFrame::DetachResult()
{
    if (FDataFrame) {
        FDataFrame->SetNullParams();
        // The next answer comes in the order that its statement asks for.
        FDataFrame->SetSort({}, true);
    }
    if (FExplainFrame)
        FExplainFrame->InitializeNull();
    if (FLogFrame)
        FLogFrame->InitializeNull();
    FExecResult.Release();
    FExecResult.ExecTime = 0;
    FMySqlError.reset();
}

void TQueryPageFrame::UseDatabase()
{
    const QString name = FManager->IsDatabaseConnection() ? FManager->GetUsedDatabase()->Name()
                                                          : GetUsedDatabaseName();
    if (!name.isEmpty())
        FManager->Commands().Databases().ExecuteUse(name);
}

void TQueryPageFrame::RunStatements(const QString &text)
{
    TDbmRoutineGuard guard(FManager->Commands().Routines(), text);
    try {
        FExecResult =
            FManager->Command().ExecQuery(text, {qoExplain, qoLongStrings, qoLog}, nullptr, ";");
    } catch (const EDacMySqlError &e) {
        FMySqlError = std::make_unique<EDacMySqlError>(
            e.ErrorCode(), e.ErrorMessage() + guard.PutBack(), e.CommandText());
    }
}

void TQueryPageFrame::MarkTabsDirty()
{
    for (bool &dirty : FTabDirty)
        dirty = true;
}

void TQueryPageFrame::DisplayResults()
{
    MarkTabsDirty();
    DisplayError();
    PrepareResultTab(Controls()->ActiveTab());
    UpdateActions();
    DisplayStatus();
}

void TQueryPageFrame::DisplayError()
{
    if (!FIsResult || !FMySqlError) {
        Controls()->ShowError({});
        return;
    }
    Controls()->ShowError(
        TFormat::Format("%s (%d) - %s", {TDbmErrorCodeParser::Parse(FMySqlError->ErrorCode()),
                                         FMySqlError->ErrorCode(), FMySqlError->ErrorMessage()}));
}

void TQueryPageFrame::DisplayStatus()
{
    QString rows = "-";
    QString time = "-";
    if (FExecuted) {
        if (const TMyQuery *dataset = ActiveDataset())
            rows = QString::number(dataset->RecordCount());
        time = TFormat::Format("%.2f ms", {FExecResult.ExecTime * 1000});
    }
    Controls()->SetStatus(TFormat::Format("Rows: %s", {rows}), TFormat::Format("Time: %s", {time}),
                          TFormat::Format("File name: %s", {FFileName}));
}

void TQueryPageFrame::GotoTab(int tab)
{
    PrepareResultTab(tab);
    Controls()->SetActiveTab(tab);
}

void TQueryPageFrame::PrepareResultTab(int tab)
{
    const bool dirty = FTabDirty[tab];
    FTabDirty[tab] = false;
    switch (tab) {
    case qrtResult:
        PrepareDataTab(dirty);
        break;
    case qrtExplain:
        PrepareExplainTab(dirty);
        break;
    default:
        PrepareLogTab(dirty);
    }
}

void TQueryPageFrame::PrepareDataTab(bool dirty)
{
    if (!FDataFrame) {
        FDataFrame = New<TDataFrame>(Controls()->tshTabs[qrtResult]);
        FDataFrame->MoveTo(Controls()->tshTabs[qrtResult]);
        FDataFrame->SetOnGetColumnColor([this](const QString &fieldName, QColor &color) {
            const TField *field =
                FDataFrame->Dataset() ? FDataFrame->Dataset()->FindField(fieldName) : nullptr;
            if (field)
                color = TAppFieldTypeColors::Color(FieldKindOf(field->DataType()));
        });
        FDataFrame->SetOnGetMembers([this](const TField &field) { return MembersOf(field); });
    }
    if (!dirty)
        return;
    if (FIsResult && FExecResult.Query)
        FDataFrame->SetParams(FExecResult.Query);
    else
        FDataFrame->SetNullParams();
    FDataFrame->Process();
}

QStringList TQueryPageFrame::MembersOf(const TField &field) const
{
    QStringList members;
    std::shared_ptr<TDbmTableItem> table;
    if (FManager->TryGetTable(field.Info().Database, field.Info().OrgTable, table))
        table->Fields().ForEach([&](TDbmFieldItem &item) {
            if (item.Entity().FieldName == field.Info().OrgName)
                members = TRecordValues::MembersOf(item.Entity().ServerText.Type);
        });
    return members;
}

void TQueryPageFrame::PrepareExplainTab(bool dirty)
{
    if (!FExplainFrame) {
        FExplainFrame = New<TQueryExplainFrame>(Controls()->tshTabs[qrtExplain]);
        FExplainFrame->MoveTo(Controls()->tshTabs[qrtExplain]);
    }
    if (!dirty)
        return;
    if (FIsResult && FExecResult.Explain)
        FExplainFrame->Initialize(FExecResult.Explain.get());
    else
        FExplainFrame->InitializeNull();
    FExplainFrame->Process();
}

void TQueryPageFrame::PrepareLogTab(bool dirty)
{
    if (!FLogFrame) {
        FLogFrame = New<TQueryLogFrame>(Controls()->tshTabs[qrtLog]);
        FLogFrame->MoveTo(Controls()->tshTabs[qrtLog]);
    }
    if (!dirty)
        return;
    if (FIsResult)
        FLogFrame->Initialize(FExecResult.Log.get(), FExecResult.ExecTime);
    else
        FLogFrame->InitializeNull();
    FLogFrame->Process();
}

TMyQuery *TQueryPageFrame::ActiveDataset() const
{
    return FExecResult.Query && FExecResult.Query->Active() ? FExecResult.Query : nullptr;
}

void TQueryPageFrame::UpdateActions()
{
    if (!FEditorFrame)
        return;
    const bool exportable = ActiveDataset() != nullptr;
    Controls()->actSave->setEnabled(FEditorFrame->Editor().IsModified() || FFileName.isEmpty());
    Controls()->actExportAsCVS->setEnabled(exportable);
    Controls()->actExportAsText->setEnabled(exportable);
    TAppMessages::SendQueryPageStatusChanged();
}

QString TQueryPageFrame::DoGetTitle() const
{
    return FFileName.isEmpty() ? QString("Query") : QFileInfo(FFileName).fileName();
}

int TQueryPageFrame::GetResultHeight() const
{
    return FEditorFrame ? Controls()->ResultHeight() : FResultHeight;
}

QString TQueryPageFrame::GetUsedDatabaseName() const
{
    // The list is not filled where the page's file cannot be read, nor on a bound connection.
    if (!FEditorFrame || Controls()->cbxUse->count() == 0)
        return FUsedDatabaseName;
    return Controls()->cbxUse->currentIndex() >= 1 ? Controls()->cbxUse->currentText() : QString();
}

QAction *TQueryPageFrame::GetSaveAction() const
{
    return Controls()->actSave;
}

QAction *TQueryPageFrame::GetSaveAsAction() const
{
    return Controls()->actSaveAs;
}

QAction *TQueryPageFrame::GetExecuteAction() const
{
    return Controls()->actExecute;
}

QAction *TQueryPageFrame::GetExecuteSelectedAction() const
{
    return Controls()->actExecuteSelected;
}

QAction *TQueryPageFrame::GetExportAsCvsAction() const
{
    return Controls()->actExportAsCVS;
}

QAction *TQueryPageFrame::GetExportAsTextAction() const
{
    return Controls()->actExportAsText;
}

QAction *TQueryPageFrame::GetDuplicateAction() const
{
    return Controls()->actDuplicate;
}
