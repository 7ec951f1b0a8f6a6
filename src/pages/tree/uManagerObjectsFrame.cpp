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
