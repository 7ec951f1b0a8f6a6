#include "uVTDataFixture.h"

#include <QDialog>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>

#include <memory>

namespace {

class TVTDataManagerTest : public TVTData
{
protected:
    QPoint Middle(const QString &id) const
    {
        return View->visualRect(Manager.Model()->IndexOf(Manager.FindNode(id))).center();
    }

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
    {"Enter", Qt::Key_Enter, "b", {"enter b"}},
    {"Delete", Qt::Key_Delete, "b", {"delete b"}},
    {"F2", Qt::Key_F2, "b", {"rename b"}},
    {"Insert", Qt::Key_Insert, "b", {"insert b"}},
    {"InsertWithoutFocus", Qt::Key_Insert, "", {"insert -"}},
    {"DeleteWithoutFocus", Qt::Key_Delete, "", {}},
    {"UpMovesTheFocus", Qt::Key_Up, "b", {"focus a"}},
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

TEST_F(TVTDataManagerTest, LeavesEnterToTheDialogWhenNobodyListens)
{
    QDialog dialog;
    auto *layout = new QVBoxLayout(&dialog);
    auto *view = new TVTTreeView(&dialog);
    auto *button = new QPushButton("Open", &dialog);
    layout->addWidget(view);
    layout->addWidget(button);
    button->setDefault(true);
    QSignalSpy clicked(button, &QPushButton::clicked);
    auto *manager = new TVTDataManager(view);
    Add(manager->DataList(), "a");
    manager->SetFocusedItem(manager->FindNode("a"));
    TGuiTools::Show(&dialog);
    TGuiTools::Press(view, Qt::Key_Return);
    EXPECT_EQ(clicked.size(), 1);
    TVTSignals raised(*manager);
    TGuiTools::Press(view, Qt::Key_Return);
    EXPECT_EQ(clicked.size(), 1) << "the listener has it now";
    EXPECT_EQ(raised.Raised, QStringList{"enter a"});
}

TEST_F(TVTDataManagerTest, FindsByTyping)
{
    Fill({"customers", "order_lines", "orders", "stock"});
    Manager.SetFocusedItem(Manager.FindNode("customers"));
    TGuiTools::Type(View, "order");
    EXPECT_EQ(FocusedId(), "order_lines");
    TGuiTools::Type(View, "s");
    EXPECT_EQ(FocusedId(), "orders");
}

TEST_F(TVTDataManagerTest, RaisesWhatTheMouseDoes)
{
    Fill({"a", "b"});
    Add(Manager.FindNode("b")->DataList(), "b1");
    TVTSignals raised(Manager);
    QTest::mouseClick(View->viewport(), Qt::RightButton, {}, Middle("b"));
    EXPECT_EQ(raised.Raised, QStringList{"focus b"}) << "a right click selects";
    raised.Raised.clear();
    QTest::mouseDClick(View->viewport(), Qt::LeftButton, {}, Middle("b"));
    EXPECT_EQ(raised.Raised, QStringList{"double b"}) << "and does not expand by itself";
    raised.Raised.clear();
    Manager.ToggleExpanded(Manager.FindNode("b"));
    Manager.ToggleExpanded(Manager.FindNode("b"));
    EXPECT_EQ(raised.Raised, QStringList({"expanded b", "collapsed b"}));
}

TEST_F(TVTDataManagerTest, ExpandsSilentlyWithinACycle)
{
    TVTSignals raised(Manager);
    {
        const TVTDataUpdate update(&Manager);
        TVTDataItem *folder = Add(Manager.DataList(), "folder");
        folder->SetExpanded(true);
        EXPECT_TRUE(folder->IsExpanded());
        Add(folder->DataList(), "leaf");
    }
    EXPECT_TRUE(Manager.FindNode("folder")->IsExpanded());
    EXPECT_GT(TopOf("leaf"), 0);
    EXPECT_EQ(raised.Raised, QStringList());
}

TEST_F(TVTDataManagerTest, ShowsItsPopupMenuUnlessEmpty)
{
    Fill({"a"});
    QMenu menu;
    Manager.SetPopupMenu(&menu);
    QSignalSpy asked(&Manager, &TVTDataManager::OnContextMenu);
    TGuiTools::AskMenu(View->viewport(), Middle("a"));
    EXPECT_EQ(asked.size(), 1);
    EXPECT_EQ(asked.last().first().value<TVTDataItem *>(), Manager.FindNode("a"));
    EXPECT_FALSE(menu.isVisible());
    menu.addAction("Open");
    TGuiTools::AskMenu(View->viewport(), View->viewport()->rect().bottomLeft());
    EXPECT_EQ(asked.last().first().value<TVTDataItem *>(), nullptr);
    EXPECT_TRUE(menu.isVisible());
    menu.close();
}

TEST_F(TVTDataManagerTest, TellsWhatWasTypedAsNewCaption)
{
    Fill({"a", "b"});
    TVTSignals raised(Manager);
    Manager.EditCaption(Manager.FindNode("b"));
    ASSERT_NE(Editor(), nullptr);
    TGuiTools::Retype(Editor(), "renamed");
    QTest::keyClick(Editor(), Qt::Key_Return);
    TTestLoop::Settle();
    EXPECT_EQ(raised.Raised, QStringList({"focus b", "text b renamed"}));
    EXPECT_EQ(Shown(), QStringList({"a", "b"})) << "the listener decides";
    EXPECT_EQ(Editor(), nullptr);

    raised.Raised.clear();
    Manager.EditCaption(Manager.FindNode("b"));
    ASSERT_NE(Editor(), nullptr);
    QTest::keyClick(Editor(), Qt::Key_Escape);
    TTestLoop::Settle();
    EXPECT_EQ(raised.Raised, QStringList{"canceled b"});
    View->edit(Manager.Model()->index(0, 0));
    EXPECT_EQ(Editor(), nullptr) << "no other node can be edited";
}

TEST_F(TVTDataManagerTest, SurvivesARefreshWhileACaptionIsEdited)
{
    Fill({"a", "b"});
    TVTSignals raised(Manager);
    Manager.EditCaption(Manager.FindNode("b"));
    ASSERT_NE(Editor(), nullptr);
    Fill({"a"});
    TTestLoop::Settle();
    EXPECT_EQ(Editor(), nullptr);
    EXPECT_EQ(raised.Raised, QStringList({"focus b", "focus a"}));
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
