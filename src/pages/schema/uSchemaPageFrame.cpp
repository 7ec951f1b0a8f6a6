#include "pages/schema/uSchemaPageFrame.h"

#include "model/uDbmEventList.h"
#include "model/uDbmManager.h"
#include "model/uDbmRoutineList.h"
#include "model/uDbmTableList.h"
#include "model/uDbmViewList.h"
#include "pages/schema/uSchemaListFrames.h"
#include "pages/structure/uInfoPanelFrame.h"
#include "pages/structure/uPreparedTabs.h"
#include "shell/uAppDialogs.h"
#include "shell/uAppManagerUtils.h"
#include "shell/uAppMessages.h"
#include "shell/uAppUtils.h"
#include "shell/uGuard.h"
#include "shell/uManagerFrame.h"
#include "support/uFormat.h"
#include "widgets/uIcons.h"

#include <QAction>
#include <QMenu>
#include <QToolBar>
#include <QToolButton>
#include <QVBoxLayout>

void TSchemaPageFrame::DoCreate()
{
    TPageFrame::DoCreate();
    auto *column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    MakeToolBar();
    pcTabs = new TPreparedTabs(this);
    column->addWidget(pcTabs, 1);
    AddTabs();
}

void TSchemaPageFrame::MakeToolBar()
{
    auto *toolBar = new QToolBar(this);
    toolBar->setObjectName("tbrSchema");
    toolBar->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    auto *siActions = new QToolButton(toolBar);
    siActions->setObjectName("siActions");
    siActions->setText("Actions");
    siActions->setIcon(TIcons::Icon("database"));
    siActions->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    siActions->setPopupMode(QToolButton::InstantPopup);
    auto *menu = new QMenu(siActions);
    menu->setObjectName("pmActions");
    MakeActions(*menu);
    siActions->setMenu(menu);
    toolBar->addWidget(siActions);
    QAction *actRefresh = toolBar->addAction(TIcons::Icon("refresh"), "Refresh");
    // The main menu's own is "actRefresh".
    actRefresh->setObjectName("actRefreshSchema");
    connect(actRefresh, &QAction::triggered, this, [this] { TGuard::Run([this] { Refresh(); }); });
    layout()->addWidget(toolBar);
}

void TSchemaPageFrame::MakeActions(QMenu &menu)
{
    const auto utils = []() -> TAppManagerUtils & {
        return TAppUtils::Instance().GetActiveManager()->Utils();
    };
    struct TRow
    {
        const char *Name;
        const char *Caption;
        TTab Tab;                        // activated on success
        std::function<bool()> Work = {}; // unset: the action is disabled
    };
    const TRow rows[] = {
        {"actCreateTable", "Create Table...", ttTables},
        {"actCreateView", "Create View...", ttViews},
        {"actCreateProcedure", "Create Procedure...", ttProcedures,
         [=, this] { return utils().CreateRoutine(rtProcedure, FDatabaseName); }},
        {"actCreateFunction", "Create Function...", ttFunctions,
         [=, this] { return utils().CreateRoutine(rtFunction, FDatabaseName); }},
        {"actCreateEvent", "Create Event...", ttEvents},
        {"actMigrate", "Migrate...", ttTables,
         [=, this] { return utils().MigrateDatabase(FDatabaseName); }},
        {"actClone", "Clone...", ttTables,
         [=, this] { return utils().CloneDatabase(FDatabaseName); }},
        {"actCreateSqlDump", "Create SQL Dump...", ttTables,
         [=, this] { return TAppDialogs::CreateSqlDump(*FManager, FDatabaseName); }},
        {"actUpdate", "Modify...", ttTables},
    };
    for (const TRow &row : rows) {
        QAction *action = menu.addAction(row.Caption);
        action->setObjectName(row.Name);
        action->setEnabled(static_cast<bool>(row.Work));
        if (row.Work)
            connect(action, &QAction::triggered, this, [this, work = row.Work, tab = row.Tab] {
                TGuard::Run([&] {
                    if (work())
                        pcTabs->setCurrentIndex(tab);
                });
            });
    }
}

template <typename TFrame, typename... TArgs>
void TSchemaPageFrame::AddListTab(const char *name, const char *caption, const char *icon,
                                  TArgs... args)
{
    auto frame = std::make_shared<TFrame *>(nullptr);
    pcTabs->AddTab(
        name, caption, icon,
        [this, frame, args...](QWidget *owner) {
            *frame = New<TFrame>(owner);
            (*frame)->SetParams(FManager, FDatabaseName, args...);
            return *frame;
        },
        [frame] { (*frame)->Process(); });
}

void TSchemaPageFrame::AddTabs()
{
    AddListTab<TSchemaTablesFrame>("tshTables", "Tables", "table");
    AddListTab<TSchemaViewsFrame>("tshViews", "Views", "view");
    AddListTab<TSchemaRoutinesFrame>("tshProcedures", "Procedures", "procedure", rtProcedure);
    AddListTab<TSchemaRoutinesFrame>("tshFunctions", "Functions", "function", rtFunction);
    AddListTab<TSchemaEventsFrame>("tshEvents", "Events", "event");
    pcTabs->AddTab(
        "tshInfo", "Info", "info",
        [this](QWidget *owner) {
            FInfoPanelFrame = New<TInfoPanelFrame>(owner);
            FInfoPanelFrame->SetCaptions({"Name", "Collation"});
            return FInfoPanelFrame;
        },
        [this] { FillInfo(); });
}

void TSchemaPageFrame::SetParams(TDbmManager *manager, const QString &databaseName)
{
    FManager = manager;
    FDatabaseName = databaseName;
}

std::shared_ptr<TDbmDatabaseItem> TSchemaPageFrame::Database() const
{
    std::shared_ptr<TDbmDatabaseItem> database;
    return FManager->Databases().TryGetByName(FDatabaseName, database) ? database : nullptr;
}

void TSchemaPageFrame::DoProcess()
{
    if (!FIsActivated)
        pcTabs->setCurrentIndex(ttTables);
    FIsActivated = true;
    WriteCaptions();
    pcTabs->setTabVisible(ttEvents, FManager->Features().Events);
    pcTabs->Process();
}

void TSchemaPageFrame::WriteCaptions()
{
    const auto database = Database();
    const auto caption = [&](TTab tab, const char *text, int count) {
        pcTabs->setTabText(tab, TFormat::Format("%s: %d", {QString(text), count}));
    };
    caption(ttTables, "Tables", database ? database->Tables().Count() : 0);
    caption(ttViews, "Views", database ? database->Views().Count() : 0);
    caption(ttProcedures, "Procedures",
            database ? database->Routines().CountByType(rtProcedure) : 0);
    caption(ttFunctions, "Functions", database ? database->Routines().CountByType(rtFunction) : 0);
    caption(ttEvents, "Events", database ? database->Events().Count() : 0);
}

void TSchemaPageFrame::FillInfo()
{
    const auto database = Database();
    FInfoPanelFrame->SetValues(
        database ? QStringList{database->Name(), database->Entity().Collation} : QStringList());
}

void TSchemaPageFrame::Refresh()
{
    if (const auto database = Database())
        database->RequestProcess();
    TAppMessages::SendRedrawUI();
}
