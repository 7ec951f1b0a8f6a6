#include "pages/schema/uSchemaPageFrame.h"

#include "pages/query/uQueryPageFrame.h"
#include "pages/structure/uTablePageFrame.h"
#include "pages/uTabTools.h"
#include "shell/uRecordedDialogs.h"
#include "shell/uWorkbenchFixture.h"
#include "widgets/uVerticalGrid.h"

#include <QFile>
#include <QLineEdit>
#include <QScrollBar>
#include <gmock/gmock.h>

namespace {

enum TTab { ttTables, ttViews, ttProcedures, ttFunctions, ttEvents, ttInfo };

class TSchemaPageTest : public TWorkbenchTest
{
protected:
    TSchemaPageTest()
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

TEST_F(TSchemaPageTest, ShowsTheObjectsOfADatabaseSideBySide)
{
    TSchemaPageFrame &page = Open();
    EXPECT_EQ(page.GetTitle(), Database().Name());
    EXPECT_EQ(&Open(), &page) << "one page for one database";
    EXPECT_EQ(TTabTools::Captions(Tabs(page)),
              (QStringList{"Tables: 2", "Views: 1", "Procedures: 1", "Functions: 1", "Events: 1",
                           "Info"}));
    EXPECT_EQ(Tabs(page).Frame(ttViews), nullptr) << "a tab costs nothing before it is seen";
    const QStringList tables = List(page, ttTables);
    ASSERT_EQ(tables.size(), 2);
    EXPECT_TRUE(tables[0].startsWith("a|MyISAM|0|")) << tables[0].toStdString();
    EXPECT_TRUE(tables[0].contains("|Yes|No|")) << tables[0].toStdString();
    EXPECT_TRUE(tables[1].startsWith("b|InnoDB|0|"));
    EXPECT_TRUE(tables[1].endsWith("|second"));
    EXPECT_TRUE(List(page, ttViews).first().startsWith("v|None|Yes|Invoker|"))
        << List(page, 1)[0].toStdString();
    EXPECT_TRUE(List(page, ttProcedures).first().startsWith("p|No|"));
    EXPECT_TRUE(List(page, ttProcedures).first().endsWith("|does one thing"));
    EXPECT_TRUE(List(page, ttFunctions).first().startsWith("f|Yes|"));
    EXPECT_TRUE(List(page, ttEvents).first().startsWith("e|Disabled|Yes|Recurring|"))
        << List(page, ttEvents).first().toStdString();
    EXPECT_EQ(List(page, ttInfo).first(), "Name|" + Database().Name());
}

TEST_F(TSchemaPageTest, ActionsOpenRenameAndDeleteTheFocusedObject)
{
    TSchemaPageFrame &page = Open();
    Driver.Expect([](QWidget *dialog) {
        Find<QLineEdit>(dialog, "edName")->setText("z");
        TGuiTools::Click(dialog, "butOK");
    });
    Action(page, ttTables, 1, "actRename")->trigger();
    EXPECT_EQ(Value("SHOW TABLES LIKE 'z'"), "z");
    EXPECT_TRUE(List(page, ttTables)[1].startsWith("z|"));
    Driver.ExpectMessage("Do you really want to delete routine \"f\"?", QMessageBox::Yes);
    Action(page, ttFunctions, 0, "actDelete")->trigger();
    EXPECT_EQ(Tabs(page).tabText(ttFunctions), "Functions: 0");
    EXPECT_EQ(List(page, ttFunctions), QStringList());
    EXPECT_FALSE(Find<QAction>(Tabs(page).widget(ttFunctions), "actOpen")->isEnabled())
        << "nothing is focused";
    Action(page, ttTables, 0, "actOpen")->trigger();
    auto *table = qobject_cast<TTablePageFrame *>(Pages().GetActivePage());
    ASSERT_NE(table, nullptr);
    EXPECT_EQ(table->GetTableOrViewName(), "a");
}

TEST_F(TSchemaPageTest, ANewRoutineOpensAQueryAndItsTab)
{
    TSchemaPageFrame &page = Open();
    Find<QAction>(&page, "actCreateFunction")->trigger();
    auto *query = qobject_cast<TQueryPageFrame *>(Pages().GetActivePage());
    ASSERT_NE(query, nullptr);
    EXPECT_TRUE(query->GetText().contains("FUNCTION"));
    EXPECT_EQ(Tabs(page).currentIndex(), ttFunctions);
    EXPECT_EQ(Tabs(page).Frame(ttFunctions), nullptr) << "nobody has seen it yet";
    Pages().SelectPrevPage(); // no redraw in between
    ASSERT_EQ(Pages().GetActivePage(), &page);
    ASSERT_NE(Tabs(page).Frame(ttFunctions), nullptr);
    EXPECT_EQ(Tabs(page).widget(ttFunctions)->findChild<TGridView *>()->model()->rowCount(), 1);
}

TEST_F(TSchemaPageTest, AJobLeavesTheTabAlone)
{
    TSchemaPageFrame &page = Open();
    Tabs(page).setCurrentIndex(ttViews);
    const QString file = FilePath("dump.sql");
    Driver.Expect([&](QWidget *dialog) {
        Driver.ExpectFile(file);
        auto *row = dialog->findChild<TVerticalGrid *>()->Row("rowFileName");
        Q_EMIT row->OnButton(row, "Select");
        ExpectJob();
        TGuiTools::Click(dialog, "butOK");
    });
    Find<QAction>(&page, "actCreateSqlDump")->trigger();
    EXPECT_TRUE(QFile::exists(file));
    EXPECT_EQ(Tabs(page).currentIndex(), ttViews);
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

    dialogs.NewName = "v";
    Action(page, ttViews, 0, "actUpdate")->trigger();
    Action(page, ttEvents, 0, "actUpdate")->trigger();
    Action(page, ttEvents, 0, "actCreate")->trigger();
    const QString on = Database().Name();
    EXPECT_EQ(dialogs.Take(),
              (QStringList{"view|" + on + "||v|", "event|" + on + "||e|", "event|" + on + "|||"}));
}

TEST_F(TSchemaPageTest, ListsAreNamedForScreenReadersAndExplainTheirShortHeads)
{
    TSchemaPageFrame &page = Open();
    for (int tab = ttTables; tab <= ttEvents; ++tab) {
        Tabs(page).setCurrentIndex(tab);
        EXPECT_FALSE(Tabs(page).widget(tab)->findChild<TGridView *>()->accessibleName().isEmpty());
    }
    Tabs(page).setCurrentIndex(ttViews);
    const QAbstractItemModel *views = Tabs(page).widget(ttViews)->findChild<TGridView *>()->model();
    EXPECT_EQ(views->headerData(2, Qt::Horizontal).toString(), "UPD");
    EXPECT_EQ(views->headerData(2, Qt::Horizontal, Qt::ToolTipRole).toString(), "Updatable");
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
    EXPECT_EQ(List(page, ttTables), QStringList());
    EXPECT_EQ(List(page, ttViews), QStringList());
    EXPECT_EQ(List(page, ttInfo), (QStringList{"Name|", "Collation|"}));
    Server().Exec("CREATE DATABASE " + Database().Name()); // the fixture drops it
}

TEST_F(TSchemaPageTest, TheChecksumOfADatabaseIsShownByItsJob)
{
    OpenWorkspace(Database().Name());
    Answer("butOK");
    ExpectJob();
    Trigger("actSchemaChecksumData");
    EXPECT_THAT(JobLog.toStdString(),
                testing::HasSubstr("Table \"b\" = 0\n---\nDatabase checksum = "));
    EXPECT_THAT(JobLog.toStdString(), testing::HasSubstr("Task completed ("));
}

} // namespace
