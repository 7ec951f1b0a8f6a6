#include "widgets/uGridModel.h"

#include "support/uException.h"

#include <QCollator>
#include <QScopeGuard>
#include <algorithm>
#include <cmath>
#include <numeric>

namespace {

int CompareNumbers(long double a, long double b)
{
    if (std::isnan(a) || std::isnan(b))
        return int(std::isnan(b)) - int(std::isnan(a));
    return a < b ? -1 : a > b ? 1 : 0;
}

using TCompareValues = std::function<int(const TGridValue &, const TGridValue &)>;

TCompareValues Comparer(TGridCompare compare)
{
    if (compare == gcCodeUnit)
        return [](const TGridValue &a, const TGridValue &b) { return a.Compare(b); };
    return [collator = QCollator()](const TGridValue &a, const TGridValue &b) {
        return a.IsText() && b.IsText() ? collator.compare(a.Text(), b.Text()) : a.Compare(b);
    };
}

std::vector<int> NaturalOrder(size_t count)
{
    std::vector<int> order(count);
    std::iota(order.begin(), order.end(), 0);
    return order;
}

/// Most comparisons of texts are decided by four characters that lie beside the item's number.
struct TTextKey
{
    quint64 Prefix;
    int Item;
};

quint64 PrefixOf(QStringView text)
{
    quint64 prefix = 0;
    for (qsizetype i = 0; i < 4; ++i)
        prefix = prefix << 16 | (i < text.size() ? text[i].unicode() : 0);
    return prefix;
}

// Characters at the start that all texts have in common: they decide nothing, and names that are
// numbered differ only behind them.
qsizetype CommonStart(const std::vector<TGridValue> &values)
{
    const QString first = values.front().Text();
    qsizetype common = first.size();
    for (const TGridValue &value : values) {
        const QString text = value.Text();
        common = std::min(common, text.size());
        common = std::mismatch(first.begin(), first.begin() + common, text.begin()).first -
                 first.begin();
    }
    return common;
}

std::vector<int> OrderOfTexts(const std::vector<TGridValue> &values, bool ascending)
{
    const qsizetype start = CommonStart(values);
    std::vector<TTextKey> keys;
    keys.reserve(values.size());
    for (size_t item = 0; item < values.size(); ++item)
        keys.push_back({PrefixOf(QStringView(values[item].Text()).mid(start)), int(item)});
    std::sort(keys.begin(), keys.end(), [&](const TTextKey &a, const TTextKey &b) {
        if (a.Prefix != b.Prefix)
            return (a.Prefix < b.Prefix) == ascending;
        const int order = values[size_t(a.Item)].Compare(values[size_t(b.Item)]);
        if (order != 0)
            return (order < 0) == ascending;
        return a.Item < b.Item;
    });
    std::vector<int> order;
    order.reserve(keys.size());
    for (const TTextKey &key : keys)
        order.push_back(key.Item);
    return order;
}

} // namespace

int TGridValue::Compare(const TGridValue &other) const
{
    if (FValue.index() != other.FValue.index())
        return FValue.index() < other.FValue.index() ? -1 : 1;
    if (const QString *text = std::get_if<QString>(&FValue))
        return text->compare(std::get<QString>(other.FValue));
    if (const long double *number = std::get_if<long double>(&FValue))
        return CompareNumbers(*number, std::get<long double>(other.FValue));
    return 0;
}

int TGridModelBase::RowOfKey(const QString &key) const
{
    for (int row = 0; row < RowCount(); ++row)
        if (KeyOfRow(row) == key)
            return row;
    return -1;
}

int TGridModelBase::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : RowCount();
}

int TGridModelBase::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : FColumnCount;
}

QVariant TGridModelBase::data(const QModelIndex &index, int role) const
{
    const int item = ItemOfRow(index.row());
    if (item < 0 || index.column() >= FColumnCount)
        return {};
    // A throw would leave the middle of a paint event; the cell tells what went wrong instead.
    try {
        return CellData(item, index.column(), role);
    } catch (const std::exception &e) {
        return role == Qt::DisplayRole ? QVariant(ExceptionMessage(e)) : QVariant();
    }
}

QVariant TGridModelBase::CellData(int item, int column, int role) const
{
    const TGridColumnInfo info = ColumnInfo(column);
    switch (role) {
    case Qt::DisplayRole:
    case Qt::EditRole: {
        const QString text = TextOf(item, column);
        if (info.Kind != gkPercent || !text.isNull())
            return text;
        return QString::number(SortValueOf(item, column).Number(), 'f', 1);
    }
    case Qt::TextAlignmentRole:
        return int(info.Align | Qt::AlignVCenter);
    case Qt::ForegroundRole: {
        const QColor color = ColorOf(item, column);
        return color.isValid() ? QVariant(color) : QVariant();
    }
    case Qt::CheckStateRole:
        if (info.Kind != gkCheck)
            return {};
        return CheckedOf(item, column) ? Qt::Checked : Qt::Unchecked;
    case GridPercentRole:
        return info.Kind == gkPercent ? QVariant(SortValueOf(item, column).Number()) : QVariant();
    default:
        return {};
    }
}

