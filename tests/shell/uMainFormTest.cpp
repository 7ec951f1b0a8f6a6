#include "app/uAppPathUtils.h"
#include "app/uConfig.h"
#include "model/uDbmManager.h"
#include "pages/query/uQueryPageFrame.h"
#include "shell/uAppDialogs.h"
#include "shell/uAppMessages.h"
#include "shell/uAppStart.h"
#include "shell/uAppUtils.h"
#include "shell/uManagerFrame.h"
#include "shell/uPageManagerFrame.h"
#include "shell/uWorkbenchFixture.h"
#include "support/uFileUtils.h"
#include "uTcpProxy.h"
#include "widgets/uGridView.h"

#include <QAction>
#include <QFile>
#include <QLabel>
#include <QMenu>
#include <QMenuBar>
#include <QTest>
#include <QToolButton>
#include <gtest/gtest.h>

namespace {

QStringList BarCaptions(const QMainWindow &window)
{
    QStringList captions;
    for (const QAction *action : window.menuBar()->actions())
        if (action->isVisible())
            captions += action->text();
    return captions;
}

/// Captions of a menu, "-" for a separator.
QStringList Entries(const QMenu *menu)
{
    QStringList captions;
    for (const QAction *action : menu->actions())
        if (action->isVisible())
            captions += action->isSeparator() ? QString("-") : action->text();
    return captions;
}

using TMainFormTest = TWorkbenchTest;

TEST_F(TMainFormTest, WithoutAConnectionThereAreFileAndHelp)
{
    EXPECT_EQ(Window->windowTitle(), "Korvane");
    EXPECT_EQ(BarCaptions(*Window), (QStringList{"&File", "&Help"}));
    EXPECT_FALSE(IsEnabled("actCloseConnection"));
    EXPECT_FALSE(IsEnabled("actQueryExecute"));
    const auto *windowMenu = Find<QMenu>(Window.get(), "menWindow");
    EXPECT_EQ(Entries(windowMenu), (QStringList{"Close Page", "Close All Pages"}));
    EXPECT_FALSE(windowMenu->actions()[0]->isEnabled());
    QTest::keyClick(Window.get(), Qt::Key_F5); // no page: nothing happens
    EXPECT_FALSE(TAppUtils::Instance().IsConnectionOpened());
}

TEST_F(TMainFormTest, AConnectionBringsItsMenus)
{
    OpenWorkspace();
    EXPECT_EQ(BarCaptions(*Window),
              (QStringList{"&File", "&View", "&Schema", "&Query", "&Tools", "&Window", "&Help"}));
    EXPECT_EQ(Entries(Find<QMenu>(Window.get(), "menFile")),
              (QStringList{"New Connection...", "Close Connection", "-", "Exit"}));
    EXPECT_EQ(Entries(Find<QMenu>(Window.get(), "menView")),
              (QStringList{"Select Charset...", "-", "Refresh"}));
    EXPECT_EQ(Entries(Find<QMenu>(Window.get(), "menHelp")),
              (QStringList{"Korvane Home Page", "-", "About Korvane"}));
    EXPECT_EQ(Entries(Find<QMenu>(Window.get(), "menSchema")),
              (QStringList{"Create...", "-", "Open", "-", "Create Table...", "Create View...",
                           "Create Procedure...", "Create Function...", "Create Event...", "-",
                           "Migrate...", "Clone...", "Create SQL Dump...", "-",
                           "Checksum Data (CRC32)...", "-", "Modify...", "Delete..."}));
    EXPECT_EQ(Entries(Find<QMenu>(Window.get(), "menQuery")),
              (QStringList{"New", "Open...", "Reopen Closed Query", "-", "Save", "Save As...", "-",
                           "Duplicate", "-", "Execute", "Execute Selected", "-", "Export as CVS...",
                           "Export as Text"}));
    EXPECT_EQ(Entries(Find<QMenu>(Window.get(), "menTools")),
              (QStringList{"Execute SQL Dump...", "-", "Server", "Other"}));
    for (const char *action :
         {"actCloseConnection", "actRefresh", "actQueryNew", "actQueryOpen", "actToolsCharset"})
        EXPECT_TRUE(IsEnabled(action)) << action;
    EXPECT_FALSE(IsEnabled("actQuerySave")) << "there is no query page";
}

TEST_F(TMainFormTest, ADamagedConfigurationIsToldAndLeftAlone)
{
    Window->close();
    TTestLoop::Settle();
    Window.reset();
    TAppStart::Finish();
    const QString file = TAppPathUtils::ConfigurationFile();
    const QByteArray damaged = "<config><group name='a'>";
    TFileUtils::WriteBinary(file, damaged);
    ExpectError(file);
    TAppStart::Prepare();
    Window = std::make_unique<TMainForm>();
    Driver.Expect("frmProfiles", [](QWidget *form) { TGuiTools::Click(form, "butClose"); });
    Window->show();
    ASSERT_TRUE(TTestLoop::RunUntil([this] { return Driver.Pending() == 0; }));
    OpenWorkspace();
    NewQuery("SELECT 1");
    Trigger("actQueryExecute");
    EXPECT_EQ(QueryPage().GetExecutedText(), "SELECT 1") << "the program goes on";
    Window->close();
    TAppStart::Finish();
    QByteArray bytes;
    TFileUtils::ReadBinary(file, bytes);
    EXPECT_EQ(bytes, damaged);
    TConfig::ForgetUnreadable(file);
    QFile::remove(file);
    TAppStart::Prepare();
}

TEST_F(TMainFormTest, ABoundConnectionCannotMakeOrDropDatabases)
{
    OpenWorkspace(Database().Name());
    EXPECT_FALSE(Find<QAction>(Window.get(), "actSchemaCreate")->isVisible());
    EXPECT_FALSE(Find<QAction>(Window.get(), "actSchemaDelete")->isVisible());
    EXPECT_TRUE(Find<QAction>(Window.get(), "actSchemaUpdate")->isVisible());
    OpenWorkspace();
    EXPECT_TRUE(Find<QAction>(Window.get(), "actSchemaCreate")->isVisible());
}

TEST_F(TMainFormTest, AWorkspaceWhoseServerIsGoneAlreadyOpensAndCloses)
{
    TTcpProxy proxy(Server().Host(), Server().Port());
    TDbmConnectionProfile profile = Profile();
    profile.Port = proxy.Port();
    auto manager = TDbmManager::Create();
    manager->SetParams(profile);
    manager->Connect();
    proxy.Refuse();
    proxy.Cut();
    Window->NewConnection(std::move(manager), "Gone", "{gone}");
    TManagerFrame *frame = Window->GetActiveManagerFrame();
    ASSERT_NE(frame, nullptr);
    EXPECT_EQ(Find<QLabel>(frame, "labServerVersion")->text(), Value("SELECT VERSION()"));
    EXPECT_TRUE(Find<QLabel>(frame, "labNotRead")->text().startsWith("Not read: "));
    NewQuery("SELECT 1");
    Driver.Expect("frmProfiles", [](QWidget *form) { TGuiTools::Click(form, "butClose"); });
    Trigger("actCloseConnection");
    EXPECT_TRUE(TTestLoop::RunUntil([this] { return Driver.Pending() == 0; }));
}

TEST_F(TMainFormTest, ADatabaseIsAskedForFirst)
{
    Exec("CREATE TABLE t (id INT)");
    TManagerFrame &workspace = OpenWorkspace();
    const auto choose = [this](bool confirms) {
        Driver.Expect("Select Database", [this, confirms](QWidget *dialog) {
            auto *list = Find<TGridView>(dialog, "lvList");
            for (int row = 0; row < list->model()->rowCount(); ++row)
                if (list->model()->index(row, 0).data().toString() == Database().Name())
                    list->SetFocusedRow(row);
            if (confirms)
                QTest::keyClick(list, Qt::Key_Return);
            else
                TGuiTools::Click(dialog, "butCancel");
        });
    };
    choose(true);
    Trigger("actSchemaOpen");
    EXPECT_EQ(workspace.GetPagesCaption(), QStringList(Database().Name()));
    const char *const tools[][2] = {{"actToolsCreateSQLDump", "Create SQL Dump"},
                                    {"actToolsMigrateDatabase", "Migrate Database"}};
    for (const auto &[action, title] : tools) {
        if (QString(action) == "actToolsMigrateDatabase")
            choose(true);
        Driver.Expect(title, [](QWidget *dialog) { TGuiTools::Click(dialog, "butCancel"); });
        Trigger(action);
    }
    choose(true);
    Driver.Expect("frmWorker", [](QWidget *job) {
        EXPECT_TRUE(
            TTestLoop::RunUntil([job] { return job->windowTitle().endsWith(" - Finished"); }));
        TGuiTools::Click(job, "butClose");
    });
    Trigger("actToolsChecksumDatabase");
    for (const char *action : {"actSchemaOpen", "actToolsMigrateDatabase",
                               "actToolsChecksumDatabase", "actSchemaDelete"}) {
        choose(false); // and nothing follows
        Trigger(action);
    }
    EXPECT_EQ(workspace.GetPagesCaption().size(), 1);

    for (const bool confirms : {false, true}) {
        choose(true);
        Driver.Expect([this, confirms](QWidget *box) {
            EXPECT_TRUE(TModalDriver::Describe(box).contains(
                "Do you really want to delete database \"" + Database().Name() + "\"?"));
            TGuiTools::Click(box, confirms ? "butYes" : "butNo");
        });
        Trigger("actSchemaDelete");
        EXPECT_EQ(Server().Value("SELECT COUNT(*) FROM information_schema.schemata WHERE "
                                 "schema_name = '" +
                                 Database().Name() + '\''),
                  confirms ? "0" : "1");
    }
    Server().Exec("CREATE DATABASE " + Database().Name());
}

TEST_F(TMainFormTest, ACommandRunsBehindItsQuestion)
{
    TDbmCommand &command = OpenWorkspace().Manager().Command();
    const QString make = "CREATE TABLE " + Database().Name() + ".t (id INT);\nDROP TABLE " +
                         Database().Name() + ".t;\nCREATE TABLE " + Database().Name() +
                         ".%1 (a INT)";
    EXPECT_TRUE(TAppDialogs::ExecuteCommand(command, make.arg("u"), ""));
    for (const bool confirms : {false, true}) {
        Driver.Expect([confirms](QWidget *box) {
            EXPECT_TRUE(TModalDriver::Describe(box).contains("Really?"));
            TGuiTools::Click(box, confirms ? "butYes" : "butNo");
        });
        EXPECT_EQ(
            TAppDialogs::ExecuteCommand(command, make.arg(confirms ? "yes" : "no"), "Really?"),
            confirms);
    }
    EXPECT_EQ(Rows("SHOW TABLES"), (QList<QStringList>{{"u"}, {"yes"}}));
}

TEST_F(TMainFormTest, TheWorkspaceSaysWhereItIs)
{
    TManagerFrame &workspace = OpenWorkspace();
    EXPECT_EQ(workspace.GetTitle(), "Test server");
    EXPECT_EQ(Find<QLabel>(&workspace, "labProfile")->text(), Profile().GetDisplayString());
    EXPECT_EQ(Find<QLabel>(&workspace, "labServerVersion")->text(), Value("SELECT VERSION()"));
    const auto *hint = Find<QLabel>(&workspace, "labHint");
    EXPECT_TRUE(hint->isVisible()) << "what to do in an empty workspace";
    NewQuery("");
    EXPECT_FALSE(hint->isVisible());
    Trigger("actWindowClosePage");
    EXPECT_TRUE(hint->isVisible());
}

TEST_F(TMainFormTest, TheWindowMenuFollowsThePages)
{
    OpenWorkspace();
    NewQuery("SELECT 1");
    NewQuery("SELECT 2");
    auto *menu = Find<QMenu>(Window.get(), "menWindow");
    EXPECT_EQ(Entries(menu), (QStringList{"Close Page", "Close All Pages", "-", "Query", "Query"}));
    EXPECT_TRUE(menu->actions()[4]->isChecked());
    menu->actions()[3]->trigger();
    EXPECT_EQ(QueryPage().GetText(), "SELECT 1");
    Find<QAction>(Window.get(), "actWindowClosePage")->trigger();
    EXPECT_EQ(QueryPage().GetText(), "SELECT 2");
    Find<QAction>(Window.get(), "actWindowCloseAllPages")->trigger();
    EXPECT_FALSE(IsEnabled("actQueryExecute"));
}

TEST_F(TMainFormTest, GlobalKeysTurnPagesAndRunTheQuery)
{
    TManagerFrame &workspace = OpenWorkspace();
    NewQuery("SELECT 1");
    NewQuery("SELECT 42 AS answer");
    QWidget *editor = QApplication::focusWidget();
    ASSERT_NE(editor, nullptr);
    QTest::keyClick(editor, Qt::Key_F5);
    EXPECT_EQ(QueryPage().GetExecutedText(), "SELECT 42 AS answer");
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab, Qt::ControlModifier);
    EXPECT_EQ(QueryPage().GetText(), "SELECT 1");
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Backtab,
                    Qt::ControlModifier | Qt::ShiftModifier);
    EXPECT_EQ(QueryPage().GetText(), "SELECT 42 AS answer");
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Q, Qt::ControlModifier);
    EXPECT_EQ(workspace.GetPagesCaption().size(), 3);
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_F4, Qt::ControlModifier);
    EXPECT_EQ(workspace.GetPagesCaption().size(), 2);
}

