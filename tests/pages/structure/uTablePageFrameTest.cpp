#include "pages/structure/uTablePageFrame.h"

#include "model/uDbmManager.h"
#include "pages/tree/uManagerObjectsFrame.h"
#include "pages/uTabTools.h"
#include "shell/uAppManagerPageUtils.h"
#include "shell/uAppManagerUtils.h"
#include "shell/uManagerFrame.h"
#include "shell/uPageManagerFrame.h"
#include "shell/uWorkbenchFixture.h"
#include "widgets/uGridView.h"
#include "widgets/uTextEditor.h"

#include <QAction>
#include <QLineEdit>
#include <gtest/gtest.h>

namespace {

class TTablePageTest : public TWorkbenchTest
{
protected:
    TTablePageTest()
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
    TAppManagerPageUtils &Pages() { return Window->GetActiveManagerFrame()->PageUtils(); }
    TPreparedTabs &Tabs(TTablePageFrame &page) { return *Find<TPreparedTabs>(&page, "pcTabs"); }

    QStringList Captions(TTablePageFrame &page) { return TTabTools::Captions(Tabs(page)); }
    QStringList List(TTablePageFrame &page, int tab) { return TTabTools::Rows(Tabs(page), tab); }
};

TEST_F(TTablePageTest, ShowsHowATableIsMade)
{
    TTablePageFrame &page = Open("t");
    EXPECT_EQ(page.GetTitle(), Database().Name() + ".t");
    EXPECT_EQ(Captions(page), (QStringList{"Data", "Fields: 3", "Indexes: 3", "References: 1",
                                           "Triggers: 1", "Info", "DDL"}));
    EXPECT_EQ(Tabs(page).Frame(1), nullptr) << "a tab costs nothing before it is seen";
    const QStringList fields = List(page, 1);
    ASSERT_EQ(fields.size(), 3);
    EXPECT_EQ(fields[1], "2|name|varchar(20)|||x|unique||||what it is called");
    EXPECT_TRUE(fields[2].contains("parent.id|")) << fields[2].toStdString();
    EXPECT_TRUE(List(page, 2).contains("by_name|unique|name"))
        << List(page, 2).join('\n').toStdString();
    EXPECT_EQ(List(page, 3), QStringList{"to_parent|parent_id|parent(id)|cascade|restrict"});
    EXPECT_EQ(List(page, 4), QStringList{"on_t|before insert"});
    const QStringList info = List(page, 5);
    EXPECT_EQ(info.size(), 14);
    EXPECT_EQ(info.mid(0, 2), (QStringList{"Table name|t", "Engine|InnoDB"}));
    Tabs(page).setCurrentIndex(6);
    EXPECT_TRUE(
        Find<TTextEditor>(Tabs(page).widget(6), "edEditor")->Text().startsWith("CREATE TABLE `t`"));
}

TEST_F(TTablePageTest, AViewHasRowsColumnsAndProperties)
{
    TTablePageFrame &page = Open("v");
    EXPECT_EQ(Captions(page), (QStringList{"Data", "Fields: 2", "Info"}));
    List(page, 1);
    const auto *grid = Tabs(page).widget(1)->findChild<TGridView *>();
    EXPECT_TRUE(grid->isColumnHidden(6));
    EXPECT_FALSE(Find<QAction>(Tabs(page).widget(1), "actDelete")->isEnabled());
    EXPECT_EQ(List(page, 2).first(), "View name|v");
    TTablePageFrame &system = Open("parent");
    EXPECT_NE(&system, &page);
    Pages().ShowTable("information_schema", "TABLES", true);
    auto &tables = *static_cast<TTablePageFrame *>(Pages().GetActivePage());
    EXPECT_FALSE(Captions(tables).join(' ').contains("Indexes"));
}

TEST_F(TTablePageTest, ThePageFollowsItsTable)
{
    TTablePageFrame &page = Open("t");
    EXPECT_EQ(&Open("t"), &page) << "one page for one table";
    TAppManagerUtils &utils = Window->GetActiveManagerFrame()->Utils();
    Driver.Expect([](QWidget *dialog) {
        Find<QLineEdit>(dialog, "edName")->setText("renamed");
        TGuiTools::Click(dialog, "butOK");
    });
    utils.RenameTable(Database().Name(), "t");
    EXPECT_EQ(page.GetTitle(), Database().Name() + ".renamed");
    EXPECT_EQ(&Open("renamed"), &page);
    EXPECT_EQ(Captions(page).value(1), "Fields: 3");

    // Deleting a key from its list.
    List(page, 3);
    Tabs(page).widget(3)->findChild<TGridView *>()->SetFocusedRow(0);
    Driver.Expect([](QWidget *box) { TGuiTools::Click(box, "butYes"); });
    Find<QAction>(Tabs(page).widget(3), "actDelete")->trigger();
    EXPECT_EQ(List(page, 3), QStringList());
    EXPECT_EQ(Captions(page).value(3), "References: 0");

    Driver.Expect([](QWidget *box) { TGuiTools::Click(box, "butYes"); });
    utils.DeleteTable(Database().Name(), "renamed");
    EXPECT_EQ(Window->GetActiveManagerFrame()->GetPagesCaption(), QStringList());
}

} // namespace
