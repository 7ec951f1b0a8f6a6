#include "pages/structure/uTablePageFrame.h"

#include "core/uDbmProvider.h"
#include "model/uDbmManager.h"
#include "model/uDbmTableList.h"
#include "model/uDbmViewList.h"
#include "pages/data/uTableDataFrame.h"
#include "pages/structure/uTableFrame.h"
#include "pages/structure/uViewStructureFrame.h"

#include <QVBoxLayout>

namespace {

QString ImageOf(TDbmTableType type)
{
    switch (type) {
    case tblTemporary:
        return "table-temporary";
    case tblSystemView:
        return "table-system";
    case tblTable:
        break;
    }
    return "table";
}

// Lists that could not be read are empty, which does not mean that what is in them is gone. They
// are read again by the next refresh.
bool IsUnread(TDbmManager &manager, const QString &databaseName)
{
    std::shared_ptr<TDbmDatabaseItem> database;
    if (manager.Databases().TryGetByName(databaseName, database)) {
        if (manager.Provider().Connection().Connected())
            return false;
        database->RequestProcess();
        return true;
    }
    if (manager.Databases().Count() > 0) // no account sees no database at all
        return false;
    manager.Databases().RequestNames();
    return true;
}

} // namespace

void TTablePageFrame::DoCreate()
{
    TPageFrame::DoCreate();
    (new QVBoxLayout(this))->setContentsMargins(0, 0, 0, 0);
}

void TTablePageFrame::SetParams(TDbmManager *manager, const QString &databaseName,
                                const QString &tableOrViewName)
{
    FManager = manager;
    FDatabaseName = databaseName;
    FTableOrViewName = tableOrViewName;
    if (TTableTabsFrame *frame = Frame())
        frame->SetParams(databaseName, tableOrViewName);
}

TTableTabsFrame *TTablePageFrame::Frame() const
{
    return FTableFrame ? static_cast<TTableTabsFrame *>(FTableFrame) : FViewFrame;
}

QString TTablePageFrame::DoGetTitle() const
{
    return FManager->IsDatabaseConnection() ? FTableOrViewName
                                            : FDatabaseName + '.' + FTableOrViewName;
}

bool TTablePageFrame::DoCloseQuery()
{
    auto *data = findChild<TTableDataFrame *>();
    return !data || data->CommitEdit();
}

void TTablePageFrame::SetDataSessionData(const TTableDataSessionData &data)
{
    FDataSessionData = data;
    if (TTableTabsFrame *frame = Frame())
        frame->SetDataSessionData(data);
}

TTableDataSessionData TTablePageFrame::GetDataSessionData() const
{
    const TTableTabsFrame *frame = Frame();
    return frame ? frame->GetDataSessionData() : FDataSessionData;
}

bool TTablePageFrame::IsDataShown() const
{
    return findChild<TTableDataFrame *>() != nullptr;
}

void TTablePageFrame::DoProcess()
{
    std::shared_ptr<TDbmTableItem> table;
    std::shared_ptr<TDbmViewItem> view;
    const bool isTable = FManager->TryGetTable(FDatabaseName, FTableOrViewName, table);
    const bool isView = !isTable && FManager->TryGetView(FDatabaseName, FTableOrViewName, view);
    const bool isGone = (FTableFrame && !isTable) || (FViewFrame && !isView);
    // What is being typed goes nowhere before it is written.
    if (isGone && (IsUnread(*FManager, FDatabaseName) || !DoCloseQuery()))
        return;
    Q_EMIT OnUpdateImage(isTable  ? ImageOf(table->Entity().Info.TableType)
                         : isView ? QString("view")
                                  : QString("text-page"));
    // What goes first: its state is the other's to take.
    if (!isTable)
        KeepFrame(FTableFrame, false);
    KeepFrame(FViewFrame, isView);
    KeepFrame(FTableFrame, isTable);
    if (TTableTabsFrame *frame = Frame())
        frame->Process();
}

template <typename TFrame>
void TTablePageFrame::KeepFrame(TFrame *&frame, bool isThere)
{
    if (isThere && !frame) {
        frame = New<TFrame>(this);
        frame->Initialize(FManager);
        frame->SetParams(FDatabaseName, FTableOrViewName);
        frame->SetDataSessionData(FDataSessionData);
        frame->MoveTo(this);
    } else if (!isThere && frame) {
        FDataSessionData = frame->GetDataSessionData(); // the object may come back
        TBaseFrame::Discard(frame);
        frame = nullptr;
    }
}
