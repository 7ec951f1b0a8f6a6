#include "pages/structure/uTableFrame.h"

#include "model/uDbmFieldList.h"
#include "model/uDbmIndexList.h"
#include "model/uDbmManager.h"
#include "model/uDbmReferenceList.h"
#include "model/uDbmTableList.h"
#include "model/uDbmTriggerList.h"
#include "model/uDbmViewList.h"
#include "pages/data/uTableDataFrame.h"
#include "pages/structure/uInfoPanelFrame.h"
#include "pages/structure/uPreparedTabs.h"
#include "pages/structure/uSqlViewerFrame.h"
#include "pages/structure/uTableListFrames.h"
#include "shell/uAppManagerUtils.h"
#include "shell/uAppMessages.h"
#include "shell/uAppUtils.h"
#include "shell/uGuard.h"
#include "shell/uManagerFrame.h"
#include "support/uFormat.h"
#include "widgets/uIcons.h"

#include <QAction>
#include <QToolBar>
#include <QVBoxLayout>

void TTableFrame::DoCreate()
{
    TBaseFrame::DoCreate();
    auto *column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    MakeToolBar();
    pcTabs = new TPreparedTabs(this);
    column->addWidget(pcTabs, 1);
}

void TTableFrame::MakeToolBar()
{
    auto *toolBar = new QToolBar(this);
    toolBar->setObjectName("tbrTable");
    toolBar->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    actOptions = toolBar->addAction(TIcons::Icon("edit"), "Modify");
    actOptions->setObjectName("actOptions");
    actClone = toolBar->addAction(TIcons::Icon("duplicate"), "Clone");
    actClone->setObjectName("actClone");
    actClone->setToolTip("Clone table");
    QAction *actRefresh = toolBar->addAction(TIcons::Icon("refresh"), "Refresh");
    actRefresh->setObjectName("actRefreshObject");
    actRefresh->setToolTip("Refresh view");
    actOptions->setEnabled(false); // its dialog does not exist yet
    connect(actClone, &QAction::triggered, this, [this] {
        TGuard::Run([this] {
            TAppUtils::Instance().GetActiveManager()->Utils().CloneTable(FDatabaseName, FTableName);
        });
    });
    connect(actRefresh, &QAction::triggered, this, [this] { TGuard::Run([this] { Refresh(); }); });
    layout()->addWidget(toolBar);
}

void TTableFrame::Initialize(TDbmManager *manager, bool isView)
{
    FManager = manager;
    FIsView = isView;
    actOptions->setToolTip(isView ? "Modify view" : "Update table");
    actClone->setVisible(!isView);
    AddTabs();
}

template <typename TFrame>
void TTableFrame::AddListTab(const char *name, const char *caption, const char *icon)
{
    auto frame = std::make_shared<TFrame *>(nullptr);
    pcTabs->AddTab(
        name, caption, icon,
        [this, frame](QWidget *owner) {
            *frame = New<TFrame>(owner);
            (*frame)->SetParams(FManager, FDatabaseName, FTableName);
            FListFrames.push_back(*frame);
            return *frame;
        },
        [frame] { (*frame)->Process(); });
}

void TTableFrame::AddTabs()
{
    pcTabs->AddTab(
        "tshData", "Data", "result",
        [this](QWidget *owner) {
            FDataFrame = New<TTableDataFrame>(owner);
            FDataFrame->Initialize(FManager);
            FDataFrame->SetParams(FDatabaseName, FTableName);
            FDataFrame->SetSessionData(FDataSessionData);
            return FDataFrame;
        },
        [this] { FDataFrame->Process(); });
    AddListTab<TTableFieldsFrame>("tshFields", "Fields", "column");
    if (!FIsView) {
        AddListTab<TTableIndexesFrame>("tshIndexes", "Indexes", "index");
        AddListTab<TTableReferencesFrame>("tshReferences", "References", "reference");
        AddListTab<TTableTriggersFrame>("tshTriggers", "Triggers", "trigger");
    }
    pcTabs->AddTab(
        "tshInfo", "Info", "info",
        [this](QWidget *owner) {
            FInfoPanelFrame = New<TInfoPanelFrame>(owner);
            FInfoPanelFrame->SetCaptions(
                FIsView ? QStringList{"View name", "Check option", "Updatable", "Security type",
                                      "Definer", "Character set", "Collation"}
                        : QStringList{"Table name", "Engine", "Rows", "Collation", "Row format",
                                      "Pack keys", "Checksum", "Delayed updates",
                                      "Average row length", "Data length", "Data free",
                                      "Index length", "Max data length", "Comment"});
            return FInfoPanelFrame;
        },
        [this] { FillInfo(); });
    if (FIsView)
        return;
    pcTabs->AddTab(
        "tshDDL", "DDL", "ddl",
        [this](QWidget *owner) { return FDDLFrame = New<TSqlViewerFrame>(owner); },
        [this] {
            std::shared_ptr<TDbmTableItem> table;
            const bool found = FManager->TryGetTable(FDatabaseName, FTableName, table);
            FDDLFrame->SetContent(found ? table->DDL().GetValue() : QString());
        });
}

