#include "pages/structure/uTablePageFrame.h"

#include "pages/structure/uTableFrame.h"
#include "pages/uBothServers.h"
#include "pages/uTabTools.h"
#include "shell/uAppManagerUtils.h"
#include "shell/uAppMessages.h"
#include "shell/uRecordedDialogs.h"
#include "shell/uWorkbenchFixture.h"

#include <QLineEdit>

namespace {

enum TTab {
    ttData,
    ttStructure,
    ttFields,
    ttIndexes,
    ttReferences,
    ttDependencies,
    ttTriggers,
    ttInfo,
    ttDDL
};
enum TViewTab { vtData, vtFields, vtInfo };

class TTablePageTest : public TWorkbenchTest
{
protected:
    explicit TTablePageTest(TTestServer &server = TTestServer::Instance()) : TWorkbenchTest(server)
    {
        Exec("CREATE TABLE parent (id INT PRIMARY KEY)");
        Exec(
            "CREATE TABLE t (id INT AUTO_INCREMENT PRIMARY KEY, name VARCHAR(20) NOT NULL DEFAULT "
            "'x' COMMENT 'what it is called', parent_id INT, UNIQUE KEY by_name (name), CONSTRAINT "
            "to_parent FOREIGN KEY (parent_id) REFERENCES parent (id) ON DELETE CASCADE)");
        Exec("CREATE TRIGGER on_t BEFORE INSERT ON t FOR EACH ROW SET NEW.name = 'y'");
        Exec("CREATE VIEW v AS SELECT id, name FROM t");
    }

    TTablePageFrame &Open(const QString &name)
    {
        if (!Window->GetActiveManagerFrame())
            OpenWorkspace();
        Pages().ShowTable(Database().Name(), name, true);
        return *static_cast<TTablePageFrame *>(Pages().GetActivePage());
    }
    TPreparedTabs &Tabs(TTablePageFrame &page) { return *Find<TPreparedTabs>(&page, "pcTabs"); }

