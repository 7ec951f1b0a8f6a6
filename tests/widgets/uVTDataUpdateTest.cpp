#include "uVTDataFixture.h"

#include <QScrollBar>

namespace {

class TVTDataUpdateCycle : public TVTData
{};

struct TRefreshCase
{
    const char *Name;
    QStringList Before;
    QStringList After;
};

const TRefreshCase Refreshes[] = {
    {"FirstFill", {}, {"b", "a", "c"}},
    {"Emptied", {"a", "b"}, {}},
    {"FirstGoes", {"a", "b", "c"}, {"b", "c"}},
    {"OthersInstead", {"a", "c"}, {"d", "b"}},
    {"NewOnesBetween", {"a", "c", "e"}, {"e", "d", "c", "b", "a"}},
};

TEST_F(TVTDataUpdateCycle, LeavesWhatWasAddedAgainInOrder)
{
    for (const TRefreshCase &row : Refreshes) {
        SCOPED_TRACE(row.Name);
        Fill(row.Before);
        QHash<QString, TVTDataItem *> kept;
        for (const QString &id : row.Before)
            kept.insert(id, Manager.FindNode(id));
        Fill(row.After);
        QStringList ordered = row.After;
        ordered.sort();
        EXPECT_EQ(Shown(), ordered);
        for (const QString &id : row.Before)
            EXPECT_EQ(Manager.FindNode(id) != nullptr, ordered.contains(id)) << qPrintable(id);
        for (int i = 0; i < ordered.size(); ++i) {
            TVTDataItem *item = Manager.FindNode(ordered[i]);
            EXPECT_EQ(item, Manager.DataList()->Items(i));
            EXPECT_EQ(kept.value(ordered[i], item), item) << "the node that it was";
        }
    }
}

TEST_F(TVTDataUpdateCycle, IsToldOnceWhenNested)
{
    Fill({"a", "b"});
    Add(Manager.FindNode("a")->DataList(), "gone");
    {
        const TVTDataUpdate outer(&Manager);
        TVTDataItem *a = Add(Manager.DataList(), "a");
        {
            const TVTDataUpdate inner(a->DataList());
            Add(a->DataList(), "a2")->DataList()->Add("deep", nullptr, {}, {"deep"});
            Add(a->DataList(), "a1");
        }
        EXPECT_EQ(Manager.FindNode("gone"), nullptr);
        EXPECT_TRUE(Manager.IsUpdating());
        EXPECT_NE(Manager.FindNode("b"), nullptr) << "it is for the outer cycle to sweep";
    }
    EXPECT_EQ(Shown(), QStringList{"a"});
    EXPECT_EQ(ShownBelow("a"), QStringList({"a1", "a2"}));
    EXPECT_EQ(ShownBelow("a2"), QStringList{"deep"});
}

TEST_F(TVTDataUpdateCycle, SweepsWhatADrawingThatThrewDidNotReach)
{
    Fill({"a", "b", "c"});
    Manager.SetFocusedItem(Manager.FindNode("c"));
    TVTSignals raised(Manager);
    EXPECT_THROW(
        {
            const TVTDataUpdate update(&Manager);
            Add(Manager.DataList(), "a");
            throw std::runtime_error("list cannot be read");
        },
        std::runtime_error);
    EXPECT_FALSE(Manager.IsUpdating());
    EXPECT_EQ(Shown(), QStringList{"a"});
    EXPECT_TRUE(View->updatesEnabled());
    TTestLoop::Settle();
    EXPECT_EQ(raised.Raised, QStringList{"focus a"});
}

TEST_F(TVTDataUpdateCycle, KeepsExpansionFocusAndPlaceOnTheScreen)
{
    const auto fill = [&](const QStringList &more, int skipped) {
        const TVTDataUpdate update(&Manager);
        for (int i = 0; i < 50; ++i) {
            if (i + 10 == skipped)
                continue;
            TVTDataItem *item = Add(Manager.DataList(), QStringLiteral("node%1").arg(i + 10));
            for (int j = 0; j < 3; ++j)
                Add(item->DataList(), QStringLiteral("%1.%2").arg(item->Id()).arg(j));
        }
        for (const QString &id : more)
            Add(Manager.DataList(), id);
    };
    fill({}, -1);
    Manager.FindNode("node20")->SetExpanded(true);
    Manager.FindNode("node30")->SetExpanded(true);
    Manager.SetFocusedItem(Manager.FindNode("node30.1"));
    View->scrollTo(Manager.Model()->IndexOf(Manager.FindNode("node29")), View->PositionAtTop);
    View->verticalScrollBar()->setValue(View->verticalScrollBar()->value() + 5);
    const int top = TopOf("node30.1");
    ASSERT_GT(top, 0);
    TVTSignals raised(Manager);
    fill({"another", "before"}, 10);
    EXPECT_EQ(FocusedId(), "node30.1");
    EXPECT_TRUE(Manager.FindNode("node20")->IsExpanded());
    EXPECT_TRUE(Manager.FindNode("node30")->IsExpanded());
    EXPECT_FALSE(Manager.FindNode("node21")->IsExpanded());
    EXPECT_EQ(TopOf("node30.1"), top);
    EXPECT_EQ(raised.Raised, QStringList());
}

struct THeirCase
{
    const char *Name;
    QString Focused;
    QStringList Roots;  // left after the refresh
    QStringList Leaves; // left below "b", when that is left
    QString Heir;
};

const THeirCase Heirs[] = {
    {"NextSibling", "b1", {"a", "b", "c"}, {"b3"}, "b3"},
    {"PreviousWithoutNext", "b3", {"a", "b", "c"}, {"b1", "b2"}, "b2"},
    {"ParentWithoutSiblings", "b2", {"a", "b", "c"}, {}, "b"},
    {"NobodyLeft", "b2", {}, {}, ""},
    {"NewNodesDoNotCount", "c", {"a", "b", "d"}, {}, "b"},
};

TEST_F(TVTDataUpdateCycle, AnHeirTakesOverFromANodeThatVanished)
{
    const auto draw = [this](const QStringList &roots, const QStringList &leaves) {
        const TVTDataUpdate update(&Manager);
        for (const QString &id : roots) {
            TVTDataItem *item = Add(Manager.DataList(), id);
            for (const QString &leaf : id == "b" ? leaves : QStringList())
                Add(item->DataList(), leaf);
        }
    };
    for (const THeirCase &row : Heirs) {
        SCOPED_TRACE(row.Name);
        draw({"a", "b", "c"}, {"b1", "b2", "b3"});
        Manager.SetFocusedItem(Manager.FindNode(row.Focused));
        TVTSignals raised(Manager);
        draw(row.Roots, row.Leaves);
        EXPECT_EQ(FocusedId(), row.Heir);
        EXPECT_EQ(raised.Raised, QStringList{"focus " + (row.Heir.isEmpty() ? "-" : row.Heir)});
    }
}

} // namespace
