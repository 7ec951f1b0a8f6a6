#include "app/uAppPathUtils.h"
#include "app/uConfig.h"
#include "pages/query/uQueryPageFrame.h"
#include "shell/uAppDialogs.h"
#include "shell/uAppStart.h"
#include "shell/uAppUtils.h"
#include "shell/uWorkbenchFixture.h"
#include "support/uFileUtils.h"

#include <QFile>
#include <QLabel>
#include <QMenuBar>
#include <QTest>

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

TEST_F(TMainFormTest, MenusFollowConnectionsAndPages)
{
    EXPECT_EQ(Captions(Window->menuBar()), (QStringList{"&File", "&Help"}));
    QTest::keyClick(Window.get(), Qt::Key_F5); // no page: nothing happens

    OpenWorkspace(Database().Name());
    EXPECT_EQ(Captions(Window->menuBar()),
              (QStringList{"&File", "&View", "&Schema", "&Query", "&Tools", "&Window", "&Help"}));
    const auto isVisible = [this](const char *action) {
        return Find<QAction>(Window.get(), action)->isVisible();
    };
    EXPECT_FALSE(isVisible("actSchemaCreate") || isVisible("actSchemaDelete"))
        << "a bound connection makes and drops no databases";
    EXPECT_TRUE(isVisible("actSchemaUpdate"));
    TManagerFrame &workspace = OpenWorkspace();
    EXPECT_TRUE(isVisible("actSchemaCreate"));
    EXPECT_FALSE(IsEnabled("actQueryExecute")) << "there is no query page";

    const auto *hint = Find<QLabel>(&workspace, "labHint");
    EXPECT_TRUE(hint->isVisible()) << "what to do in an empty workspace";
    NewQuery("SELECT 1");
    EXPECT_FALSE(hint->isVisible());
    NewQuery("SELECT 2");
    const auto *menu = Find<QMenu>(Window.get(), "menWindow");
    EXPECT_EQ(Captions(menu),
              (QStringList{"Close Page", "Close All Pages", "-", "Query", "Query"}));
    EXPECT_TRUE(menu->actions()[4]->isChecked());
    menu->actions()[3]->trigger();
    EXPECT_EQ(QueryPage().GetText(), "SELECT 1");
    Trigger("actWindowClosePage");
    EXPECT_EQ(QueryPage().GetText(), "SELECT 2");
    Trigger("actWindowCloseAllPages");
    EXPECT_FALSE(IsEnabled("actQueryExecute"));
    EXPECT_TRUE(hint->isVisible());
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
    choose(byKey);
    ExpectJob();
    Trigger("actToolsChecksumDatabase");
    for (const char *action : {"actSchemaOpen", "actToolsMigrateDatabase", "actSchemaDelete"}) {
        choose(notAtAll); // and nothing follows
        Trigger(action);
    }
    EXPECT_EQ(workspace.GetPagesCaption().size(), 1);

    for (const bool confirms : {false, true}) {
        choose(byKey);
        Driver.ExpectMessage("Do you really want to delete database \"" + made.Name() + "\"?",
                             confirms ? QMessageBox::Yes : QMessageBox::No);
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
        Driver.ExpectMessage("Really?", confirms ? QMessageBox::Yes : QMessageBox::No);
        EXPECT_EQ(
            TAppDialogs::ExecuteCommand(command, make.arg(confirms ? "yes" : "no"), "Really?"),
            confirms);
    }
    EXPECT_EQ(Rows("SHOW TABLES"), (QList<QStringList>{{"u"}, {"yes"}}));
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

} // namespace
