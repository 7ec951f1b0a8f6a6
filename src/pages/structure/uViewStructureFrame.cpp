#include "pages/structure/uViewStructureFrame.h"

#include "model/uDbmFieldList.h"
#include "model/uDbmManager.h"
#include "model/uDbmViewList.h"
#include "pages/structure/uTableListFrames.h"
#include "shell/uAppMessages.h"
#include "shell/uAppUtils.h"
#include "shell/uManagerFrame.h"

#include <QAction>

void TViewStructureFrame::AddActions()
{
    actOptions = AddAction("actOptions", "edit", "Modify", "Modify view", [this] { Modify(); });
    AddAction("actRefresh", "refresh", "Refresh", "Refresh view", [this] { Refresh(); });
    // Deliberate: of these there are the names alone; the tree and the schema page do this work.
    for (const auto &[name, caption, hint] : {std::array{"actRename", "Rename", "Rename view"},
                                              std::array{"actDelete", "Delete", "Delete view"}}) {
        auto *action = new QAction(caption, this);
        action->setObjectName(name);
        action->setToolTip(hint);
    }
}

void TViewStructureFrame::AddTabs()
{
    AddDataTab();
    AddListTab<TTableFieldsFrame>("tshFields", "Fields", "column");
    AddInfoTab({"View name", "Check option", "Updatable", "Security type", "Definer",
                "Character set", "Collation"},
               [this] { return Info(); });
}

void TViewStructureFrame::Process()
{
    std::shared_ptr<TDbmViewItem> view;
    const bool found = FManager->TryGetView(FDatabaseName, FTableName, view);
    actOptions->setEnabled(found && TAppDialogs::Has(adkView));
    pcTabs->Process();
    SetCount(ttFields, "Fields", found ? view->Fields().Count() : 0);
}

QStringList TViewStructureFrame::Info() const
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

void TViewStructureFrame::Modify()
{
    const QString database = FDatabaseName, oldName = FTableName;
    QString newName;
    if (!TAppDialogs::UpdateView(*FManager, database, newName, oldName))
        return;
    std::shared_ptr<TDbmDatabaseItem> item;
    if (FManager->Databases().TryGetByName(database, item))
        item->Views().RequestProcess();
    if (newName != oldName)
        TAppMessages::SendViewRenamed(FManager, database, oldName, newName);
    TAppMessages::SendRedrawUI();
}

void TViewStructureFrame::Refresh()
{
    TAppUtils::Instance().GetActiveManager()->ForgetNotRead();
    std::shared_ptr<TDbmViewItem> view;
    if (FManager->TryGetView(FDatabaseName, FTableName, view))
        view->RequestProcess();
    FManager->DataPool().RequestProcessFor(FDatabaseName, FTableName);
    TAppMessages::SendRedrawUI();
}
