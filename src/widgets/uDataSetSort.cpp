#include "widgets/uDataSetSort.h"

#include "client/uDataSet.h"

#include <QtEndian>
#include <algorithm>
#include <cstdlib>
#include <cstring>

namespace {

/// One row's value: most comparisons are decided by eight bytes that lie here, not in the row.
struct TTextKey
{
    uint64_t Prefix; // the first bytes, most significant first; 0 for NULL and for an empty text
    uint32_t Row;
    bool IsNull;
};

struct TNumberKey
{
    long double Value; // holds every 64-bit number exactly
    uint32_t Row;
    bool IsNull;
};

uint64_t PrefixOf(QByteArrayView bytes)
{
    char first[8] = {};
    std::memcpy(first, bytes.data(), size_t(std::min<qsizetype>(bytes.size(), 8)));
    return qFromBigEndian<uint64_t>(first);
}

int CompareBytes(QByteArrayView a, QByteArrayView b)
{
    const int order = std::memcmp(a.data(), b.data(), size_t(std::min(a.size(), b.size())));
    if (order != 0)
        return order;
    return a.size() < b.size() ? -1 : a.size() > b.size();
}

long double NumberOf(QByteArrayView bytes)
{
    char text[128];
    const size_t size = size_t(std::min<qsizetype>(bytes.size(), sizeof text - 1));
    std::memcpy(text, bytes.data(), size);
    text[size] = 0;
    return std::strtold(text, nullptr);
}

template <typename TKey, typename TCompare>
std::vector<uint32_t> Sorted(std::vector<TKey> &keys, bool ascending, TCompare compare)
{
    std::sort(keys.begin(), keys.end(), [&](const TKey &a, const TKey &b) {
        const int order = a.IsNull || b.IsNull ? int(b.IsNull) - int(a.IsNull) : compare(a, b);
        if (order == 0)
            return a.Row < b.Row;
        return ascending ? order < 0 : order > 0;
    });
    std::vector<uint32_t> rows;
    rows.reserve(keys.size());
    for (const TKey &key : keys)
        rows.push_back(key.Row);
    return rows;
}

/// Bytes at the start that all values have in common: they decide nothing, and values such as
/// numbered names differ only behind them.
qsizetype CommonStart(const TRowArena &arena, int field)
{
    QByteArrayView first;
    qsizetype common = -1;
    for (qint64 row = 0; row < arena.RowCount() && common != 0; ++row) {
        if (arena.IsNull(row, field))
            continue;
        const QByteArrayView cell = arena.Cell(row, field);
        if (common < 0) {
            first = cell;
            common = cell.size();
            continue;
        }
        common = std::min(common, cell.size());
        common = std::mismatch(first.begin(), first.begin() + common, cell.begin()).first -
                 first.begin();
    }
    return std::max<qsizetype>(common, 0);
}

std::vector<uint32_t> OrderOfTexts(const TRowArena &arena, int field, bool ascending)
{
    const qsizetype start = CommonStart(arena, field);
    std::vector<TTextKey> keys(size_t(arena.RowCount()));
    for (size_t row = 0; row < keys.size(); ++row) {
        const bool isNull = arena.IsNull(qint64(row), field);
        const QByteArrayView cell = arena.Cell(qint64(row), field);
        keys[row] = {isNull ? 0 : PrefixOf(cell.sliced(start)), uint32_t(row), isNull};
    }
    return Sorted(keys, ascending, [&](const TTextKey &a, const TTextKey &b) {
        if (a.Prefix != b.Prefix)
            return a.Prefix < b.Prefix ? -1 : 1;
        return CompareBytes(arena.Cell(a.Row, field), arena.Cell(b.Row, field));
    });
}

std::vector<uint32_t> OrderOfNumbers(const TRowArena &arena, int field, bool ascending)
{
    std::vector<TNumberKey> keys(size_t(arena.RowCount()));
    for (size_t row = 0; row < keys.size(); ++row)
        keys[row] = {NumberOf(arena.Cell(qint64(row), field)), uint32_t(row),
                     arena.IsNull(qint64(row), field)};
    return Sorted(keys, ascending, [&](const TNumberKey &a, const TNumberKey &b) {
        if (a.Value != b.Value)
            return a.Value < b.Value ? -1 : 1;
        // Decimals longer than the number type are told apart by their digits.
        return CompareBytes(arena.Cell(a.Row, field), arena.Cell(b.Row, field));
    });
}

} // namespace

std::vector<uint32_t> TDataSetSort::Order(const TDataSet &dataset, int field, bool ascending)
{
    const TField &column = dataset.FieldAt(field);
    // BIT comes as bytes, most significant first, and all cells of a column are of one length.
    const bool byNumber = column.IsNumeric() && column.DataType() != ftBit;
    return byNumber ? OrderOfNumbers(dataset.Arena(), field, ascending)
                    : OrderOfTexts(dataset.Arena(), field, ascending);
}
