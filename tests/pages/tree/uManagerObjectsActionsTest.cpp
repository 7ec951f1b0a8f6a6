#include "pages/tree/uObjectsFrameFixture.h"

namespace {

struct TMenuCase
{
    QStringList Path;
    const char *Menu;
    const char *Enabled; // actions on the focused object
};

TEST_F(TObjectsFrameTest, OffersWhatCanBeDoneWithANode)
{
    TManagerObjectsFrame &frame = OpenDatabase();
    Node({"Tables", "cities"}).SetExpanded(true);
    Node({"Views", "names"}).SetExpanded(true);
    const TMenuCase cases[] = {
        {{"Tables"}, "Create Table...", ""},
        {{"Tables", "cities"},
         "Open|-|Create Field...|Create Index...|Create Reference...|Create Trigger...|-|Modify|"
         "Rename|-|Delete",
         "Open|Rename|Delete"},
        {{"Tables", "cities", "Fields", "id"}, "Modify|-|Delete", "Delete"},
        {{"Tables", "cities", "Triggers"}, "Create Trigger...", ""},
        {{"Views", "names"}, "Open|-|Modify|Rename|-|Delete", "Open|Rename|Delete"},
        {{"Views", "names", "Fields"}, "", ""},
        {{"Views", "names", "Fields", "name"}, "", ""},
        {{"Procedures", "tidy"}, "Open|-|Rename|-|Delete", "Open|Rename|Delete"},
        {{"Events", "nightly"}, "Modify|Rename|-|Delete", "Rename|Delete"},
    };
    for (const TMenuCase &each : cases) {
        SCOPED_TRACE(each.Path.join('/').toStdString());
        Focus(each.Path);
        EXPECT_EQ(Menu(), each.Menu);
        QStringList enabled;
        for (const char *name :
             {"actObjectOpen", "actObjectUpdate", "actObjectRename", "actObjectDelete"})
            if (Action(name)->isEnabled())
                enabled += Action(name)->text();
        EXPECT_EQ(enabled.join('|'), each.Enabled);
    }
    frame.SelectDatabase("information_schema");
    FData->SetFocusedItem(Node({"Tables"}).DataList()->Items(0));
    EXPECT_FALSE(Action("actObjectDelete")->isEnabled()) << "a system view";
}

TEST_F(TObjectsFrameTest, RenamesByTheKeyboard)
{
    OpenDatabase();
    Focus({"Tables", "cities"});
    // A name that is taken is refused; the dialog keeps what was typed and takes the next one.
    Driver.Expect([this](QWidget *dialog) {
        EXPECT_EQ(dialog->windowTitle(), "Rename table");
        auto *name = Find<QLineEdit>(dialog, "edName");
        EXPECT_EQ(name->selectedText(), "cities");
        name->setText("streets");
        ExpectError("streets");
        TGuiTools::Click(dialog, "butOK");
        EXPECT_EQ(name->text(), "streets");
        name->setText("towns");
        TGuiTools::Click(dialog, "butOK");
    });
    QTest::keyClick(FTree, Qt::Key_F2);
    EXPECT_EQ(Captions(*Node({"Tables"}).DataList()), (QStringList{"streets", "towns"}));
    EXPECT_EQ(FRenames, 2) << "the refused one, and the one that was done";
    Focus({"Tables", "towns"});
    RenameBy("towns");
    QTest::keyClick(FTree, Qt::Key_F2);
    EXPECT_EQ(FRenames, 2) << "the name that it has sends nothing";
    EXPECT_EQ(Value("SELECT COUNT(*) FROM towns"), "0");

    for (const char *folder : {"Procedures", "Functions", "Events"}) {
        FData->SetFocusedItem(Node({folder}).DataList()->Items(0));
        RenameBy("renamed");
        QTest::keyClick(FTree, Qt::Key_F2);
        EXPECT_EQ(Captions(*Node({folder}).DataList()), QStringList{"renamed"}) << folder;
        if (QString(folder) == "Procedures") // both share the names of routines
            Exec("DROP PROCEDURE renamed");
    }
}

TEST_F(TObjectsFrameTest, DeletesWhatIsConfirmed)
{
    OpenDatabase();
    Node({"Tables", "cities"}).SetExpanded(true);
    Node({"Tables", "streets"}).SetExpanded(true);
    Focus({"Tables", "streets"});
    Answer("butNo");
    QTest::keyClick(FTree, Qt::Key_Delete);
    EXPECT_EQ(Node({"Tables"}).DataList()->Count(), 2);
    const QList<QStringList> paths = {{"Tables", "streets", "References", "in_city"},
                                      {"Tables", "cities", "Indexes", "by_name"},
                                      {"Tables", "cities", "Triggers", "on_city"},
                                      {"Tables", "streets", "Fields", "city_id"},
                                      {"Tables", "streets"},
                                      {"Views", "names"},
                                      {"Procedures", "tidy"},
                                      {"Functions", "two"},
                                      {"Events", "nightly"}};
    for (const QStringList &path : paths) {
        SCOPED_TRACE(path.join('/').toStdString());
        Focus(path);
        Answer("butYes");
        QTest::keyClick(FTree, Qt::Key_Delete);
        EXPECT_THROW(Node(path), std::runtime_error);
    }
    EXPECT_EQ(Rows("SHOW TABLES"), (QList<QStringList>{{"cities"}}));
    EXPECT_EQ(Rows("SHOW COLUMNS FROM cities").size(), 2);

    // What another session has removed meanwhile is not asked about.
    Exec("DROP TABLE cities");
    Window->GetActiveManagerFrame()->Manager().RequestProcess();
    Focus({"Tables", "cities"});
    QTest::keyClick(FTree, Qt::Key_Delete);
}

TEST_F(TObjectsFrameTest, OpensRoutinesAsText)
{
    TManagerObjectsFrame &frame = OpenDatabase();
    Focus({"Functions", "two"});
    QTest::keyClick(FTree, Qt::Key_Return);
    const QString text = QueryPage().GetText();
    EXPECT_TRUE(text.startsWith("DROP FUNCTION")) << text.toStdString();
    EXPECT_TRUE(text.contains("DELIMITER $$\r\n\r\nCREATE FUNCTION")) << text.toStdString();
    Trigger("actQueryExecute"); // it is whole: the function is dropped and made again
    EXPECT_EQ(Value("SELECT two()"), "2");
    Find<QAction>(&frame, "actDatabaseCreateProcedure")->trigger();
    EXPECT_TRUE(QueryPage().GetText().endsWith("BEGIN\r\n\r\nEND"));
}

TEST_F(TObjectsFrameTest, TheActionsOfADatabaseGoWithIt)
{
    OpenDatabase();
    const char *const onDatabase[] = {"actDatabaseOpen",
                                      "actDatabaseMigrate",
                                      "actDatabaseClone",
                                      "actDatabaseDump",
                                      "actDatabaseChecksum",
                                      "actDatabaseDelete",
                                      "actDatabaseCreateProcedure",
                                      "actDatabaseCreateFunction"};
    for (const char *name : onDatabase)
        EXPECT_TRUE(Action(name)->isEnabled()) << name;
    Focus({"Tables", "cities"});
    EXPECT_TRUE(Action("actObjectClone")->isEnabled());
    Focus({"Tables"});
    EXPECT_FALSE(Action("actObjectClone")->isEnabled());
    Exec("DROP DATABASE " + Database().Name());
    Action("actRefresh")->trigger();
    for (const char *name : onDatabase)
        EXPECT_FALSE(Action(name)->isEnabled()) << name;
    Server().Exec("CREATE DATABASE " + Database().Name()); // the fixture drops it
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
        {{"Views"}, "actDatabaseCreateView", "view||"},
        {{"Events"}, "actDatabaseCreateEvent", "event||"},
        {{"Tables", "cities"}, "actDatabaseCreateField", "field|cities|"},
        {{"Tables", "cities", "Indexes"}, "actDatabaseCreateIndex", "index|cities|"},
        {key, "actDatabaseCreateReference", "reference|streets|"},
        {column, "actDatabaseCreateTrigger", "trigger|cities|"},
        {{"Tables", "cities"}, "actObjectUpdate", "table||cities"},
        {{"Views", "names"}, "actObjectUpdate", "view||names"},
        {{"Events", "nightly"}, "actObjectUpdate", "event||nightly"},
        {column, "actObjectUpdate", "field|cities|id"},
        {{"Tables", "cities", "Indexes", "by_name"}, "actObjectUpdate", "index|cities|by_name"},
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
    EXPECT_EQ(Captions(*FData->DataList()),
              (QStringList{"Tables (1)", "Views (0)", "Procedures (0)", "Functions (0)"}));
    EXPECT_FALSE(Action("actDatabaseCreateEvent")->isVisible());
    Action("actDatabaseOpen")->trigger();
    const auto *tabs = Window->findChild<TPreparedTabs *>("pcTabs");
    ASSERT_NE(tabs, nullptr);
    EXPECT_EQ(TTabTools::Captions(*tabs),
              (QStringList{"Tables: 1", "Views: 0", "Procedures: 0", "Functions: 0", "Info"}));
}

} // namespace
