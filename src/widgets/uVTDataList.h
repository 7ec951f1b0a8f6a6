#pragma once

#include "widgets/uVTDataItem.h"

#include <QHash>

#include <vector>

/// The children of one node, or the root nodes, each found by its key; many through a hash.
///
/// A refresh is one cycle: BeginUpdate marks all that is there, Add takes the mark from what is
/// still wanted and makes what is new, EndUpdate removes what kept its mark. Nodes that stay keep
/// their expansion, the focus and their place on the screen.
class TVTDataList
{
public:
    ~TVTDataList();
    TVTDataList(const TVTDataList &) = delete;
    TVTDataList &operator=(const TVTDataList &) = delete;

    TVTDataManager *Manager() const { return FManager; }
    /// The node whose children these are; nullptr for the root list.
    TVTDataItem *ParentItem() const { return FParentItem; }

    /// The node with this id, without regard to case, brought up to date or made anew, with the
    /// tree's plain font. The list owns it.
    TVTDataItem *Add(const QString &id, void *data = nullptr, const QVector<int> &imageIndexes = {},
                     const QVariantList &values = {}, const QVariantList &sortValues = {});
    /// The same with a font: for the row, and for columns that differ from it.
    TVTDataItem *AddEx(const QString &id, void *data, const QVector<int> &imageIndexes,
                       const QVariantList &values, const QVariantList &sortValues,
                       const QColor &fontColor, TVTFontStyles fontStyle,
                       const QVector<QColor> &fontColors = {},
                       const QVector<TVTFontStyles> &fontStyles = {});
    /// A node that is never shown and only gives its parent an expander.
    TVTDataItem *AddHidden(const QString &id);

    /// nullptr when there is none. Recursive looks here first and then below each node in turn.
    TVTDataItem *FindNode(const QString &id, bool recursive = false) const;

    /// Cycles may be nested; the view is told once, at the end of the outermost.
    void BeginUpdate();
    void EndUpdate();

    /// Nodes in shown order; those added in a running cycle come last. Hidden ones do not count.
    int Count() const { return int(FItems.size()); }
    TVTDataItem *Items(int index) const { return FItems.at(std::size_t(index)).get(); }
    /// Neither shown nor hidden nodes.
    bool IsEmpty() const { return FItems.empty() && FHidden.empty(); }
    /// Nodes without the mark of the update cycle.
    int GetCountUsed() const;

    void Remove(TVTDataItem *item);
    void Clear();

private:
    friend class TVTDataItem;
    friend class TVTDataModel;
    friend class TVTDataManager;
    using TItems = std::vector<std::unique_ptr<TVTDataItem>>;

    TVTDataList(TVTDataManager *manager, TVTDataItem *parentItem)
        : FManager(manager), FParentItem(parentItem)
    {}

    static QString Key(const QString &id) { return id.toCaseFolded(); }
    bool IsShown() const { return !FParentItem || FParentItem->FRow >= 0; }
    void MarkDeleted();
    /// This list and all below may be out of order.
    void Touch();
    TVTDataItem *Make(const QString &id, TItems &items);
    TVTDataItem *FindHere(const QString &key) const;
    void Index(TVTDataItem *item);
    bool Rename(TVTDataItem *item, const QString &id);
    void ItemChanged(TVTDataItem *item);
    void NumberRows();
    /// Frees the marked ones of the items from `first` on; whether there were any.
    bool EraseDeleted(TItems &items, int first = 0);
    void Sort(int column, Qt::SortOrder order);
    bool IsSorted(int column, Qt::SortOrder order) const;

    TVTDataManager *FManager;
    TVTDataItem *FParentItem;
    TItems FItems; // the first FShown are known to the view
    TItems FHidden;
    QHash<QString, TVTDataItem *> FByKey; // empty while the nodes are few
    int FShown = 0;
    bool FTouched = false; // may be out of order
};
