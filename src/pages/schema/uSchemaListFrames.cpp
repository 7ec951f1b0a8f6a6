#include "pages/schema/uSchemaListFrames.h"

#include "model/uDbmEventList.h"
#include "model/uDbmManager.h"
#include "model/uDbmRoutineList.h"
#include "model/uDbmTableList.h"
#include "model/uDbmViewList.h"
#include "shell/uAppManagerPageUtils.h"
#include "shell/uAppManagerUtils.h"
#include "shell/uAppUtils.h"
#include "shell/uGuard.h"
#include "shell/uManagerFrame.h"
#include "support/uFormat.h"
#include "widgets/uGridView.h"

#include <QAction>

namespace {

using TCell = TObjectListRow::TCell;

TCell YesNo(bool value)
{
    return QString(value ? "Yes" : "No");
}

TCell TimeCell(TDateTime value)
{
    return {value.IsNull() ? QString() : value.DateTimeText(), value.Days()};
}

TObjectListColumn RightAligned(const char *caption, const char *hint = "")
{
    return {.Caption = caption, .Hint = hint, .Align = Qt::AlignRight};
}

TObjectListColumn NameColumn()
{
    return {.Caption = "Name", .Sort = gsAscending};
}

} // namespace

void TSchemaListFrame::DoCreate()
{
    TObjectListFrame::DoCreate();
    HideToolBar();
    connect(this, &TObjectListFrame::OnFocusedChanged, this, &TSchemaListFrame::UpdateActions);
}

TAppManagerUtils &TSchemaListFrame::Utils()
{
    return TAppUtils::Instance().GetActiveManager()->Utils();
}

TAppManagerPageUtils &TSchemaListFrame::PageUtils()
{
    return TAppUtils::Instance().GetActiveManager()->PageUtils();
}

void TSchemaListFrame::SetParams(TDbmManager *manager, const QString &databaseName)
{
    FManager = manager;
    FDatabaseName = databaseName;
}

void TSchemaListFrame::Process()
{
    std::shared_ptr<TDbmDatabaseItem> database;
    SetRows(FManager->Databases().TryGetByName(FDatabaseName, database)
                ? ReadRows(*database)
                : std::vector<TObjectListRow>());
}

void TSchemaListFrame::AddActions(const std::vector<TActionRow> &rows)
{
    for (const TActionRow &row : rows) {
        QAction *action = AddAction(row.Name, row.Caption, row.Hint, row.Icon);
        connect(action, &QAction::triggered, this,
                [this, work = row.Work] { TGuard::Run([&] { work(FocusedName()); }); });
        FActions.emplace_back(action, row);
    }
    UpdateActions();
}

void TSchemaListFrame::SetDefaultAction(const char *name)
{
    auto *action = findChild<QAction *>(name);
    connect(Grid(), &TGridView::OnActivated, action, &QAction::trigger);
}

void TSchemaListFrame::UpdateActions()
{
    const bool focused = Grid()->model() && !FocusedName().isEmpty();
    for (const auto &[action, row] : FActions)
        action->setEnabled((focused || !row.NeedsFocus) &&
                           (!row.Dialog || TAppDialogs::Has(*row.Dialog)));
}

void TSchemaTablesFrame::DoCreate()
{
    TSchemaListFrame::DoCreate();
    SetColumns({NameColumn(),
                {.Caption = "Engine"},
                RightAligned("Rows"),
                {.Caption = "Collation"},
                {.Caption = "Row format"},
                {.Caption = "Pack keys"},
                {.Caption = "CHK", .Hint = "Checksum"},
                {.Caption = "DKW", .Hint = "Delay key write"},
                RightAligned("ARL", "Average row length"),
                RightAligned("Data"),
                RightAligned("Free"),
                RightAligned("Index", "Index length"),
                {.Caption = "Comment"}},
               "schema.tables");
    AddActions({
        {"actOpen", "Open", "", true,
         [this](const QString &name) { PageUtils().ShowTable(FDatabaseName, name, true); }, "open"},
        {"actCreate", "Create...", "Create field", false,
         [this](const QString &) { Utils().CreateTable(FDatabaseName); }, "add", adkTable},
        {"actUpdate", "Modify...", "Modify field", true,
         [this](const QString &name) { Utils().UpdateTable(FDatabaseName, name); }, "edit",
         adkTable},
        {"actRename", "Rename...", "", true,
         [this](const QString &name) { Utils().RenameTable(FDatabaseName, name); }, "rename"},
        {"actDelete", "Delete...", "Delete field", true,
         [this](const QString &name) { Utils().DeleteTable(FDatabaseName, name); }, "remove"},
    });
    SetDefaultAction("actOpen");
}

