#include "widgets/uVTDataModel.h"

#include "widgets/uVTDataList.h"
#include "widgets/uVTDataManager.h"

#include <QFont>
#include <QIcon>

#include <algorithm>
#include <utility>

TVTDataModel::TVTDataModel(TVTDataManager *manager) : FManager(manager) {}

TVTDataItem *TVTDataModel::ItemOf(const QModelIndex &index)
{
    return static_cast<TVTDataItem *>(index.internalPointer());
}

QModelIndex TVTDataModel::IndexOf(const TVTDataItem *item, int column) const
{
    if (!item || item->FRow < 0)
        return {};
    return createIndex(item->FRow, column, const_cast<TVTDataItem *>(item));
}

void TVTDataModel::RemoveDeleted(TVTDataList &list)
{
    const auto isMixed = [](TVTDataList &candidate) {
        const auto begin = candidate.FItems.begin();
        return !std::is_partitioned(begin, begin + candidate.FShown,
                                    [](const auto &item) { return !item->FDeleted; });
    };
    // Gathering them at the end first makes one removal of each list, whatever the pattern.
    std::vector<TVTDataList *> mixed;
    Collect(list, isMixed, mixed);
    ChangeOrder(mixed, [](TVTDataList &changed) {
        const auto begin = changed.FItems.begin();
        std::stable_partition(begin, begin + changed.FShown,
                              [](const auto &item) { return !item->FDeleted; });
    });
    RemoveMarked(list);
}

void TVTDataModel::Publish(TVTDataList &list, int sortColumn, Qt::SortOrder order)
{
    ReportChanges(list);
    for (int i = 0; i < list.FShown; ++i) {
        if (const TVTDataItem *item = list.Items(i); item->FDataList)
            Publish(*item->FDataList, sortColumn, order);
    }
    if (list.FShown == list.Count())
        return;
    if (list.FShown == 0) {
        Prepare(list, sortColumn, order);
    } else {
        for (int i = list.FShown; i < list.Count(); ++i) {
            if (const TVTDataItem *item = list.Items(i); item->FDataList)
                Prepare(*item->FDataList, sortColumn, order);
        }
    }
    beginInsertRows(IndexOf(list.FParentItem), list.FShown, list.Count() - 1);
    Reveal(list);
    endInsertRows();
}

void TVTDataModel::Sort(TVTDataList &list, int sortColumn, Qt::SortOrder order)
{
    std::vector<TVTDataList *> unsorted;
    const auto isUnsorted = [=](TVTDataList &candidate) {
        const bool touched = std::exchange(candidate.FTouched, false);
        return touched && !candidate.IsSorted(sortColumn, order);
    };
    Collect(list, isUnsorted, unsorted);
    ChangeOrder(unsorted, [=](TVTDataList &changed) { changed.Sort(sortColumn, order); });
}

void TVTDataModel::RowChanged(TVTDataItem *item)
{
    item->FChanged = false;
    Q_EMIT dataChanged(IndexOf(item), IndexOf(item, columnCount() - 1));
}

void TVTDataModel::ColumnsAboutToChange()
{
    beginResetModel();
}

void TVTDataModel::ColumnsChanged()
{
    endResetModel();
}

QModelIndex TVTDataModel::index(int row, int column, const QModelIndex &parent) const
{
    if (!hasIndex(row, column, parent))
        return {};
    return createIndex(row, column, ListOf(parent)->Items(row));
}

QModelIndex TVTDataModel::parent(const QModelIndex &child) const
{
    return child.isValid() ? IndexOf(ItemOf(child)->Parent()) : QModelIndex();
}

int TVTDataModel::rowCount(const QModelIndex &parent) const
{
    const TVTDataList *list = ListOf(parent);
    return list ? list->FShown : 0;
}

int TVTDataModel::columnCount(const QModelIndex &) const
{
    return std::max<int>(1, int(FManager->Columns().size()));
}

bool TVTDataModel::hasChildren(const QModelIndex &parent) const
{
    const TVTDataList *list = ListOf(parent);
    return list && (list->FShown > 0 || !list->FHidden.empty());
}

QVariant TVTDataModel::data(const QModelIndex &index, int role) const
{
    if (!index.isValid())
        return {};
    const TVTDataItem &item = *ItemOf(index);
    const int column = index.column();
    switch (role) {
    case Qt::DisplayRole:
    case Qt::EditRole:
        return item.Value(column).toString();
    case Qt::DecorationRole:
        return ImageOf(item, column);
    case Qt::ForegroundRole:
        return ColorOf(item, column);
    case Qt::FontRole:
        return FontOf(item, column);
    case Qt::BackgroundRole:
        return column == FManager->SortColumn() && FManager->SortColumnColor().isValid()
                   ? QVariant(FManager->SortColumnColor())
                   : QVariant();
    case Qt::TextAlignmentRole:
        return int(FManager->ColType(column) == ctNumber ? Qt::AlignRight | Qt::AlignVCenter
                                                         : Qt::AlignLeft | Qt::AlignVCenter);
    default:
        return {};
    }
}

QVariant TVTDataModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole)
        return {};
    return FManager->Columns().value(section);
}

