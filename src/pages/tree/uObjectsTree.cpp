#include "pages/tree/uObjectsTree.h"

#include "model/uDbmEventList.h"
#include "model/uDbmFieldList.h"
#include "model/uDbmIndexList.h"
#include "model/uDbmManager.h"
#include "model/uDbmReferenceList.h"
#include "model/uDbmRoutineList.h"
#include "model/uDbmTableList.h"
#include "model/uDbmTriggerList.h"
#include "model/uDbmViewList.h"
#include "support/uFormat.h"

#include <QStringBuilder>

#include <array>

namespace {

enum TImage {
    imFolder = 0,
    imTable = 2,
    imTemporary = 3,
    imSystemView = 4,
    imView = 5,
    imProcedure = 6,
    imFunction = 7,
    imEvent = 8,
    imField = 9,
    imIndex = 10,
    imReference = 11,
    imTrigger = 12
};

// A node that only gives its parent an expander until the parent is opened.
const QString NullId = QStringLiteral("null");

int TableImage(TDbmTableType type)
{
    switch (type) {
    case tblTemporary:
        return imTemporary;
    case tblSystemView:
        return imSystemView;
    case tblTable:
        break;
    }
    return imTable;
}

// One list for all nodes with the picture: databases have thousands of them.
const QVector<int> &Images(int image)
{
    static const std::array<QVector<int>, imTrigger + 1> lists = [] {
        std::array<QVector<int>, imTrigger + 1> made;
        for (size_t i = 0; i < made.size(); ++i)
            made[i] = {static_cast<int>(i)};
        return made;
    }();
    return lists[static_cast<size_t>(image)];
}

QString Counted(const char *caption, int count)
{
    return TFormat::Format("%s (%d)", {QString(caption), count});
}

} // namespace

TObjectsTree::TObjectsTree(TDbmManager *manager, TVTDataManager *data)
    : FManager(manager), FData(data)
{}

const TObjectsNode *TObjectsTree::Node(const TVTDataItem *item)
{
    return item ? item->DataAs<const TObjectsNode>() : nullptr;
}

TObjectsNode *TObjectsTree::Keep(const TObjectsNode &node)
{
    return &FNodes.emplace_back(node);
}

void TObjectsTree::Draw(TDbmDatabaseItem &database, bool expandFolders)
{
    // Nodes that stay refer to the old ones until they are drawn.
    std::deque<TObjectsNode> drawnBefore;
    drawnBefore.swap(FNodes);
    const TVTDataUpdate update(FData);
    TVTDataList &root = *FData->DataList();
    const TObjectsNode node = {.DatabaseName = database.Name()};
    const auto folder = [&](const char *id, const char *caption, int count, int order,
                            TObjectsNodeKind kind) -> TVTDataList & {
        TObjectsNode own = node;
        own.Kind = kind;
        TVTDataItem *item = AddFolder(root, id, Counted(caption, count), order, own);
        if (expandFolders)
            item->SetExpanded(true);
        return *item->DataList();
    };
    DrawTables(database,
               folder("folder.tables", "Tables", database.Tables().Count(), 0, onkTables));
    DrawViews(database, folder("folder.views", "Views", database.Views().Count(), 1, onkViews));
    TDbmRoutineList &routines = database.Routines();
    TVTDataList &procedures = folder("folder.procedures", "Procedures",
                                     routines.CountByType(rtProcedure), 2, onkProcedures);
    DrawRoutines(
        database, procedures,
        folder("folder.functions", "Functions", routines.CountByType(rtFunction), 3, onkFunctions));
    if (FManager->Features().Events)
        DrawEvents(database,
                   folder("folder.events", "Events", database.Events().Count(), 4, onkEvents));
}

TVTDataItem *TObjectsTree::AddFolder(TVTDataList &list, const QString &id, const QString &caption,
                                     int order, const TObjectsNode &node)
{
    return list.Add(id, Keep(node), Images(imFolder), {caption}, {order});
}

TVTDataItem *TObjectsTree::AddObject(TVTDataList &list, const QString &word, int image,
                                     const TObjectsNode &node)
{
    const QVariantList shown{node.Name};
    return list.Add(word % ' ' % node.DatabaseName % '.' % node.Name, Keep(node), Images(image),
                    shown, shown);
}

void TObjectsTree::AddItem(TVTDataList &list, int image, const QVariant &order,
                           const TObjectsNode &node)
{
    list.Add(node.Name, Keep(node), Images(image), {node.Name}, {order});
}

