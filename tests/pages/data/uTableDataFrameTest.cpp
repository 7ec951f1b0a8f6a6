#include "pages/data/uTableDataFixture.h"

#include <QSet>

namespace {

TEST_F(TTableDataTest, PagesInTheOrderOfATextHaveEachRowOnce)
{
    Exec("CREATE TABLE t (id INT PRIMARY KEY, s TEXT, b BLOB)");
    Exec("INSERT INTO t SELECT seq, CONCAT(LPAD(seq, 3, '0'), REPEAT('x', 250 - seq)), "
         "CONCAT(1000 - seq, REPEAT('x', seq)) FROM seq_1_to_250");
    Open("t");
    for (int column : {1, 2}) {
        TGuiTools::ClickHeader(Grid().horizontalHeader(), column);
        QSet<QString> ids;
        for (int page = 1; page <= 3; ++page) {
            TypePage(QString::number(page));
            for (int row = 0; row < RowCount(); ++row)
                ids += Cell(row, 0);
        }
        EXPECT_EQ(ids.size(), 250) << "column " << column;
        TypePage("1");
    }
}

TEST_F(TTableDataTest, TurnsPages)
{
    Exec("CREATE TABLE t (id INT PRIMARY KEY, v INT)");
    Exec("INSERT INTO t SELECT seq, 1000 - seq FROM seq_1_to_250");
    Open("t");
    EXPECT_EQ(Status(), "Rows: 250");
    EXPECT_EQ(Part<QLineEdit>("edPageCount")->text(), "3");
    EXPECT_FALSE(Can("actPrevPage"));
    Run("actLastPage");
    EXPECT_EQ(RowCount(), 50);
    EXPECT_FALSE(Can("actNextPage"));
    const auto before = FStatements.size();
    TypePage("two"); // no number: nothing is asked of the server
    EXPECT_EQ(FStatements.size(), before);
    EXPECT_EQ(PageNumber(), "3");
    TypePage("1");
    EXPECT_EQ(Cell(0, 0), "1");

    // The server sorts, not the rows at hand; the third click takes the order off.
    QHeaderView *header = Grid().horizontalHeader();
    const auto click = [header] { TGuiTools::ClickHeader(header, 1); };
    click();
    EXPECT_EQ(Cell(0, 1), "750");
    EXPECT_EQ(header->sortIndicatorSection(), 1);
    click();
    EXPECT_EQ(Cell(0, 1), "999");
    click();
    EXPECT_FALSE(header->isSortIndicatorShown());
    EXPECT_FALSE(FStatements.filter("SELECT `id`").last().contains("ORDER BY"));

    click();
    Exec("ALTER TABLE t DROP v");
    Trigger("actRefresh");
    EXPECT_EQ(RowCount(), 100) << "the order goes with its column";
}

TEST_F(TTableDataTest, FiltersAndShowsWhatTheServerSaysOfAFilter)
{
    Exec("CREATE TABLE t (id INT PRIMARY KEY)");
    Exec("INSERT INTO t SELECT seq FROM seq_1_to_20");
    Open("t");
    Run("actFilter");
    Filter("id > 15");
    EXPECT_EQ(RowCount(), 5);
    Filter("id >");
    const auto *error = Part<QPlainTextEdit>("memError");
    EXPECT_TRUE(error->toPlainText().startsWith("ER_PARSE_ERROR (1064)"));
    EXPECT_FALSE(Can("actCreate"));
    const auto before = FStatements.size();
    Pages().ShowTable(Database().Name(), "t", true);
    EXPECT_TRUE(error->isVisible()) << "a redraw does not bring the old rows back";
    EXPECT_EQ(FStatements.size(), before);
    Filter("id > 15"); // the text of before, and not the one that was refused
    EXPECT_EQ(RowCount(), 5);
    EXPECT_FALSE(error->isVisible());
    Run("actFilter"); // hidden, it is not applied, but kept
    EXPECT_EQ(RowCount(), 20);
    Run("actFilter");
    EXPECT_EQ(RowCount(), 5);
    QLineEdit *rows = Part<QComboBox>("cbxRows")->lineEdit();
    rows->setText("2");
    QTest::keyClick(rows, Qt::Key_Return);
    Filter("id > 15 -- the last ones");
    EXPECT_EQ(RowCount(), 2) << "the comment takes no limit along";
}

TEST_F(TTableDataTest, NoRowsAreAPageToo)
{
    Exec("CREATE TABLE t (id INT PRIMARY KEY)");
    Open("t");
    EXPECT_TRUE(Can("actCreate"));
    EXPECT_FALSE(Can("actUpdate") || Can("actDelete"));
    EXPECT_EQ(Part<QLineEdit>("edPageCount")->text(), "1");
    EXPECT_EQ(Status(), "Rows: 0");
    Exec("INSERT INTO t SELECT seq FROM seq_1_to_800");
    Run("actRefresh");
    TypePage("7");
    EXPECT_EQ(Cell(0, 0), "601");
    Run("actFilter");
    Filter("id < 50");
    EXPECT_EQ(RowCount(), 0) << "the page of the filter's rows that there is comes next";
    EXPECT_FALSE(Can("actUpdate"));
    EXPECT_EQ(PageNumber(), "1");
    Run("actRefresh");
    EXPECT_EQ(RowCount(), 49);
}

TEST_F(TTableDataTest, ARefreshLeavesTheRowThatTheUserIsIn)
{
    Exec("CREATE TABLE t (id INT PRIMARY KEY, s TEXT)");
    Exec("INSERT INTO t SELECT seq, seq FROM seq_1_to_250");
    Open("t");
    EXPECT_TRUE(Grid().selectionModel()->isRowSelected(0));
    Focus(60, 1);
    const auto isAt = [this](int row, int column) {
        return Grid().currentIndex() == Grid().model()->index(row, column) &&
               Grid().selectionModel()->isRowSelected(row);
    };
    Run("actRefresh");
    EXPECT_TRUE(isAt(60, 1));
    Run("actShowText"); // the same rows by another statement
    EXPECT_TRUE(isAt(60, 1));
    Answer("butYes");
    Run("actDelete");
    EXPECT_TRUE(isAt(60, 1));
    EXPECT_EQ(Cell(60, 0), "62");
    QTest::keyClick(&Grid(), Qt::Key_Down);
    EXPECT_TRUE(isAt(61, 1));
    Exec("INSERT INTO t VALUES (0, 'of another session')");
    Run("actRefresh");
    EXPECT_TRUE(isAt(62, 1)) << "the record, and not its number";
    Run("actNextPage");
    EXPECT_TRUE(isAt(0, 1)) << "other rows begin at their top";
}

TEST_F(TTableDataTest, WidthsOfColumnsAreKeptForTheTable)
{
    Exec("CREATE TABLE `t.ü` (id INT PRIMARY KEY, name TEXT); CREATE TABLE u LIKE `t.ü`");
    Open("t.ü");
    QHeaderView *header = Grid().horizontalHeader();
    const int before = header->sectionSize(1);
    const QPoint edge(header->sectionViewportPosition(1) + before - 1, header->height() / 2);
    TGuiTools::Drag(header->viewport(), edge, edge + QPoint(120, 0));
    TTestLoop::Settle();
    const int wide = header->sectionSize(1);
    ASSERT_GT(wide, before + 50);
    Run("actRefresh");
    EXPECT_EQ(Grid().columnWidth(1), wide);
    Workspace().CloseActivePage();
    Open("u");
    EXPECT_EQ(Grid().columnWidth(1), before);
    Open("t.ü");
    EXPECT_NEAR(Grid().columnWidth(1), wide, 1);
}

TEST_F(TTableDataTest, InsertsChangesAndDeletesRecords)
{
    Exec("CREATE TABLE t (id BIGINT UNSIGNED PRIMARY KEY, n VARCHAR(20) DEFAULT 'def', "
         "s TEXT, f DECIMAL(30,10), d DATETIME(6), k BIT(8), e ENUM('a','b'), keep TEXT)");
    Open("t");
    OnRecord([](TVerticalGrid &grid) {
        EXPECT_EQ(grid.window()->windowTitle(), "Create Record");
        EXPECT_EQ(grid.Row("n")->Text(), "def");
        Type(grid, "id", "18446744073709551615");
        Type(grid, "f", "12345678901234567890.0123456789");
        Type(grid, "d", "2024-02-29 23:59:59.123456");
        Type(grid, "k", "5");
    });
    Run("actCreate");
    EXPECT_TRUE(FStatements.filter("INSERT").last().contains("`id`, `f`, `d`, `k`"))
        << "what was not touched is left to the server";
    Exec("UPDATE t SET keep = ' as it was '");
    const auto row = [this] {
        return Rows("SELECT id, n, s, f, d, k + 0, e, keep FROM t").value(0);
    };
    EXPECT_EQ(row().mid(0, 6),
              (QStringList{"18446744073709551615", "def", QString(),
                           "12345678901234567890.0123456789", "2024-02-29 23:59:59.123456", "5"}));

    // The key is above the signed range; only what was typed is written.
    Focus(0);
    OnRecord([](TVerticalGrid &grid) {
        Type(grid, "s", "text");
        Type(grid, "n", "");
    });
    Run("actUpdate");
    EXPECT_EQ(LastUpdate(), "`n` = '', `s` = 'text'");
    EXPECT_EQ(row().last(), " as it was ");

    const auto before = FStatements.filter("UPDATE").size();
    OnRecord([](TVerticalGrid &) {});
    Run("actUpdate");
    EXPECT_EQ(FStatements.filter("UPDATE").size(), before) << "nothing was touched";

    // A refusal keeps the dialog and what was typed; NULL by the keyboard.
    Driver.Expect([this](QWidget *dialog) {
        auto &grid = *Find<TVerticalGrid>(dialog, "vgRecord");
        Type(grid, "f", "no number");
        ExpectError("is not a value of the field");
        TGuiTools::Click(dialog, "butOK");
        Type(grid, "f", "1.5");
        SetNull(grid, "s");
        TGuiTools::Click(dialog, "butOK");
    });
    Run("actUpdate");
    EXPECT_EQ(Value("SELECT s IS NULL AND f = 1.5 FROM t"), "1");

    for (const auto &[button, count] : {std::pair("butNo", "1"), {"butYes", "0"}}) {
        Answer(button);
        Run("actDelete");
        EXPECT_EQ(Value("SELECT COUNT(*) FROM t"), count);
    }
}

TEST_F(TTableDataTest, ARowWithoutAWholeKeyIsNotTouched)
{
    Exec("CREATE TABLE t (id INT)");
    Exec("INSERT INTO t VALUES (1), (2)");
    Exec("CREATE TABLE prefixed (k TEXT, PRIMARY KEY (k(3)))");
    Exec("INSERT INTO prefixed VALUES ('abc')");
    // A table of the session's own hides the one of its name, and its key with it.
    Exec("CREATE TABLE hidden (id INT PRIMARY KEY)");
    OpenWorkspace();
    NewQuery("");
    RunQuery("CREATE TEMPORARY TABLE " + Database().Name() +
             ".hidden SELECT 1 AS id UNION ALL SELECT 1");
    for (const char *table : {"t", "prefixed", "hidden"}) {
        Open(table);
        Focus(0);
        ExpectError("This table should have a primary key.");
        Run("actDelete");
        ExpectError("This table should have a primary key.");
        Run("actUpdate");
        EXPECT_TRUE(Can("actCreate"));
    }
    EXPECT_EQ(Value("SELECT COUNT(*) FROM t"), "2");
}

TEST_F(TTableDataTest, ViewsAreBrowsedAndATableThatGoesLeavesAnEmptyPage)
{
    Exec("CREATE TABLE t (id INT PRIMARY KEY, v INT)");
    Exec("INSERT INTO t VALUES (1, 10)");
    Exec("CREATE VIEW plain AS SELECT * FROM t");
    Exec("CREATE VIEW sums AS SELECT SUM(v) AS total FROM t");
    Open("plain");
    EXPECT_TRUE(Can("actEditMode"));
    EXPECT_FALSE(Can("actCreate"));
    EXPECT_FALSE(Can("actUpdate"));
    Open("sums");
    EXPECT_EQ(Cell(0, 0), "10");
    EXPECT_FALSE(Can("actEditMode"));
    Exec("DROP TABLE t");
    Run("actRefresh");
    const QString error = Part<QPlainTextEdit>("memError")->toPlainText();
    EXPECT_TRUE(error.contains("1356")) << error.toStdString();
    Exec("DROP VIEW sums");
    Trigger("actRefresh");
    TTestLoop::Settle();
    EXPECT_EQ(Pages().GetActivePage()->findChild<TTableDataFrame *>(), nullptr);
}

TEST_F(TTableDataTest, APageComesBackAsItWasBrowsed)
{
    Exec("CREATE TABLE t (id INT PRIMARY KEY, s TEXT)");
    Exec("INSERT INTO t SELECT seq, seq FROM seq_1_to_500");
    Open("t");
    Run("actShowText");
    Run("actFilter");
    Filter("id > 100");
    Run("actNextPage");
    TGuiTools::ClickHeader(Grid().horizontalHeader(), 0);
    const QString first = Cell(0, 0);
    CloseWorkspace();
    OpenWorkspace();
    ASSERT_EQ(Workspace().GetPagesCaption(), QStringList{Database().Name() + ".t"});
    FFrame = Pages().GetActivePage()->findChild<TTableDataFrame *>();
    EXPECT_EQ(Cell(0, 0), first);
    EXPECT_EQ(Cell(0, 1), first) << "with the texts";
    EXPECT_EQ(Status(), "Rows: 400");
    EXPECT_EQ(PageNumber(), "2");
}

} // namespace
