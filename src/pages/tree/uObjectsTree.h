#pragma once

#include "widgets/uVTDataManager.h"

#include <QString>
#include <deque>

class TDbmDatabaseItem;
class TDbmFieldList;
class TDbmManager;

/// What stands behind a node of the objects tree.
enum TObjectsNodeKind {
    onkNone,
    onkTables,
    onkViews,
    onkProcedures,
    onkFunctions,
    onkEvents,
    onkFields,
    onkIndexes,
    onkReferences,
    onkTriggers,
    onkTable,
    onkView,
    onkProcedure,
    onkFunction,
    onkEvent,
    onkField,
    onkIndex,
    onkReference,
    onkTrigger
};

/// Names, not the objects themselves: a list may forget an object while its node is on the screen.
struct TObjectsNode
{
    TObjectsNodeKind Kind = onkNone;
    QString DatabaseName;
    QString OwnerName; // table or view that a folder or an item hangs under
    QString Name;      // empty for folders
    bool OwnerIsView = false;
    bool CanChange = true; // rename and delete
};

/// Draws the objects of one database as a keyed tree. Folders and objects are read when the
/// database is drawn, what hangs under a table or a view when its node is open.
class TObjectsTree
{
public:
    TObjectsTree(TDbmManager *manager, TVTDataManager *data); // not owned

    /// Raises what reading a list raises; what was not drawn by then is gone from the tree.
    void Draw(TDbmDatabaseItem &database, bool expandFolders);
    /// Reads and draws what hangs under a table or view.
    void DrawChildren(TVTDataItem &item);
    /// nullptr for no item and for items that are not drawn by this tree.
    static const TObjectsNode *Node(const TVTDataItem *item);

private:
    TVTDataItem *AddFolder(TVTDataList &list, const QString &id, const QString &caption, int order,
                           const TObjectsNode &node);
    TVTDataItem *AddObject(TVTDataList &list, const QString &word, int image,
                           const TObjectsNode &node);
    void AddItem(TVTDataList &list, int image, const QVariant &order, const TObjectsNode &node);
    void DrawTables(TDbmDatabaseItem &database, TVTDataList &list);
    void DrawViews(TDbmDatabaseItem &database, TVTDataList &list);
    void DrawRoutines(TDbmDatabaseItem &database, TVTDataList &procedures, TVTDataList &functions);
    void DrawEvents(TDbmDatabaseItem &database, TVTDataList &list);
    void FillChildren(TVTDataItem &item, const TObjectsNode &node);
    void DrawFields(TDbmFieldList &fields, TVTDataList &list, const TObjectsNode &owner);
    void DrawTableFolders(TVTDataList &list, const TObjectsNode &node);
    TObjectsNode *Keep(const TObjectsNode &node);

    TDbmManager *FManager;
    TVTDataManager *FData;
    std::deque<TObjectsNode> FNodes; // of everything that is drawn
};
