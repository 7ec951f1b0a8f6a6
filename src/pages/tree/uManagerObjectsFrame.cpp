#include "pages/tree/uManagerObjectsFrame.h"

#include "app/uAppSession.h"
#include "model/uDbmManager.h"
#include "shell/uAppManagerPageUtils.h"
#include "shell/uAppManagerUtils.h"
#include "shell/uAppMessages.h"
#include "shell/uAppUtils.h"
#include "shell/uGuard.h"
#include "shell/uManagerFrame.h"
#include "support/uException.h"
#include "widgets/uDropDownCombo.h"
#include "widgets/uIcons.h"
#include "widgets/uToolBar.h"
#include "widgets/uWaitCursor.h"

#include <QAction>
#include <QMenu>
#include <QStackedWidget>
#include <QToolButton>
#include <QVBoxLayout>
#include <utility>

struct TManagerObjectsFrame::TActionRow
{
    const char *Name;
    const char *Caption;
    const char *Hint;
    std::function<void()> Work;
    const char *Icon;
    std::optional<TAppDialogKind> Dialog = {}; // disabled while there is no such dialog
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
    const auto onTable = [this](TOnTable operation) {
        return [this, operation] {
            const TObjectsNode table = GetActiveTable();
            (FUtils->*operation)(table.DatabaseName, table.Name);
        };
    };
    return {
        {"actRefresh", "Refresh", "Refresh", [this] { Refresh(); }, "refresh"},
        {"actDatabaseCreate", "Create", "Create database", [this] { FUtils->CreateDatabase(); },
         "add", adkDatabase},
        {"actDatabaseOpen", "Open", "",
         [this] { FPageUtils->ShowSchema(SelectedDatabase(), true); }, "open"},
        {"actDatabaseChecksum", "Checksum Data (CRC32)...", "",
         [this] { FUtils->ChecksumDatabase(SelectedDatabase()); }, "checksum"},
        {"actDatabaseCreateTable", "Create Table...", "Create table",
         [this] { FUtils->CreateTable(SelectedDatabase()); }, "table", adkTable},
        {"actDatabaseCreateView", "Create View...", "Create view",
         [this] { FUtils->CreateView(SelectedDatabase()); }, "view", adkView},
        {"actDatabaseCreateProcedure", "Create Procedure...", "Create procedure",
         [this] { FUtils->CreateRoutine(rtProcedure, SelectedDatabase()); }, "procedure"},
        {"actDatabaseCreateFunction", "Create Function...", "Create function",
         [this] { FUtils->CreateRoutine(rtFunction, SelectedDatabase()); }, "function"},
        {"actDatabaseCreateEvent", "Create Event...", "Create event",
         [this] { FUtils->CreateEvent(SelectedDatabase()); }, "event", adkEvent},
        {"actDatabaseCreateField", "Create Field...", "", onTable(&TAppManagerUtils::CreateField),
         "column", adkField},
        {"actDatabaseCreateIndex", "Create Index...", "", onTable(&TAppManagerUtils::CreateIndex),
         "index", adkIndex},
        {"actDatabaseCreateReference", "Create Reference...", "",
         onTable(&TAppManagerUtils::CreateReference), "reference", adkReference},
        {"actDatabaseCreateTrigger", "Create Trigger...", "",
         onTable(&TAppManagerUtils::CreateTrigger), "trigger", adkTrigger},
        {"actDatabaseMigrate", "Migrate...", "",
         [this] { FUtils->MigrateDatabase(SelectedDatabase()); }, "migrate"},
        {"actDatabaseClone", "Clone...", "", [this] { FUtils->CloneDatabase(SelectedDatabase()); },
         "duplicate"},
        {"actDatabaseDump", "Create SQL Dump...", "Create SQL-dump",
         [this] { TAppDialogs::CreateSqlDump(*FManager, SelectedDatabase()); }, "dump"},
        {"actDatabaseUpdate", "Modify...", "",
         [this] { FUtils->UpdateDatabase(SelectedDatabase()); }, "edit", adkDatabase},
        {"actDatabaseDelete", "Delete...", "",
         [this] { FUtils->DeleteDatabase(SelectedDatabase()); }, "remove"},
    };
}

std::vector<TManagerObjectsFrame::TActionRow> TManagerObjectsFrame::ObjectActions()
{
    return {
        {"actObjectOpen", "Open", "Open object", [this] { OpenObject(); }, "open"},
        {"actObjectUpdate", "Modify", "Modify object", [this] { UpdateObject(); }, "edit"},
        {"actObjectRename", "Rename", "Rename object", [this] { RenameObject(); }, "rename"},
        {"actObjectDelete", "Delete", "Delete object", [this] { DeleteObject(); }, "remove"},
        // Deliberate: no menu lists it and it does nothing.
        {"actObjectClone", "Clone...", "", [] {}, "duplicate"},
    };
}

