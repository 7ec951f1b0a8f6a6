#include "client/uRowArena.h"

#include <QByteArray>
#include <gtest/gtest.h>
#include <optional>

namespace {

using TCells = std::vector<std::optional<QByteArray>>;

class TRowArenaTest : public ::testing::Test
{
protected:
    TRowArenaTest() { FArena.SetFieldCount(3); }

    /// Hands a row over as a server gives it: to the end, or in place of another one.
    void Give(const TCells &row, qint64 place = -1)
    {
        const char *cells[3];
        unsigned long lengths[3];
        for (size_t i = 0; i < 3; ++i) {
            cells[i] = row[i] ? row[i]->constData() : nullptr;
            lengths[i] = row[i] ? static_cast<unsigned long>(row[i]->size()) : 0;
        }
        if (place < 0)
            FArena.Append(cells, lengths);
        else
            FArena.Replace(place, cells, lengths);
    }
    TCells Row(qint64 row) const
    {
        TCells cells;
        for (int i = 0; i < 3; ++i)
            cells.push_back(FArena.IsNull(row, i)
                                ? std::nullopt
                                : std::optional(FArena.Cell(row, i).toByteArray()));
        return cells;
    }

    TRowArena FArena;
};

TEST_F(TRowArenaTest, HoldsRowsOfEverySizeAcrossBlocks)
{
    const auto cell = [](int i) {
        return QByteArray(i % 977 == 0 ? 3000000 : i % 701, 'a' + i % 26);
    };
    for (int i = 0; i < 3000; ++i)
        Give({cell(i), std::nullopt, QByteArray::number(i)});
    for (int i = 0; i < 3000; ++i)
        ASSERT_EQ(Row(i), TCells({cell(i), std::nullopt, QByteArray::number(i)})) << i;
}

TEST_F(TRowArenaTest, ReplacesAndRemovesInPlaceAndKeepsNullApartFromEmpty)
{
    const TCells rows[] = {
        {"one", std::nullopt, "three"},
        {std::nullopt, std::nullopt, std::nullopt},
        {"", QByteArray("a\0b", 3), ""},
        {std::nullopt, "x", std::nullopt},
    };
    for (const TCells &row : rows)
        Give(row);
    for (qint64 i = 0; i < 4; ++i)
        EXPECT_EQ(Row(i), rows[i]) << i;
    const TCells changed = {"changed", "and longer", std::nullopt};
    Give(changed, 2);
    FArena.Remove(1);
    ASSERT_EQ(FArena.RowCount(), 3);
    EXPECT_EQ(Row(0), rows[0]);
    EXPECT_EQ(Row(1), changed);
    EXPECT_EQ(Row(2), rows[3]);
}

} // namespace
