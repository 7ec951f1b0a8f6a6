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
    TGuiTools::AskMenu(View->viewport(), Middle("a"));
    EXPECT_FALSE(menu.isVisible());
    menu.addAction("Open");
    TGuiTools::AskMenu(View->viewport(), View->viewport()->rect().bottomLeft());
    EXPECT_TRUE(menu.isVisible());
    menu.close();
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