QVariant TGridModelBase::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || section < 0 || section >= FColumnCount)
        return {};
    const TGridColumnInfo info = ColumnInfo(section);
    switch (role) {
    case Qt::DisplayRole:
        return info.Caption;
    case Qt::ToolTipRole:
    case Qt::AccessibleDescriptionRole:
        return info.Hint.isEmpty() ? QVariant() : QVariant(info.Hint);
    case Qt::TextAlignmentRole:
        return int(info.Align | Qt::AlignVCenter);
    default:
        return {};
    }
}

Qt::ItemFlags TGridModelBase::flags(const QModelIndex &index) const
{
    if (!index.isValid())
        return Qt::NoItemFlags;
    Qt::ItemFlags result = Qt::ItemIsSelectable | Qt::ItemIsEnabled | Qt::ItemNeverHasChildren;
    if (CanEdit(index.column()))
        result |= ColumnInfo(index.column()).Kind == gkCheck ? Qt::ItemIsUserCheckable
                                                             : Qt::ItemIsEditable;
    return result;
}

bool TGridModelBase::setData(const QModelIndex &index, const QVariant &value, int role)
{
    const int item = ItemOfRow(index.row());
    if (item < 0 || !CanEdit(index.column()))
        return false;
    const bool isCheck = ColumnInfo(index.column()).Kind == gkCheck;
    if (role != (isCheck ? Qt::CheckStateRole : Qt::EditRole))
        return false;
    if (isCheck)
        StoreChecked(item, index.column(), value.toInt() != Qt::Unchecked);
    else if (!StoreText(item, index.column(), value.toString()))
        return false;
    // Other columns may show the same field.
    Q_EMIT dataChanged(index.siblingAtColumn(0), index.siblingAtColumn(FColumnCount - 1));
    return true;
}

void TGridModelBase::sort(int column, Qt::SortOrder order)
{
    FSortColumn = column < FColumnCount ? column : -1;
    FSortOrder = order;
    if (FOrder.empty())
        return;
    std::vector<int> newOrder = SortedOrder(FOrder.size());
    Q_EMIT layoutAboutToBeChanged({}, QAbstractItemModel::VerticalSortHint);
    const std::vector<int> oldOrder = std::exchange(FOrder, std::move(newOrder));
    std::vector<int> rowOfItem(FOrder.size());
    for (size_t row = 0; row < FOrder.size(); ++row)
        rowOfItem[size_t(FOrder[row])] = int(row);
    QModelIndexList moved;
    const QModelIndexList persistent = persistentIndexList();
    moved.reserve(persistent.size());
    for (const QModelIndex &old : persistent)
        moved.append(index(rowOfItem[size_t(oldOrder[size_t(old.row())])], old.column()));
    changePersistentIndexList(persistent, moved);
    Q_EMIT layoutChanged({}, QAbstractItemModel::VerticalSortHint);
}

void TGridModelBase::Refill(const std::function<size_t()> &fill)
{
    beginResetModel();
    // What an item throws goes to the caller, and the model is whole all the same.
    const auto end = qScopeGuard([this] { endResetModel(); });
    FOrder = NaturalOrder(fill());
    FOrder = SortedOrder(FOrder.size());
}

void TGridModelBase::ItemsChanged()
{
    if (RowCount() > 0 && FColumnCount > 0)
        Q_EMIT dataChanged(index(0, 0), index(RowCount() - 1, FColumnCount - 1));
}

int TGridModelBase::ItemOfRow(int row) const
{
    return row >= 0 && row < RowCount() ? FOrder[size_t(row)] : -1;
}

std::vector<int> TGridModelBase::SortedOrder(size_t count) const
{
    std::vector<int> order = NaturalOrder(count);
    if (FSortColumn < 0)
        return order;
    // Each item is asked once: a sort value may be formatted or looked up.
    std::vector<TGridValue> values;
    values.reserve(count);
    for (const int item : order)
        values.push_back(SortValueOf(item, FSortColumn));
    const TGridCompare kind = ColumnInfo(FSortColumn).Compare;
    const auto isText = [](const TGridValue &value) { return value.IsText(); };
    if (kind == gcCodeUnit && count > 0 && std::all_of(values.begin(), values.end(), isText))
        return OrderOfTexts(values, FSortOrder == Qt::AscendingOrder);
    const TCompareValues compare = Comparer(kind);
    const int sign = FSortOrder == Qt::AscendingOrder ? 1 : -1;
    std::stable_sort(order.begin(), order.end(), [&](int a, int b) {
        return sign * compare(values[size_t(a)], values[size_t(b)]) < 0;
    });
    return order;
}
