#include "pages/tree/uObjectsFrameFixture.h"
#include "pages/uBothServers.h"

namespace {

using TTreeOnBothServers = TOnBothServers<TObjectsFrameTest>;
INSTANTIATE_TEST_SUITE_P(Servers, TTreeOnBothServers, testing::Values(skMariaDB, skMySQL),
                         TTreeOnBothServers::Name);

TEST_P(TTreeOnBothServers, DrawsADatabaseAndReadsOnlyWhatIsOpened)
{
    TManagerObjectsFrame &frame = Open();
    EXPECT_EQ(frame.SelectedDatabase(), QString());
    EXPECT_FALSE(FTree->isVisible());
    frame.SelectDatabase(Database().Name());
    EXPECT_EQ(Below(), (QStringList{"Tables (2)", "Views (1)", "Procedures (1)", "Functions (1)",
                                    "Events (1)"}));
    EXPECT_TRUE(Node({"Tables"}).IsExpanded());
    EXPECT_EQ(Below({"Tables"}), (QStringList{"cities", "streets"}));
    EXPECT_EQ(Below({"Functions"}), QStringList{"two"});

    const int before = FStatements;
    EXPECT_TRUE(Node({"Tables", "cities"}).HasChildren()) << "an expander without its content";
    EXPECT_EQ(FStatements, before);
    Node({"Tables", "cities"}).SetExpanded(true);
    EXPECT_GT(FStatements, before);
    EXPECT_EQ(Below({"Tables", "cities"}),
              (QStringList{"Fields (2)", "Indexes (2)", "References (0)", "Triggers (1)"}));
    EXPECT_EQ(Below({"Tables", "cities", "Fields"}), (QStringList{"id", "name"}));
    Node({"Tables", "streets"}).SetExpanded(true);
    EXPECT_EQ(Below({"Tables", "streets", "References"}), QStringList{"in_city"});
    Node({"Views", "names"}).SetExpanded(true);
    EXPECT_EQ(Below({"Views", "names"}), QStringList{"Fields (1)"});
}

TEST_F(TObjectsFrameTest, ARefreshKeepsPlaceAndExpansion)
{
    TManagerObjectsFrame &frame = OpenDatabase();
    Node({"Views"}).SetExpanded(false);
    Node({"Tables", "cities"}).SetExpanded(true);
    Node({"Tables", "cities", "Indexes"}).SetExpanded(true);
    Focus({"Tables", "cities", "Indexes", "by_name"});
    Exec("ALTER TABLE cities ADD COLUMN mayor INT");
    Exec("DROP TABLE streets");
    Exec("CREATE TABLE `a \"b\".c 'ü漢` (id INT)");
    Find<QAction>(&frame, "actRefresh")->trigger();
    EXPECT_EQ(Below({"Tables"}), (QStringList{"a \"b\".c 'ü漢", "cities"}));
    EXPECT_EQ(Below({"Tables", "cities", "Fields"}), (QStringList{"id", "name", "mayor"}));
    EXPECT_TRUE(Node({"Tables", "cities", "Indexes"}).IsExpanded());
    EXPECT_FALSE(Node({"Views"}).IsExpanded());
    ASSERT_NE(FData->FocusedItem(), nullptr);
    EXPECT_EQ(FData->FocusedItem()->Caption(), "by_name");
    Node({"Tables", "a \"b\".c 'ü漢"}).SetExpanded(true);
    EXPECT_EQ(Below({"Tables", "a \"b\".c 'ü漢", "Fields"}), QStringList{"id"});
}

TEST_F(TObjectsFrameTest, TheSelectedDatabaseIsRemembered)
{
    OpenDatabase();
    Driver.Expect("frmProfiles", [](QWidget *form) { TGuiTools::Click(form, "butClose"); });
    Trigger("actCloseConnection");
    ASSERT_TRUE(TTestLoop::RunUntil([this] { return Driver.Pending() == 0; }));
    EXPECT_EQ(Open().SelectedDatabase(), Database().Name());
    EXPECT_EQ(FData->DataList()->Count(), 5);

    TManagerObjectsFrame &bound = Open(Database().Name());
    EXPECT_EQ(bound.SelectedDatabase(), Database().Name());
    EXPECT_FALSE(Find<TDropDownCombo>(&bound, "cbxDatabase")->isEnabled());
    EXPECT_FALSE(Find<QAction>(&bound, "actDatabaseDelete")->isVisible());
}

TEST_F(TObjectsFrameTest, AServerThatIsGoneIsToldAndTheTreeComesBack)
{
    TTcpProxy proxy(Server().Host(), Server().Port());
    TDbmConnectionProfile profile = Profile();
    profile.Port = proxy.Port();
    TManagerObjectsFrame &frame = Open(profile);
    frame.SelectDatabase(Database().Name());
    Node({"Tables", "streets"}).SetExpanded(true);
    proxy.Refuse();
    proxy.Cut();
    // Any box would be a window that nobody expects.
    Focus({"Tables", "cities"});
    const int before = FStatements;
    for (const auto key : {Qt::Key_Down, Qt::Key_Up, Qt::Key_Home, Qt::Key_End})
        QTest::keyClick(FTree, key);
    EXPECT_EQ(FStatements, before) << "moving about asks nothing of the server";
    Node({"Tables", "cities"}).SetExpanded(true);
    const auto *told = Find<QLabel>(Window->GetActiveManagerFrame(), "labNotRead");
    EXPECT_TRUE(told->text().startsWith("Not read: ")) << told->text().toStdString();
    EXPECT_EQ(Node({"Tables"}).DataList()->Count(), 2);
    // A refresh while it is gone must not forget what was looked at.
    Action("actRefresh")->trigger();
    EXPECT_FALSE(FTree->isVisible());
    EXPECT_TRUE(told->text().startsWith("Not read: ")) << told->text().toStdString();
    proxy.Resume();
    Action("actRefresh")->trigger();
    EXPECT_EQ(told->text(), QString());
    EXPECT_EQ(frame.SelectedDatabase(), Database().Name());
    const QStringList fields = {"id", "name"};
    EXPECT_EQ(Below({"Tables", "cities", "Fields"}), fields);
    EXPECT_TRUE(Node({"Tables", "streets"}).IsExpanded());
    // It dies while the tree and its open tables are being read, at one list or another.
    for (const int bytes : {50, 1000, 1550, 1700, 2000, 4000}) {
        SCOPED_TRACE(bytes);
        proxy.CutAfter(bytes);
        Action("actRefresh")->trigger();
        EXPECT_EQ(frame.SelectedDatabase().isEmpty(), !FTree->isVisible());
        proxy.Resume();
        Action("actRefresh")->trigger();
        EXPECT_EQ(told->text(), QString());
        Node({"Tables", "cities"}).SetExpanded(true);
        EXPECT_EQ(Below({"Tables", "cities", "Fields"}), fields);
    }
}

TEST_F(TObjectsFrameTest, ADatabaseIsChosenFromWhatTheServerHas)
{
    TManagerObjectsFrame &frame = OpenDatabase();
    auto *combo = Find<TDropDownCombo>(&frame, "cbxDatabase");
    const auto show = [combo](bool shown) {
        shown ? combo->showPopup() : combo->hidePopup();
        TTestLoop::Settle();
    };
    const TTestDatabase other;
    other.Exec("CREATE TABLE elsewhere (id INT)");
    const int before = FStatements;
    show(true);
    ASSERT_GE(combo->findText(other.Name()), 0) << "made by another session";
    show(false);
    EXPECT_EQ(FStatements, before + 1) << "nothing but the names was read";
    EXPECT_EQ(frame.SelectedDatabase(), Database().Name());

    show(true);
    combo->view()->setCurrentIndex(combo->model()->index(combo->findText(other.Name()), 0));
    QTest::keyClick(combo->view(), Qt::Key_Return);
    TTestLoop::Settle();
    EXPECT_EQ(Below({"Tables"}), QStringList{"elsewhere"});

    // The list is opened and left again after the database has gone.
    Server().Exec("DROP DATABASE " + other.Name());
    show(true);
    show(false);
    EXPECT_EQ(frame.SelectedDatabase(), QString());
    EXPECT_FALSE(FTree->isVisible());
    EXPECT_FALSE(Action("actDatabaseDelete")->isEnabled());
    Server().Exec("CREATE DATABASE " + other.Name()); // it is dropped with its object
}

TEST_F(TObjectsFrameTest, WhatIsGoneLosesItsNode)
{
    OpenDatabase();
    const QString longName(64, QChar(u'ж'));
    Exec("CREATE TABLE `" + longName + "` (id INT)");
    Action("actRefresh")->trigger();
    EXPECT_EQ(Below({"Tables"}).last(), longName);
    Node({"Tables", longName}).SetExpanded(true);
    Focus({"Tables", longName, "Fields"});
    Exec("DROP TABLE `" + longName + "`");
    Action("actRefresh")->trigger();
    EXPECT_EQ(Below({"Tables"}), (QStringList{"cities", "streets"}));
    // Opened only after another session has dropped it.
    Exec("DROP TABLE streets");
    Node({"Tables", "streets"}).SetExpanded(true);
    Action("actRefresh")->trigger();
    EXPECT_EQ(Below({"Tables"}), QStringList{"cities"});
    // A view without its table keeps its node.
    Exec("DROP TABLE cities");
    Node({"Views", "names"}).SetExpanded(true);
    Action("actRefresh")->trigger();
    EXPECT_EQ(Below({"Views"}), QStringList{"names"});
}

} // namespace
