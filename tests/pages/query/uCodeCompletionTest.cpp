#include "core/uServerProfile.h"
#include "model/uDbmFieldList.h"
#include "model/uDbmTableList.h"
#include "pages/query/uQueryPageFrame.h"
#include "shell/uAppCodeCompleteUtils.h"
#include "shell/uWorkbenchFixture.h"
#include "widgets/uCompletionList.h"

#include <QAbstractScrollArea>
#include <QTest>

namespace {

class TCodeCompletionTest : public TWorkbenchTest
{
protected:
    QWidget *Control() { return QueryEditor().findChild<QAbstractScrollArea *>(); }
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
    void Complete() { Press(Qt::Key_Space, Qt::ControlModifier); }
};

TEST_F(TCodeCompletionTest, TheListOpensNarrowsAndInserts)
{
    OpenWorkspace();
    NewQuery("");
    Type("SEL");
    EXPECT_EQ(List(), nullptr) << "nothing opens by itself";
    Complete();
    ASSERT_NE(List(), nullptr);
    EXPECT_EQ(Shown().first(), "SELECT * FROM");
    EXPECT_TRUE(Shown().contains("SELECT"));
    Type("ECT D");
    EXPECT_EQ(List(), nullptr) << "the blank took the first entry";
    EXPECT_EQ(QueryEditor().Text(), "SELECT * FROM  D");
    QueryEditor().SetText("");
    Type("trunc");
    Complete();
    Press(Qt::Key_Down);
    const QString chosen = Shown().value(1);
    Press(Qt::Key_Tab);
    EXPECT_TRUE(QueryEditor().Text().startsWith(chosen)) << QueryEditor().Text().toStdString();
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
    Complete();
    EXPECT_EQ(Shown(), (QStringList{"custom_prices", "customers"}));
    Press(Qt::Key_Down);
    Press(Qt::Key_Return);
    EXPECT_EQ(QueryEditor().Text(), "SELECT * FROM customers");
    Type(" c WHERE customers.");
    EXPECT_TRUE(Shown().isEmpty()) << "its columns are not loaded";
    EXPECT_EQ(statements, 0);

    table->Fields().Count();
    statements = 0;
    Type("f");
    Press(Qt::Key_Backspace);
    Complete();
    EXPECT_EQ(Shown(), (QStringList{"id", "full name"}));
    Type("f");
    Press(Qt::Key_Return);
    EXPECT_TRUE(QueryEditor().Text().endsWith("customers.`full name`"))
        << QueryEditor().Text().toStdString();
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
    Pages().ShowQueryFromText({}, Database().Name(), 0, true);
    const auto shown = [&](const QString &text) {
        QueryEditor().SetText(text);
        Press(Qt::Key_End, Qt::ControlModifier);
        Complete();
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
    Complete();
    for (qsizetype i = 0; i < last; ++i)
        Press(Qt::Key_Down);
    Press(Qt::Key_Return);
    EXPECT_EQ(QueryEditor().Text(), "SELECT `order`");
    shown("SELECT key.or");
    Complete();
    Press(Qt::Key_Return);
    EXPECT_EQ(QueryEditor().Text(), "SELECT `key`.order");
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

} // namespace