std::vector<TObjectListRow> TSchemaTablesFrame::ReadRows(TDbmDatabaseItem &database)
{
    std::vector<TObjectListRow> rows;
    database.Tables().ForEach([&](TDbmTableItem &table) {
        const TDbmTableEntity &entity = table.Entity();
        const TDbmTableInfo &info = entity.Info;
        rows.push_back({entity.TableName,
                        {entity.TableName,
                         entity.Engine,
                         {TFormat::Format("%.0n", {static_cast<double>(info.Rows)}), info.Rows},
                         entity.Collation,
                         table.GetRowFormatDisplayString(),
                         table.GetPackKeysDisplayString(),
                         table.GetChecksumDisplayString(),
                         table.GetDelayKeyWriteDisplayString(),
                         {table.GetAvgRowLengthDisplayString(), info.AvgRowLength},
                         {table.GetDataLengthDisplayString(), info.DataLength},
                         {table.GetDataFreeDisplayString(), info.DataFree},
                         {table.GetIndexLengthDisplayString(), info.IndexLength},
                         entity.Comment},
                        {}});
    });
    return rows;
}

void TSchemaViewsFrame::DoCreate()
{
    TSchemaListFrame::DoCreate();
    SetColumns({NameColumn(),
                {.Caption = "Check option"},
                {.Caption = "UPD", .Hint = "Updatable"},
                {.Caption = "Security type"},
                {.Caption = "Definer"},
                {.Caption = "Charset"},
                {.Caption = "Collation"}},
               "schema.views");
    AddActions({
        {"actOpen", "Open", "", true,
         [this](const QString &name) { PageUtils().ShowTable(FDatabaseName, name, true); }, "open"},
        {"actCreate", "Create...", "Create field", false,
         [this](const QString &) { Utils().CreateView(FDatabaseName); }, "add", adkView},
        {"actUpdate", "Modify...", "Modify field", true,
         [this](const QString &name) { Utils().UpdateView(FDatabaseName, name); }, "edit", adkView},
        {"actRename", "Rename...", "", true,
         [this](const QString &name) { Utils().RenameView(FDatabaseName, name); }, "rename"},
        {"actDelete", "Delete...", "Delete field", true,
         [this](const QString &name) { Utils().DeleteView(FDatabaseName, name); }, "remove"},
    });
    SetDefaultAction("actOpen");
}

std::vector<TObjectListRow> TSchemaViewsFrame::ReadRows(TDbmDatabaseItem &database)
{
    std::vector<TObjectListRow> rows;
    database.Views().ForEach([&](TDbmViewItem &view) {
        const TDbmViewEntity &entity = view.Entity();
        rows.push_back({entity.ViewName,
                        {entity.ViewName, view.GetCheckOptionDisplayString(),
                         view.GetUpdatableDisplayString(), view.GetSecurityTypeDisplayString(),
                         entity.Definer, entity.Info.Charset, entity.Info.Collation},
                        {}});
    });
    return rows;
}

