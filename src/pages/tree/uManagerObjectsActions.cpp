#include "pages/tree/uManagerObjectsFrame.h"

#include "model/uDbmManager.h"
#include "shell/uAppManagerPageUtils.h"
#include "shell/uAppManagerUtils.h"
#include "shell/uAppUtils.h"
#include "shell/uGuard.h"
#include "widgets/uDropDownCombo.h"
#include "widgets/uIcons.h"

#include <QAction>
#include <QMenu>

// The actions of the objects tree, their states and the menus they stand in.

struct TManagerObjectsFrame::TActionRow
{
    const char *Name;
    const char *Caption;
    const char *Hint;
    std::function<void()> Work;
    const char *Icon;
    std::optional<TAppDialogKind> Dialog = {}; // disabled while there is no such dialog
};

std::vector<TManagerObjectsFrame::TActionRow> TManagerObjectsFrame::DatabaseActions()
{
    const auto onTable = [this](TOnTable operation) {
        return [this, operation] {
            const TObjectsNode table = GetActiveTable();
            // Through a reference: GCC 12 with its sanitizer takes the lambda for `this` otherwise.
            TAppManagerUtils &utils = *FUtils;
            (utils.*operation)(table.DatabaseName, table.Name);
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

void TManagerObjectsFrame::FillMenu(QMenu &menu, const TNames &names)
{
    menu.clear();
    for (const QString &name : names)
        if (name == "-")
            menu.addSeparator();
        else
            menu.addAction(FActions[name].Action);
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