void TTableFrame::SetParams(const QString &databaseName, const QString &tableName)
{
    FDatabaseName = databaseName;
    FTableName = tableName;
    if (FDataFrame)
        FDataFrame->SetParams(databaseName, tableName);
    for (TTableListFrame *frame : FListFrames)
        frame->SetParams(FManager, databaseName, tableName);
}

void TTableFrame::SetDataSessionData(const TTableDataSessionData &data)
{
    FDataSessionData = data;
    if (FDataFrame)
        FDataFrame->SetSessionData(data);
}

TTableDataSessionData TTableFrame::GetDataSessionData() const
{
    TTableDataSessionData data = FDataSessionData;
    if (FDataFrame)
        FDataFrame->GetSessionData(data);
    return data;
}

void TTableFrame::Process()
{
    if (FIsView)
        ProcessView();
    else
        ProcessTable();
    pcTabs->Process();
}

void TTableFrame::ProcessTable()
{
    std::shared_ptr<TDbmTableItem> table;
    const bool found = FManager->TryGetTable(FDatabaseName, FTableName, table);
    const bool isReal = found && table->IsTable();
    for (const TTab tab : {ttIndexes, ttReferences, ttTriggers})
        pcTabs->setTabVisible(tab, isReal);
    if (!pcTabs->isTabVisible(pcTabs->currentIndex()))
        pcTabs->setCurrentIndex(ttFields);
    const auto caption = [&](TTab tab, const char *text, int count) {
        pcTabs->setTabText(tab, TFormat::Format("%s: %d", {QString(text), count}));
    };
    caption(ttFields, "Fields", found ? table->Fields().Count() : 0);
    caption(ttIndexes, "Indexes", isReal ? table->Indexes().Count() : 0);
    caption(ttReferences, "References", isReal ? table->References().Count() : 0);
    caption(ttTriggers, "Triggers", isReal ? table->Triggers().Count() : 0);
}

void TTableFrame::ProcessView()
{
    std::shared_ptr<TDbmViewItem> view;
    const bool found = FManager->TryGetView(FDatabaseName, FTableName, view);
    pcTabs->setTabText(ttFields,
                       TFormat::Format("Fields: %d", {found ? view->Fields().Count() : 0}));
}

void TTableFrame::FillInfo()
{
    FInfoPanelFrame->SetValues(FIsView ? ViewInfo() : TableInfo());
}

QStringList TTableFrame::TableInfo() const
{
    std::shared_ptr<TDbmTableItem> table;
    if (!FManager->TryGetTable(FDatabaseName, FTableName, table))
        return {};
    const TDbmTableEntity &entity = table->Entity();
    return {entity.TableName,
            entity.Engine,
            TFormat::Format("%.0n", {static_cast<double>(entity.Info.Rows)}),
            entity.Collation,
            table->GetRowFormatDisplayString(),
            table->GetPackKeysDisplayString(),
            table->GetChecksumDisplayString(),
            table->GetDelayKeyWriteDisplayString(),
            table->GetAvgRowLengthDisplayString(),
            table->GetDataLengthDisplayString(),
            table->GetDataFreeDisplayString(),
            table->GetIndexLengthDisplayString(),
            table->GetMaxDataLengthDisplayString(),
            entity.Comment};
}

QStringList TTableFrame::ViewInfo() const
{
    std::shared_ptr<TDbmViewItem> view;
    if (!FManager->TryGetView(FDatabaseName, FTableName, view))
        return {};
    const TDbmViewEntity &entity = view->Entity();
    return {entity.ViewName,
            view->GetCheckOptionDisplayString(),
            view->GetUpdatableDisplayString(),
            view->GetSecurityTypeDisplayString(),
            entity.Definer,
            entity.Info.Charset,
            entity.Info.Collation};
}

void TTableFrame::Refresh()
{
    std::shared_ptr<TDbmTableItem> table;
    std::shared_ptr<TDbmViewItem> view;
    if (FManager->TryGetTable(FDatabaseName, FTableName, table))
        table->RequestProcess();
    else if (FManager->TryGetView(FDatabaseName, FTableName, view))
        view->RequestProcess();
    FManager->DataPool().RequestProcessFor(FDatabaseName, FTableName);
    TAppMessages::SendRedrawUI();
}
