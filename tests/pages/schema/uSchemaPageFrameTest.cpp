#include "pages/schema/uSchemaPageFrame.h"

#include "pages/uBothServers.h"
#include "pages/uTabTools.h"
#include "shell/uRecordedDialogs.h"
#include "shell/uWorkbenchFixture.h"

#include <QRegularExpression>
#include <QScrollBar>

namespace {

enum TTab { ttTables, ttViews, ttProcedures, ttFunctions, ttEvents, ttInfo };

class TSchemaPageTest : public TWorkbenchTest
{
protected:
    explicit TSchemaPageTest(TTestServer &server = TTestServer::Instance()) : TWorkbenchTest(server)
    {
        Exec("CREATE TABLE b (id INT PRIMARY KEY) COMMENT 'second'");
        Exec("CREATE TABLE a (id INT) ENGINE=MyISAM CHECKSUM=1 DELAY_KEY_WRITE=1");
        Exec("CREATE SQL SECURITY INVOKER VIEW v AS SELECT id FROM b");
        Exec("CREATE PROCEDURE p() COMMENT 'does one thing' SELECT 1");
        Exec("CREATE FUNCTION f() RETURNS INT DETERMINISTIC RETURN 1");
        Exec("CREATE EVENT e ON SCHEDULE EVERY 2 DAY ON COMPLETION PRESERVE DISABLE DO SELECT 1");
    }

