#include "pages/tree/uManagerObjectsFrame.h"

#include "app/uAppSession.h"
#include "model/uDbmManager.h"
#include "shell/uAppDialogs.h"
#include "shell/uAppManagerPageUtils.h"
#include "shell/uAppManagerUtils.h"
#include "shell/uAppMessages.h"
#include "shell/uGuard.h"
#include "widgets/uDropDownCombo.h"
#include "widgets/uIcons.h"
#include "widgets/uWaitCursor.h"

#include <QAction>
#include <QMenu>
#include <QStackedWidget>
#include <QToolBar>
#include <QToolButton>
#include <QVBoxLayout>

struct TManagerObjectsFrame::TActionRow
{
    const char *Name;
    const char *Caption;
    const char *Hint = "";
    std::function<void()> Work = {}; // unset: the action is disabled
    const char *Icon = "";
};

TManagerObjectsFrame::TManagerObjectsFrame(QWidget *owner) : TBaseFrame(owner) {}

TManagerObjectsFrame::~TManagerObjectsFrame() = default;

void TManagerObjectsFrame::Initialize(TDbmManager *manager, TAppManagerUtils *utils,
                                      TAppManagerPageUtils *pageUtils)
{
    FManager = manager;
    FUtils = utils;
    FPageUtils = pageUtils;
    FTree = std::make_unique<TObjectsTree>(manager, vtm);
    TMessenger::Register<TSelectSchemaMessage>(this, [this](const TSelectSchemaMessage &message) {
        if (message.Manager == FManager)
            SelectDatabase(message.DatabaseName);
    });
    UpdateActions();
}

void TManagerObjectsFrame::DoCreate()
{
    TBaseFrame::DoCreate();
    setObjectName("frmObjects");
    MakeActions();
    BuildLayout();
    ConnectTree();
}

void TManagerObjectsFrame::DoDestroy()
{
    TMessenger::Unregister(this);
    TBaseFrame::DoDestroy();
}

std::vector<TManagerObjectsFrame::TActionRow> TManagerObjectsFrame::DatabaseActions()
{
    return {
        {"actRefresh", "Refresh", "Refresh", [this] { Refresh(); }, "refresh"},
        {"actDatabaseCreate", "Create", "Create database"},
        {"actDatabaseOpen", "Open", "",
         [this] { FPageUtils->ShowSchema(SelectedDatabase(), true); }, "open"},
        {"actDatabaseChecksum", "Checksum Data (CRC32)...", "",
         [this] { FUtils->ChecksumDatabase(SelectedDatabase()); }},
        {"actDatabaseCreateTable", "Create Table...", "Create table"},
        {"actDatabaseCreateView", "Create View...", "Create view"},
        {"actDatabaseCreateProcedure", "Create Procedure...", "Create procedure",
         [this] { FUtils->CreateRoutine(rtProcedure, SelectedDatabase()); }, "procedure"},
        {"actDatabaseCreateFunction", "Create Function...", "Create function",
         [this] { FUtils->CreateRoutine(rtFunction, SelectedDatabase()); }, "function"},
        {"actDatabaseCreateEvent", "Create Event...", "Create event"},
        {"actDatabaseCreateField", "Create Field..."},
        {"actDatabaseCreateIndex", "Create Index..."},
        {"actDatabaseCreateReference", "Create Reference..."},
        {"actDatabaseCreateTrigger", "Create Trigger..."},
        {"actDatabaseMigrate", "Migrate...", "",
         [this] { FUtils->MigrateDatabase(SelectedDatabase()); }},
        {"actDatabaseClone", "Clone...", "", [this] { FUtils->CloneDatabase(SelectedDatabase()); }},
        {"actDatabaseDump", "Create SQL Dump...", "Create SQL-dump",
         [this] { TAppDialogs::CreateSqlDump(*FManager, SelectedDatabase()); }},
        {"actDatabaseUpdate", "Modify..."},
        {"actDatabaseDelete", "Delete...", "",
         [this] { FUtils->DeleteDatabase(SelectedDatabase()); }, "remove"},
    };
}

