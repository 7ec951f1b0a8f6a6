#include "uVTDataFixture.h"

#include <QDate>

#include <algorithm>

namespace {

class TVTDataListTest : public TVTData
{};

TEST_F(TVTDataListTest, HasOneNodeForAnIdInAnyLetterCase)
{
    int first = 1;
    int second = 2;
    TVTDataItem *item = Manager.DataList()->Add("Table Shop.Käse", &first, {3}, {"old"});
    EXPECT_EQ(Manager.DataList()->Add("TABLE shop.KÄSE", &second, {4}, {"new", 7}), item);
    EXPECT_EQ(Manager.DataList()->Count(), 1);
    EXPECT_EQ(item->Caption(), "new");
    EXPECT_EQ(*item->DataAs<int>(), 2);
    EXPECT_EQ(item->ImageIndex(0), 4);
    EXPECT_EQ(Shown(), QStringList{"new"});
    EXPECT_NE(Add(item->DataList(), "table shop.käse"), item) << "only siblings share keys";
}

TEST_F(TVTDataListTest, RenamesUnlessASiblingHasTheId)
{
    Fill({"a", "b"});
    TVTDataItem *a = Manager.FindNode("a");
    EXPECT_FALSE(a->SetId("B"));
    EXPECT_EQ(Manager.FindNode("a"), a);
    EXPECT_TRUE(a->SetId("A")) << "its own id in other letters";
    EXPECT_TRUE(a->SetId("c"));
    EXPECT_EQ(Manager.FindNode("a"), nullptr);
    EXPECT_EQ(Manager.FindNode("C"), a);
}

TEST_F(TVTDataListTest, ChangesOutsideOfACycleAtOnce)
{
    Fill({"a", "c"});
    Add(Manager.DataList(), "b");
    EXPECT_EQ(Shown(), QStringList({"a", "c", "b"})) << "sorting is for the next cycle";
    Manager.FindNode("c")->SetValues({"changed"});
    EXPECT_EQ(Shown(), QStringList({"a", "changed", "b"}));
    Manager.SetFocusedItem(Manager.FindNode("c"));
    TVTSignals raised(Manager);
    Manager.DataList()->Remove(Manager.FindNode("c"));
    EXPECT_EQ(raised.Raised, QStringList{"focus b"});
    Manager.DataList()->Clear();
    EXPECT_EQ(Shown(), QStringList());
    EXPECT_TRUE(Manager.DataList()->IsEmpty());
}

TEST_F(TVTDataListTest, GivesAnExpanderForAHiddenNode)
{
    Fill({"t"});
    TVTDataItem *table = Manager.FindNode("t");
    const QModelIndex index = Manager.Model()->IndexOf(table);
    table->DataList()->AddHidden("null");
    EXPECT_TRUE(Manager.Model()->hasChildren(index));
    EXPECT_EQ(ShownBelow("t"), QStringList());
    QObject::connect(&Manager, &TVTDataManager::OnExpanded, &Window, [&](TVTDataItem *item) {
        const TVTDataUpdate update(item->DataList());
        Add(item->DataList(), "id");
    });
    Manager.SetFocusedItem(table);
    TGuiTools::Press(View, Qt::Key_Right);
    EXPECT_TRUE(table->IsExpanded());
    EXPECT_EQ(ShownBelow("t"), QStringList{"id"});
    EXPECT_EQ(Manager.FindNode("null"), nullptr);
    table->DataList()->Clear();
    EXPECT_FALSE(Manager.Model()->hasChildren(index));
}

struct TSortCase
{
    const char *Name;
    QVariantList Values;
    QVariantList SortValues;
    QStringList Ascending;
};

const QVariant None;
const qlonglong Big = 9007199254740993; // next to a double that it would be taken for

const TSortCase Sorts[] = {
    {"NumbersAsNumbers", {10, 9, 100.5, -1}, {}, {"-1", "9", "10", "100.5"}},
    {"LargeIntegersExactly",
     {Big, Big - 1, 18446744073709551615ull},
     {},
     {QString::number(Big - 1), QString::number(Big), "18446744073709551615"}},
    {"ValueWhereSortValueIsNull", {"a", "b", "c"}, {"x", None, "c"}, {"b", "c", "a"}},
    {"NothingThenNumbersThenText", {"a", 5, None}, {}, {"", "5", "a"}},
    {"DatesAsDates", {QDate(2024, 11, 2), QDate(2024, 2, 11)}, {}, {"2024-02-11", "2024-11-02"}},
};

TEST_F(TVTDataListTest, ComparesBySortValueThenByValue)
{
    for (const TSortCase &row : Sorts) {
        SCOPED_TRACE(row.Name);
        Manager.DataList()->Clear();
        Manager.SetSort(0, Qt::AscendingOrder);
        {
            const TVTDataUpdate update(&Manager);
            for (int i = 0; i < row.Values.size(); ++i)
                Manager.DataList()->Add(QString::number(i), nullptr, {}, {row.Values[i]},
                                        {row.SortValues.value(i)});
        }
        QStringList expected = row.Ascending;
        EXPECT_EQ(Shown(), expected);
        Manager.SetSort(0, Qt::DescendingOrder);
        std::reverse(expected.begin(), expected.end());
        EXPECT_EQ(Shown(), expected);
    }
}

TEST_F(TVTDataListTest, SortsEveryLevelByTheColumnWhoseHeaderIsClicked)
{
    Manager.SetColumns({"Name", "Size"}, {ctText, ctNumber});
    TVTDataItem *a = Manager.DataList()->Add("a", nullptr, {}, {"a", 10});
    Manager.DataList()->Add("b", nullptr, {}, {"b", 9});
    a->DataList()->Add("a1", nullptr, {}, {"a1", 2});
    a->DataList()->Add("a2", nullptr, {}, {"a2", 1});
    Manager.SetFocusedItem(Manager.FindNode("a1"));
    View->sortByColumn(1, Qt::AscendingOrder);
    EXPECT_EQ(Shown(), QStringList({"b", "a"}));
    EXPECT_EQ(ShownBelow("a"), QStringList({"a2", "a1"}));
    EXPECT_EQ(FocusedId(), "a1");
}

TEST(TVTDataLarge, SweepsEverySecondOfManySiblings)
{
    // Searched from node to node, this would be billions of comparisons of text.
    const int many = 50000;
    TVTTreeView view;
    auto *manager = new TVTDataManager(&view);
    for (int step : {1, 2}) {
        const TVTDataUpdate update(manager);
        for (int i = 0; i < many; i += step)
            manager->DataList()->Add(QStringLiteral("Node %1").arg(i), nullptr, {}, {i});
    }
    EXPECT_EQ(manager->Model()->rowCount(), many / 2);
    EXPECT_EQ(manager->Model()->index(many / 4, 0).data().toInt(), many / 2);
    EXPECT_EQ(manager->FindNode("node 1"), nullptr);
}

} // namespace
