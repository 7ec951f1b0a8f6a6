#include "uVTDataFixture.h"

#include <QLineEdit>
#include <QTest>

#include <memory>

namespace {

class TVTDataManagerTest : public TVTData
{
protected:
    QLineEdit *Editor() const { return View->viewport()->findChild<QLineEdit *>(); }
};

struct TKeyCase
{
    const char *Name;
    Qt::Key Key;
    QString Focused;
    QStringList Raised;
};

const TKeyCase Keys[] = {
    {"Return", Qt::Key_Return, "b", {"enter b"}},
    {"Delete", Qt::Key_Delete, "b", {"delete b"}},
    {"InsertWithoutFocus", Qt::Key_Insert, "", {"insert -"}},
    {"DeleteWithoutFocus", Qt::Key_Delete, "", {}},
    {"AsteriskDoesNotOpenEverything", Qt::Key_Asterisk, "b", {}},
};

TEST_F(TVTDataManagerTest, KeysAreRaisedForTheFocusedNode)
{
    Fill({"a", "b"});
    for (const TKeyCase &row : Keys) {
        Manager.SetFocusedItem(Manager.FindNode(row.Focused));
        TVTSignals raised(Manager);
        QTest::keyClick(View, row.Key);
        EXPECT_EQ(raised.Raised, row.Raised) << row.Name;
    }
}

TEST_F(TVTDataManagerTest, TellsWhatWasTypedAsNewCaption)
{
    Fill({"a", "b"});
    const auto edit = [this] {
        Manager.EditCaption(Manager.FindNode("b"));
        return Editor() != nullptr;
    };
    TVTSignals raised(Manager);
    ASSERT_TRUE(edit());
    TGuiTools::Retype(Editor(), "renamed");
    QTest::keyClick(Editor(), Qt::Key_Return);
    TTestLoop::Settle();
    EXPECT_EQ(Shown(), QStringList({"a", "b"})) << "the listener decides";
    EXPECT_EQ(Editor(), nullptr);

    ASSERT_TRUE(edit());
    QTest::keyClick(Editor(), Qt::Key_Escape);
    TTestLoop::Settle();
    View->edit(Manager.Model()->index(0, 0));
    EXPECT_EQ(Editor(), nullptr) << "no other node can be edited";

    ASSERT_TRUE(edit());
    Fill({"a"});
    TTestLoop::Settle();
    EXPECT_EQ(Editor(), nullptr) << "it goes with its node";
    EXPECT_EQ(raised.Raised, (QStringList{"focus b", "text b renamed", "canceled b", "focus a"}));
}

TEST(TVTDataLifetime, AllowsEitherSideToGoFirst)
{
    auto view = std::make_unique<TVTTreeView>();
    auto manager = std::make_unique<TVTDataManager>(view.get(), QCoreApplication::instance());
    manager->DataList()->Add("a", nullptr, {}, {"a"})->DataList()->Add("a1");
    manager->SetFocusedItem(manager->FindNode("a"));
    manager.reset();
    EXPECT_EQ(view->model(), nullptr);

    manager = std::make_unique<TVTDataManager>(view.get(), QCoreApplication::instance());
    manager->DataList()->Add("b")->SetExpanded(true);
    view.reset();
    EXPECT_EQ(manager->View(), nullptr);
    manager->DataList()->Clear();
    EXPECT_EQ(manager->FocusedItem(), nullptr);
    EXPECT_TRUE(manager->DataList()->IsEmpty());
}

} // namespace