    QStringList Captions(TTablePageFrame &page) { return TTabTools::Captions(Tabs(page)); }
    QStringList List(TTablePageFrame &page, int tab) { return TTabTools::Rows(Tabs(page), tab); }
};

using TTablePageOnBothServers = TOnBothServers<TTablePageTest>;
INSTANTIATE_TEST_SUITE_P(Servers, TTablePageOnBothServers, testing::Values(skMariaDB, skMySQL),
                         TTablePageOnBothServers::Name);

TEST_P(TTablePageOnBothServers, ShowsHowATableIsMade)
{
    TTablePageFrame &page = Open("t");
    EXPECT_EQ(page.GetTitle(), Database().Name() + ".t");
    EXPECT_EQ(Captions(page), (QStringList{"Data", "Fields: 3", "Indexes: 3", "References: 1",
                                           "Triggers: 1", "Info", "DDL"}));
    EXPECT_EQ(Tabs(page).Frame(ttFields), nullptr) << "a tab costs nothing before it is seen";
    const QStringList fields = List(page, ttFields);
    ASSERT_EQ(fields.size(), 3);
    EXPECT_EQ(fields[1], "2|name|varchar(20)|||x|unique||||what it is called");
    EXPECT_TRUE(fields[2].contains("parent.id|")) << fields[2].toStdString();
    EXPECT_TRUE(List(page, ttIndexes).contains("by_name|unique|name"))
        << List(page, ttIndexes).join('\n').toStdString();
    EXPECT_EQ(List(page, ttReferences),
              QStringList{"to_parent|parent_id|parent(id)|cascade|restrict"});
    EXPECT_EQ(List(page, ttTriggers), QStringList{"on_t|before insert"});
    EXPECT_EQ(List(page, ttInfo).mid(0, 2), (QStringList{"Table name|t", "Engine|InnoDB"}));
    Tabs(page).setCurrentIndex(ttDDL);
    EXPECT_TRUE(Find<TTextEditor>(Tabs(page).widget(ttDDL), "edEditor")
                    ->Text()
                    .startsWith("CREATE TABLE `t`"));
}

TEST_P(TTablePageOnBothServers, AViewHasRowsColumnsAndProperties)
{
    TTablePageFrame &page = Open("v");
    EXPECT_EQ(Captions(page), (QStringList{"Data", "Fields: 2", "Info"}));
    List(page, vtFields);
    const auto *grid = Tabs(page).widget(vtFields)->findChild<TGridView *>();
    EXPECT_TRUE(grid->isColumnHidden(6));
    EXPECT_FALSE(Find<QAction>(Tabs(page).widget(vtFields), "actDelete")->isEnabled());
    EXPECT_EQ(List(page, vtInfo).mid(0, 4),
              (QStringList{"View name|v", "Check option|None", "Updatable|Yes",
                           "Security type|Definer"}));
}

TEST_F(TTablePageTest, ThePageFollowsItsTable)
{
    TTablePageFrame &page = Open("t");
    EXPECT_EQ(&Open("t"), &page) << "one page for one table";
    TAppManagerUtils &utils = Workspace().Utils();
    Driver.Expect([](QWidget *dialog) {
        Find<QLineEdit>(dialog, "edName")->setText("renamed");
        TGuiTools::Click(dialog, "butOK");
    });
    utils.RenameTable(Database().Name(), "t");
    EXPECT_EQ(page.GetTitle(), Database().Name() + ".renamed");
    EXPECT_EQ(&Open("renamed"), &page);
    EXPECT_EQ(Captions(page).value(1), "Fields: 3");

    Answer("butYes");
    utils.DeleteTable(Database().Name(), "renamed");
    EXPECT_EQ(Workspace().GetPagesCaption(), QStringList());
}

TEST_F(TTablePageTest, TheTextIsReadOnceAndKeepsItsPlace)
{
    TTablePageFrame &page = Open("t");
    Tabs(page).setCurrentIndex(ttDDL);
    auto *editor = Find<TTextEditor>(Tabs(page).widget(ttDDL), "edEditor");
    editor->SetCaret(3, 5);
    int statements = 0;
    QObject::connect(&Workspace(), &TManagerFrame::OnCommandBeforeExecute, &page,
                     [&] { ++statements; });
    Tabs(page).setCurrentIndex(ttInfo);
    Tabs(page).setCurrentIndex(ttDDL);
    TAppMessages::SendRedrawUI();
    EXPECT_EQ(statements, 0);
    EXPECT_EQ(editor->CaretLine(), 3);
    EXPECT_EQ(editor->CaretColumn(), 5);
    Exec("ALTER TABLE t COMMENT 'changed'");
    Find<QAction>(&page, "actRefresh")->trigger();
    EXPECT_TRUE(editor->Text().contains("COMMENT='changed'"));
    EXPECT_EQ(editor->CaretLine(), 3);
}

TEST_F(TTablePageTest, AViewWithoutItsTableIsShownAsFarAsItGoes)
{
    Exec("CREATE TABLE base (id INT)");
    Exec("CREATE VIEW on_base AS SELECT id FROM base");
    Exec("DROP TABLE base");
    OpenWorkspace();
    Driver.Allow("frmErrorBox");
    TTablePageFrame &page = Open("on_base");
    EXPECT_EQ(List(page, vtInfo).first(), "View name|on_base");
    EXPECT_LE(List(page, vtFields).size(), 1);
    EXPECT_EQ(Captions(Open("t")).size(), 7) << "the workspace goes on";
}

TEST_F(TTablePageTest, ListsOpenTheirDialogs)
{
    TRecordedDialogs dialogs;
    const QString on = '|' + Database().Name() + "|t|";
    TTablePageFrame &page = Open("t");
    struct TCase
    {
        TTab Tab;
        QString Kind, Name, Modify;
    };
    const TCase cases[] = {{ttFields, "field", "id", "Modify"},
                           {ttIndexes, "index", "by_name", "Modify"},
                           {ttReferences, "reference", "to_parent", "Modify"},
                           {ttTriggers, "trigger", "on_t", "Recreate"}};
    for (const TCase &each : cases) {
        SCOPED_TRACE(each.Kind.toStdString());
        const QStringList rows = List(page, each.Tab);
        auto *grid = Tabs(page).widget(each.Tab)->findChild<TGridView *>();
        const auto action = [&](const char *name) {
            return Find<QAction>(Tabs(page).widget(each.Tab), name);
        };
        action("actNew")->trigger();
        EXPECT_EQ(dialogs.Take(), QStringList{each.Kind + on + '|'});
        grid->SetFocusedRow(-1);
        EXPECT_FALSE(action("actModify")->isEnabled());
        EXPECT_FALSE(action("actDelete")->isEnabled());
        for (int row = 0; row < rows.size(); ++row)
            if (rows[row].split('|').contains(each.Name))
                grid->SetFocusedRow(row);
        EXPECT_EQ(action("actModify")->text(), each.Modify);
        action("actModify")->trigger();
        EXPECT_EQ(dialogs.Take(), QStringList{each.Kind + on + each.Name + '|'});
    }
    auto *frame = page.findChild<TTableFrame *>();
    dialogs.Confirms = false;
    EXPECT_FALSE(frame->CreateIndex());
    EXPECT_EQ(Tabs(page).currentIndex(), ttTriggers);
    dialogs.Confirms = true;
    EXPECT_TRUE(frame->CreateIndex());
    EXPECT_EQ(Tabs(page).currentIndex(), ttIndexes);
}

} // namespace
