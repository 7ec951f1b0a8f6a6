#include "app/uAppPathUtils.h"
#include "app/uConfig.h"
#include "pages/query/uQueryPageFrame.h"
#include "shell/uAppDialogs.h"
#include "shell/uAppStart.h"
#include "shell/uAppUtils.h"
#include "shell/uWorkbenchFixture.h"
#include "support/uFileUtils.h"
#include "widgets/uGridView.h"

#include <QFile>
#include <QLabel>
#include <QMenuBar>
#include <QTest>
#include <QToolButton>

namespace {

/// Captions of a menu or of the bar, "-" for a separator.
QStringList Captions(const QWidget *menu)
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
    EXPECT_EQ(Captions(Window->menuBar()), (QStringList{"&File", "&Help"}));
    EXPECT_FALSE(IsEnabled("actCloseConnection"));
    EXPECT_FALSE(IsEnabled("actQueryExecute"));
    const auto *windowMenu = Find<QMenu>(Window.get(), "menWindow");
    EXPECT_EQ(Captions(windowMenu), (QStringList{"Close Page", "Close All Pages"}));
    EXPECT_FALSE(windowMenu->actions()[0]->isEnabled());
    QTest::keyClick(Window.get(), Qt::Key_F5); // no page: nothing happens
    EXPECT_FALSE(TAppUtils::Instance().IsConnectionOpened());
}

TEST_F(TMainFormTest, AConnectionBringsItsMenus)
{
    OpenWorkspace();
    EXPECT_EQ(Captions(Window->menuBar()),
              (QStringList{"&File", "&View", "&Schema", "&Query", "&Tools", "&Window", "&Help"}));
    EXPECT_EQ(Find<QAction>(Window.get(), "actQueryExportAsCVS")->text(), "Export as CVS...")
        << "its own way to spell it";
    for (const char *action :
         {"actCloseConnection", "actRefresh", "actQueryNew", "actQueryOpen", "actToolsCharset"})
        EXPECT_TRUE(IsEnabled(action)) << action;
    EXPECT_FALSE(IsEnabled("actQuerySave")) << "there is no query page";
}

TEST_F(TMainFormTest, ADamagedConfigurationIsToldAndLeftAlone)
{
    CloseWindow();
    TAppStart::Finish();
    const QString file = TAppPathUtils::ConfigurationFile();
    const QByteArray damaged = "<config><group name='a'>";
    TFileUtils::WriteBinary(file, damaged);
    ExpectError(file);
    TAppStart::Prepare();
    OpenWindow();
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
    proxy.Vanish();
    Window->NewConnection(std::move(manager), "Gone", "{gone}");
    TManagerFrame *frame = Window->GetActiveManagerFrame();
    ASSERT_NE(frame, nullptr);
    EXPECT_EQ(Find<QLabel>(frame, "labServerVersion")->text(), Value("SELECT VERSION()"));
    EXPECT_TRUE(Find<QLabel>(frame, "labNotRead")->text().startsWith("Not read: "));
    NewQuery("SELECT 1");
    CloseWorkspace();
    EXPECT_FALSE(TAppUtils::Instance().IsConnectionOpened());
}

TEST_F(TMainFormTest, ADatabaseIsAskedForFirst)
{
    TManagerFrame &workspace = OpenWorkspace();
    workspace.Manager().Databases().Count(); // read before the next one comes
    const TTestDatabase made;
    using THow = void (*)(QAbstractItemView * list);
    const auto choose = [&](THow how) {
        Driver.Expect("Select Database", [&made, how](QWidget *dialog) {
            auto *list = Find<QAbstractItemView>(dialog, "lvList");
            TGuiTools::Choose(list, made.Name());
            how(list);
        });
    };
    const THow byKey = [](QAbstractItemView *list) { QTest::keyClick(list, Qt::Key_Return); };
    const THow byMouse = [](QAbstractItemView *list) {
        list->scrollTo(list->currentIndex());
        const QPoint place = list->visualRect(list->currentIndex()).center();
        QTest::mouseDClick(list->viewport(), Qt::LeftButton, {}, place);
    };
    const THow notAtAll = [](QAbstractItemView *list) {
        TGuiTools::Click(list->window(), "butCancel");
    };
    choose(byMouse);
    Trigger("actSchemaOpen");
    EXPECT_EQ(workspace.GetPagesCaption(), QStringList(made.Name()));
    Driver.Expect("Create SQL Dump", [](QWidget *form) { TGuiTools::Click(form, "butCancel"); });
    Trigger("actToolsCreateSQLDump");
    choose(byKey);
    Driver.Expect("Migrate Database", [](QWidget *form) { TGuiTools::Click(form, "butCancel"); });
    Trigger("actToolsMigrateDatabase");
    choose(byKey);
    ExpectJob();
    Trigger("actToolsChecksumDatabase");
    for (const char *action : {"actSchemaOpen", "actToolsMigrateDatabase",
                               "actToolsChecksumDatabase", "actSchemaDelete"}) {
        choose(notAtAll); // and nothing follows
        Trigger(action);
    }
    EXPECT_EQ(workspace.GetPagesCaption().size(), 1);

    for (const bool confirms : {false, true}) {
        choose(byKey);
        Driver.Expect([&](QWidget *box) {
            EXPECT_TRUE(TModalDriver::Describe(box).contains(
                "Do you really want to delete database \"" + made.Name() + "\"?"));
            TGuiTools::Click(box, confirms ? "butYes" : "butNo");
        });
        Trigger("actSchemaDelete");
        EXPECT_EQ(Server().Value("SHOW DATABASES LIKE '" + made.Name() + '\''),
                  confirms ? QString() : made.Name());
    }
    Server().Exec("CREATE DATABASE " + made.Name()); // it is dropped with its object
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
    EXPECT_EQ(Captions(menu),
              (QStringList{"Close Page", "Close All Pages", "-", "Query", "Query"}));
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
    DismissProfiles();
    TGuiTools::Click(add);
    EXPECT_EQ(Driver.Pending(), 0);
    DismissProfiles();
    QTest::mouseDClick(add->parentWidget(), Qt::LeftButton, {},
                       add->geometry().center() + QPoint(2 * add->width(), 0));
    EXPECT_EQ(Driver.Pending(), 0);
}

TEST_F(TMainFormTest, ClosingTheWindowDoesNotBringTheProfilesBack)
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
