#include "shell/uMainFormMenuUtils.h"

#include "model/uDbmManager.h"
#include "shell/uAppManagerPageUtils.h"
#include "shell/uAppManagerUtils.h"
#include "shell/uAppMessages.h"
#include "shell/uAppUtils.h"
#include "shell/uGuard.h"
#include "shell/uManagerFrame.h"
#include "widgets/uIcons.h"

#include <QAction>
#include <QActionGroup>
#include <QHash>
#include <QMainWindow>
#include <QMenu>
#include <QMenuBar>

struct TMainFormMenuUtils::TActionRow
{
    QString Menu; // empty: the action stands in no menu
    QString Name;
    QString Caption;
    TCondition Condition = mcAlways;
    std::function<void()> Work; // unset: the entry is disabled
    bool Bar = false;           // a separator stands above
    QList<QKeySequence> Shortcuts;
    QString Icon;
    std::optional<TAppDialogKind> Dialog = {}; // disabled while there is no such dialog
};

namespace {

TAppUtils &App()
{
    return TAppUtils::Instance();
}

template <typename TOperation>
std::function<void()> OnManager(TOperation operation)
{
    return [operation] {
        if (TManagerFrame *manager = App().GetActiveManager())
            std::invoke(operation, manager->Utils());
    };
}

using TQueryPageAction = QAction *(TAppManagerPageUtils::*)() const;

/// The action of the active query page that a menu entry mirrors; nullptr without such a page.
QAction *PageAction(TQueryPageAction get)
{
    TManagerFrame *manager = App().GetActiveManager();
    return manager && manager->IsLoaded() ? (manager->PageUtils().*get)() : nullptr;
}

std::function<void()> OnQueryPage(TQueryPageAction get)
{
    return [get] {
        if (QAction *action = PageAction(get))
            action->trigger();
    };
}

} // namespace

