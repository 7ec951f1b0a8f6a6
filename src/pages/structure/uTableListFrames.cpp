#include "pages/structure/uTableListFrames.h"

#include "model/uDbmFieldList.h"
#include "model/uDbmIndexList.h"
#include "model/uDbmManager.h"
#include "model/uDbmReferenceList.h"
#include "model/uDbmTableList.h"
#include "model/uDbmTriggerList.h"
#include "model/uDbmViewList.h"
#include "pages/data/uFieldItemKinds.h"
#include "shell/uAppManagerUtils.h"
#include "shell/uAppUtils.h"
#include "shell/uGuard.h"
#include "shell/uManagerFrame.h"
#include "sql/uDbmSqlValueUtils.h"
#include "widgets/uGridView.h"

#include <QAction>

namespace {

// What a view's columns do not have.
enum TFieldColumn { fcKey = 6, fcComment = 10 };

TAppManagerUtils &Utils()
{
    return TAppUtils::Instance().GetActiveManager()->Utils();
}

std::vector<TObjectListRow> FieldRows(TDbmFieldList &fields)
{
    std::vector<TObjectListRow> rows;
    fields.ForEach([&](TDbmFieldItem &field) {
        const TDbmFieldEntity &entity = field.Entity();
        const int position = static_cast<int>(rows.size()) + 1;
        rows.push_back(
            {entity.FieldName,
             {{QString::number(position), position},
              entity.FieldName,
              field.GetTypeDisplayString(),
              entity.Nullable,
              entity.Autoincrement,
              TDbmSqlValueUtils::DisplayValue(entity.DefaultValue, QString()),
              field.GetKeyDisplayString(),
              field.GetReferenceDisplayString(),
              field.GetReferenceOnUpdateDisplayString(),
              field.GetReferenceOnDeleteDisplayString(),
              entity.Comment},
             TAppFieldTypeColors::Color(TFieldItemKinds::KindOf(entity.FieldType.DataType))});
    });
    return rows;
}

} // namespace

void TTableListFrame::DoCreate()
{
    TObjectListFrame::DoCreate();
    const TActionTexts texts = ActionTexts();
    actNew = AddListAction("actNew", texts.New, texts.NewHint, "add", [this] { CreateItem(); });
    if (actNew)
        AddSeparator();
    actModify = AddListAction("actModify", texts.Modify, texts.ModifyHint, "edit",
                              [this] { UpdateItem(FocusedName()); });
    actDelete = AddListAction("actDelete", texts.Delete, texts.DeleteHint, "remove",
                              [this] { DeleteItem(FocusedName()); });
    connect(this, &TObjectListFrame::OnFocusedChanged, this, &TTableListFrame::UpdateActions);
    UpdateActions();
}

QAction *TTableListFrame::AddListAction(const char *name, const QString &caption,
                                        const QString &hint, const char *icon,
                                        std::function<void()> work)
{
    if (caption.isEmpty())
        return nullptr;
    QAction *action = AddAction(name, caption, hint, icon);
    connect(action, &QAction::triggered, this, [work = std::move(work)] { TGuard::Run(work); });
    return action;
}

void TTableListFrame::SetParams(TDbmManager *manager, const QString &databaseName,
                                const QString &tableName)
{
    FManager = manager;
    FDatabaseName = databaseName;
    FTableName = tableName;
}

void TTableListFrame::Process()
{
    std::shared_ptr<TDbmTableItem> table;
    const bool found = FManager->TryGetTable(FDatabaseName, FTableName, table);
    FIsTable = found && table->IsTable();
    SetRows(found ? ReadRows(*table) : ReadViewRows());
}

void TTableListFrame::UpdateActions()
{
    const bool focused = FIsTable && Grid()->model() && !FocusedName().isEmpty();
    const bool hasDialog = TAppDialogs::Has(DialogKind());
    if (actNew)
        actNew->setEnabled(FIsTable && hasDialog);
    actModify->setEnabled(focused && hasDialog);
    actDelete->setEnabled(focused);
}

TTableListFrame::TActionTexts TTableFieldsFrame::ActionTexts() const
{
    return {.NewHint = "Create field", .ModifyHint = "Modify field", .DeleteHint = "Delete field"};
}

void TTableFieldsFrame::DoCreate()
{
    TTableListFrame::DoCreate();
    SetColumns({{.Caption = "#", .Align = Qt::AlignRight, .Sort = gsAscending},
                {.Caption = "Name"},
                {.Caption = "Type"},
                {.Caption = "Nullable", .Kind = gkCheck},
                {.Caption = "AI", .Kind = gkCheck},
                {.Caption = "Default"},
                {.Caption = "Key"},
                {.Caption = "Reference"},
                {.Caption = "On update"},
                {.Caption = "On delete"},
                {.Caption = "Comment"}},
               "table.fields");
    SetColumnVisible(4, false);
}

std::vector<TObjectListRow> TTableFieldsFrame::ReadRows(TDbmTableItem &table)
{
    for (int column = fcKey; column <= fcComment; ++column)
        SetColumnVisible(column, true);
    return FieldRows(table.Fields());
}

std::vector<TObjectListRow> TTableFieldsFrame::ReadViewRows()
{
    std::shared_ptr<TDbmViewItem> view;
    if (!FManager->TryGetView(FDatabaseName, FTableName, view))
        return {};
    for (int column = fcKey; column <= fcComment; ++column)
        SetColumnVisible(column, false);
    return FieldRows(view->Fields());
}

void TTableFieldsFrame::CreateItem()
{
    Utils().CreateField(FDatabaseName, FTableName);
}