std::vector<TManagerObjectsFrame::TActionRow> TManagerObjectsFrame::ObjectActions()
{
    return {
        {"actObjectOpen", "Open", "Open object", [this] { OpenObject(); }, "open"},
        {"actObjectUpdate", "Modify", "Modify object"},
        {"actObjectRename", "Rename", "Rename object", [this] { RenameObject(); }},
        {"actObjectDelete", "Delete", "Delete object", [this] { DeleteObject(); }, "remove"},
        // Deliberate: no menu lists it and it does nothing.
        {"actObjectClone", "Clone..."},
    };
}

void TManagerObjectsFrame::MakeActions()
{
    std::vector<TActionRow> rows = DatabaseActions();
    for (TActionRow &row : ObjectActions())
        rows.push_back(std::move(row));
    for (const TActionRow &row : rows) {
        auto *action = new QAction(row.Caption, this);
        action->setObjectName(row.Name);
        if (*row.Hint)
            action->setToolTip(row.Hint);
        if (*row.Icon)
            action->setIcon(TIcons::Icon(row.Icon));
        if (row.Work)
            connect(action, &QAction::triggered, this, [work = row.Work] { TGuard::Run(work); });
        FActions.insert(row.Name, {action, static_cast<bool>(row.Work)});
    }
}

void TManagerObjectsFrame::BuildLayout()
{
    auto *column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    column->addWidget(BuildToolBar());
    pcBody = new QStackedWidget(this);
    pcBody->setObjectName("pcBody");
    tshNone = new QWidget(pcBody);
    tshNone->setObjectName("tshNone");
    lvTree = new TVTTreeView(pcBody, "lvTree");
    lvTree->setAccessibleName("Objects");
    lvTree->setMouseTracking(true);
    pcBody->addWidget(tshNone);
    pcBody->addWidget(lvTree);
    column->addWidget(pcBody, 1);
}

QWidget *TManagerObjectsFrame::BuildToolBar()
{
    auto *toolBar = new QToolBar(this);
    toolBar->setObjectName("tbrObjects");
    cbxDatabase = new TDropDownCombo(toolBar);
    cbxDatabase->setObjectName("cbxDatabase");
    cbxDatabase->setToolTip("Database");
    cbxDatabase->setAccessibleName("Database");
    cbxDatabase->setMaxVisibleItems(24);
    cbxDatabase->setPlaceholderText("Database");
    // A long name must not push the buttons out of the panel.
    cbxDatabase->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    cbxDatabase->setMinimumContentsLength(8);
    cbxDatabase->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    connect(cbxDatabase, &TDropDownCombo::OnDropDown, this, [this] {
        TGuard::Run([this] {
            FManager->Databases().RequestProcess();
            FillDatabases();
        });
    });
    connect(cbxDatabase, &QComboBox::activated, this, [this] {
        TGuard::Run([this] { DrawDatabase(); });
        UpdateActions();
    });
    toolBar->addWidget(cbxDatabase);

    auto *siDatabaseActions = new QToolButton(toolBar);
    siDatabaseActions->setObjectName("siDatabaseActions");
    siDatabaseActions->setIcon(TIcons::Icon("database"));
    siDatabaseActions->setToolTip("Database actions");
    siDatabaseActions->setAccessibleName("Database actions");
    siDatabaseActions->setPopupMode(QToolButton::InstantPopup);
    auto *menu = new QMenu(siDatabaseActions);
    menu->setObjectName("pmDatabase");
    FillMenu(*menu, {"actDatabaseCreate", "-", "actDatabaseOpen", "-", "actDatabaseCreateTable",
                     "actDatabaseCreateView", "actDatabaseCreateProcedure",
                     "actDatabaseCreateFunction", "actDatabaseCreateEvent", "-",
                     "actDatabaseMigrate", "actDatabaseClone", "actDatabaseDump", "-",
                     "actDatabaseChecksum", "-", "actDatabaseUpdate", "-", "actDatabaseDelete"});
    siDatabaseActions->setMenu(menu);
    toolBar->addWidget(siDatabaseActions);
    toolBar->addAction(FActions["actRefresh"].Action);
    return toolBar;
}

