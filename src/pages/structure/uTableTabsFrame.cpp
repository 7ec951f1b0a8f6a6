#include "pages/structure/uTableTabsFrame.h"

#include "pages/data/uTableDataFrame.h"
#include "pages/structure/uInfoPanelFrame.h"
#include "pages/structure/uTableListFrames.h"
#include "shell/uGuard.h"
#include "support/uFormat.h"
#include "widgets/uIcons.h"
#include "widgets/uToolBar.h"

#include <QAction>
#include <QVBoxLayout>

void TTableTabsFrame::DoCreate()
{
    TBaseFrame::DoCreate();
    auto *column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    FToolBar = new TToolBar(this, "tbrTable");
    column->addWidget(FToolBar);
    pcTabs = new TPreparedTabs(this);
    column->addWidget(pcTabs, 1);
    AddActions();
}

QAction *TTableTabsFrame::AddAction(const char *name, const char *icon, const QString &caption,
                                    const QString &hint, std::function<void()> work)
{
    QAction *action = FToolBar->addAction(TIcons::Icon(icon), caption);
    action->setObjectName(name);
    action->setToolTip(hint);
    connect(action, &QAction::triggered, this, [work = std::move(work)] { TGuard::Run(work); });
    return action;
}

void TTableTabsFrame::Initialize(TDbmManager *manager)
{
    FManager = manager;
    AddTabs();
}

void TTableTabsFrame::AddDataTab()
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
}

void TTableTabsFrame::AddInfoTab(const QStringList &captions, std::function<QStringList()> values)
{
    auto frame = std::make_shared<TInfoPanelFrame *>(nullptr);
    pcTabs->AddTab(
        "tshInfo", "Info", "info",
        [frame, captions](QWidget *owner) {
            *frame = New<TInfoPanelFrame>(owner);
            (*frame)->SetCaptions(captions);
            return *frame;
        },
        [frame, values = std::move(values)] { (*frame)->SetValues(values()); });
}

void TTableTabsFrame::SetCount(int tab, const char *caption, int count)
{
    pcTabs->setTabText(tab, TFormat::Format("%s: %d", {QString(caption), count}));
}

void TTableTabsFrame::SetParams(const QString &databaseName, const QString &tableName)
{
    FDatabaseName = databaseName;
    FTableName = tableName;
    if (FDataFrame)
        FDataFrame->SetParams(databaseName, tableName);
    for (TTableListFrame *frame : FListFrames)
        frame->SetParams(FManager, databaseName, tableName);
}

void TTableTabsFrame::SetDataSessionData(const TTableDataSessionData &data)
{
    FDataSessionData = data;
    if (FDataFrame)
        FDataFrame->SetSessionData(data);
}

TTableDataSessionData TTableTabsFrame::GetDataSessionData() const
{
    TTableDataSessionData data = FDataSessionData;
    if (FDataFrame)
        FDataFrame->GetSessionData(data);
    return data;
}
