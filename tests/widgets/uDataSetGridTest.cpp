#include "widgets/uDataSetGridFixture.h"
#include "widgets/uGridCopy.h"
#include "widgets/uGridSearchBar.h"

#include <QAbstractItemModelTester>
#include <QPlainTextEdit>
#include <QToolButton>

namespace {

TEST_F(TDataSetGridTest, ShowsTheServersTextAndTellsNullFromItsWord)
{
    const QAbstractItemModelTester tester(Grid.model(),
                                          QAbstractItemModelTester::FailureReportingMode::Fatal);
    Open("SELECT 18446744073709551615 AS u, '0000-00-00' AS z, NULL AS n, 'NULL' AS w, "
         "X'00FF' AS b, CAST(1.50 AS DECIMAL(10,2)) AS d, 'a\nb' AS l");
    EXPECT_TRUE(TGuiTools::Rows(*Grid.model())[0].startsWith(
        "18446744073709551615|0000-00-00|NULL|NULL|0x00FF|1.50|"));
    EXPECT_TRUE(Cell(0, 2).data(Qt::FontRole).value<QFont>().italic());
    EXPECT_FALSE(Cell(0, 3).data(Qt::FontRole).isValid());
    EXPECT_FALSE(Shown(0, 6).contains('\n'));
    EXPECT_EQ(TGridCopy::WholeText(Cell(0, 6)), "a\nb");
    Query.Close();
    EXPECT_EQ(Grid.model()->rowCount(), 0);
}

TEST_F(TDataSetGridTest, SortsByValueAndLeavesTheRowsWhereTheyAre)
{
    Exec("CREATE TABLE t (id INT PRIMARY KEY, n DECIMAL(30,2), s VARCHAR(20)); ");
    Exec("INSERT INTO t VALUES (1, 10, 'b'), (2, 9.5, 'abcdefgh2'), (3, NULL, 'abcdefgh1'), "
         "(4, -1, NULL), (5, 9.5, ''), (6, 12345678901234567890123.01, 'ж')");
    Open("SELECT * FROM t ORDER BY id");
    Click(1);
    EXPECT_EQ(Column(0), (QStringList{"3", "4", "2", "5", "1", "6"}));
    Click(1);
    EXPECT_EQ(Column(0), (QStringList{"6", "1", "2", "5", "4", "3"})) << "equals keep their order";
    Click(2);
    EXPECT_EQ(Column(2), (QStringList{"NULL", "", "abcdefgh1", "abcdefgh2", "b", "ж"}));
    EXPECT_EQ(Query.FieldAt(0).AsStringAt(0), "1");
    Grid.setCurrentIndex(Cell(3, 0));
    EXPECT_EQ(Query.RecNo(), 1) << "the dataset follows the grid to the row that is shown";
    Query.First();
    EXPECT_EQ(Grid.currentIndex().row(), 4) << "and the grid follows the dataset";
}

TEST_F(TDataSetGridTest, WritesACellWhenItIsLeft)
{
    Exec("CREATE TABLE t (id INT PRIMARY KEY, s VARCHAR(10) NOT NULL, n INT); ");
    Exec("INSERT INTO t VALUES (1, 'one', 1), (2, 'two', 2)");
    Open("SELECT * FROM t ORDER BY id");
    TypeInto(1, 1, "zwei");
    EXPECT_EQ(Value("SELECT s FROM t WHERE id = 2"), "zwei");
    EXPECT_EQ(Shown(1, 1), "zwei");
    EXPECT_EQ(Editor(), nullptr);
    Grid.setCurrentIndex(Cell(0, 2));
    QTest::keyClick(&Grid, Qt::Key_0, Qt::ControlModifier);
    EXPECT_EQ(Value("SELECT n IS NULL FROM t WHERE id = 1"), "1");
    EXPECT_EQ(Shown(0, 2), "NULL");
    // A look at NULL does not make an empty text of it.
    QTest::keyClick(&Grid, Qt::Key_F2);
    QTest::keyClick(Editor(), Qt::Key_Return);
    TTestLoop::Settle();
    EXPECT_EQ(Value("SELECT n IS NULL FROM t WHERE id = 1"), "1");
}

TEST_F(TDataSetGridTest, ARefusalStandsAtTheCellAndKeepsWhatWasTyped)
{
    Exec("CREATE TABLE t (id INT PRIMARY KEY, s VARCHAR(10) UNIQUE); ");
    Exec("INSERT INTO t VALUES (1, 'one'), (2, 'two')");
    Open("SELECT * FROM t ORDER BY id");
    TypeInto(1, 1, "one");
    EXPECT_TRUE(Note().contains("Duplicate entry")) << Note().toStdString();
    ASSERT_NE(Editor(), nullptr);
    EXPECT_EQ(Editor()->text(), "one");
    EXPECT_EQ(Value("SELECT s FROM t WHERE id = 2"), "two");
    QTest::keyClick(Editor(), Qt::Key_Escape);
    TTestLoop::Settle();
    EXPECT_EQ(Editor(), nullptr);
    EXPECT_EQ(Note(), "");
    EXPECT_EQ(Shown(1, 1), "two");

    Exec("DELETE FROM t WHERE id = 2");
    TypeInto(1, 1, "three");
    EXPECT_NE(Note(), "") << "a row that is gone is told";
    EXPECT_EQ(Value("SELECT COUNT(*) FROM t"), "1");
}

TEST_F(TDataSetGridTest, WhatCannotBeEditedSaysWhy)
{
    Exec("CREATE TABLE nokey (a INT)");
    Exec("INSERT INTO nokey VALUES (1)");
    Open("SELECT a FROM nokey");
    QTest::keyClick(&Grid, Qt::Key_F2);
    EXPECT_EQ(Editor(), nullptr);
    EXPECT_EQ(Note(), Query.ReadOnlyReason());
    EXPECT_NE(Note(), "");
    Exec("CREATE TABLE keyed (id INT PRIMARY KEY, body TEXT)");
    Exec("INSERT INTO keyed VALUES (1, 'text')");
    Open("SELECT id, LENGTH(body) AS body FROM keyed");
    Grid.setCurrentIndex(Cell(0, 1));
    QTest::keyClick(&Grid, Qt::Key_F2);
    EXPECT_EQ(Editor(), nullptr) << "a length is shown in place of the content";
    EXPECT_NE(Note(), "");
}

TEST_F(TDataSetGridTest, ATextOfSeveralLinesIsEditedWithItsLines)
{
    Exec("CREATE TABLE t (id INT PRIMARY KEY, s TEXT)");
    // One end of a line of each kind.
    Exec("INSERT INTO t VALUES (1, CONCAT('a\\r\\nb\\nc\\rd', UNHEX('E280A9'), 'e'))");
    Open("SELECT * FROM t");
    Grid.setCurrentIndex(Cell(0, 1));
    const auto edit = [this](const std::function<void(QPlainTextEdit &)> &work) {
        QTest::keyClick(&Grid, Qt::Key_F2);
        auto *box = Editor<QPlainTextEdit>();
        ASSERT_NE(box, nullptr);
        work(*box);
        QTest::keyClick(box, Qt::Key_Return, Qt::ControlModifier);
        TTestLoop::Settle();
    };
    const auto value = [this] { return Value("SELECT HEX(s) FROM t"); };
    edit([](QPlainTextEdit &) {});
    EXPECT_EQ(value(), "610D0A620A630D64E280A965");
    edit([](QPlainTextEdit &box) {
        box.moveCursor(QTextCursor::Start);
        box.moveCursor(QTextCursor::Down);
        QTest::keyClicks(&box, "x");
    });
    EXPECT_EQ(value(), "610D0A78620A630D64E280A965") << "the other lines keep their ends";
    edit([](QPlainTextEdit &box) {
        box.moveCursor(QTextCursor::Start);
        for (int i = 0; i < 3; ++i)
            QTest::keyClick(&box, Qt::Key_Down, i > 0 ? Qt::ShiftModifier : Qt::NoModifier);
        QTest::keyClick(&box, Qt::Key_Delete);
    });
    EXPECT_EQ(value(), "610D0A64E280A965");
}

TEST_F(TDataSetGridTest, ALongCellIsEditedWhole)
{
    Exec("CREATE TABLE t (id INT PRIMARY KEY, s MEDIUMTEXT)");
    Exec("INSERT INTO t VALUES (1, REPEAT('x', 40000)), (2, CONCAT('a\r\nb', UNHEX('C2A0'), 'c'))");
    Open("SELECT * FROM t ORDER BY id");
    for (const auto &[row, end] : {std::pair(0, "end"), {1, "z"}}) {
        const QString before = Value(QString("SELECT HEX(s) FROM t WHERE id = %1").arg(row + 1));
        Grid.setCurrentIndex(Cell(row, 1));
        QTest::keyClick(&Grid, Qt::Key_F2);
        auto *box = Editor<QPlainTextEdit>();
        auto *line = Editor();
        ASSERT_TRUE(box || line);
        QWidget *editor = box ? static_cast<QWidget *>(box) : line;
        QTest::keyClick(editor, Qt::Key_End, Qt::ControlModifier);
        QTest::keyClicks(editor, end);
        QTest::keyClick(editor, Qt::Key_Return, box ? Qt::ControlModifier : Qt::NoModifier);
        TTestLoop::Settle();
        EXPECT_EQ(Value(QString("SELECT HEX(s) FROM t WHERE id = %1").arg(row + 1)),
                  before + QString::fromLatin1(QByteArray(end).toHex().toUpper()))
            << "row " << row;
    }
}

TEST_F(TDataSetGridTest, OutsideEditModeTheRecordKeysWork)
{
    Open("SELECT 1 AS a UNION SELECT 2");
    Grid.SetEditMode(false);
    QStringList asked;
    QObject::connect(&Grid, &TDataSetGrid::OnUpdateRequested, &Grid, [&] { asked += "update"; });
    QObject::connect(&Grid, &TDataSetGrid::OnAppendRequested, &Grid, [&] { asked += "append"; });
    QObject::connect(&Grid, &TDataSetGrid::OnDeleteRequested, &Grid, [&] { asked += "delete"; });
    QTest::keyClick(&Grid, Qt::Key_Return);
    QTest::keyClick(&Grid, Qt::Key_Insert);
    QTest::keyClick(&Grid, Qt::Key_Delete);
    EXPECT_EQ(asked, (QStringList{"update", "append", "delete"}));
    Grid.SearchBar()->Open();
    QTest::keyClick(Find<QLineEdit>(&Grid, "edSearch"), Qt::Key_Insert);
    QTest::keyClick(Find<QToolButton>(&Grid, "butFindNext"), Qt::Key_Delete);
    EXPECT_EQ(asked.size(), 3) << "keys of the search are not for the rows";
}

TEST_F(TDataSetGridTest, CopiesAndFindsTheWholeTextOfACell)
{
    Open("SELECT 1 AS id, REPEAT('x', 5000) AS s UNION SELECT 2, CONCAT(REPEAT('y', 4000), 'end')");
    EXPECT_LT(Shown(0, 1).size(), 1000) << "a cell shows what fits";
    Grid.setCurrentIndex(Cell(0, 1));
    EXPECT_EQ(TGridCopy::Text(Grid, false), QString(5000, 'x'));
    EXPECT_TRUE(TGridCopy::Text(Grid, true).startsWith("s\n"));
    Grid.SearchBar()->Open();
    bool found = false;
    QObject::connect(Grid.SearchBar(), &TGridSearchBar::OnFinished, &Grid,
                     [&](bool result) { found = result; });
    QTest::keyClicks(Find<QLineEdit>(&Grid, "edSearch"), "yend");
    EXPECT_TRUE(TTestLoop::RunUntil([&] { return found && Grid.currentIndex().row() == 1; }));
}

} // namespace