const std::vector<TMainFormMenuUtils::TActionRow> &TMainFormMenuUtils::Rows()
{
    using TPages = TAppManagerPageUtils;
    static const std::vector<TActionRow> rows = {
        {"File",
         "actNewConnection",
         "New Connection...",
         mcAlways,
         [] { App().OpenConnection(); },
         false,
         {},
         "connect"},
        {"File",
         "actCloseConnection",
         "Close Connection",
         mcConnection,
         [] { App().CloseConnection(); },
         false,
         {},
         "disconnect"},
        {"File", "actExit", "Exit", mcAlways, [] { App().Exit(); }, true, {}, "exit"},

        {"View",
         "actToolsCharset",
         "Select Charset...",
         mcConnection,
         OnManager(&TAppManagerUtils::SelectCharset),
         false,
         {},
         "charset"},
        {"View",
         "actRefresh",
         "Refresh",
         mcConnection,
         [] { App().Refresh(); },
         true,
         {},
         "refresh"},

        {.Menu = "Schema",
         .Name = "actSchemaCreate",
         .Caption = "Create...",
         .Condition = mcServerConnection,
         .Work = OnManager(&TAppManagerUtils::CreateDatabase),
         .Dialog = adkDatabase},
        {"Schema", "actSchemaOpen", "Open", mcConnection, OnManager(&TAppManagerUtils::OpenSchema),
         true},
        {.Menu = "Schema",
         .Name = "actSchemaCreateTable",
         .Caption = "Create Table...",
         .Condition = mcConnection,
         .Work = OnManager([](TAppManagerUtils &utils) { utils.CreateTable(); }),
         .Bar = true,
         .Icon = "table",
         .Dialog = adkTable},
        {.Menu = "Schema",
         .Name = "actSchemaCreateView",
         .Caption = "Create View...",
         .Condition = mcConnection,
         .Work = OnManager([](TAppManagerUtils &utils) { utils.CreateView(); }),
         .Icon = "view",
         .Dialog = adkView},
        {"Schema", "actSchemaCreateProcedure", "Create Procedure...", mcConnection,
         OnManager([](TAppManagerUtils &utils) { utils.CreateRoutine(rtProcedure); })},
        {"Schema", "actSchemaCreateFunction", "Create Function...", mcConnection,
         OnManager([](TAppManagerUtils &utils) { utils.CreateRoutine(rtFunction); })},
        {.Menu = "Schema",
         .Name = "actSchemaCreateEvent",
         .Caption = "Create Event...",
         .Condition = mcConnection,
         .Work = OnManager([](TAppManagerUtils &utils) { utils.CreateEvent(); }),
         .Icon = "event",
         .Dialog = adkEvent},
        {"Schema", "actSchemaMigrate", "Migrate...", mcConnection,
         OnManager([](TAppManagerUtils &utils) { utils.MigrateDatabase(); }), true},
        {"Schema", "actSchemaClone", "Clone...", mcConnection,
         OnManager([](TAppManagerUtils &utils) { utils.CloneDatabase(); })},
        {"Schema", "actSchemaCreateSqlDump", "Create SQL Dump...", mcConnection,
         OnManager([](TAppManagerUtils &utils) { utils.CreateSqlDump(); })},
        {"Schema", "actSchemaChecksumData", "Checksum Data (CRC32)...", mcConnection,
         OnManager([](TAppManagerUtils &utils) { utils.ChecksumDatabase(); }), true},
        {.Menu = "Schema",
         .Name = "actSchemaUpdate",
         .Caption = "Modify...",
         .Condition = mcConnection,
         .Work = OnManager([](TAppManagerUtils &utils) { utils.UpdateDatabase(); }),
         .Bar = true,
         .Dialog = adkDatabase},
        {"Schema", "actSchemaDelete", "Delete...", mcServerConnection,
         OnManager([](TAppManagerUtils &utils) { utils.DeleteDatabase(); })},

        {"Query",
         "actQueryNew",
         "New",
         mcConnection,
         OnManager(&TAppManagerUtils::NewQuery),
         false,
         {QKeySequence("Ctrl+N"), QKeySequence("Ctrl+Q")},
         "new"},
        {"Query",
         "actQueryOpen",
         "Open...",
         mcConnection,
         OnManager(&TAppManagerUtils::OpenQuery),
         false,
         {QKeySequence("Ctrl+O")},
         "open"},
        {"Query",
         "actQueryReopen",
         "Reopen Closed Query",
         mcClosedQuery,
         [] { App().ReopenClosedQuery(); },
         false,
         {QKeySequence("Ctrl+Shift+T")}},
        {"Query",
         "actQuerySave",
         "Save",
         mcQueryPage,
         OnQueryPage(&TPages::GetQueryPageSaveAction),
         true,
         {QKeySequence("Ctrl+S")},
         "save"},
        {"Query",
         "actQuerySaveAs",
         "Save As...",
         mcQueryPage,
         OnQueryPage(&TPages::GetQueryPageSaveAsAction),
         false,
         {},
         "save-as"},
        {"Query",
         "actQueryDuplicate",
         "Duplicate",
         mcQueryPage,
         OnQueryPage(&TPages::GetQueryPageDuplicateAction),
         true,
         {},
         "duplicate"},
        {"Query",
         "actQueryExecute",
         "Execute",
         mcQueryPage,
         OnQueryPage(&TPages::GetQueryPageExecuteAction),
         true,
         {QKeySequence("Ctrl+R")},
         "execute"},
        {"Query",
         "actQueryExecuteSelected",
         "Execute Selected",
         mcQueryPage,
         OnQueryPage(&TPages::GetQueryPageExecuteSelectedAction),
         false,
         {QKeySequence("Ctrl+Shift+R")},
         "execute-selected"},
        {"Query",
         "actQueryExportAsCVS",
         "Export as CVS...",
         mcQueryPage,
         OnQueryPage(&TPages::GetQueryPageExportAsCvsAction),
         true,
         {},
         "export-csv"},
        {"Query",
         "actQueryExportAsText",
         "Export as Text",
         mcQueryPage,
         OnQueryPage(&TPages::GetQueryPageExportAsTextAction),
         false,
         {},
         "export-text"},

        {"Tools", "actToolsExecuteSQLDump", "Execute SQL Dump...", mcConnection,
         OnManager([](TAppManagerUtils &utils) { utils.ExecuteSqlDump(); })},
        {"Server", "actToolsServerUserPrivileges", "Users", mcConnection, {}, false, {}, "user"},
        {"Server", "actToolsServerThreads", "Threads", mcConnection, {}, false, {}, "threads"},
        {"Server",
         "actToolsServerVariables",
         "Variables",
         mcConnection,
         {},
         false,
         {},
         "variables"},
        {"Server", "actToolsServerStatus", "Status", mcConnection, {}, false, {}, "status"},
        {"Server", "actToolsServerCounters", "Counters", mcConnection, {}, false, {}, "counters"},
        {"Server", "actToolsServerCharsets", "Charsets", mcConnection, {}, false, {}, "charset"},
        {"Server", "actToolsServerPlugins", "Plugins", mcConnection, {}, false, {}, "plugins"},
        {"Server", "actToolsServerEngines", "Engines", mcConnection, {}, false, {}, "engines"},
        {"Other",
         "actToolsOtherApplicationLog",
         "Application Log",
         mcConnection,
         {},
         false,
         {},
         "log"},

        {"Window",
         "actWindowClosePage",
         "Close Page",
         mcConnection,
         [] { App().CloseActivePage(); },
         false,
         {QKeySequence("Ctrl+F4")}},
        {"Window",
         "actWindowCloseAllPages",
         "Close All Pages",
         mcConnection,
         [] { App().CloseAllPages(); },
         false,
         {QKeySequence("Ctrl+Shift+F4")}},

        {"Help",
         "actHomePage",
         "Korvane Home Page",
         mcAlways,
         [] { App().HomePage(); },
         false,
         {},
         "home"},
        {"Help", "actAbout", "About Korvane", mcAlways, [] { App().About(); }, true, {}, "app"},

        {{},
         "actToolsCreateSQLDump",
         "Create SQL Dump...",
         mcConnection,
         OnManager([](TAppManagerUtils &utils) { utils.CreateSqlDump(); })},
        {{},
         "actToolsMigrateDatabase",
         "Migrate Database...",
         mcConnection,
         OnManager([](TAppManagerUtils &utils) { utils.MigrateDatabase(); })},
        {{},
         "actToolsChecksumDatabase",
         "Checksum Database Data (CRC32)...",
         mcConnection,
         OnManager([](TAppManagerUtils &utils) { utils.ChecksumDatabase(); })},
    };
    return rows;
}