void TManagerObjectsFrame::ConnectTree()
{
    vtm = new TVTDataManager(lvTree);
    vtm->SetImages({TIcons::Icon("folder"), TIcons::Icon("database"), TIcons::Icon("table"),
                    TIcons::Icon("table"), TIcons::Icon("table"), TIcons::Icon("view"),
                    TIcons::Icon("procedure"), TIcons::Icon("function"), TIcons::Icon("event"),
                    TIcons::Icon("column"), TIcons::Icon("index"), TIcons::Icon("reference"),
                    TIcons::Icon("trigger")});
    vtm->SetSort(0, Qt::AscendingOrder);
    FpmTree = new QMenu(this);
    FpmTree->setObjectName("pmTree");
    vtm->SetPopupMenu(FpmTree);
    connect(vtm, &TVTDataManager::OnFocusChanged, this, [this] { UpdateActions(); });
    connect(vtm, &TVTDataManager::OnExpanded, this, [this](TVTDataItem *item) {
        TGuard::Run([this, item] {
            TWaitCursor::Show();
            FTree->DrawChildren(*item);
        });
    });
    connect(vtm, &TVTDataManager::OnDoubleClick, this, &TManagerObjectsFrame::Activated);
    connect(vtm, &TVTDataManager::OnEnterKey, this, [this] { Trigger("actObjectOpen"); });
    connect(vtm, &TVTDataManager::OnDeleteKey, this, [this] { Trigger("actObjectDelete"); });
    connect(vtm, &TVTDataManager::OnRenameKey, this, [this] { Trigger("actObjectRename"); });
}

void TManagerObjectsFrame::FillMenu(QMenu &menu, const TNames &names)
{
    menu.clear();
    for (const QString &name : names)
        if (name == "-")
            menu.addSeparator();
        else
            menu.addAction(FActions[name].Action);
}

void TManagerObjectsFrame::ReadSession(const TAppSession &session)
{
    FSelectedDatabase = session.ReadSelectedDatabase();
}

void TManagerObjectsFrame::WriteSession(TAppSession &session) const
{
    // What was never drawn is kept as it was read.
    session.WriteSelectedDatabase(FProcessed ? SelectedDatabase() : FSelectedDatabase);
}

QString TManagerObjectsFrame::SelectedDatabase() const
{
    return cbxDatabase->currentText();
}

void TManagerObjectsFrame::Process()
{
    QString name;
    if (FManager->IsDatabaseConnection())
        name = FManager->GetUsedDatabase()->Name();
    else if (!FProcessed)
        name = FSelectedDatabase;
    SelectDatabase(name);
    FProcessed = true;
}

void TManagerObjectsFrame::SelectDatabase(const QString &name)
{
    TWaitCursor::Show();
    FillDatabases();
    if (!name.isEmpty())
        cbxDatabase->setCurrentIndex(
            cbxDatabase->findText(name, Qt::MatchFixedString | Qt::MatchCaseSensitive));
    DrawDatabase();
    UpdateActions();
}

void TManagerObjectsFrame::FillDatabases()
{
    const QString selected = SelectedDatabase();
    QStringList names;
    FManager->Databases().ForEach([&](TDbmDatabaseItem &item) { names += item.Name(); });
    names.sort(Qt::CaseInsensitive);
    cbxDatabase->clear();
    cbxDatabase->addItems(names);
    cbxDatabase->setCurrentIndex(static_cast<int>(names.indexOf(selected)));
}

