#include "widgets/uVTDataList.h"

#include "widgets/uVTDataManager.h"
#include "widgets/uVTDataSortValue.h"

#include <algorithm>
#include <iterator>

namespace {

// A tree has thousands of lists with a node or two, and a hash is larger than these.
constexpr std::size_t MostScanned = 8;

} // namespace

TVTDataList::~TVTDataList() = default;

TVTDataItem *TVTDataList::Add(const QString &id, void *data, const QVector<int> &imageIndexes,
                              const QVariantList &values, const QVariantList &sortValues)
{
    return AddEx(id, data, imageIndexes, values, sortValues, QColor(), TVTFontStyles());
}

TVTDataItem *TVTDataList::AddEx(const QString &id, void *data, const QVector<int> &imageIndexes,
                                const QVariantList &values, const QVariantList &sortValues,
                                const QColor &fontColor, TVTFontStyles fontStyle,
                                const QVector<QColor> &fontColors,
                                const QVector<TVTFontStyles> &fontStyles)
{
    TVTDataItem *item = FindNode(id);
    const bool made = !item;
    if (made)
        item = Make(id, FItems);
    item->FDeleted = false;
    item->SetData(data);
    item->SetImageIndexes(imageIndexes);
    item->SetValues(values);
    item->SetSortValues(sortValues);
    item->SetFont(fontColor, fontStyle);
    item->SetColumnFonts(fontColors, fontStyles);
    if (made)
        FManager->ItemAdded(this);
    return item;
}

TVTDataItem *TVTDataList::AddHidden(const QString &id)
{
    TVTDataItem *item = FindNode(id);
    if (!item) {
        item = Make(id, FHidden);
        FManager->HiddenChanged();
    }
    item->FDeleted = false;
    return item;
}

TVTDataItem *TVTDataList::FindNode(const QString &id, bool recursive) const
{
    TVTDataItem *found = FindHere(Key(id));
    if (found || !recursive)
        return found;
    for (const auto &item : FItems) {
        found = item->FDataList ? item->FDataList->FindNode(id, true) : nullptr;
        if (found)
            return found;
    }
    return nullptr;
}

TVTDataItem *TVTDataList::FindHere(const QString &key) const
{
    if (!FByKey.isEmpty())
        return FByKey.value(key);
    for (const TItems *items : {&FItems, &FHidden})
        for (const auto &item : *items)
            if (Key(item->FId) == key)
                return item.get();
    return nullptr;
}

void TVTDataList::Index(TVTDataItem *item)
{
    if (!FByKey.isEmpty()) {
        FByKey.insert(Key(item->FId), item);
        return;
    }
    if (FItems.size() + FHidden.size() <= MostScanned)
        return;
    for (const TItems *items : {&FItems, &FHidden})
        for (const auto &known : *items)
            FByKey.insert(Key(known->FId), known.get());
}

void TVTDataList::BeginUpdate()
{
    FManager->BeginTree();
    MarkDeleted();
}

void TVTDataList::EndUpdate()
{
    FManager->EndTree(this);
}

int TVTDataList::GetCountUsed() const
{
    const auto isUsed = [](const auto &item) { return !item->FDeleted; };
    return int(std::count_if(FItems.begin(), FItems.end(), isUsed) +
               std::count_if(FHidden.begin(), FHidden.end(), isUsed));
}

void TVTDataList::Remove(TVTDataItem *item)
{
    FManager->BeginTree();
    item->FDeleted = true;
    FManager->EndTree(this);
}

void TVTDataList::Clear()
{
    BeginUpdate();
    EndUpdate();
}

void TVTDataList::MarkDeleted()
{
    for (TItems *items : {&FItems, &FHidden}) {
        for (const auto &item : *items) {
            item->FDeleted = true;
            if (item->FDataList)
                item->FDataList->MarkDeleted();
        }
    }
}

void TVTDataList::Touch()
{
    FTouched = true;
    for (const auto &item : FItems) {
        if (item->FDataList)
            item->FDataList->Touch();
    }
}

TVTDataItem *TVTDataList::Make(const QString &id, TItems &items)
{
    items.emplace_back(new TVTDataItem(this, id));
    TVTDataItem *item = items.back().get();
    Index(item);
    FTouched = true;
    return item;
}

bool TVTDataList::Rename(TVTDataItem *item, const QString &id)
{
    TVTDataItem *holder = FindNode(id);
    if (holder && holder != item)
        return false;
    const bool isIndexed = FByKey.remove(Key(item->FId)) > 0;
    item->FId = id;
    if (isIndexed)
        FByKey.insert(Key(id), item);
    return true;
}

void TVTDataList::ItemChanged(TVTDataItem *item)
{
    FTouched = true;
    item->FChanged = true;
    FManager->ItemChanged(item);
}

void TVTDataList::NumberRows()
{
    for (int row = 0; row < FShown; ++row)
        FItems[std::size_t(row)]->FRow = row;
}

bool TVTDataList::EraseDeleted(TItems &items, int first)
{
    const auto end = std::stable_partition(items.begin() + first, items.end(),
                                           [](const auto &item) { return !item->FDeleted; });
    for (auto it = end; it != items.end(); ++it)
        FByKey.remove(Key((*it)->FId));
    const bool any = end != items.end();
    items.erase(end, items.end());
    return any;
}

void TVTDataList::Sort(int column, Qt::SortOrder order)
{
    struct TEntry
    {
        TVTDataSortValue Value;
        std::unique_ptr<TVTDataItem> Item;
    };
    std::vector<TEntry> entries;
    entries.reserve(FItems.size());
    for (auto &item : FItems) {
        TVTDataSortValue value(TVTDataManager::DataValue(*item, column));
        entries.push_back({std::move(value), std::move(item)});
    }
    std::stable_sort(entries.begin(), entries.end(), [order](const auto &a, const auto &b) {
        const int compared = a.Value.Compare(b.Value);
        return order == Qt::AscendingOrder ? compared < 0 : compared > 0;
    });
    std::transform(entries.begin(), entries.end(), FItems.begin(),
                   [](TEntry &entry) { return std::move(entry.Item); });
}

bool TVTDataList::IsSorted(int column, Qt::SortOrder order) const
{
    return std::is_sorted(FItems.begin(), FItems.end(), [=](const auto &a, const auto &b) {
        const int compared = TVTDataManager::CompareDataValue(*a, *b, column);
        return order == Qt::AscendingOrder ? compared < 0 : compared > 0;
    });
}