TMainFormMenuUtils::TMainFormMenuUtils(QMainWindow &window) : FPagesGroup(new QActionGroup(this))
{
    BuildMenus(window);
    TMessenger::Register<TManagerPagesChangeMessage>(
        this, [this](const TManagerPagesChangeMessage &) { UpdateStates(); });
    TMessenger::Register<TQueryPageStatusChangedMessage>(
        this, [this](const TQueryPageStatusChangedMessage &) { UpdateQueryStates(); });
}

TMainFormMenuUtils::~TMainFormMenuUtils()
{
    TMessenger::Unregister(this);
}

void TMainFormMenuUtils::BuildMenus(QMainWindow &window)
{
    QHash<QString, QMenu *> menus;
    for (const char *name : {"File", "View", "Schema", "Query", "Tools", "Window", "Help"})
        menus[name] = AddMenu(window, name, QString("&") + name);
    for (const char *name : {"View", "Schema", "Query", "Tools", "Window"})
        FConnectionMenus.push_back(menus[name]);
    FDataMenu = new QMenu("&Data", &window);
    FDataMenu->setObjectName("menData");
    FWindowMenu = menus["Window"];

    for (const TActionRow &row : Rows()) {
        QAction *action = MakeAction(window, row);
        if (row.Menu.isEmpty())
            continue;
        QMenu *&menu = menus[row.Menu];
        if (!menu) {
            // The two submenus of Tools stand behind the entries made so far.
            if (row.Menu == "Server")
                menus["Tools"]->addSeparator();
            menu = menus["Tools"]->addMenu(row.Menu);
            menu->setObjectName("men" + row.Menu);
        }
        if (row.Bar)
            menu->addSeparator();
        menu->addAction(action);
    }
}