TEST_F(TMainFormTest, PlusAndADoubleClickBehindTheTabsOpenAConnection)
{
    OpenWorkspace();
    const auto *pages = Find<TPageManagerFrame>(Window.get(), "managersPageManager");
    auto *add = Find<QToolButton>(pages, "butNewPage");
    const auto expect = [this] {
        Driver.Expect("frmProfiles", [](QWidget *form) { TGuiTools::Click(form, "butClose"); });
    };
    expect();
    TGuiTools::Click(add);
    EXPECT_EQ(Driver.Pending(), 0);
    expect();
    QTest::mouseDClick(add->parentWidget(), Qt::LeftButton, {},
                       add->geometry().center() + QPoint(2 * add->width(), 0));
    EXPECT_EQ(Driver.Pending(), 0);
}

TEST_F(TMainFormTest, ClosingTheLastConnectionBringsTheProfilesBack)
{
    OpenWorkspace();
    Driver.Expect("frmProfiles", [](QWidget *form) { TGuiTools::Click(form, "butClose"); });
    Trigger("actCloseConnection");
    EXPECT_TRUE(TTestLoop::RunUntil([this] { return Driver.Pending() == 0; }));
    EXPECT_FALSE(TAppUtils::Instance().IsConnectionOpened());
}

TEST_F(TMainFormTest, ClosingTheWindowDoesNot)
{
    OpenWorkspace();
    Trigger("actExit");
    TTestLoop::Settle(); // an unexpected dialog would be the driver's failure
    EXPECT_FALSE(Window->isVisible());
}

