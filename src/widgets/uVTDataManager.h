#pragma once

#include "widgets/uVTDataList.h"
#include "widgets/uVTDataTreeView.h"

#include <QIcon>
#include <QMenu>
#include <QObject>
#include <QPersistentModelIndex>
#include <QPointer>

#include <memory>

class TVTDataModel;

enum TVTColumnType { ctText, ctNumber };

/// The data under a tree: nodes keyed by string ids over a view, with what the user does to them
/// as signals.
class TVTDataManager : public QObject
{
    Q_OBJECT

public:
    /// The view becomes the parent when none is given. It is not owned and may go first.
    explicit TVTDataManager(TVTTreeView *view, QObject *parent = nullptr);
    ~TVTDataManager() override;

    TVTTreeView *View() const { return FView; }
    TVTDataModel *Model() const { return FModel.get(); }
    /// The root nodes.
    TVTDataList *DataList() const { return FDataList.get(); }

    /// The update cycle of the whole tree.
    void BeginUpdate() { FDataList->BeginUpdate(); }
    void EndUpdate() { FDataList->EndUpdate(); }
    bool IsUpdating() const { return FUpdateDepth > 0; }
    /// Anywhere in the tree.
    TVTDataItem *FindNode(const QString &id) const { return FDataList->FindNode(id, true); }

    /// Columns with a header over which the user sorts; without any there is one plain column.
    /// Expansion is lost, so this belongs to the set-up.
    void SetColumns(const QStringList &captions, const QVector<TVTColumnType> &types = {});
    const QStringList &Columns() const { return FColumns; }
    TVTColumnType ColType(int column) const { return FColTypes.value(column, ctText); }
    /// The list that image indexes point into.
    void SetImages(const QVector<QIcon> &images);
    const QVector<QIcon> &Images() const { return FImages; }
    /// For nodes without a colour of their own.
    void SetColTextColors(const QVector<QColor> &colors);
    QColor ColTextColor(int column) const { return FColTextColors.value(column); }
    /// Background of the column that is sorted by; none when invalid.
    void SetSortColumnColor(const QColor &color);
    QColor SortColumnColor() const { return FSortColumnColor; }
    /// Shown on a right click and by the menu key unless empty. Not owned.
    void SetPopupMenu(QMenu *menu) { FPopupMenu = menu; }

    void SetSort(int column, Qt::SortOrder order);
    int SortColumn() const { return FSortColumn; }
    Qt::SortOrder SortOrder() const { return FSortOrder; }
    /// The sort value, or the value where that is null. Below 0 stands for column 0.
    static QVariant DataValue(const TVTDataItem &item, int column);
    /// Negative, zero or positive; numbers by value, text without regard to case.
    static int CompareDataValue(const TVTDataItem &a, const TVTDataItem &b, int column = -1);

    /// nullptr when no node is focused.
    TVTDataItem *FocusedItem() const;
    /// Opens the nodes above and scrolls to it. nullptr takes the focus away. Has no effect on a
    /// node that was added in a cycle still running.
    void SetFocusedItem(TVTDataItem *item);
    TVTDataItem *ItemAt(const QPoint &viewportPos) const;
    bool IsExpanded(const TVTDataItem *item) const;
    void SetExpanded(const TVTDataItem *item, bool expanded);
    void ToggleExpanded(const TVTDataItem *item) { SetExpanded(item, !IsExpanded(item)); }
    /// Lets the user type a new caption; OnNewText or OnEditCanceled tells how it ended.
    void EditCaption(TVTDataItem *item);

Q_SIGNALS:
    /// Item is nullptr when nothing is focused any more. Within a cycle raised once, at its end.
    void OnFocusChanged(TVTDataItem *item);
    void OnDoubleClick(TVTDataItem *item);
    void OnEnterKey(TVTDataItem *item);
    void OnDeleteKey(TVTDataItem *item);
    void OnRenameKey(TVTDataItem *item); // F2
    void OnInsertKey(TVTDataItem *item); // raised without a focused node too: nullptr
    void OnExpanded(TVTDataItem *item);
    void OnCollapsed(TVTDataItem *item);
    /// Before the popup menu comes up; item is nullptr on the empty area.
    void OnContextMenu(TVTDataItem *item, const QPoint &globalPos);
    /// The caption stays as it was: whoever listens decides what becomes of the text.
    void OnNewText(TVTDataItem *item, const QString &text);
    void OnEditCanceled(TVTDataItem *item);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    friend class TVTDataItem;
    friend class TVTDataList;
    friend class TVTDataModel;
    using TItemSignal = void (TVTDataManager::*)(TVTDataItem *);

    void ConnectView();
    void LeaveView();
    void BeginTree();
    /// Removes what is still marked below `swept`; nullptr sweeps nothing.
    void EndTree(TVTDataList *swept);
    void ItemAdded(TVTDataList *list);
    void ItemChanged(TVTDataItem *item);
    void HiddenChanged();
    void ExpandLater(TVTDataItem *item) { FToExpand.append(item); }
    void ExpandPending();
    void LeaveDoomed(const TVTDataList &swept);
    void ReportFocus();
    void FocusMoved(const QModelIndex &current, const QModelIndex &previous);
    void ShowContextMenu(const QPoint &pos);
    bool RaiseKey(int key);
    TVTDataItem *EditedItem() const;
    void CaptionEntered(const QModelIndex &index, const QString &text);
    void EditorClosed(bool canceled);

    TVTTreeView *FView; // nullptr once it is gone
    std::unique_ptr<TVTDataModel> FModel;
    std::unique_ptr<TVTDataList> FDataList;
    QPointer<QMenu> FPopupMenu;
    QStringList FColumns;
    QVector<TVTColumnType> FColTypes;
    QVector<QColor> FColTextColors;
    QColor FSortColumnColor;
    QVector<QIcon> FImages;
    int FSortColumn = 0;
    Qt::SortOrder FSortOrder = Qt::AscendingOrder;
    int FUpdateDepth = 0;
    bool FFocusChanged = false;
    QVector<TVTDataItem *> FToExpand;
    QPersistentModelIndex FEdited;
};

/// One update cycle as long as this lives. When the drawing throws, what was not reached is
/// removed as well: the objects behind those nodes may be gone.
class TVTDataUpdate
{
public:
    explicit TVTDataUpdate(TVTDataList *list) : FList(list) { FList->BeginUpdate(); }
    explicit TVTDataUpdate(TVTDataManager *manager) : TVTDataUpdate(manager->DataList()) {}
    /// May throw what a listener of OnFocusChanged throws.
    ~TVTDataUpdate() noexcept(false) { FList->EndUpdate(); }
    TVTDataUpdate(const TVTDataUpdate &) = delete;
    TVTDataUpdate &operator=(const TVTDataUpdate &) = delete;

private:
    TVTDataList *FList;
};