void TManagerObjectsFrame::DrawDatabase()
{
    const QString name = SelectedDatabase();
    std::shared_ptr<TDbmDatabaseItem> database;
    if (name.isEmpty() || !FManager->Databases().TryGetByName(name, database)) {
        pcBody->setCurrentWidget(tshNone);
        return;
    }
    pcBody->setCurrentWidget(lvTree);
    const bool isOther = name != FLastDatabaseProcessed;
    FLastDatabaseProcessed = name;
    FTree->Draw(*database, isOther);
}

const TObjectsNode *TManagerObjectsFrame::FocusedNode() const
{
    return pcBody->currentWidget() == lvTree ? TObjectsTree::Node(vtm->FocusedItem()) : nullptr;
}

void TManagerObjectsFrame::Enable(const char *name, bool enabled)
{
    const TAction &action = FActions[name];
    action.Action->setEnabled(enabled && action.HasWork);
}

void TManagerObjectsFrame::UpdateActions()
{
    UpdateDatabaseActions();
    UpdateObjectActions();
    UpdateTreeMenu();
}

void TManagerObjectsFrame::UpdateDatabaseActions()
{
    const bool bound = FManager->IsDatabaseConnection();
    const bool selected = !SelectedDatabase().isEmpty();
    const bool events = FManager->Features().Events;
    cbxDatabase->setEnabled(!bound);
    Enable("actDatabaseCreate", !bound);
    for (const char *name :
         {"actDatabaseOpen", "actDatabaseCreateTable", "actDatabaseCreateView",
          "actDatabaseCreateProcedure", "actDatabaseCreateFunction", "actDatabaseMigrate",
          "actDatabaseClone", "actDatabaseDump", "actDatabaseChecksum", "actDatabaseUpdate",
          "actDatabaseCreateField", "actDatabaseCreateIndex", "actDatabaseCreateReference",
          "actDatabaseCreateTrigger"})
        Enable(name, selected);
    Enable("actDatabaseCreateEvent", events && selected);
    FActions["actDatabaseCreateEvent"].Action->setVisible(events);
    Enable("actDatabaseDelete", !bound && selected);
    for (const char *name : {"actDatabaseCreate", "actDatabaseDelete"})
        FActions[name].Action->setVisible(!bound);
}

void TManagerObjectsFrame::UpdateObjectActions()
{
    const TObjectsNode *node = FocusedNode();
    const TObjectsNodeKind kind = node ? node->Kind : onkNone;
    const bool isTable = kind == onkTable;
    const bool isView = kind == onkView;
    const bool isRoutine = kind == onkProcedure || kind == onkFunction;
    const bool isEvent = kind == onkEvent;
    const bool isItem = (kind == onkField && !node->OwnerIsView) || kind == onkIndex ||
                        kind == onkReference || kind == onkTrigger;
    const bool isNamed = isTable || isView || isRoutine || isEvent;
    Enable("actObjectOpen", isTable || isView || isRoutine);
    Enable("actObjectUpdate", isTable || isView || isEvent || isItem);
    Enable("actObjectRename", isNamed && node->CanChange);
    Enable("actObjectDelete", (isNamed && node->CanChange) || isItem);
    Enable("actObjectClone", isNamed);
}