void TTableFieldsFrame::UpdateItem(const QString &name)
{
    Utils().UpdateField(FDatabaseName, FTableName, name);
}

void TTableFieldsFrame::DeleteItem(const QString &name)
{
    Utils().DeleteField(FDatabaseName, FTableName, name);
}

void TTableIndexesFrame::DoCreate()
{
    TTableListFrame::DoCreate();
    SetColumns({{.Caption = "Name"}, {.Caption = "Type"}, {.Caption = "Fields"}}, "table.indexes");
}

std::vector<TObjectListRow> TTableIndexesFrame::ReadRows(TDbmTableItem &table)
{
    std::vector<TObjectListRow> rows;
    table.Indexes().ForEach([&](TDbmIndexItem &index) {
        const QString &name = index.Entity().IndexName;
        rows.push_back(
            {name,
             {name, index.GetIndexTypeDisplayString(), index.Columns().GetColumnsDisplayString()}});
    });
    return rows;
}

void TTableIndexesFrame::CreateItem()
{
    Utils().CreateIndex(FDatabaseName, FTableName);
}

void TTableIndexesFrame::UpdateItem(const QString &name)
{
    Utils().UpdateIndex(FDatabaseName, FTableName, name);
}

void TTableIndexesFrame::DeleteItem(const QString &name)
{
    Utils().DeleteIndex(FDatabaseName, FTableName, name);
}

void TTableReferencesFrame::DoCreate()
{
    TTableListFrame::DoCreate();
    SetColumns({{.Caption = "Name"},
                {.Caption = "Source columns"},
                {.Caption = "Reference"},
                {.Caption = "On delete"},
                {.Caption = "On update"}},
               "table.references");
}

std::vector<TObjectListRow> TTableReferencesFrame::ReadRows(TDbmTableItem &table)
{
    std::vector<TObjectListRow> rows;
    table.References().ForEach([&](TDbmReferenceItem &reference) {
        const QString &name = reference.Entity().ReferenceName;
        rows.push_back(
            {name,
             {name, reference.Columns().GetSrcColumnsDisplayString(),
              reference.GetReferenceDisplayString(), reference.GetOnDeleteDisplayString(),
              reference.GetOnUpdateDisplayString()}});
    });
    return rows;
}

void TTableReferencesFrame::CreateItem()
{
    Utils().CreateReference(FDatabaseName, FTableName);
}

void TTableReferencesFrame::UpdateItem(const QString &name)
{
    Utils().UpdateReference(FDatabaseName, FTableName, name);
}

void TTableReferencesFrame::DeleteItem(const QString &name)
{
    Utils().DeleteReference(FDatabaseName, FTableName, name);
}

TTableListFrame::TActionTexts TTableDependenciesFrame::ActionTexts() const
{
    return {.New = {}, .Modify = "Modify...", .Delete = "Delete..."};
}

void TTableDependenciesFrame::DoCreate()
{
    TTableListFrame::DoCreate();
    SetColumns({{.Caption = "Name"},
                {.Caption = "Source"},
                {.Caption = "Reference columns"},
                {.Caption = "On delete"},
                {.Caption = "On update"}},
               "table.dependencies");
}

std::vector<TObjectListRow> TTableDependenciesFrame::ReadRows(TDbmTableItem &table)
{
    std::vector<TObjectListRow> rows;
    table.Dependencies().ForEach([&](TDbmDependencyItem &item) {
        const QString name = item.Entity().Name;
        rows.push_back(
            {name,
             {name, item.GetReferenceSourceDisplayString(),
              item.GetReferenceRefFieldsDisplayString(), item.GetReferenceOnDeleteDiplsayString(),
              item.GetReferenceOnUpdateDisplayString()},
             {}});
    });
    return rows;
}

void TTableDependenciesFrame::RunOnReference(const QString &name, TOperation operation)
{
    std::shared_ptr<TDbmTableItem> table;
    std::shared_ptr<TDbmDependencyItem> item;
    if (!FManager->TryGetTable(FDatabaseName, FTableName, table) ||
        !table->Dependencies().TryGetByName(name, item))
        return;
    const TDbmDependencyEntity entity = item->Entity();
    if (!(Utils().*operation)(entity.SrcDatabaseName, entity.SrcTableName, entity.Name))
        return;
    // The change has marked the other table only.
    table->Dependencies().RequestProcess();
    Process();
}

void TTableDependenciesFrame::UpdateItem(const QString &name)
{
    RunOnReference(name, &TAppManagerUtils::UpdateReference);
}

void TTableDependenciesFrame::DeleteItem(const QString &name)
{
    RunOnReference(name, &TAppManagerUtils::DeleteReference);
}

void TTableTriggersFrame::DoCreate()
{
    TTableListFrame::DoCreate();
    SetColumns({{.Caption = "Name"}, {.Caption = "Event"}}, "table.triggers");
}

std::vector<TObjectListRow> TTableTriggersFrame::ReadRows(TDbmTableItem &table)
{
    std::vector<TObjectListRow> rows;
    table.Triggers().ForEach([&](TDbmTriggerItem &trigger) {
        const QString &name = trigger.Entity().TriggerName;
        rows.push_back({name, {name, trigger.GetEventDisplayString()}});
    });
    return rows;
}

void TTableTriggersFrame::CreateItem()
{
    Utils().CreateTrigger(FDatabaseName, FTableName);
}

void TTableTriggersFrame::UpdateItem(const QString &name)
{
    Utils().UpdateTrigger(FDatabaseName, FTableName, name);
}

void TTableTriggersFrame::DeleteItem(const QString &name)
{
    Utils().DeleteTrigger(FDatabaseName, FTableName, name);
}