void TSchemaRoutinesFrame::DoCreate()
{
    TSchemaListFrame::DoCreate();
    SetColumns({NameColumn(),
                {.Caption = "DTR", .Hint = "Deterministic"},
                {.Caption = "Security type"},
                {.Caption = "Definer"},
                {.Caption = "Created"},
                {.Caption = "Updated"},
                {.Caption = "Comment"}},
               "schema.routines");
    AddActions({
        {"actOpen", "Open", "", true,
         [this](const QString &name) { PageUtils().ShowRoutine(FDatabaseName, name, true); },
         "open"},
        {"actCreate", "Create", "Create field", false,
         [this](const QString &) { Utils().CreateRoutine(FRoutineType, FDatabaseName); }, "add"},
        {"actRename", "Rename...", "", true,
         [this](const QString &name) { Utils().RenameRoutine(FDatabaseName, name); }, "rename"},
        {"actDelete", "Delete...", "Delete field", true,
         [this](const QString &name) { Utils().DeleteRoutine(FDatabaseName, name); }, "remove"},
    });
    SetDefaultAction("actOpen");
}

void TSchemaRoutinesFrame::SetParams(TDbmManager *manager, const QString &databaseName,
                                     TDbmRoutineType routineType)
{
    TSchemaListFrame::SetParams(manager, databaseName);
    FRoutineType = routineType;
}

std::vector<TObjectListRow> TSchemaRoutinesFrame::ReadRows(TDbmDatabaseItem &database)
{
    std::vector<TObjectListRow> rows;
    database.Routines().ForEach([&](TDbmRoutineItem &routine) {
        const TDbmRoutineEntity &entity = routine.Entity();
        if (entity.RoutineType == FRoutineType)
            rows.push_back(
                {entity.RoutineName,
                 {entity.RoutineName, YesNo(entity.Deterministic),
                  routine.GetSecurityTypeDisplayString(), entity.Definer,
                  TimeCell(entity.Info.Created), TimeCell(entity.Info.LastAltered), entity.Comment},
                 {}});
    });
    return rows;
}

void TSchemaEventsFrame::DoCreate()
{
    TSchemaListFrame::DoCreate();
    SetColumns({NameColumn(),
                {.Caption = "Status"},
                {.Caption = "PRS", .Hint = "On completion preserve"},
                {.Caption = "Type"},
                {.Caption = "Execute at"},
                {.Caption = "Starts"},
                {.Caption = "Ends"},
                {.Caption = "Interval"},
                {.Caption = "Definer"},
                {.Caption = "Created"},
                {.Caption = "Updated"},
                {.Caption = "Executed"},
                {.Caption = "Comment"}},
               "schema.events");
    AddActions({
        {"actCreate", "Create", "Create field", false,
         [this](const QString &) { Utils().CreateEvent(FDatabaseName); }, "add", adkEvent},
        {"actUpdate", "Modify...", "Modify field", true,
         [this](const QString &name) { Utils().UpdateEvent(FDatabaseName, name); }, "edit",
         adkEvent},
        {"actRename", "Rename...", "", true,
         [this](const QString &name) { Utils().RenameEvent(FDatabaseName, name); }, "rename"},
        {"actDelete", "Delete...", "Delete field", true,
         [this](const QString &name) { Utils().DeleteEvent(FDatabaseName, name); }, "remove"},
    });
    SetDefaultAction("actUpdate");
}

std::vector<TObjectListRow> TSchemaEventsFrame::ReadRows(TDbmDatabaseItem &database)
{
    std::vector<TObjectListRow> rows;
    database.Events().ForEach([&](TDbmEventItem &event) {
        const TDbmEventEntity &entity = event.Entity();
        rows.push_back({entity.EventName,
                        {entity.EventName,
                         event.GetStatusDisplayString(),
                         YesNo(entity.OnCompletionPreserve),
                         event.GetTypeDisplayString(),
                         {event.GetExecuteAtDisplayString(), entity.AtTimestamp.Days()},
                         {event.GetStartsDisplayString(), entity.StartsTimestamp.Days()},
                         {event.GetEndsDisplayString(), entity.EndsTimestamp.Days()},
                         event.GetIntervalDisplayString(),
                         entity.Definer,
                         {event.GetCreatedDisplayString(), entity.Created.Days()},
                         {event.GetUpdatedDisplayString(), entity.LastAltered.Days()},
                         {event.GetExecutedDisplayString(), entity.LastExecuted.Days()},
                         entity.Comment},
                        {}});
    });
    return rows;
}
