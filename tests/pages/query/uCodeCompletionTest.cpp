#include "app/uAppConfig.h"
#include "core/uServerProfile.h"
#include "model/uDbmFieldList.h"
#include "model/uDbmManager.h"
#include "model/uDbmTableList.h"
#include "pages/query/uEditorPageFrame.h"
#include "pages/query/uQueryPageFrame.h"
#include "shell/uAppCodeCompleteUtils.h"
#include "shell/uAppManagerPageUtils.h"
#include "shell/uManagerFrame.h"
#include "shell/uPageManagerFrame.h"
#include "shell/uWorkbenchFixture.h"
#include "widgets/uCompletionList.h"
#include "widgets/uTextEditor.h"

#include <QAbstractScrollArea>
#include <QCheckBox>
#include <QComboBox>
#include <QLineEdit>
#include <QListView>
#include <QTest>
#include <gtest/gtest.h>

namespace {

class TCodeCompletionTest : public TWorkbenchTest
{
protected:
    TTextEditor &Editor() { return *::Find<TTextEditor>(&QueryPage(), "edEditor"); }
    QWidget *Control() { return Editor().findChild<QAbstractScrollArea *>(); }
    TCompletionList *List()
    {
        for (QWidget *window : QApplication::topLevelWidgets())
            if (auto *list = qobject_cast<TCompletionList *>(window); list && list->isVisible())
                return list;
        return nullptr;
    }
    QStringList Shown() { return List() ? List()->Texts() : QStringList(); }
    void Type(const QString &keys)
    {
        QTest::keyClicks(Control(), keys);
        TTestLoop::Settle();
    }
    void Press(int key, Qt::KeyboardModifiers modifiers = Qt::NoModifier)
    {
        QTest::keyClick(Control(), static_cast<Qt::Key>(key), modifiers);
        TTestLoop::Settle();
    }
};

TEST_F(TCodeCompletionTest, TheListOpensNarrowsAndInserts)
{
    OpenWorkspace();
    NewQuery("");
    Type("SEL");
    EXPECT_EQ(List(), nullptr) << "nothing opens by itself";
    Press(Qt::Key_Space, Qt::ControlModifier);
    ASSERT_NE(List(), nullptr);
    EXPECT_EQ(Shown().first(), "SELECT * FROM");
    EXPECT_TRUE(Shown().contains("SELECT"));
    Type("ECT D");
    EXPECT_EQ(List(), nullptr) << "the blank took the first entry";
    EXPECT_EQ(Editor().Text(), "SELECT * FROM  D");
    Editor().SetText("");
    Type("trunc");
    Press(Qt::Key_Space, Qt::ControlModifier);
    Press(Qt::Key_Down);
    const QString chosen = Shown().value(1);
    Press(Qt::Key_Tab);
    EXPECT_TRUE(Editor().Text().startsWith(chosen)) << Editor().Text().toStdString();
    Editor().SetText("");
    Type("-- trunc");
    Press(Qt::Key_Space, Qt::ControlModifier);
    EXPECT_EQ(List(), nullptr) << "a comment is left in peace";
    Editor().SetText("");
    Type("upd");
    Press(Qt::Key_Space, Qt::ControlModifier);
    EXPECT_NE(List(), nullptr);
    Type("zz");
    EXPECT_EQ(List(), nullptr) << "no word begins so";
    Press(Qt::Key_Backspace);
    Press(Qt::Key_Backspace);
    Press(Qt::Key_Space, Qt::ControlModifier);
    ASSERT_NE(List(), nullptr);
    EXPECT_LT(Shown().size(), 10);
    EXPECT_GE(List()->height(), 10 * List()->findChild<QListView *>()->sizeHintForRow(0));
    Press(Qt::Key_Escape);
    EXPECT_EQ(List(), nullptr);
    EXPECT_EQ(Editor().Text(), "upd");
}

TEST_F(TCodeCompletionTest, NamesThatAreLoadedFollowAndNothingIsAsked)
{
    Exec("CREATE TABLE customers (id INT, `full name` VARCHAR(10))");
    Exec("CREATE TABLE custom_prices (price INT)");
    TManagerFrame &workspace = OpenWorkspace(Database().Name());
    TDbmDatabaseItem &database = *workspace.Manager().GetUsedDatabase();
    database.Tables().Count();
    TDbmTableList::TItemPtr table;
    ASSERT_TRUE(database.Tables().TryGetByName("customers", table));
    NewQuery("");
    int statements = 0;
    QObject::connect(&workspace, &TManagerFrame::OnCommandBeforeExecute, &QueryPage(),
                     [&] { ++statements; });
    Type("SELECT * FROM custo");
    Press(Qt::Key_Space, Qt::ControlModifier);
    EXPECT_EQ(Shown(), (QStringList{"custom_prices", "customers"}));
    Press(Qt::Key_Down);
    Press(Qt::Key_Return);
    EXPECT_EQ(Editor().Text(), "SELECT * FROM customers");
    Type(" c WHERE customers.");
    EXPECT_TRUE(Shown().isEmpty()) << "its columns are not loaded";
    EXPECT_EQ(statements, 0);

    table->Fields().Count();
    statements = 0;
    Type("f");
    Press(Qt::Key_Backspace);
    Press(Qt::Key_Space, Qt::ControlModifier);
    EXPECT_EQ(Shown(), (QStringList{"id", "full name"}));
    Type("f");
    Press(Qt::Key_Return);
    EXPECT_TRUE(Editor().Text().endsWith("customers.`full name`")) << Editor().Text().toStdString();
    Type(" AND c.");
    EXPECT_EQ(Shown(), (QStringList{"id", "full name"})) << "by the other name of the table";
    Press(Qt::Key_Escape);
    Type(" " + Database().Name() + ".custom_");
    EXPECT_EQ(Shown(), QStringList{"custom_prices"});
    EXPECT_EQ(statements, 0);
}

TEST_F(TCodeCompletionTest, ColumnsOfTablesWrittenWithAnotherDatabaseComeFirst)
{
    TTestDatabase other(Server());
    other.Exec("CREATE TABLE orders (far INT)");
    Exec("CREATE TABLE orders (near INT)");
    Exec("CREATE TABLE `key` (`order` INT)");
    TManagerFrame &workspace = OpenWorkspace();
    workspace.Manager().Databases().ForEach([&](TDbmDatabaseItem &database) {
        const QString name = database.Name();
        if (name == other.Name() || name == Database().Name())
            database.Tables().ForEach([](TDbmTableItem &table) { table.Fields().Count(); });
    });
    workspace.PageUtils().ShowQueryFromText({}, Database().Name(), 0, true);
    const auto shown = [&](const QString &text) {
        Editor().SetText(text);
        Press(Qt::Key_End, Qt::ControlModifier);
        Press(Qt::Key_Space, Qt::ControlModifier);
        const QStringList names = Shown();
        Press(Qt::Key_Escape);
        return names;
    };
    const QString from = "SELECT 1 FROM " + other.Name() + ".orders";
    EXPECT_EQ(shown(from + " WHERE orders."), (QStringList{"far", "near"}));
    EXPECT_EQ(shown(from + " AS o WHERE o."), QStringList{"far"});
    EXPECT_EQ(shown("SELECT 1 FROM orders o,`" + other.Name() + "`.`orders` p WHERE p."),
              QStringList{"far"});
    EXPECT_EQ(shown("SELECT 1 FROM orders WHERE orders."), QStringList{"near"});

    // A name that is a word of the language is a name in backticks, where it must be.
    const qsizetype last = shown("SELECT orde").size() - 1;
    Press(Qt::Key_Space, Qt::ControlModifier);
    for (qsizetype i = 0; i < last; ++i)
        Press(Qt::Key_Down);
    Press(Qt::Key_Return);
    EXPECT_EQ(Editor().Text(), "SELECT `order`");
    shown("SELECT key.or");
    Press(Qt::Key_Space, Qt::ControlModifier);
    Press(Qt::Key_Return);
    EXPECT_EQ(Editor().Text(), "SELECT `key`.order");
}

TEST_F(TCodeCompletionTest, EveryWordThatIsANameCanBeRun)
{
    TAppReservedWordsCodeCompleteManager words;
    QStringList columns;
    for (const TCodeCompleteItem &item : words.Items())
        columns += '`' + item.DisplayValue + "` INT";
    for (TTestServer *server : {&TTestServer::Instance(), TTestServer::MySql9()}) {
        if (!server)
            continue;
        TTestDatabase database(*server);
        database.Exec("CREATE TABLE words (" + columns.join(',') + ')');
        const auto manager = TDbmManager::Create();
        TDbmConnectionProfile profile = ServerProfile(*server);
        profile.Database = database.Name();
        manager->SetParams(profile);
        manager->Connect();
        manager->GetUsedDatabase()->Tables().ForEach(
            [](TDbmTableItem &table) { table.Fields().Count(); });
        TAppLoadedNamesCodeCompleteSource source(
            manager.get(), [&] { return database.Name(); }, [] { return QString(); }, &words);
        QList<TCodeCompleteItem> items;
        source.Suggest("", items);
        QStringList names;
        for (const TCodeCompleteItem &item : items)
            if (item.DisplayValue.toUpper() == item.DisplayValue)
                names += item.InsertValue;
        EXPECT_EQ(names.size(), columns.size());
        EXPECT_TRUE(names.contains("STATUS")) << "no backticks where none are needed";
        database.Exec("SELECT " + names.join(',') + " FROM words");
    }
}

TEST_F(TCodeCompletionTest, AResultIsExportedByTheOptionsOfTheDialog)
{
    TPageManagerFrame &pages = OpenWorkspace().PageManager();
    NewQuery("");
    EXPECT_FALSE(IsEnabled("actQueryExportAsCVS"));
    RunQuery("SELECT 1 AS a, 'x' AS b UNION ALL SELECT 2, NULL");
    EXPECT_TRUE(IsEnabled("actQueryExportAsCVS"));
    const auto options = [this](const TModalDriver::THandler &handler) {
        Driver.Expect("frmDialog", handler);
        Trigger("actQueryExportAsCVS");
    };
    const auto press = [](QWidget *dialog, const char *button) {
        QTest::mouseClick(::Find<QWidget>(dialog, button), Qt::LeftButton);
    };
    options([&](QWidget *dialog) {
        EXPECT_EQ(dialog->windowTitle(), "Export options");
        auto *custom = ::Find<QLineEdit>(dialog, "edFieldDelimiter");
        EXPECT_FALSE(custom->isEnabled());
        auto *kind = ::Find<QComboBox>(dialog, "cbxFieldDelimiter");
        kind->setCurrentText("Comma");
        EXPECT_EQ(custom->text(), ",");
        kind->setCurrentText("Custom");
        EXPECT_EQ(custom->text(), "");
        EXPECT_TRUE(custom->isEnabled());
        custom->setText("|");
        ::Find<QCheckBox>(dialog, "chkColumnTitles")->setChecked(true);
        ::Find<QComboBox>(dialog, "cbxTextQualifier")->setCurrentIndex(2);
        EXPECT_FALSE(::Find<QWidget>(dialog, "grpRegionalSettings")->isVisible());
        ::Find<QCheckBox>(dialog, "chkRegSettingCustom")->setChecked(true);
        EXPECT_TRUE(::Find<QWidget>(dialog, "grpRegionalSettings")->isVisible());
        press(dialog, "butOK");
    });
    auto *page = pages.ActivePage();
    EXPECT_EQ(page->GetTitle(), "Result as CSV");
    EXPECT_EQ(::Find<TTextEditor>(page, "edEditor")->Text(), "a|b|\r\n1|\"x\"|\r\n2||\r\n");
    EXPECT_FALSE(
        TAppConfig::Config().GetValue("export_cvs_options", "custom_regional_settings", true));
    // What was chosen comes back, and Cancel exports nothing.
    pages.SelectNextPage();
    options([&](QWidget *dialog) {
        EXPECT_EQ(::Find<QLineEdit>(dialog, "edFieldDelimiter")->text(), "|");
        EXPECT_TRUE(::Find<QCheckBox>(dialog, "chkColumnTitles")->isChecked());
        press(dialog, "butCancel");
    });
    EXPECT_EQ(pages.ActivePage(), &QueryPage());
}

} // namespace