void TManagerObjectsFrame::MakeActions()
{
    std::vector<TActionRow> rows = DatabaseActions();
    for (TActionRow &row : ObjectActions())
        rows.push_back(std::move(row));
    for (const TActionRow &row : rows) {
        auto *action = new QAction(TIcons::Icon(row.Icon), row.Caption, this);
        action->setObjectName(row.Name);
        if (*row.Hint)
            action->setToolTip(row.Hint);
        connect(action, &QAction::triggered, this, [work = row.Work] { TGuard::Run(work); });
        FActions.insert(row.Name, {action, row.Dialog});
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
    auto *toolBar = new TToolBar(this, "tbrObjects", Qt::ToolButtonIconOnly);
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
            FIsListOpen = true;
            FManager->Databases().RequestNames();
            FillDatabases();
        });
    });
    // The list closes ahead of the choice that closes it. It may also close without one, while the
    // database that was selected is gone from it.
    connect(
        cbxDatabase, &TDropDownCombo::OnCloseUp, this,
        [this] {
            if (std::exchange(FIsListOpen, false))
                DatabaseChosen();
        },
        Qt::QueuedConnection);
    connect(cbxDatabase, &QComboBox::activated, this, [this] {
        if (!FIsListOpen)
            DatabaseChosen();
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
                    TIcons::Icon("table-temporary"), TIcons::Icon("table-system"),
                    TIcons::Icon("view"), TIcons::Icon("procedure"), TIcons::Icon("function"),
                    TIcons::Icon("event"), TIcons::Icon("column"), TIcons::Icon("index"),
                    TIcons::Icon("reference"), TIcons::Icon("trigger")});
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
    session.WriteSelectedDatabase(FProcessed ? FChosenDatabase : FSelectedDatabase);
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
    if (!name.isEmpty())
        FChosenDatabase = name;
    FillDatabases();
    if (cbxDatabase->count() > 0)
        FHasEvents = FManager->Features().Events;
    DrawDatabase();
    UpdateActions();
}

void TManagerObjectsFrame::FillDatabases()
{
    QStringList names;
    FManager->Databases().ForEach([&](TDbmDatabaseItem &item) { names += item.Name(); });
    names.sort(Qt::CaseInsensitive);
    cbxDatabase->clear();
    cbxDatabase->addItems(names);
    cbxDatabase->setCurrentIndex(static_cast<int>(names.indexOf(FChosenDatabase)));
    KeepChoice();
}

// No account sees no database at all: an empty list is one that could not be read, and the choice
// waits for the server to come back.
void TManagerObjectsFrame::KeepChoice()
{
    if (cbxDatabase->count() > 0)
        FChosenDatabase = SelectedDatabase();
}

void TManagerObjectsFrame::DatabaseChosen()
{
    KeepChoice();
    TGuard::Run([this] { DrawDatabase(); });
    UpdateActions();
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
    FTree->Draw(*database, name != FLastDatabaseProcessed);
    FLastDatabaseProcessed = name;
}

const TObjectsNode *TManagerObjectsFrame::FocusedNode() const
{
    return pcBody->currentWidget() == lvTree ? TObjectsTree::Node(vtm->FocusedItem()) : nullptr;
}

void TManagerObjectsFrame::Enable(const char *name, bool enabled)
{
    const TAction &action = FActions[name];
    action.Action->setEnabled(enabled && (!action.Dialog || TAppDialogs::Has(*action.Dialog)));
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
    cbxDatabase->setEnabled(!bound);
    Enable("actDatabaseCreate", !bound);
    for (const char *name :
         {"actDatabaseOpen", "actDatabaseCreateTable", "actDatabaseCreateView",
          "actDatabaseCreateProcedure", "actDatabaseCreateFunction", "actDatabaseMigrate",
          "actDatabaseClone", "actDatabaseDump", "actDatabaseChecksum", "actDatabaseUpdate",
          "actDatabaseCreateField", "actDatabaseCreateIndex", "actDatabaseCreateReference",
          "actDatabaseCreateTrigger"})
        Enable(name, selected);
    Enable("actDatabaseCreateEvent", FHasEvents && selected);
    FActions["actDatabaseCreateEvent"].Action->setVisible(FHasEvents);
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
    Enable("actObjectUpdate",
           (isTable || isView || isEvent || isItem) && TAppDialogs::Has(DialogKind(*node)));
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

TAppDialogKind TManagerObjectsFrame::DialogKind(const TObjectsNode &node)
{
    switch (node.Kind) {
    case onkView:
        return adkView;
    case onkEvent:
        return adkEvent;
    case onkField:
        return adkField;
    case onkIndex:
        return adkIndex;
    case onkReference:
        return adkReference;
    case onkTrigger:
        return adkTrigger;
    default:
        return adkTable;
    }
}

TObjectsNode TManagerObjectsFrame::GetActiveTable() const
{
    const TObjectsNode *node = FocusedNode();
    TObjectsNode table;
    if (node && (node->Kind == onkTable || (!node->OwnerName.isEmpty() && !node->OwnerIsView)))
        table = {.Kind = onkTable,
                 .DatabaseName = node->DatabaseName,
                 .Name = node->Kind == onkTable ? node->Name : node->OwnerName};
    if (table.Kind != onkTable)
        throw EException("GetActiveTable error.");
    return table;
}

void TManagerObjectsFrame::UpdateObject()
{
    const TObjectsNode node = *FocusedNode();
    switch (node.Kind) {
    case onkTable:
        FUtils->UpdateTable(node.DatabaseName, node.Name);
        break;
    case onkView:
        FUtils->UpdateView(node.DatabaseName, node.Name);
        break;
    case onkEvent:
        FUtils->UpdateEvent(node.DatabaseName, node.Name);
        break;
    case onkField:
        FUtils->UpdateField(node.DatabaseName, node.OwnerName, node.Name);
        break;
    case onkIndex:
        FUtils->UpdateIndex(node.DatabaseName, node.OwnerName, node.Name);
        break;
    case onkReference:
        FUtils->UpdateReference(node.DatabaseName, node.OwnerName, node.Name);
        break;
    default:
        FUtils->UpdateTrigger(node.DatabaseName, node.OwnerName, node.Name);
    }
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
    TAppUtils::Instance().GetActiveManager()->ForgetNotRead();
    FManager->Databases().RequestProcess();
    TAppMessages::SendRedrawUI();
}
