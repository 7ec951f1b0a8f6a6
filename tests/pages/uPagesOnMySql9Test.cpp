#include "pages/schema/uSchemaPageFrame.h"
#include "pages/structure/uTablePageFrame.h"
#include "pages/tree/uObjectsFrameFixture.h"

#include <gmock/gmock.h>

namespace {

/// One walk over tree, table page and schema page on the other kind of server: its catalogues and
/// its texts of objects are not those of the first.
class TPagesOnMySql9Test : public TObjectsFrameTest
{
protected:
    void SetUp() override
    {
        SKIP_WITHOUT_MYSQL9();
        FOther = std::make_unique<TTestDatabase>(*TTestServer::MySql9());
        for (const char *sql :
             {"CREATE TABLE parent (id INT PRIMARY KEY)",
              "CREATE TABLE t (id INT AUTO_INCREMENT PRIMARY KEY, name VARCHAR(20) NOT NULL "
              "DEFAULT "
              "'x', parent_id INT, KEY by_name (name), CONSTRAINT to_parent FOREIGN KEY "
              "(parent_id) REFERENCES parent (id) ON DELETE CASCADE)",
              "CREATE TRIGGER on_t BEFORE INSERT ON t FOR EACH ROW SET NEW.name = 'y'",
              "CREATE VIEW v AS SELECT id, name FROM t", "CREATE PROCEDURE p() SELECT 1",
              "CREATE FUNCTION f() RETURNS INT DETERMINISTIC RETURN 1",
              "CREATE EVENT e ON SCHEDULE EVERY 2 DAY DISABLE DO SELECT 1"})
            FOther->Exec(sql);
        Open(ServerProfile(*TTestServer::MySql9())).SelectDatabase(FOther->Name());
    }

    void Press(int key, const QStringList &path)
    {
        Focus(path);
        QTest::keyClick(FTree, Qt::Key(key));
    }
    template <typename TPage>
    TPage &Page()
    {
        auto *page = qobject_cast<TPage *>(Pages().GetActivePage());
        if (!page)
            throw std::runtime_error("another page is active");
        return *page;
    }
    TPreparedTabs &Tabs(QWidget &page) { return *Find<TPreparedTabs>(&page, "pcTabs"); }

    std::unique_ptr<TTestDatabase> FOther;
};

TEST_F(TPagesOnMySql9Test, TheTreeShowsAndChangesObjects)
{
    EXPECT_EQ(
        Captions(*FData->DataList()),
        (QStringList{"Tables (2)", "Views (1)", "Procedures (1)", "Functions (1)", "Events (1)"}));
    Node({"Tables", "t"}).SetExpanded(true);
    EXPECT_EQ(Captions(*Node({"Tables", "t"}).DataList()),
              (QStringList{"Fields (3)", "Indexes (3)", "References (1)", "Triggers (1)"}));

    for (const QStringList &path :
         {QStringList{"Tables", "parent"}, {"Views", "v"}, {"Events", "e"}}) {
        RenameBy(path[1] + "_renamed");
        Press(Qt::Key_F2, path);
        EXPECT_NO_THROW(Node({path[0], path[1] + "_renamed"}));
    }
    // The foreign key has made an index of the same name.
    for (const QStringList &path : {QStringList{"Tables", "t", "Triggers", "on_t"},
                                    {"Tables", "t", "References", "to_parent"},
                                    {"Tables", "t", "Indexes", "by_name"},
                                    {"Views", "v_renamed"},
                                    {"Procedures", "p"},
                                    {"Functions", "f"},
                                    {"Events", "e_renamed"}}) {
        Answer("butYes");
        Press(Qt::Key_Delete, path);
        EXPECT_THROW(Node(path), std::runtime_error) << path.join('/').toStdString();
    }
    EXPECT_EQ(FOther->Rows("SHOW TABLES").size(), 2);
    EXPECT_EQ(FOther->Rows("SHOW TRIGGERS").size(), 0);
    EXPECT_EQ(FOther->Value("SELECT COUNT(*) FROM information_schema.REFERENTIAL_CONSTRAINTS WHERE "
                            "CONSTRAINT_SCHEMA = DATABASE()"),
              "0");
}

TEST_F(TPagesOnMySql9Test, PagesShowHowATableAndAViewAreMade)
{
    FOther->Exec("INSERT INTO parent VALUES (1), (2)");
    Press(Qt::Key_Return, {"Tables", "t"});
    TPreparedTabs &table = Tabs(Page<TTablePageFrame>());
    EXPECT_EQ(TTabTools::Rows(table, 2)[1], "2|name|varchar(20)|||x|index||||");
    EXPECT_EQ(TTabTools::Rows(table, 4),
              QStringList{"to_parent|parent_id|parent(id)|cascade|restrict"});
    EXPECT_EQ(TTabTools::Rows(table, 6), QStringList{"on_t|before insert"});
    EXPECT_EQ(TTabTools::Rows(table, 7).mid(0, 2), (QStringList{"Table name|t", "Engine|InnoDB"}));
    Press(Qt::Key_Return, {"Views", "v"});
    TPreparedTabs &view = Tabs(Page<TTablePageFrame>());
    EXPECT_EQ(TTabTools::Rows(view, 2).mid(0, 4),
              (QStringList{"View name|v", "Check option|None", "Updatable|Yes",
                           "Security type|Definer"}));
}

TEST_F(TPagesOnMySql9Test, TheSchemaPageShowsTheDatabase)
{
    Action("actDatabaseOpen")->trigger();
    TPreparedTabs &tabs = Tabs(Page<TSchemaPageFrame>());
    EXPECT_EQ(TTabTools::Captions(tabs), (QStringList{"Tables: 2", "Views: 1", "Procedures: 1",
                                                      "Functions: 1", "Events: 1", "Info"}));
    const std::pair<int, const char *> starts[] = {{0, "parent|InnoDB|"},
                                                   {1, "v|None|Yes|Definer|"},
                                                   {2, "p|No|Definer|"},
                                                   {3, "f|Yes|Definer|"},
                                                   {4, "e|Disabled|No|Recurring|"}};
    for (const auto &[tab, start] : starts)
        EXPECT_THAT(TTabTools::Rows(tabs, tab).first().toStdString(), testing::StartsWith(start));
    EXPECT_EQ(TTabTools::Rows(tabs, 5).first(), "Name|" + FOther->Name());
}

} // namespace
