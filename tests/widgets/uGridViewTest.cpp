#include "uGridViewSample.h"
#include "uGuiTools.h"
#include "uPaintCounter.h"
#include "uTestLoop.h"
#include "widgets/uGridCopy.h"

#include <QApplication>
#include <QClipboard>
#include <QScrollBar>
#include <QSignalSpy>
#include <QStandardItemModel>
#include <QTableView>
#include <QTest>
#include <gtest/gtest.h>

namespace {

struct TShownGrid
{
    explicit TShownGrid(std::vector<TCity> cities, TGridColumns<TCity> columns = CityColumns())
        : Model(std::move(columns))
    {
        Grid.setModel(&Model);
        Model.SetValues(std::move(cities));
        Grid.resize(600, 300);
        TGuiTools::Show(&Grid);
        Grid.setFocus();
    }

    QString FocusedName() const
    {
        const auto city = Model.ItemAt(Grid.FocusedRow());
        return city ? city->Name : QString();
    }

    TGridModel<TCity> Model;
    TGridView Grid;
};

std::vector<TCity> ManyCities(int count)
{
    std::vector<TCity> cities;
    for (int i = 0; i < count; ++i)
        cities.push_back({QString("City %1").arg(i, 6, 10, QChar('0')), i});
    return cities;
}

TEST(TGridView, RefillKeepsFocusSelectionScrollAndPaintsOnce)
{
    TShownGrid shown(ManyCities(100000));
    shown.Grid.SetFocusedRow(50000);
    shown.Grid.selectionModel()->select(shown.Model.index(50002, 0),
                                        QItemSelectionModel::Select | QItemSelectionModel::Rows);
    const int scroll = shown.Grid.verticalScrollBar()->value();
    ASSERT_GT(scroll, 0);
    QSignalSpy focusChanges(&shown.Grid, &TGridView::OnFocusedChanged);
    TTestLoop::Settle();
    const TPaintCounter paints(shown.Grid.viewport());

    std::vector<TCity> cities = ManyCities(100000);
    cities.erase(cities.begin() + 10, cities.begin() + 15);
    shown.Model.SetValues(std::move(cities));
    TTestLoop::RunUntil([&] { return paints.Count > 0; });
    TTestLoop::Settle();

    EXPECT_EQ(shown.FocusedName(), "City 050000");
    EXPECT_EQ(shown.Grid.SelectedRows(), std::vector<int>({49995, 49997}));
    EXPECT_EQ(shown.Grid.verticalScrollBar()->value(), scroll);
    EXPECT_EQ(paints.Count, 1);
    EXPECT_EQ(focusChanges.count(), 1);
}

TEST(TGridView, RefillWithoutTheFocusedItemHasNoFocus)
{
    TShownGrid shown(Cities());
    shown.Grid.SetFocusedRow(3);
    std::vector<TCity> cities = Cities();
    cities.pop_back();
    QSignalSpy focusChanges(&shown.Grid, &TGridView::OnFocusedChanged);
    shown.Model.SetValues(cities);
    EXPECT_EQ(shown.Grid.FocusedRow(), -1);
    EXPECT_TRUE(shown.Grid.SelectedRows().empty());
    ASSERT_EQ(focusChanges.count(), 1);
    EXPECT_EQ(focusChanges.first().first().toInt(), -1);
    shown.Model.Clear();
    EXPECT_EQ(shown.Model.ItemAt(shown.Grid.FocusedRow()), nullptr);
}

TEST(TGridView, StartsWithTheSortOfItsColumnsAndSortsByClick)
{
    TGridColumns<TCity> columns = CityColumns();
    columns[1].Sort = gsDescending;
    TShownGrid shown(Cities(), columns);
    EXPECT_EQ(TGuiTools::Column(shown.Model, 1), QStringList({"2800", "10", "9", "9"}));
    shown.Grid.SetFocusedRow(0);
    TGuiTools::ClickHeader(shown.Grid.header(), 1);
    EXPECT_EQ(TGuiTools::Column(shown.Model, 1), QStringList({"9", "9", "10", "2800"}));
    EXPECT_EQ(shown.FocusedName(), "Rome") << "the focus goes with the item";
}

TEST(TGridView, ActivatesByEnterAndDoubleClickButNotWhereACellIsEdited)
{
    TShownGrid shown(Cities());
    QSignalSpy activated(&shown.Grid, &TGridView::OnActivated);
    const auto doubleClick = [&](int column) {
        const QPoint place = shown.Grid.visualRect(shown.Model.index(1, column)).center();
        QTest::mouseClick(shown.Grid.viewport(), Qt::LeftButton, {}, place);
        QTest::mouseDClick(shown.Grid.viewport(), Qt::LeftButton, {}, place);
    };
    shown.Grid.SetFocusedRow(-1);
    QTest::keyClick(&shown.Grid, Qt::Key_Return);
    EXPECT_EQ(activated.count(), 0);
    doubleClick(1);
    ASSERT_EQ(activated.count(), 1);
    EXPECT_EQ(activated.last().first().toInt(), 1);
    QTest::keyClick(&shown.Grid, Qt::Key_Enter);
    EXPECT_EQ(activated.count(), 2);
    doubleClick(0);
    EXPECT_EQ(activated.count(), 2) << "the name is edited instead";
}

TEST(TGridView, SpaceTogglesTheCheckOfTheFocusedRow)
{
    TShownGrid shown(Cities());
    shown.Grid.SetFocusedRow(0);
    QTest::keyClick(&shown.Grid, Qt::Key_Space);
    EXPECT_TRUE(shown.Model.ItemAt(0)->IsCapital);
    QTest::keyClick(&shown.Grid, Qt::Key_Space);
    EXPECT_FALSE(shown.Model.ItemAt(0)->IsCapital);
}

struct TCopyCase
{
    const char *Name;
    QAbstractItemView::SelectionBehavior Behavior;
    std::vector<std::pair<int, int>> Cells; // selected, from the focused one on
    bool WithHeaders;
    const char *Expected;
};

constexpr auto Rows = QAbstractItemView::SelectRows;
constexpr auto Cells = QAbstractItemView::SelectItems;

const TCopyCase Copies[] = {
    {"RowsAsTheUserSeesTheColumns", Rows, {{2, 0}}, false, "z\tx\ty"},
    {"RowsFromTopToBottomQuotedWhereNeeded",
     Rows,
     {{1, 0}, {0, 0}},
     false,
     "d\ta\t\"two\nlines\"$\"\"\"q\"\"\"\t\t\"tab\there\""},
    {"OneCellAsItIs", Cells, {{0, 1}}, false, "two\nlines"},
    {"HolesStayEmpty", Cells, {{0, 0}, {2, 3}}, false, "\ta$z\t"},
    {"NothingFocusedOrSelected", Cells, {}, true, ""},
};

TEST(TGridCopying, GivesTheText)
{
    QStandardItemModel model(3, 4);
    const char *const texts[3][4] = {{"a", "two\nlines", "hidden", "d"},
                                     {"", "tab\there", "hidden", "\"q\""},
                                     {"x", "y", "h", "z"}};
    for (int row = 0; row < 3; ++row)
        for (int column = 0; column < 4; ++column)
            model.setItem(row, column, new QStandardItem(QString(texts[row][column])));
    model.setHorizontalHeaderLabels({"A", "B", "C", "D"});
    for (const TCopyCase &row : Copies) {
        QTableView view;
        view.setModel(&model);
        view.setSelectionBehavior(row.Behavior);
        view.setColumnHidden(2, true);
        view.horizontalHeader()->moveSection(3, 0);
        QItemSelectionModel::SelectionFlags flags = QItemSelectionModel::Select;
        flags.setFlag(QItemSelectionModel::Rows, row.Behavior == Rows);
        for (const auto &[line, column] : row.Cells)
            view.selectionModel()->select(model.index(line, column), flags);
        EXPECT_EQ(TGridCopy::Text(view, row.WithHeaders), QString(row.Expected).replace("$", "\n"))
            << row.Name;
    }
}

TEST(TGridView, CopiesByKeys)
{
    TShownGrid shown(Cities());
    shown.Grid.SetFocusedRow(1);
    QTest::keyClick(&shown.Grid, Qt::Key_C, Qt::ControlModifier);
    EXPECT_EQ(QApplication::clipboard()->text(), "bern\t10\t60.3\tyes");
    shown.Grid.clearSelection();
    QTest::keyClick(&shown.Grid, Qt::Key_C, Qt::ControlModifier | Qt::ShiftModifier);
    EXPECT_TRUE(QApplication::clipboard()->text().startsWith("Name\tPPL\t%\tCapital"));
    EXPECT_TRUE(QApplication::clipboard()->text().endsWith("bern\t10\t60.3\tyes"));
}

} // namespace