void TObjectsTree::DrawTables(TDbmDatabaseItem &database, TVTDataList &list)
{
    database.Tables().ForEach([&](TDbmTableItem &table) {
        const TObjectsNode node = {.Kind = onkTable,
                                   .DatabaseName = database.Name(),
                                   .Name = table.TableName(),
                                   .CanChange = table.CanRename()};
        const TDbmTableType type = table.Entity().Info.TableType;
        TVTDataItem *item = AddObject(list, "table", TableImage(type), node);
        FillChildren(*item, node);
    });
}

void TObjectsTree::DrawViews(TDbmDatabaseItem &database, TVTDataList &list)
{
    database.Views().ForEach([&](TDbmViewItem &view) {
        const TObjectsNode node = {
            .Kind = onkView, .DatabaseName = database.Name(), .Name = view.ViewName()};
        TVTDataItem *item = AddObject(list, "view", imView, node);
        FillChildren(*item, node);
    });
}

void TObjectsTree::DrawRoutines(TDbmDatabaseItem &database, TVTDataList &procedures,
                                TVTDataList &functions)
{
    database.Routines().ForEach([&](TDbmRoutineItem &routine) {
        const bool isFunction = routine.Entity().RoutineType == rtFunction;
        const TObjectsNode node = {.Kind = isFunction ? onkFunction : onkProcedure,
                                   .DatabaseName = database.Name(),
                                   .Name = routine.Entity().RoutineName};
        if (isFunction)
            AddObject(functions, "func", imFunction, node);
        else
            AddObject(procedures, "proc", imProcedure, node);
    });
}

void TObjectsTree::DrawEvents(TDbmDatabaseItem &database, TVTDataList &list)
{
    database.Events().ForEach([&](TDbmEventItem &event) {
        AddObject(
            list, "event", imEvent,
            {.Kind = onkEvent, .DatabaseName = database.Name(), .Name = event.Entity().EventName});
    });
}

// Nothing is read for a node that is closed.
void TObjectsTree::FillChildren(TVTDataItem &item, const TObjectsNode &node)
{
    TVTDataList &list = *item.DataList();
    if (!item.IsExpanded()) {
        list.AddHidden(NullId);
        return;
    }
    if (node.Kind == onkTable) {
        DrawTableFolders(list, node);
        return;
    }
    std::shared_ptr<TDbmViewItem> view;
    if (FManager->TryGetView(node.DatabaseName, node.Name, view))
        DrawFields(view->Fields(), list, node);
}

void TObjectsTree::DrawChildren(TVTDataItem &item)
{
    const TObjectsNode *node = Node(&item);
    if (!node || (node->Kind != onkTable && node->Kind != onkView))
        return;
    const TVTDataUpdate update(item.DataList());
    FillChildren(item, *node);
}

void TObjectsTree::DrawFields(TDbmFieldList &fields, TVTDataList &list, const TObjectsNode &owner)
{
    TObjectsNode node = {.Kind = onkFields,
                         .DatabaseName = owner.DatabaseName,
                         .OwnerName = owner.Name,
                         .OwnerIsView = owner.Kind == onkView};
    TVTDataItem *folder =
        AddFolder(list, "folder.fields", Counted("Fields", fields.Count()), 0, node);
    node.Kind = onkField;
    int position = 0;
    fields.ForEach([&](TDbmFieldItem &field) {
        node.Name = field.Entity().FieldName;
        AddItem(*folder->DataList(), imField, position++, node);
    });
}

void TObjectsTree::DrawTableFolders(TVTDataList &list, const TObjectsNode &node)
{
    std::shared_ptr<TDbmTableItem> table;
    if (!FManager->TryGetTable(node.DatabaseName, node.Name, table))
        return;
    DrawFields(table->Fields(), list, node);

    const auto draw = [&](auto &items, const QString &id, const char *caption, int order,
                          TObjectsNodeKind folderKind, TObjectsNodeKind kind, int image,
                          auto name) {
        TObjectsNode own = {
            .Kind = folderKind, .DatabaseName = node.DatabaseName, .OwnerName = node.Name};
        TVTDataItem *folder = AddFolder(list, id, Counted(caption, items.Count()), order, own);
        own.Kind = kind;
        items.ForEach([&](auto &item) {
            own.Name = item.Entity().*name;
            AddItem(*folder->DataList(), image, own.Name, own);
        });
    };
    draw(table->Indexes(), "folder.indexes", "Indexes", 1, onkIndexes, onkIndex, imIndex,
         &TDbmIndexEntity::IndexName);
    draw(table->References(), "folder.references", "References", 2, onkReferences, onkReference,
         imReference, &TDbmReferenceEntity::ReferenceName);
    draw(table->Triggers(), "folder.triggers", "Triggers", 3, onkTriggers, onkTrigger, imTrigger,
         &TDbmTriggerEntity::TriggerName);
}
