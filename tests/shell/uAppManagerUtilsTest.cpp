#include "shell/uAppManagerUtils.h"

#include "model/uDbmTableList.h"
#include "pages/tree/uManagerObjectsFrame.h"
#include "shell/uAppMessages.h"
#include "shell/uRecordedDialogs.h"
#include "shell/uWorkbenchFixture.h"

#include <QLineEdit>

namespace {

class TAppManagerUtilsTest : public TWorkbenchTest
{
protected:
    TAppManagerUtilsTest()
    {
        Exec("CREATE TABLE t (id INT PRIMARY KEY)");
        Exec("CREATE VIEW v AS SELECT id FROM t");
        const auto note = [this](const QString &text) { FHeard += text; };
        TMessenger::Register<TRedrawUIMessage>(
            &FEar, [note](const TRedrawUIMessage &) { note("redraw"); });
        TMessenger::Register<TTableRenamedMessage>(&FEar, [note](const TTableRenamedMessage &m) {
            note(m.TableName + ">" + m.NewTableName);
        });
        TMessenger::Register<TViewRenamedMessage>(&FEar, [note](const TViewRenamedMessage &m) {
            note(m.ViewName + ">" + m.NewViewName);
        });
        TMessenger::Register<TSelectSchemaMessage>(
            &FEar, [note](const TSelectSchemaMessage &m) { note("select " + m.DatabaseName); });
    }
    ~TAppManagerUtilsTest() override { TMessenger::Unregister(&FEar); }

    TAppManagerUtils &Utils() { return Workspace().Utils(); }
    TDbmManager &Manager() { return Workspace().Manager(); }
    QStringList Heard() { return std::exchange(FHeard, {}); }
    TDbmDatabaseItem &Item() { return *Manager().Databases().GetByName(Database().Name()); }

    QStringList FHeard;

private:
    QObject FEar;
};

TEST_F(TAppManagerUtilsTest, WhatWasMadeIsShown)
{
    TRecordedDialogs dialogs;
    TManagerFrame &workspace = OpenWorkspace();
    auto *tree = workspace.findChild<TManagerObjectsFrame *>();
    tree->SelectDatabase(Database().Name());
    dialogs.Confirms = false;
    EXPECT_FALSE(Utils().CreateTable(Database().Name()));
    EXPECT_EQ(Heard(), QStringList());
    EXPECT_EQ(workspace.GetPagesCaption(), QStringList());

    dialogs.Confirms = true;
    dialogs.NewName = "made";
    dialogs.Work = [this](const TAppDialogs::TObjectTask &task) {
        Server().Exec("CREATE TABLE made (id INT)", task.DatabaseName);
        Item().Tables().RequestProcess();
    };
    dialogs.Take();
    ChooseDatabase(Database().Name());
    Trigger("actSchemaCreateTable");
    EXPECT_EQ(dialogs.Take(), QStringList{"table|" + Database().Name() + "|||"});
    EXPECT_EQ(Heard(), QStringList{"redraw"});
    EXPECT_EQ(workspace.GetPagesCaption(), QStringList{Database().Name() + ".made"});
}

TEST_F(TAppManagerUtilsTest, ARenameInADialogIsToldAheadOfTheRedraw)
{
    TRecordedDialogs dialogs;
    TManagerFrame &workspace = OpenWorkspace();
    Pages().ShowTable(Database().Name(), "t", true);
    dialogs.NewName = "t";
    EXPECT_TRUE(Utils().UpdateTable(Database().Name(), "t"));
    EXPECT_EQ(Heard(), QStringList{"redraw"}) << "it kept its name";
    dialogs.NewName = "u";
    dialogs.Work = [this](const TAppDialogs::TObjectTask &) {
        Exec("RENAME TABLE t TO u");
        Item().Tables().RequestProcess();
    };
    EXPECT_TRUE(Utils().UpdateTable(Database().Name(), "t"));
    EXPECT_EQ(Heard(), (QStringList{"t>u", "redraw"}));
    EXPECT_EQ(workspace.GetPagesCaption(), QStringList{Database().Name() + ".u"});
    dialogs.NewName = "w";
    dialogs.Work = {};
    EXPECT_TRUE(Utils().UpdateView(Database().Name(), "v"));
    EXPECT_EQ(Heard(), (QStringList{"v>w", "redraw"}));
}

TEST_F(TAppManagerUtilsTest, AnAccountIsDeletedWhenThatIsConfirmed)
{
    OpenWorkspace();
    const QString name = Database().Name();
    Server().Exec("CREATE USER '" + name + "'@'localhost'");
    const QString count = "SELECT COUNT(*) FROM mysql.user WHERE user = '" + name + "'";
    EXPECT_FALSE(Utils().DeleteUser(name, "elsewhere")) << "there is none to ask about";
    for (const bool confirms : {false, true}) {
        Driver.ExpectMessage("Do you really want to delete this user?",
                             confirms ? QMessageBox::Yes : QMessageBox::No);
        EXPECT_EQ(Utils().DeleteUser(name, "localhost"), confirms);
        EXPECT_EQ(Server().Value(count), confirms ? "0" : "1");
    }
    EXPECT_EQ(Heard(), QStringList{"redraw"});
}

TEST_F(TAppManagerUtilsTest, AnUntouchedNameIsKeptWithItsBlanks)
{
    Exec("CREATE TABLE ` a` (id INT)");
    OpenWorkspace();
    Answer("butOK");
    EXPECT_TRUE(Utils().RenameTable(Database().Name(), " a"));
    EXPECT_EQ(Value("SELECT COUNT(*) FROM ` a`"), "0");
    Driver.Expect([](QWidget *dialog) {
        Find<QLineEdit>(dialog, "edName")->setText(" b ");
        TGuiTools::Click(dialog, "butOK");
    });
    EXPECT_TRUE(Utils().RenameTable(Database().Name(), " a"));
    EXPECT_EQ(Value("SELECT COUNT(*) FROM b"), "0");
}

} // namespace
