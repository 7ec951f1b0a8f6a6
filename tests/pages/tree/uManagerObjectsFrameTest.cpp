#include "pages/tree/uManagerObjectsFrame.h"

#include "core/uServerProfile.h"
#include "model/uDbmManager.h"
#include "pages/query/uQueryPageFrame.h"
#include "pages/uTabTools.h"
#include "shell/uAppMessages.h"
#include "shell/uManagerFrame.h"
#include "shell/uRecordedDialogs.h"
#include "shell/uWorkbenchFixture.h"
#include "uTcpProxy.h"
#include "widgets/uDropDownCombo.h"
#include "widgets/uVTDataModel.h"

#include <QAbstractItemView>
#include <QAction>
#include <QApplication>
#include <QContextMenuEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QTest>
#include <gtest/gtest.h>

namespace {

class TObjectsFrameTest : public TWorkbenchTest
{
protected:
    TObjectsFrameTest()
    {
        for (const char *sql :
             {"CREATE TABLE cities (id INT PRIMARY KEY, name VARCHAR(20), KEY by_name (name))",
              "CREATE TABLE streets (id INT PRIMARY KEY, city_id INT, CONSTRAINT in_city FOREIGN "
              "KEY (city_id) REFERENCES cities (id))",
              "CREATE TRIGGER on_city BEFORE INSERT ON cities FOR EACH ROW SET NEW.name = 'x'",
              "CREATE VIEW names AS SELECT name FROM cities", "CREATE PROCEDURE tidy () SELECT 1",
              "CREATE FUNCTION two () RETURNS INT RETURN 2",
              "CREATE EVENT nightly ON SCHEDULE EVERY 1 DAY DO SELECT 1"})
            Exec(sql);
    }

    TManagerObjectsFrame &Open(const QString &bound = {}) { return Open(Profile(bound)); }

    TManagerObjectsFrame &Open(const TDbmConnectionProfile &profile)
    {
        TManagerFrame &workspace = OpenWorkspaceOn(profile);
        FStatements = 0;
        QObject::connect(&workspace, &TManagerFrame::OnCommandBeforeExecute, &workspace,
                         [this](const QString &text) {
                             ++FStatements;
                             FRenames += text.startsWith("RENAME") ? 1 : 0;
                         });
        auto *frame = workspace.findChild<TManagerObjectsFrame *>();
        FTree = Find<TVTTreeView>(frame, "lvTree");
        FData = FTree->findChild<TVTDataManager *>();
        return *frame;
    }

    TManagerObjectsFrame &OpenDatabase()
    {
        TManagerObjectsFrame &frame = Open();
        frame.SelectDatabase(Database().Name());
        return frame;
    }

    static QStringList Captions(const TVTDataList &list)
    {
        QStringList captions;
        for (int i = 0; i < list.Count(); ++i)
            captions += list.Items(i)->Caption();
        return captions;
    }

    QAction *Action(const char *name)
    {
        return Find<QAction>(Window->findChild<TManagerObjectsFrame *>(), name);
    }
    QStringList MenuOf(const char *name)
    {
        QStringList entries;
        for (const QAction *action : Find<QMenu>(Window.get(), name)->actions())
            entries += action->isSeparator() ? QString("-") : action->text();
        return entries;
    }
    void DoubleClick(const QStringList &path)
    {
        const QPoint place = Place(path).center();
        QTest::mouseClick(FTree->viewport(), Qt::LeftButton, {}, place);
        QTest::mouseDClick(FTree->viewport(), Qt::LeftButton, {}, place);
    }
    QRect Place(const QStringList &path)
    {
        const QModelIndex index = FData->Model()->IndexOf(&Node(path));
        FTree->scrollTo(index);
        return FTree->visualRect(index);
    }

    /// By captions from the root; a folder's without its count. Throws when there is none.
    TVTDataItem &Node(const QStringList &path)
    {
        TVTDataList *list = FData->DataList();
        TVTDataItem *item = nullptr;
        for (const QString &caption : path) {
            item = nullptr;
            for (int i = 0; i < list->Count(); ++i)
                if (list->Items(i)->Caption().section(" (", 0, 0) == caption)
                    item = list->Items(i);
            if (!item)
                throw std::runtime_error("no node " + caption.toStdString());
            list = item->DataList();
        }
        return *item;
    }

    void Focus(const QStringList &path) { FData->SetFocusedItem(&Node(path)); }

    QStringList Menu() { return MenuOf("pmTree"); }