TEST_F(TMainFormTest, RefreshReadsAnewWhatIsLookedAt)
{
    TManagerFrame &workspace = OpenWorkspace();
    int statements = 0;
    QObject::connect(&workspace, &TManagerFrame::OnCommandBeforeExecute, &workspace,
                     [&] { ++statements; });
    workspace.Manager().Charsets().Count();
    EXPECT_EQ(statements, 1);
    Trigger("actRefresh");
    EXPECT_EQ(statements, 2) << "the databases, which are on the screen; the rest is marked";
    workspace.Manager().Charsets().Count();
    EXPECT_EQ(statements, 3);
}

TEST_F(TMainFormTest, ACharsetIsChosenFromTheServersList)
{
    TManagerFrame &workspace = OpenWorkspace();
    Driver.Expect("Select Charset", [](QWidget *form) {
        const auto *list = Find<TGridView>(form, "lvCharsets");
        EXPECT_EQ(list->model()->index(list->FocusedRow(), 0).data().toString(), "utf8mb4");
        EXPECT_GT(list->model()->rowCount(), 20);
        TGuiTools::Click(form, "butOK");
    });
    const auto session = [&] {
        QString number;
        workspace.Manager().Command().ExecuteQuery(
            "SELECT CONNECTION_ID() AS id",
            [&](TDataSet *rows) { number = rows->FieldByName("id").DisplayText(); });
        return number;
    };
    const QString before = session();
    Trigger("actToolsCharset");
    EXPECT_NE(session(), before) << "the session is dropped and comes back by itself";
}

TEST_F(TMainFormTest, AboutTellsTheVersion)
{
    Driver.Expect("frmAbout", [](QWidget *box) {
        EXPECT_TRUE(Find<QLabel>(box, "labAbout")->text().contains("Korvane 6"));
        TGuiTools::Click(box, "butOK");
    });
    Trigger("actAbout");
}

} // namespace
