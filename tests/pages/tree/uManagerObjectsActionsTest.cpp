#include "pages/tree/uObjectsFrameFixture.h"
#include "pages/uBothServers.h"

namespace {

using TActionsOnBothServers = TOnBothServers<TObjectsFrameTest>;
INSTANTIATE_TEST_SUITE_P(Servers, TActionsOnBothServers, testing::Values(skMariaDB, skMySQL),
                         TActionsOnBothServers::Name);

TEST_P(TActionsOnBothServers, RenamesAndDeletesObjectsOfEachKind)
{
    OpenDatabase();
    Node({"Tables", "cities"}).SetExpanded(true);
    Answer("butNo");
    Press(Qt::Key_Delete, {"Tables", "streets"});
    EXPECT_EQ(Below({"Tables"}), (QStringList{"cities", "streets"}));
    for (const QStringList &path : {QStringList{"Tables", "streets"},
                                    {"Views", "names"},
                                    {"Procedures", "tidy"},
                                    {"Functions", "two"},
                                    {"Events", "nightly"}}) {
        RenameBy(path[1] + "_new");
        Press(Qt::Key_F2, path);
        EXPECT_NO_THROW(Node({path[0], path[1] + "_new"}));
    }
    Node({"Tables", "streets_new"}).SetExpanded(true);
    for (const QStringList &path : {QStringList{"Tables", "streets_new", "References", "in_city"},
                                    {"Tables", "cities", "Indexes", "by_name"},
                                    {"Tables", "cities", "Triggers", "on_city"},
                                    {"Tables", "streets_new", "Fields", "city_id"},
                                    {"Tables", "streets_new"},
                                    {"Views", "names_new"},
                                    {"Procedures", "tidy_new"},
                                    {"Functions", "two_new"},
                                    {"Events", "nightly_new"}}) {
        SCOPED_TRACE(path.join('/').toStdString());
        Answer("butYes");
        Press(Qt::Key_Delete, path);
        EXPECT_THROW(Node(path), std::runtime_error);
    }
    EXPECT_EQ(Rows("SHOW TABLES"), (QList<QStringList>{{"cities"}}));
    EXPECT_EQ(Rows("SHOW COLUMNS FROM cities").size(), 2);

    // What another session has removed meanwhile is not asked about.
    Exec("DROP TABLE cities");
    Window->GetActiveManagerFrame()->Manager().RequestProcess();
    Press(Qt::Key_Delete, {"Tables", "cities"});
}

TEST_F(TObjectsFrameTest, DialogsAreOpenedForWhatIsFocused)
{
    TRecordedDialogs dialogs;
    OpenDatabase();
    Node({"Tables", "cities"}).SetExpanded(true);
    Node({"Tables", "streets"}).SetExpanded(true);
    Node({"Views", "names"}).SetExpanded(true);
    const QStringList column = {"Tables", "cities", "Fields", "id"};
    const QStringList key = {"Tables", "streets", "References", "in_city"};
    struct TCase
    {
        QStringList Path;
        const char *Action;
        const char *Task; // kind|table|name
    };
    const TCase cases[] = {
        {{"Tables"}, "actDatabaseCreateTable", "table||"},
        {{"Tables", "cities"}, "actDatabaseCreateField", "field|cities|"},
        {key, "actDatabaseCreateReference", "reference|streets|"},
        {column, "actDatabaseCreateTrigger", "trigger|cities|"},
        {{"Events", "nightly"}, "actObjectUpdate", "event||nightly"},
        {key, "actObjectUpdate", "reference|streets|in_city"},
        {{"Tables", "cities", "Triggers", "on_city"}, "actObjectUpdate", "trigger|cities|on_city"},
    };
    dialogs.Confirms = false;
    for (const TCase &each : cases) {
        SCOPED_TRACE(each.Task);
        Focus(each.Path);
        ASSERT_TRUE(Action(each.Action)->isEnabled());
        Action(each.Action)->trigger();
        const QStringList parts = QString(each.Task).split('|');
        EXPECT_EQ(dialogs.Take(), QStringList{parts[0] + '|' + Database().Name() + '|' + parts[1] +
                                              '|' + parts[2] + '|'});
    }
    Node({"Tables", "cities", "Fields"}).SetExpanded(true);
    DoubleClick(column);
    EXPECT_EQ(dialogs.Take().size(), 1) << "what cannot be opened is modified";
    for (const QStringList &path :
         {QStringList{"Tables"}, {"Views", "names", "Fields", "name"}, {"Events", "nightly"}}) {
        Focus(path);
        ExpectError("GetActiveTable error.");
        Action("actDatabaseCreateField")->trigger();
        EXPECT_EQ(dialogs.Take(), QStringList());
    }
}

TEST_F(TObjectsFrameTest, AServerWithoutEventsOffersNone)
{
    const auto old = TTestServer::Start({"--version=5.0.95-log"});
    const TTestDatabase database(*old);
    database.Exec("CREATE TABLE t (id INT)");
    TManagerObjectsFrame &frame = Open(ServerProfile(*old));
    frame.SelectDatabase(database.Name());
    EXPECT_EQ(Below(), (QStringList{"Tables (1)", "Views (0)", "Procedures (0)", "Functions (0)"}));
    EXPECT_FALSE(Action("actDatabaseCreateEvent")->isVisible());
    Action("actDatabaseOpen")->trigger();
    const auto *tabs = Window->findChild<TPreparedTabs *>("pcTabs");
    ASSERT_NE(tabs, nullptr);
    EXPECT_EQ(TTabTools::Captions(*tabs),
              (QStringList{"Tables: 1", "Views: 0", "Procedures: 0", "Functions: 0", "Info"}));
}

} // namespace
