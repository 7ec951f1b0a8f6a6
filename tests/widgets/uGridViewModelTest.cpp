#include "support/uException.h"
#include "uGridViewSample.h"
#include "uGuiTools.h"

#include <QAbstractItemModelTester>
#include <QSignalSpy>
#include <cmath>
#include <gtest/gtest.h>

namespace {

constexpr auto Fatal = QAbstractItemModelTester::FailureReportingMode::Fatal;

struct TSortCase
{
    const char *Name;
    int Column;
    Qt::SortOrder Order;
    QStringList Expected; // names from top to bottom
};

const TSortCase Sorts[] = {
    {"TextDescending", 0, Qt::DescendingOrder, {"Ähtäri", "bern", "Rome", "Kiel"}},
    {"NumbersAsNumbersEqualOnesStay", 1, Qt::AscendingOrder, {"Kiel", "Ähtäri", "bern", "Rome"}},
    {"EqualOnesStayWhenDescending", 1, Qt::DescendingOrder, {"Rome", "bern", "Kiel", "Ähtäri"}},
    {"NoColumnIsTheOrderOfTheFill", -1, Qt::AscendingOrder, {"Kiel", "bern", "Ähtäri", "Rome"}},
};

TEST(TGridModel, PutsRowsInOrder)
{
    for (const TSortCase &row : Sorts) {
        SCOPED_TRACE(row.Name);
        TGridModel<TCity> model(CityColumns());
        QAbstractItemModelTester tester(&model, Fatal);
        model.SetValues(Cities());
        model.sort(row.Column, row.Order);
        EXPECT_EQ(TGuiTools::Column(model, 0), row.Expected);
        model.SetValues(Cities());
        EXPECT_EQ(TGuiTools::Column(model, 0), row.Expected) << "after a refill";
    }
}

TEST(TGridValue, OrdersKindsAndExtremes)
{
    const std::vector<TGridValue> ascending = {
        TGridValue(),
        TGridValue(std::nan("")),
        TGridValue(std::numeric_limits<qint64>::min()),
        TGridValue(-0.5),
        TGridValue(true),
        TGridValue((1LL << 53) + 1), // not to be told from its neighbour as a double
        TGridValue((1LL << 53) + 2),
        TGridValue(std::numeric_limits<quint64>::max()),
        TGridValue(QString()),
        TGridValue("10"),
        TGridValue("9"),
    };
    for (size_t i = 0; i < ascending.size(); ++i)
        for (size_t j = 0; j < ascending.size(); ++j) {
            const int expected = i < j ? -1 : i > j ? 1 : 0;
            const int actual = ascending[i].Compare(ascending[j]);
            EXPECT_EQ(actual < 0 ? -1 : actual > 0 ? 1 : 0, expected) << i << " and " << j;
        }
}

TEST(TGridModel, OnlyWhatASetterTakesIsChanged)
{
    TGridModel<TCity> model(CityColumns());
    QAbstractItemModelTester tester(&model, Fatal);
    model.SetValues(Cities());
    QSignalSpy changes(&model, &QAbstractItemModel::dataChanged);
    EXPECT_FALSE(model.setData(model.index(0, 1), "5", Qt::EditRole)) << "there is none";
    EXPECT_FALSE(model.setData(model.index(0, 0), "", Qt::EditRole)) << "it refuses";
    EXPECT_EQ(changes.count(), 0);
    EXPECT_TRUE(model.setData(model.index(0, 0), "Kyiv", Qt::EditRole));
    EXPECT_EQ(changes.count(), 1);
    EXPECT_EQ(model.ItemAt(0)->Name, "Kyiv");
}

TEST(TGridModel, ShowsWhatAnItemThrows)
{
    const TGridColumns<TCity> columns = {{.Caption = "Name", .Text = [](const TCity &) -> QString {
                                              throw EException("The list is gone.");
                                          }}};
    TGridModel<TCity> model(columns);
    model.SetValues(Cities());
    EXPECT_EQ(model.index(0, 0).data().toString(), "The list is gone.");
    EXPECT_THROW(model.sort(0), EException);
    EXPECT_THROW(model.SetValues({TCity()}), EException);
    EXPECT_EQ(model.rowCount(), 1) << "the new rows are there, if unsorted";
}

} // namespace