Qt::ItemFlags TVTDataModel::flags(const QModelIndex &index) const
{
    const Qt::ItemFlags flags = QAbstractItemModel::flags(index);
    const bool editable = index.isValid() && ItemOf(index) == FManager->EditedItem();
    return editable && index.column() == 0 ? flags | Qt::ItemIsEditable : flags;
}

bool TVTDataModel::setData(const QModelIndex &index, const QVariant &value, int role)
{
    if (role != Qt::EditRole || !index.isValid())
        return false;
    FManager->CaptionEntered(index, value.toString());
    return true;
}

void TVTDataModel::sort(int column, Qt::SortOrder order)
{
    FManager->SetSort(column, order);
}

const TVTDataList *TVTDataModel::ListOf(const QModelIndex &parent) const
{
    if (!parent.isValid())
        return FManager->DataList();
    return parent.column() == 0 ? ItemOf(parent)->FDataList.get() : nullptr;
}

QVariant TVTDataModel::FontOf(const TVTDataItem &item, int column) const
{
    const bool own = column < item.FFontStyles.size();
    const TVTFontStyles style = own ? item.ColumnFontStyle(column) : item.FontStyle();
    if (style.IsEmpty() || !FManager->View())
        return {};
    QFont font = FManager->View()->font();
    font.setBold(style.Contains(fsBold));
    font.setItalic(style.Contains(fsItalic));
    font.setUnderline(style.Contains(fsUnderline));
    font.setStrikeOut(style.Contains(fsStrikeOut));
    return font;
}

QVariant TVTDataModel::ColorOf(const TVTDataItem &item, int column) const
{
    for (const QColor &color :
         {item.ColumnFontColor(column), item.FontColor(), FManager->ColTextColor(column)}) {
        if (color.isValid())
            return color;
    }
    return {};
}

QVariant TVTDataModel::ImageOf(const TVTDataItem &item, int column) const
{
    const QIcon icon = FManager->Images().value(item.ImageIndex(column));
    return icon.isNull() ? QVariant() : QVariant(icon);
}

template <class TWanted>
void TVTDataModel::Collect(TVTDataList &list, TWanted wanted, std::vector<TVTDataList *> &found)
{
    if (list.IsShown() && wanted(list))
        found.push_back(&list);
    for (const auto &item : list.FItems) {
        if (item->FDataList)
            Collect(*item->FDataList, wanted, found);
    }
}

template <class TOrder>
void TVTDataModel::ChangeOrder(const std::vector<TVTDataList *> &lists, TOrder order)
{
    if (lists.empty())
        return;
    Q_EMIT layoutAboutToBeChanged();
    const QModelIndexList before = persistentIndexList();
    for (TVTDataList *list : lists) {
        order(*list);
        list->NumberRows();
    }
    QModelIndexList after;
    after.reserve(before.size());
    for (const QModelIndex &index : before)
        after.append(IndexOf(ItemOf(index), index.column()));
    changePersistentIndexList(before, after);
    Q_EMIT layoutChanged();
}

void TVTDataModel::RemoveMarked(TVTDataList &list)
{
    for (const auto &item : list.FItems) {
        if (item->FDataList && !item->FDeleted)
            RemoveMarked(*item->FDataList);
    }
    if (list.EraseDeleted(list.FHidden))
        FManager->HiddenChanged();
    // Those that the view does not know go without a word.
    list.EraseDeleted(list.FItems, list.FShown);
    int kept = list.FShown;
    while (kept > 0 && list.Items(kept - 1)->FDeleted)
        --kept;
    if (kept == list.FShown)
        return;
    beginRemoveRows(IndexOf(list.FParentItem), kept, list.FShown - 1);
    list.FShown = kept;
    list.EraseDeleted(list.FItems, kept);
    endRemoveRows();
}

void TVTDataModel::ReportChanges(TVTDataList &list)
{
    int first = -1;
    int last = -1;
    for (int i = 0; i < list.FShown; ++i) {
        if (!std::exchange(list.Items(i)->FChanged, false))
            continue;
        first = first < 0 ? i : first;
        last = i;
    }
    if (first >= 0) {
        Q_EMIT dataChanged(IndexOf(list.Items(first)),
                           IndexOf(list.Items(last), columnCount() - 1));
    }
}

void TVTDataModel::Prepare(TVTDataList &list, int sortColumn, Qt::SortOrder order)
{
    if (std::exchange(list.FTouched, false) && !list.IsSorted(sortColumn, order))
        list.Sort(sortColumn, order);
    for (const auto &item : list.FItems) {
        if (item->FDataList)
            Prepare(*item->FDataList, sortColumn, order);
    }
}

void TVTDataModel::Reveal(TVTDataList &list)
{
    for (int i = list.FShown; i < list.Count(); ++i) {
        TVTDataItem *item = list.Items(i);
        item->FRow = i;
        item->FChanged = false;
        if (item->FDataList)
            Reveal(*item->FDataList);
        if (std::exchange(item->FExpandOnReveal, false))
            FManager->ExpandLater(item);
    }
    list.FShown = list.Count();
}
