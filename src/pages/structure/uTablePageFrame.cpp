#include "pages/structure/uTablePageFrame.h"

#include "model/uDbmManager.h"
#include "model/uDbmTableList.h"
#include "model/uDbmViewList.h"
#include "pages/structure/uTableFrame.h"

#include <QVBoxLayout>

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
    for (TTableFrame *frame : {FTableFrame, FViewFrame})
        if (frame)
            frame->SetParams(databaseName, tableOrViewName);
}

QString TTablePageFrame::DoGetTitle() const
{
    return FManager->IsDatabaseConnection() ? FTableOrViewName
                                            : FDatabaseName + '.' + FTableOrViewName;
}

void TTablePageFrame::SetDataSessionData(const TTableDataSessionData &data)
{
    FDataSessionData = data;
    for (TTableFrame *frame : {FTableFrame, FViewFrame})
        if (frame)
            frame->SetDataSessionData(data);
}

TTableDataSessionData TTablePageFrame::GetDataSessionData() const
{
    const TTableFrame *frame = FTableFrame ? FTableFrame : FViewFrame;
    return frame ? frame->GetDataSessionData() : FDataSessionData;
}

void TTablePageFrame::DoProcess()
{
    std::shared_ptr<TDbmTableItem> table;
    std::shared_ptr<TDbmViewItem> view;
    const bool isTable = FManager->TryGetTable(FDatabaseName, FTableOrViewName, table);
    const bool isView = !isTable && FManager->TryGetView(FDatabaseName, FTableOrViewName, view);
    KeepFrame(FTableFrame, isTable, false);
    KeepFrame(FViewFrame, isView, true);
    if (TTableFrame *frame = isTable ? FTableFrame : FViewFrame)
        frame->Process();
}

void TTablePageFrame::KeepFrame(TTableFrame *&frame, bool isThere, bool isView)
{
    if (isThere && !frame) {
        frame = New<TTableFrame>(this);
        frame->Initialize(FManager, isView);
        frame->SetParams(FDatabaseName, FTableOrViewName);
        frame->SetDataSessionData(FDataSessionData);
        frame->MoveTo(this);
    } else if (!isThere && frame) {
        FDataSessionData = frame->GetDataSessionData(); // the object may come back
        TBaseFrame::Discard(frame);
        frame = nullptr;
    }
}