    void RenameBy(const QString &name)
    {
        Driver.Expect([name](QWidget *dialog) {
            Find<QLineEdit>(dialog, "edName")->setText(name);
            TGuiTools::Click(dialog, "butOK");
        });
    }

    void Answer(const char *button)
    {
        Driver.Expect([button](QWidget *box) { TGuiTools::Click(box, button); });
    }

    int FStatements = 0;
    int FRenames = 0;
    TVTTreeView *FTree = nullptr;
    TVTDataManager *FData = nullptr;
};

TEST_F(TObjectsFrameTest, DrawsADatabaseAndReadsOnlyWhatIsOpened)
{
    TManagerObjectsFrame &frame = Open();
    EXPECT_EQ(frame.SelectedDatabase(), QString());
    EXPECT_FALSE(FTree->isVisible());
    frame.SelectDatabase(Database().Name());
    EXPECT_EQ(
        Captions(*FData->DataList()),
        (QStringList{"Tables (2)", "Views (1)", "Procedures (1)", "Functions (1)", "Events (1)"}));
    EXPECT_TRUE(Node({"Tables"}).IsExpanded());
    EXPECT_EQ(Captions(*Node({"Tables"}).DataList()), (QStringList{"cities", "streets"}));
    EXPECT_EQ(Captions(*Node({"Functions"}).DataList()), QStringList{"two"});

    const int before = FStatements;
    EXPECT_TRUE(Node({"Tables", "cities"}).HasChildren()) << "an expander without its content";
    EXPECT_EQ(FStatements, before);
    Node({"Tables", "cities"}).SetExpanded(true);
    EXPECT_GT(FStatements, before);
    EXPECT_EQ(Captions(*Node({"Tables", "cities"}).DataList()),
              (QStringList{"Fields (2)", "Indexes (2)", "References (0)", "Triggers (1)"}));
    EXPECT_EQ(Captions(*Node({"Tables", "cities", "Fields"}).DataList()),
              (QStringList{"id", "name"}));
    Node({"Tables", "streets"}).SetExpanded(true);
    EXPECT_EQ(Captions(*Node({"Tables", "streets", "References"}).DataList()),
              QStringList{"in_city"});
    Node({"Views", "names"}).SetExpanded(true);
    EXPECT_EQ(Captions(*Node({"Views", "names"}).DataList()), QStringList{"Fields (1)"});
}

TEST_F(TObjectsFrameTest, ARefreshKeepsPlaceAndExpansion)
{
    TManagerObjectsFrame &frame = OpenDatabase();
    Node({"Views"}).SetExpanded(false);
    Node({"Tables", "cities"}).SetExpanded(true);
    Node({"Tables", "cities", "Indexes"}).SetExpanded(true);
    Focus({"Tables", "cities", "Indexes", "by_name"});
    Exec("ALTER TABLE cities ADD COLUMN mayor INT");
    Exec("DROP TABLE streets");
    Exec("CREATE TABLE `a \"b\".c 'ü漢` (id INT)");
    Find<QAction>(&frame, "actRefresh")->trigger();
    EXPECT_EQ(Captions(*Node({"Tables"}).DataList()), (QStringList{"a \"b\".c 'ü漢", "cities"}));
    EXPECT_EQ(Captions(*Node({"Tables", "cities", "Fields"}).DataList()),
              (QStringList{"id", "name", "mayor"}));
    EXPECT_TRUE(Node({"Tables", "cities", "Indexes"}).IsExpanded());
    EXPECT_FALSE(Node({"Views"}).IsExpanded());
    ASSERT_NE(FData->FocusedItem(), nullptr);
    EXPECT_EQ(FData->FocusedItem()->Caption(), "by_name");
    Node({"Tables", "a \"b\".c 'ü漢"}).SetExpanded(true);
    EXPECT_EQ(Captions(*Node({"Tables", "a \"b\".c 'ü漢", "Fields"}).DataList()),
              QStringList{"id"});
}

struct TMenuCase
{
    QStringList Path;
    QStringList Menu;
    QStringList Enabled; // actions on the focused object
};

TEST_F(TObjectsFrameTest, OffersWhatCanBeDoneWithANode)
{
    TManagerObjectsFrame &frame = OpenDatabase();
    Node({"Tables", "cities"}).SetExpanded(true);
    Node({"Views", "names"}).SetExpanded(true);
    const TMenuCase cases[] = {
        {{"Tables"}, {"Create Table..."}, {}},
        {{"Tables", "cities"},
         {"Open", "-", "Create Field...", "Create Index...", "Create Reference...",
          "Create Trigger...", "-", "Modify", "Rename", "-", "Delete"},
         {"Open", "Rename", "Delete"}},
        {{"Tables", "cities", "Fields", "id"}, {"Modify", "-", "Delete"}, {"Delete"}},
        {{"Tables", "cities", "Triggers"}, {"Create Trigger..."}, {}},
        {{"Views", "names"},
         {"Open", "-", "Modify", "Rename", "-", "Delete"},
         {"Open", "Rename", "Delete"}},
        {{"Views", "names", "Fields"}, {}, {}},
        {{"Views", "names", "Fields", "name"}, {}, {}},
        {{"Procedures", "tidy"},
         {"Open", "-", "Rename", "-", "Delete"},
         {"Open", "Rename", "Delete"}},
        {{"Events", "nightly"}, {"Modify", "Rename", "-", "Delete"}, {"Rename", "Delete"}},
    };
    for (const TMenuCase &each : cases) {
        SCOPED_TRACE(each.Path.join('/').toStdString());
        Focus(each.Path);
        EXPECT_EQ(Menu(), each.Menu);
        QStringList enabled;
        for (const char *name :
             {"actObjectOpen", "actObjectUpdate", "actObjectRename", "actObjectDelete"})
            if (Find<QAction>(&frame, name)->isEnabled())
                enabled += Find<QAction>(&frame, name)->text();
        EXPECT_EQ(enabled, each.Enabled);
    }
    frame.SelectDatabase("information_schema");
    FData->SetFocusedItem(Node({"Tables"}).DataList()->Items(0));
    EXPECT_FALSE(Find<QAction>(&frame, "actObjectDelete")->isEnabled()) << "a system view";
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

TEST_F(TObjectsFrameTest, TheSelectedDatabaseIsRemembered)
{
    OpenDatabase();
    Driver.Expect("frmProfiles", [](QWidget *form) { TGuiTools::Click(form, "butClose"); });
    Trigger("actCloseConnection");
    ASSERT_TRUE(TTestLoop::RunUntil([this] { return Driver.Pending() == 0; }));
    EXPECT_EQ(Open().SelectedDatabase(), Database().Name());
    EXPECT_EQ(FData->DataList()->Count(), 5);

    TManagerObjectsFrame &bound = Open(Database().Name());
    EXPECT_EQ(bound.SelectedDatabase(), Database().Name());
    EXPECT_FALSE(Find<TDropDownCombo>(&bound, "cbxDatabase")->isEnabled());
    EXPECT_FALSE(Find<QAction>(&bound, "actDatabaseDelete")->isVisible());
}

TEST_F(TObjectsFrameTest, AServerThatIsGoneIsToldAndTheTreeComesBack)
{
    TTcpProxy proxy(Server().Host(), Server().Port());
    TDbmConnectionProfile profile = Profile();
    profile.Port = proxy.Port();
    TManagerObjectsFrame &frame = Open(profile);
    frame.SelectDatabase(Database().Name());
    Node({"Tables", "streets"}).SetExpanded(true);
    proxy.Refuse();
    proxy.Cut();
    // Any box would be a window that nobody expects.
    Focus({"Tables", "cities"});
    const int before = FStatements;
    for (const auto key : {Qt::Key_Down, Qt::Key_Up, Qt::Key_Home, Qt::Key_End})
        QTest::keyClick(FTree, key);
    EXPECT_EQ(FStatements, before) << "moving about asks nothing of the server";
    Node({"Tables", "cities"}).SetExpanded(true);
    const auto *told = Find<QLabel>(Window->GetActiveManagerFrame(), "labNotRead");
    EXPECT_TRUE(told->text().startsWith("Not read: ")) << told->text().toStdString();
    EXPECT_EQ(Node({"Tables"}).DataList()->Count(), 2);
    // A refresh while it is gone must not forget what was looked at.
    Action("actRefresh")->trigger();
    EXPECT_FALSE(FTree->isVisible());
    EXPECT_TRUE(told->text().startsWith("Not read: ")) << told->text().toStdString();
    proxy.Resume();
    Action("actRefresh")->trigger();
    EXPECT_EQ(told->text(), QString());
    EXPECT_EQ(frame.SelectedDatabase(), Database().Name());
    const auto fields = [this] {
        return Captions(*Node({"Tables", "cities", "Fields"}).DataList());
    };
    EXPECT_EQ(fields(), (QStringList{"id", "name"}));
    EXPECT_TRUE(Node({"Tables", "streets"}).IsExpanded());
    // It dies while the tree and its open tables are being read, at one list or another.
    for (const int bytes : {50, 1000, 2000, 4000}) {
        SCOPED_TRACE(bytes);
        proxy.CutAfter(bytes);
        Action("actRefresh")->trigger();
        EXPECT_EQ(frame.SelectedDatabase().isEmpty(), !FTree->isVisible());
        proxy.Resume();
        Action("actRefresh")->trigger();
        EXPECT_EQ(told->text(), QString());
        Node({"Tables", "cities"}).SetExpanded(true);
        EXPECT_EQ(fields(), (QStringList{"id", "name"}));
    }
}

TEST_F(TObjectsFrameTest, ADatabaseIsChosenFromWhatTheServerHas)
{
    TManagerObjectsFrame &frame = OpenDatabase();
    auto *combo = Find<TDropDownCombo>(&frame, "cbxDatabase");
    const auto open = [&] {
        combo->showPopup();
        TTestLoop::Settle();
    };
    const auto close = [&] {
        combo->hidePopup();
        TTestLoop::Settle();
    };
    const TTestDatabase other;
    other.Exec("CREATE TABLE elsewhere (id INT)");
    const int before = FStatements;
    open();
    ASSERT_GE(combo->findText(other.Name()), 0) << "made by another session";
    close();
    EXPECT_EQ(FStatements, before + 1) << "nothing but the names was read";
    EXPECT_EQ(frame.SelectedDatabase(), Database().Name());

    open();
    combo->view()->setCurrentIndex(combo->model()->index(combo->findText(other.Name()), 0));
    QTest::keyClick(combo->view(), Qt::Key_Return);
    TTestLoop::Settle();
    EXPECT_EQ(Captions(*Node({"Tables"}).DataList()), QStringList{"elsewhere"});

    // The list is opened and left again after the database has gone.
    Server().Exec("DROP DATABASE " + other.Name());
    open();
    close();
    EXPECT_EQ(frame.SelectedDatabase(), QString());
    EXPECT_FALSE(FTree->isVisible());
    EXPECT_FALSE(Action("actDatabaseDelete")->isEnabled());
    Server().Exec("CREATE DATABASE " + other.Name()); // it is dropped with its object
}

TEST_F(TObjectsFrameTest, AMessageSelectsADatabaseOfItsOwnWorkspace)
{
    TManagerObjectsFrame &frame = OpenDatabase();
    const auto stranger = TDbmManager::Create();
    TAppMessages::SendSelectSchema(stranger.get(), "mysql");
    EXPECT_EQ(frame.SelectedDatabase(), Database().Name());
    TAppMessages::SendSelectSchema(&Window->GetActiveManagerFrame()->Manager(), "mysql");
    EXPECT_EQ(frame.SelectedDatabase(), "mysql");
}

TEST_F(TObjectsFrameTest, MouseAndKeysOpenWhatTheyPointAt)
{
    OpenDatabase();
    const auto pages = [this] { return Window->GetActiveManagerFrame()->GetPagesCaption(); };
    DoubleClick({"Views"});
    EXPECT_FALSE(Node({"Views"}).IsExpanded());
    DoubleClick({"Views"});
    EXPECT_TRUE(Node({"Views"}).IsExpanded());
    Focus({"Views"});
    QTest::keyClick(FTree, Qt::Key_Return);
    EXPECT_TRUE(Node({"Views"}).IsExpanded()) << "a folder is not opened by Enter";
    EXPECT_EQ(pages(), QStringList());
    DoubleClick({"Views", "names"});
    EXPECT_EQ(pages(), QStringList{Database().Name() + ".names"});
    Node({"Tables", "cities"}).SetExpanded(true);
    Node({"Tables", "cities", "Fields"}).SetExpanded(true);
    DoubleClick({"Tables", "cities", "Fields", "id"}); // its dialog is not there
    EXPECT_EQ(pages().size(), 1);

    const QPoint place = Place({"Tables", "cities"}).center();
    QTest::mouseClick(FTree->viewport(), Qt::RightButton, {}, place);
    ASSERT_NE(FData->FocusedItem(), nullptr);
    EXPECT_EQ(FData->FocusedItem()->Caption(), "cities");
    QContextMenuEvent event(QContextMenuEvent::Mouse, place, FTree->viewport()->mapToGlobal(place));
    QApplication::sendEvent(FTree->viewport(), &event);
    auto *menu = Find<QMenu>(Window.get(), "pmTree");
    ASSERT_TRUE(TTestLoop::RunUntil([&] { return menu->isVisible(); }));
    TGuiTools::TriggerEntry(menu, "Open");
    menu->hide();
    EXPECT_EQ(pages().size(), 2);
}

TEST_F(TObjectsFrameTest, TheActionsOfADatabase)
{
    OpenDatabase();
    EXPECT_EQ(MenuOf("pmDatabase"),
              (QStringList{"Create", "-", "Open", "-", "Create Table...", "Create View...",
                           "Create Procedure...", "Create Function...", "Create Event...", "-",
                           "Migrate...", "Clone...", "Create SQL Dump...", "-",
                           "Checksum Data (CRC32)...", "-", "Modify...", "-", "Delete..."}));
    const std::pair<const char *, const char *> hints[] = {
        {"actRefresh", "Refresh"},
        {"actDatabaseCreate", "Create database"},
        {"actDatabaseCreateEvent", "Create event"},
        {"actDatabaseDump", "Create SQL-dump"},
        {"actObjectOpen", "Open object"},
        {"actObjectUpdate", "Modify object"},
        {"actObjectRename", "Rename object"},
        {"actObjectDelete", "Delete object"}};
    for (const auto &[name, hint] : hints)
        EXPECT_EQ(Action(name)->toolTip(), hint) << name;
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
        {{"Tables", "streets", "References", "in_city"},
         "actDatabaseCreateReference",
         "reference|streets|"},
        {{"Tables", "cities", "Fields", "id"}, "actDatabaseCreateTrigger", "trigger|cities|"},
        {{"Tables", "cities"}, "actObjectUpdate", "table||cities"},
        {{"Views", "names"}, "actObjectUpdate", "view||names"},
        {{"Events", "nightly"}, "actObjectUpdate", "event||nightly"},
        {{"Tables", "cities", "Fields", "id"}, "actObjectUpdate", "field|cities|id"},
        {{"Tables", "cities", "Indexes", "by_name"}, "actObjectUpdate", "index|cities|by_name"},
        {{"Tables", "streets", "References", "in_city"},
         "actObjectUpdate",
         "reference|streets|in_city"},
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
    const QStringList field = {"Tables", "cities", "Fields", "id"};
    Node({"Tables", "cities", "Fields"}).SetExpanded(true);
    DoubleClick(field);
    EXPECT_EQ(dialogs.Take().size(), 1) << "what cannot be opened is modified";
    for (const QStringList &path :
         {QStringList{"Tables"}, {"Views", "names", "Fields", "name"}, {"Events", "nightly"}}) {
        Focus(path);
        ExpectError("GetActiveTable error.");
        Action("actDatabaseCreateField")->trigger();
        EXPECT_EQ(dialogs.Take(), QStringList());
    }
}

TEST_F(TObjectsFrameTest, WhatIsGoneLosesItsNode)
{
    OpenDatabase();
    const QString longName(64, QChar(u'ж'));
    Exec("CREATE TABLE `" + longName + "` (id INT)");
    Action("actRefresh")->trigger();
    EXPECT_EQ(Captions(*Node({"Tables"}).DataList()).last(), longName);
    Node({"Tables", longName}).SetExpanded(true);
    Focus({"Tables", longName, "Fields"});
    Exec("DROP TABLE `" + longName + "`");
    Action("actRefresh")->trigger();
    EXPECT_EQ(Captions(*Node({"Tables"}).DataList()), (QStringList{"cities", "streets"}));
    // Opened only after another session has dropped it.
    Exec("DROP TABLE streets");
    Node({"Tables", "streets"}).SetExpanded(true);
    Action("actRefresh")->trigger();
    EXPECT_EQ(Captions(*Node({"Tables"}).DataList()), QStringList{"cities"});
    // A view without its table keeps its node.
    Exec("DROP TABLE cities");
    Node({"Views", "names"}).SetExpanded(true);
    Action("actRefresh")->trigger();
    EXPECT_EQ(Captions(*Node({"Views"}).DataList()), QStringList{"names"});
}

class TPaintCounter : public QObject
{
public:
    explicit TPaintCounter(QWidget *widget) { widget->installEventFilter(this); }
    int Count = 0;

protected:
    bool eventFilter(QObject *, QEvent *event) override
    {
        Count += event->type() == QEvent::Paint;
        return false;
    }
};

TEST_F(TObjectsFrameTest, ARefreshPaintsOnce)
{
    OpenDatabase();
    Node({"Tables", "cities"}).SetExpanded(true);
    Focus({"Tables", "streets"});
    TTestLoop::Settle();
    Exec("CREATE TABLE another (id INT)");
    const TPaintCounter painted(FTree->viewport());
    Action("actRefresh")->trigger();
    TTestLoop::Settle();
    EXPECT_EQ(painted.Count, 1);
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