TManagerObjectsFrame::TNames TManagerObjectsFrame::TreeMenu(const TObjectsNode *node)
{
    switch (node ? node->Kind : onkNone) {
    case onkTables:
        return {"actDatabaseCreateTable"};
    case onkViews:
        return {"actDatabaseCreateView"};
    case onkProcedures:
        return {"actDatabaseCreateProcedure"};
    case onkFunctions:
        return {"actDatabaseCreateFunction"};
    case onkEvents:
        return {"actDatabaseCreateEvent"};
    case onkFields:
        return node->OwnerIsView ? TNames{} : TNames{"actDatabaseCreateField"};
    case onkIndexes:
        return {"actDatabaseCreateIndex"};
    case onkReferences:
        return {"actDatabaseCreateReference"};
    case onkTriggers:
        return {"actDatabaseCreateTrigger"};
    case onkTable:
        return {"actObjectOpen",
                "-",
                "actDatabaseCreateField",
                "actDatabaseCreateIndex",
                "actDatabaseCreateReference",
                "actDatabaseCreateTrigger",
                "-",
                "actObjectUpdate",
                "actObjectRename",
                "-",
                "actObjectDelete"};
    case onkView:
        return {"actObjectOpen", "-", "actObjectUpdate", "actObjectRename", "-", "actObjectDelete"};
    case onkProcedure:
    case onkFunction:
        return {"actObjectOpen", "-", "actObjectRename", "-", "actObjectDelete"};
    case onkEvent:
        return {"actObjectUpdate", "actObjectRename", "-", "actObjectDelete"};
    case onkField:
        return node->OwnerIsView ? TNames{} : TNames{"actObjectUpdate", "-", "actObjectDelete"};
    case onkIndex:
    case onkReference:
    case onkTrigger:
        return {"actObjectUpdate", "-", "actObjectDelete"};
    case onkNone:
        break;
    }
    return {};
}

void TManagerObjectsFrame::UpdateTreeMenu()
{
    FillMenu(*FpmTree, TreeMenu(FocusedNode()));
}

void TManagerObjectsFrame::Trigger(const char *name)
{
    if (FActions[name].Action->isEnabled())
        FActions[name].Action->trigger();
}

void TManagerObjectsFrame::Activated(TVTDataItem *item)
{
    const TObjectsNode *node = TObjectsTree::Node(item);
    if (!node)
        return;
    if (node->Name.isEmpty())
        vtm->ToggleExpanded(item);
    else if (FActions["actObjectOpen"].Action->isEnabled())
        Trigger("actObjectOpen");
    else
        Trigger("actObjectUpdate");
}

void TManagerObjectsFrame::OpenObject()
{
    const TObjectsNode node = *FocusedNode();
    if (node.Kind == onkTable || node.Kind == onkView)
        FPageUtils->ShowTable(node.DatabaseName, node.Name, true);
    else
        FPageUtils->ShowRoutine(node.DatabaseName, node.Name, true);
}

void TManagerObjectsFrame::RenameObject()
{
    const TObjectsNode node = *FocusedNode(); // the tree is drawn anew before this ends
    switch (node.Kind) {
    case onkTable:
        FUtils->RenameTable(node.DatabaseName, node.Name);
        break;
    case onkView:
        FUtils->RenameView(node.DatabaseName, node.Name);
        break;
    case onkEvent:
        FUtils->RenameEvent(node.DatabaseName, node.Name);
        break;
    default:
        FUtils->RenameRoutine(node.DatabaseName, node.Name);
    }
}

void TManagerObjectsFrame::DeleteObject()
{
    const TObjectsNode node = *FocusedNode();
    switch (node.Kind) {
    case onkTable:
        FUtils->DeleteTable(node.DatabaseName, node.Name);
        break;
    case onkView:
        FUtils->DeleteView(node.DatabaseName, node.Name);
        break;
    case onkEvent:
        FUtils->DeleteEvent(node.DatabaseName, node.Name);
        break;
    case onkField:
        FUtils->DeleteField(node.DatabaseName, node.OwnerName, node.Name);
        break;
    case onkIndex:
        FUtils->DeleteIndex(node.DatabaseName, node.OwnerName, node.Name);
        break;
    case onkReference:
        FUtils->DeleteReference(node.DatabaseName, node.OwnerName, node.Name);
        break;
    case onkTrigger:
        FUtils->DeleteTrigger(node.DatabaseName, node.OwnerName, node.Name);
        break;
    default:
        FUtils->DeleteRoutine(node.DatabaseName, node.Name);
    }
}

void TManagerObjectsFrame::Refresh()
{
    FManager->Databases().RequestProcess();
    TAppMessages::SendRedrawUI();
}
