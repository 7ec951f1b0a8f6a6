#include "pages/schema/uSchemaPageFrame.h"

#include "model/uDbmManager.h"
#include "pages/query/uQueryPageFrame.h"
#include "pages/structure/uTablePageFrame.h"
#include "pages/uTabTools.h"
#include "shell/uAppManagerPageUtils.h"
#include "shell/uAppMessages.h"
#include "shell/uManagerFrame.h"
#include "shell/uPageManagerFrame.h"
#include "shell/uWorkbenchFixture.h"

#include <QAction>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
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
    TAppManagerPageUtils &Pages() { return Window->GetActiveManagerFrame()->PageUtils(); }
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
        Find<QPushButton>(dialog, "butOK")->click();
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
}

TEST_F(TSchemaPageTest, ADroppedDatabaseLeavesAnEmptyPage)
{
    TSchemaPageFrame &page = Open();
    List(page, ttViews);
    Server().Exec("DROP DATABASE " + Database().Name());
    Window->GetActiveManagerFrame()->RefreshManager();
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
    QString log;
    Driver.Expect([](QWidget *dialog) { Find<QPushButton>(dialog, "butOK")->click(); });
    Driver.Expect("frmWorker", [&](QWidget *job) {
        ASSERT_TRUE(TTestLoop::RunUntil([&] { return job->windowTitle().endsWith("- Finished"); }));
        log = Find<QPlainTextEdit>(job, "memLog")->toPlainText();
        Find<QPushButton>(job, "butClose")->click();
    });
    Trigger("actSchemaChecksumData");
    EXPECT_THAT(log.toStdString(),
                testing::HasSubstr("Table \"b\" = 0\n---\nDatabase checksum = "));
    EXPECT_THAT(log.toStdString(), testing::HasSubstr("Task completed ("));
}

} // namespace
