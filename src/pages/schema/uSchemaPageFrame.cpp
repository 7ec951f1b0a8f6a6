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
#include "widgets/uToolBar.h"

#include <QAction>
#include <QMenu>
#include <QToolButton>
#include <QVBoxLayout>
#include <optional>

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
    auto *toolBar = new TToolBar(this, "tbrSchema");
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
    actRefresh->setObjectName("actRefresh");
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
        const char *Icon;
        std::function<bool()> Work;
        std::optional<TTab> Tab = {};              // activated on success
        std::optional<TAppDialogKind> Dialog = {}; // disabled while there is no such dialog
    };
    const TRow rows[] = {
        {"actCreateTable", "Create Table...", "table",
         [=, this] { return utils().CreateTable(FDatabaseName); }, ttTables, adkTable},
        {"actCreateView", "Create View...", "view",
         [=, this] { return utils().CreateView(FDatabaseName); }, ttViews, adkView},
        {"actCreateProcedure", "Create Procedure...", "procedure",
         [=, this] { return utils().CreateRoutine(rtProcedure, FDatabaseName); }, ttProcedures},
        {"actCreateFunction", "Create Function...", "function",
         [=, this] { return utils().CreateRoutine(rtFunction, FDatabaseName); }, ttFunctions},
        {"actCreateEvent", "Create Event...", "event",
         [=, this] { return utils().CreateEvent(FDatabaseName); }, ttEvents, adkEvent},
        {"actMigrate", "Migrate...", "migrate",
         [=, this] { return utils().MigrateDatabase(FDatabaseName); }},
        {"actClone", "Clone...", "duplicate",
         [=, this] { return utils().CloneDatabase(FDatabaseName); }},
        {"actCreateSqlDump", "Create SQL Dump...", "dump",
         [this] { return TAppDialogs::CreateSqlDump(*FManager, FDatabaseName); }},
        {.Name = "actUpdate",
         .Caption = "Modify...",
         .Icon = "edit",
         .Work = [=, this] { return utils().UpdateDatabase(FDatabaseName); },
         .Dialog = adkDatabase},
    };
    for (const TRow &row : rows) {
        QAction *action = menu.addAction(TIcons::Icon(row.Icon), row.Caption);
        action->setObjectName(row.Name);
        action->setEnabled(!row.Dialog || TAppDialogs::Has(*row.Dialog));
        connect(action, &QAction::triggered, this, [this, work = row.Work, tab = row.Tab] {
            TGuard::Run([&] {
                if (work() && tab)
                    pcTabs->setCurrentIndex(*tab);
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
    if (Database()) // what a server can do is not known while it is away
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
    TAppUtils::Instance().GetActiveManager()->ForgetNotRead();
    if (const auto database = Database())
        database->RequestProcess();
    else
        FManager->Databases().RequestNames(); // the last read of them may have failed
    TAppMessages::SendRedrawUI();
}
