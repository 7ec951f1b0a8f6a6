#pragma once

#include <QAbstractItemModel>

#include <vector>

class TVTDataItem;
class TVTDataList;
class TVTDataManager;

/// The keyed tree as Qt's views see it, and the place of every change of its shape that a view has
/// to hear of. A node without a row (FRow below 0) is not known to the view; such nodes stand
/// behind the known ones of their list.
class TVTDataModel : public QAbstractItemModel
{
    Q_OBJECT

public:
    /// The manager owns the model and outlives it.
    explicit TVTDataModel(TVTDataManager *manager);

    static TVTDataItem *ItemOf(const QModelIndex &index);
    /// Invalid for a node that the view does not know.
    QModelIndex IndexOf(const TVTDataItem *item, int column = 0) const;

    /// Removes the marked nodes of the list and below, each with all that hangs on it.
    void RemoveDeleted(TVTDataList &list);
    /// Shows the nodes that were added to the list and below since the last call, and what has
    /// changed in those already shown.
    void Publish(TVTDataList &list, int sortColumn, Qt::SortOrder order);
    /// Brings every list that was touched since the last call in order.
    void Sort(TVTDataList &list, int sortColumn, Qt::SortOrder order);
    void RowChanged(TVTDataItem *item);
    void ColumnsChanged();
    void ColumnsAboutToChange();

    QModelIndex index(int row, int column, const QModelIndex &parent = {}) const override;
    QModelIndex parent(const QModelIndex &child) const override;
    int rowCount(const QModelIndex &parent = {}) const override;
    int columnCount(const QModelIndex &parent = {}) const override;
    bool hasChildren(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
    Qt::ItemFlags flags(const QModelIndex &index) const override;
    bool setData(const QModelIndex &index, const QVariant &value, int role) override;
    void sort(int column, Qt::SortOrder order) override;

private:
    const TVTDataList *ListOf(const QModelIndex &parent) const;
    QVariant FontOf(const TVTDataItem &item, int column) const;
    QVariant ColorOf(const TVTDataItem &item, int column) const;
    QVariant ImageOf(const TVTDataItem &item, int column) const;

    template <class TWanted>
    static void Collect(TVTDataList &list, TWanted wanted, std::vector<TVTDataList *> &found);
    template <class TOrder>
    void ChangeOrder(const std::vector<TVTDataList *> &lists, TOrder order);
    void RemoveMarked(TVTDataList &list);
    void ReportChanges(TVTDataList &list);
    static void Prepare(TVTDataList &list, int sortColumn, Qt::SortOrder order);
    void Reveal(TVTDataList &list);

    TVTDataManager *FManager;
};