    TSchemaPageFrame &Open()
    {
        if (!Window->GetActiveManagerFrame())
            OpenWorkspace();
        Pages().ShowSchema(Database().Name(), true);
        return *static_cast<TSchemaPageFrame *>(Pages().GetActivePage());
    }
    TPreparedTabs &Tabs(TSchemaPageFrame &page) { return *Find<TPreparedTabs>(&page, "pcTabs"); }
    QStringList List(TSchemaPageFrame &page, int tab) { return TTabTools::Rows(Tabs(page), tab); }
    /// Focuses the object on its tab and gives the tab's action.
    QAction *Action(TSchemaPageFrame &page, int tab, int row, const char *name)
    {
        Tabs(page).setCurrentIndex(tab);
        Tabs(page).widget(tab)->findChild<TGridView *>()->SetFocusedRow(row);
        return Find<QAction>(Tabs(page).widget(tab), name);
    }
};

using TSchemaPageOnBothServers = TOnBothServers<TSchemaPageTest>;
INSTANTIATE_TEST_SUITE_P(Servers, TSchemaPageOnBothServers, testing::Values(skMariaDB, skMySQL),
                         TSchemaPageOnBothServers::Name);

TEST_P(TSchemaPageOnBothServers, ShowsTheObjectsOfADatabaseSideBySide)
{
    TSchemaPageFrame &page = Open();
    EXPECT_EQ(page.GetTitle(), Database().Name());
    EXPECT_EQ(&Open(), &page) << "one page for one database";
    EXPECT_EQ(TTabTools::Captions(Tabs(page)),
              (QStringList{"Tables: 2", "Views: 1", "Procedures: 1", "Functions: 1", "Events: 1",
                           "Info"}));
    EXPECT_EQ(Tabs(page).Frame(ttViews), nullptr) << "a tab costs nothing before it is seen";
    const std::pair<TTab, const char *> rows[] = {
        {ttTables, "^a[|]MyISAM[|]0[|].*[|]Yes[|]No[|].*\nb[|]InnoDB[|]0[|].*[|]second$"},
        {ttViews, "^v[|]None[|]Yes[|]Invoker[|]"},
        {ttProcedures, "^p[|]No[|].*[|]does one thing$"},
        {ttFunctions, "^f[|]Yes[|]"},
        {ttEvents, "^e[|]Disabled[|]Yes[|]Recurring[|]"}};
    for (const auto &[tab, row] : rows)
        EXPECT_TRUE(QRegularExpression(row).match(List(page, tab).join('\n')).hasMatch())
            << List(page, tab).join('\n').toStdString();
    EXPECT_EQ(List(page, ttInfo).first(), "Name|" + Database().Name());
}

TEST_F(TSchemaPageTest, ANewObjectTurnsToItsTabOnlyWhenItWasMade)
{
    TRecordedDialogs dialogs;
    TSchemaPageFrame &page = Open();
    Tabs(page).setCurrentIndex(ttFunctions);
    dialogs.Confirms = false;
    Find<QAction>(&page, "actCreateTable")->trigger();
    EXPECT_EQ(Tabs(page).currentIndex(), ttFunctions);
    dialogs.Confirms = true;
    dialogs.NewName = "b";
    Find<QAction>(&page, "actCreateTable")->trigger();
    EXPECT_EQ(Tabs(page).currentIndex(), ttTables);
    Open();
    Tabs(page).setCurrentIndex(ttInfo);
    Find<QAction>(&page, "actUpdate")->trigger();
    EXPECT_EQ(Tabs(page).currentIndex(), ttInfo);
    dialogs.Take();

    Action(page, ttEvents, 0, "actUpdate")->trigger();
    Action(page, ttEvents, 0, "actCreate")->trigger();
    const QString on = "event|" + Database().Name();
    EXPECT_EQ(dialogs.Take(), (QStringList{on + "||e|", on + "|||"}));
}

TEST_F(TSchemaPageTest, ARefreshKeepsThePlaceInAList)
{
    for (int i = 0; i < 60; ++i)
        Exec(QString("CREATE TABLE many_%1 (id INT)").arg(i, 2, 10, QChar('0')));
    TSchemaPageFrame &page = Open();
    auto *grid = Tabs(page).widget(ttTables)->findChild<TGridView *>();
    grid->SetFocusedRow(50);
    const auto focused = [&] { return grid->currentIndex().siblingAtColumn(0).data().toString(); };
    const QString before = focused();
    const int scrolled = grid->verticalScrollBar()->value();
    ASSERT_GT(scrolled, 0);
    Exec("CREATE TABLE many_later (id INT)");
    Find<QAction>(&page, "actRefresh")->trigger();
    EXPECT_EQ(Tabs(page).tabText(ttTables), "Tables: 63");
    EXPECT_EQ(focused(), before);
    EXPECT_EQ(grid->verticalScrollBar()->value(), scrolled);
}

TEST_F(TSchemaPageTest, ComesBackWithItsServer)
{
    TTcpProxy proxy(Server().Host(), Server().Port());
    OpenWorkspaceBehind(proxy);
    TSchemaPageFrame &page = Open();
    proxy.Vanish();
    Trigger("actRefresh");
    EXPECT_EQ(Tabs(page).tabText(ttTables), "Tables: 0");
    proxy.Resume();
    Find<QAction>(&page, "actRefresh")->trigger();
    EXPECT_EQ(Tabs(page).tabText(ttTables), "Tables: 2");
}

TEST_F(TSchemaPageTest, ADroppedDatabaseLeavesAnEmptyPage)
{
    TSchemaPageFrame &page = Open();
    List(page, ttViews);
    Server().Exec("DROP DATABASE " + Database().Name());
    Workspace().RefreshManager();
    EXPECT_EQ(TTabTools::Captions(Tabs(page)),
              (QStringList{"Tables: 0", "Views: 0", "Procedures: 0", "Functions: 0", "Events: 0",
                           "Info"}));
    for (const TTab tab : {ttTables, ttViews}) {
        EXPECT_EQ(List(page, tab), QStringList());
        EXPECT_FALSE(Find<QAction>(Tabs(page).widget(tab), "actOpen")->isEnabled());
    }
    EXPECT_EQ(List(page, ttInfo), (QStringList{"Name|", "Collation|"}));
    Server().Exec("CREATE DATABASE " + Database().Name()); // the fixture drops it
}

} // namespace
