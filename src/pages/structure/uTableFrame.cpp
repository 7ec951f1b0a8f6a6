#include "pages/structure/uTableFrame.h"

#include "model/uDbmFieldList.h"
#include "model/uDbmIndexList.h"
#include "model/uDbmManager.h"
#include "model/uDbmReferenceList.h"
#include "model/uDbmTableList.h"
#include "model/uDbmTriggerList.h"
#include "pages/structure/uSqlViewerFrame.h"
#include "pages/structure/uTableListFrames.h"
#include "pages/structure/uTableStructureFrame.h"
#include "shell/uAppManagerUtils.h"
#include "shell/uAppMessages.h"
#include "shell/uAppUtils.h"
#include "shell/uManagerFrame.h"
#include "support/uFormat.h"

#include <QAction>

namespace {

TAppManagerUtils &Utils()
{
    return TAppUtils::Instance().GetActiveManager()->Utils();
}

} // namespace

void TTableFrame::AddActions()
{
    actOptions = AddAction("actOptions", "edit", "Modify", "Update table",
                           [this] { Utils().UpdateTable(FDatabaseName, FTableName); });
    AddAction("actClone", "duplicate", "Clone", "Clone table",
              [this] { Utils().CloneTable(FDatabaseName, FTableName); });
    AddAction("actRefresh", "refresh", "Refresh", "Refresh view", [this] { Refresh(); });
}

void TTableFrame::AddTabs()
{
    AddDataTab();
    pcTabs->AddTab(
        "tshStructure", "Structure", "table",
        [this](QWidget *owner) {
            FStructureFrame = New<TTableStructureFrame>(owner);
            return FStructureFrame;
        },
        [this] {
            FStructureFrame->SetParams(FManager, FDatabaseName, FTableName);
            FStructureFrame->Process();
        });
    AddListTab<TTableFieldsFrame>("tshFields", "Fields", "column");
    AddListTab<TTableIndexesFrame>("tshIndexes", "Indexes", "index");
    AddListTab<TTableReferencesFrame>("tshReferences", "References", "reference");
    AddListTab<TTableDependenciesFrame>("tshDependencies", "Dependencies", "reference");
    AddListTab<TTableTriggersFrame>("tshTriggers", "Triggers", "trigger");
    AddInfoTab({"Table name", "Engine", "Rows", "Collation", "Row format", "Pack keys", "Checksum",
                "Delayed updates", "Average row length", "Data length", "Data free", "Index length",
                "Max data length", "Comment"},
               [this] { return Info(); });
    pcTabs->AddTab(
        "tshDDL", "DDL", "ddl",
        [this](QWidget *owner) { return FDDLFrame = New<TSqlViewerFrame>(owner); },
        [this] { FDDLFrame->SetContent(DDL()); });
    // Deliberate: these two are not offered for the time being, whatever the table is.
    pcTabs->setTabVisible(ttStructure, false);
    pcTabs->setTabVisible(ttDependencies, false);
}

void TTableFrame::Process()
{
    std::shared_ptr<TDbmTableItem> table;
    const bool found = FManager->TryGetTable(FDatabaseName, FTableName, table);
    const bool isReal = found && table->IsTable();
    actOptions->setEnabled(isReal && TAppDialogs::Has(adkTable));
    ShowTabsOf(isReal);
    pcTabs->Process();
    SetCount(ttFields, "Fields", found ? table->Fields().Count() : 0);
    SetCount(ttIndexes, "Indexes", isReal ? table->Indexes().Count() : 0);
    SetCount(ttReferences, "References", isReal ? table->References().Count() : 0);
    // Nobody sees it: nothing is read for it.
    SetCount(ttDependencies, "Dependencies",
             isReal && table->Dependencies().IsProcessed() ? table->Dependencies().Count() : 0);
    SetCount(ttTriggers, "Triggers", isReal ? table->Triggers().Count() : 0);
}

void TTableFrame::ShowTabsOf(bool isReal)
{
    const int current = pcTabs->currentIndex();
    // Ahead of the hiding: the bar would turn to each neighbour in turn, and read it.
    if (!isReal && (current == ttIndexes || current == ttReferences || current == ttTriggers))
        pcTabs->setCurrentIndex(ttFields);
    for (const TTab tab : {ttIndexes, ttReferences, ttTriggers})
        pcTabs->setTabVisible(tab, isReal);
}

bool TTableFrame::Create(TOperation operation, TTab tab)
{
    if (!(Utils().*operation)(FDatabaseName, FTableName))
        return false;
    pcTabs->setCurrentIndex(tab);
    return true;
}

bool TTableFrame::CreateField()
{
    return Create(&TAppManagerUtils::CreateField, ttFields);
}

bool TTableFrame::CreateIndex()
{
    return Create(&TAppManagerUtils::CreateIndex, ttIndexes);
}

bool TTableFrame::CreateReference()
{
    return Create(&TAppManagerUtils::CreateReference, ttReferences);
}

bool TTableFrame::CreateTrigger()
{
    return Create(&TAppManagerUtils::CreateTrigger, ttTriggers);
}

QStringList TTableFrame::Info() const
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

QString TTableFrame::DDL() const
{
    std::shared_ptr<TDbmTableItem> table;
    return FManager->TryGetTable(FDatabaseName, FTableName, table) ? table->DDL().GetValue()
                                                                   : QString();
}

void TTableFrame::Refresh()
{
    TAppUtils::Instance().GetActiveManager()->ForgetNotRead();
    std::shared_ptr<TDbmTableItem> table;
    if (FManager->TryGetTable(FDatabaseName, FTableName, table))
        table->RequestProcess();
    TAppMessages::SendRedrawUI();
}
