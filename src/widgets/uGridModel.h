#pragma once

#include "widgets/uGridColumns.h"

#include <QAbstractTableModel>
#include <memory>
#include <vector>

/// Role of a percentage (double, 0 to 100) that is painted as a progress bar.
inline constexpr int GridPercentRole = Qt::UserRole + 1;

/// The part of the list model that is the same for every item: sorting an index of item numbers,
/// refilling, and the roles of a cell. A row is a position on the screen, an item a position in the
/// order of the fill.
class TGridModelBase : public QAbstractTableModel
{
    Q_OBJECT

public:
    using QAbstractTableModel::QAbstractTableModel;

    int ColumnCount() const { return FColumnCount; }
    int RowCount() const { return int(FOrder.size()); }
    virtual TGridColumnInfo ColumnInfo(int column) const = 0;
    /// What tells an item from the others, so that it is found again after a refill.
    virtual QString KeyOfItem(int item) const = 0;
    QString KeyOfRow(int row) const { return KeyOfItem(FOrder[size_t(row)]); }
    /// The row of the first item with this key, -1 when there is none.
    int RowOfKey(const QString &key) const;

    int rowCount(const QModelIndex &parent = {}) const override;
    int columnCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
    Qt::ItemFlags flags(const QModelIndex &index) const override;
    bool setData(const QModelIndex &index, const QVariant &value, int role) override;
    /// Equal values keep the order of the fill, in both directions. Column -1 is that order.
    void sort(int column, Qt::SortOrder order = Qt::AscendingOrder) override;

protected:
    void SetColumnCount(int count) { FColumnCount = count; }
    /// Runs `fill`, which gives the new number of items, and puts the rows in their order.
    void Refill(const std::function<size_t()> &fill);
    void ItemsChanged();
    int ItemOfRow(int row) const;

    virtual QString TextOf(int item, int column) const = 0;
    virtual TGridValue SortValueOf(int item, int column) const = 0;
    virtual QColor ColorOf(int item, int column) const = 0;
    virtual bool CheckedOf(int item, int column) const = 0;
    virtual bool CanEdit(int column) const = 0;
    virtual bool StoreText(int item, int column, const QString &text) = 0;
    virtual void StoreChecked(int item, int column, bool checked) = 0;

private:
    QVariant CellData(int item, int column, int role) const;
    std::vector<int> SortedOrder(size_t count) const;

    int FColumnCount = 0;
    int FSortColumn = -1;
    Qt::SortOrder FSortOrder = Qt::AscendingOrder;
    std::vector<int> FOrder; // item of each row
};

/// A list of items as rows of a table of columns.
template <typename TItem>
class TGridModel : public TGridModelBase
{
public:
    using TItemPtr = std::shared_ptr<TItem>;
    using TKey = std::function<QString(const TItem &)>;

    /// Without a key function the text of the first column is the key.
    explicit TGridModel(TGridColumns<TItem> columns, TKey key = {}, QObject *parent = nullptr)
        : TGridModelBase(parent), FColumns(std::move(columns)), FKey(std::move(key))
    {
        SetColumnCount(int(FColumns.size()));
    }

    void SetItems(std::vector<TItemPtr> items)
    {
        Refill([&] {
            FItems = std::move(items);
            return FItems.size();
        });
    }
    /// For records that nobody else holds.
    void SetValues(std::vector<TItem> values)
    {
        std::vector<TItemPtr> items;
        items.reserve(values.size());
        for (TItem &value : values)
            items.push_back(std::make_shared<TItem>(std::move(value)));
        SetItems(std::move(items));
    }
    void Clear() { SetItems({}); }
    /// Shows what was changed in the items by code; the order stays.
    using TGridModelBase::ItemsChanged;

    /// In the order of the fill.
    const std::vector<TItemPtr> &Items() const { return FItems; }
    /// Null when there is no such row, as for the focused row of an empty list.
    TItemPtr ItemAt(int row) const
    {
        const int item = ItemOfRow(row);
        return item < 0 ? nullptr : FItems[size_t(item)];
    }

    TGridColumnInfo ColumnInfo(int column) const override
    {
        const TGridColumn<TItem> &c = Column(column);
        return {c.Caption, c.Hint, c.Align, c.Width, c.Kind, c.Sort, c.Compare};
    }
    QString KeyOfItem(int item) const override { return FKey ? FKey(Item(item)) : TextOf(item, 0); }

protected:
    QString TextOf(int item, int column) const override
    {
        const TGridColumn<TItem> &c = Column(column);
        return c.Text ? c.Text(Item(item)) : QString();
    }
    TGridValue SortValueOf(int item, int column) const override
    {
        const TGridColumn<TItem> &c = Column(column);
        if (c.SortValue)
            return c.SortValue(Item(item));
        return c.Checked ? TGridValue(c.Checked(Item(item))) : TGridValue(TextOf(item, column));
    }
    QColor ColorOf(int item, int column) const override
    {
        const TGridColumn<TItem> &c = Column(column);
        return c.Color ? c.Color(Item(item)) : QColor();
    }
    bool CheckedOf(int item, int column) const override
    {
        const TGridColumn<TItem> &c = Column(column);
        return c.Checked && c.Checked(Item(item));
    }
    bool CanEdit(int column) const override
    {
        const TGridColumn<TItem> &c = Column(column);
        return c.Kind == gkCheck ? bool(c.SetChecked) : bool(c.SetText);
    }
    bool StoreText(int item, int column, const QString &text) override
    {
        return Column(column).SetText(*FItems[size_t(item)], text);
    }
    void StoreChecked(int item, int column, bool checked) override
    {
        Column(column).SetChecked(*FItems[size_t(item)], checked);
    }

private:
    const TGridColumn<TItem> &Column(int column) const { return FColumns[size_t(column)]; }
    const TItem &Item(int item) const { return *FItems[size_t(item)]; }

    const TGridColumns<TItem> FColumns;
    const TKey FKey;
    std::vector<TItemPtr> FItems;
};