QMenu *TMainFormMenuUtils::AddMenu(QMainWindow &window, const QString &name, const QString &caption)
{
    QMenu *menu = window.menuBar()->addMenu(caption);
    menu->setObjectName("men" + name);
    return menu;
}

QAction *TMainFormMenuUtils::MakeAction(QMainWindow &window, const TActionRow &row)
{
    auto *action = new QAction(row.Caption, &window);
    action->setObjectName(row.Name);
    action->setShortcuts(row.Shortcuts);
    if (!row.Icon.isEmpty())
        action->setIcon(TIcons::Icon(row.Icon));
    if (row.Work)
        connect(action, &QAction::triggered, this, [work = row.Work] { TGuard::Run(work); });
    window.addAction(action);
    FEntries.push_back({action, row.Condition, static_cast<bool>(row.Work), row.Dialog});
    return action;
}

void TMainFormMenuUtils::UpdateStates()
{
    UpdateConnectionStates();
    UpdateQueryStates();
    RebuildWindowMenu();
}

void TMainFormMenuUtils::UpdateConnectionStates()
{
    TManagerFrame *manager = App().GetActiveManager();
    const bool opened = manager != nullptr;
    const bool onServer = opened && !manager->Manager().IsDatabaseConnection();
    for (const TEntry &entry : FEntries) {
        if (entry.Condition == mcConnection)
            entry.Action->setEnabled(opened && entry.IsThere());
        if (entry.Condition == mcClosedQuery)
            entry.Action->setEnabled(opened && manager->HasClosedQueries());
        if (entry.Condition == mcServerConnection) {
            entry.Action->setVisible(onServer);
            entry.Action->setEnabled(onServer && entry.IsThere());
        }
    }
    for (QMenu *menu : FConnectionMenus)
        menu->menuAction()->setVisible(opened);
}

void TMainFormMenuUtils::UpdateQueryStates()
{
    using TPages = TAppManagerPageUtils;
    const auto follow = [this](const char *name, TQueryPageAction get) {
        const QAction *action = PageAction(get);
        Find(name)->setEnabled(action && action->isEnabled());
    };
    follow("actQuerySave", &TPages::GetQueryPageSaveAction);
    follow("actQuerySaveAs", &TPages::GetQueryPageSaveAsAction);
    follow("actQueryExecute", &TPages::GetQueryPageExecuteAction);
    follow("actQueryExecuteSelected", &TPages::GetQueryPageExecuteSelectedAction);
    follow("actQueryExportAsCVS", &TPages::GetQueryPageExportAsCvsAction);
    follow("actQueryExportAsText", &TPages::GetQueryPageExportAsTextAction);
    // Deliberate: Duplicate follows the page's save-as action.
    follow("actQueryDuplicate", &TPages::GetQueryPageSaveAsAction);
}

void TMainFormMenuUtils::RebuildWindowMenu()
{
    // A click on an entry leads here, so that the entry must outlive this call.
    for (QAction *entry : FPageEntries) {
        FPagesGroup->removeAction(entry);
        FWindowMenu->removeAction(entry);
        entry->deleteLater();
    }
    FPageEntries.clear();
    const QStringList captions = App().GetPagesCaption();
    if (!captions.isEmpty())
        FPageEntries.push_back(FWindowMenu->addSeparator());
    for (int i = 0; i < captions.size(); ++i) {
        QAction *page = FWindowMenu->addAction(QString(captions[i]).replace("&", "&&"));
        page->setCheckable(true);
        page->setChecked(i == App().GetActivePage());
        FPagesGroup->addAction(page);
        FPageEntries.push_back(page);
        connect(page, &QAction::triggered, this,
                [i] { TGuard::Run([i] { App().SetActivePage(i); }); });
    }
}

void TMainFormMenuUtils::TriggerQueryExecute()
{
    QAction *action = Find("actQueryExecute");
    if (action->isEnabled())
        action->trigger();
}

QAction *TMainFormMenuUtils::Find(const QString &name) const
{
    for (const TEntry &entry : FEntries)
        if (entry.Action->objectName() == name)
            return entry.Action;
    return nullptr;
}
