#include "uModalDriver.h"
#include "uPaintCounter.h"
#include "widgets/uDataSetGridFixture.h"

#include <QCalendarWidget>
#include <QListWidget>
#include <QPlainTextEdit>
#include <QScrollBar>

namespace {

class TDataSetGridEditTest : public TDataSetGridTest
{
protected:
    void Edit(int row, int column)
    {
        TGuiTools::Show(&Grid); // a popup that went gives the focus back a moment later
        Grid.setCurrentIndex(Cell(row, column));
        QTest::keyClick(&Grid, Qt::Key_F2);
    }
    void Leave()
    {
        QTest::keyClick(Editor(), Qt::Key_Return);
        TTestLoop::Settle();
    }
    /// Picks entries of the list that the next popup shows.
    void OnList(const QStringList &picks)
    {
        Driver.ExpectMenu([picks](QMenu *menu) {
            auto *list = Find<QListWidget>(menu, "lstMembers");
            for (const QString &pick : picks) {
                const auto found = list->findItems(pick, Qt::MatchExactly);
                ASSERT_EQ(found.size(), 1) << pick.toStdString();
                QTest::mouseClick(list->viewport(), Qt::LeftButton, {},
                                  list->visualItemRect(found.first()).center());
            }
        });
    }

    TModalDriver Driver;
};

TEST_F(TDataSetGridEditTest, ACellIsEditedByTheKindOfItsColumn)
{
    Exec("CREATE TABLE t (id INT PRIMARY KEY, s TEXT, d DATE, m DATETIME(6), e ENUM('a','it''s'), "
         "o SET('x','y','z'), k BIT(8))");
    Exec("INSERT INTO t VALUES (1, 'one', NULL, '2024-02-29 23:59:59.123456', 'a', 'y', 1)");
    Grid.DataModel()->SetOnGetMembers([](const TField &field) {
        return field.FieldName() == u"e" ? QStringList{"a", "it's"} : QStringList{"x", "y", "z"};
    });
    Open("SELECT * FROM t");
    // A line becomes several by its key; Enter breaks them, Ctrl+Enter ends.
    Edit(0, 1);
    QTest::keyClick(Editor(), Qt::Key_F4);
    TTestLoop::Settle();
    auto *box = Editor<QPlainTextEdit>();
    ASSERT_NE(box, nullptr);
    QTest::keyClick(box, Qt::Key_Return);
    QTest::keyClicks(box, "two");
    QTest::keyClick(box, Qt::Key_Return, Qt::ControlModifier);
    TTestLoop::Settle();
    EXPECT_EQ(Value("SELECT s FROM t"), "one\ntwo");

    const auto onCalendar = [this] {
        Driver.ExpectMenu([](QMenu *menu) {
            Q_EMIT Find<QCalendarWidget>(menu, "calDate")->activated(QDate(2025, 1, 2));
        });
    };
    onCalendar();
    Edit(0, 2);
    QTest::keyClick(Editor(), Qt::Key_Down, Qt::AltModifier);
    EXPECT_EQ(Editor()->text(), "2025-01-02");
    Leave();
    onCalendar();
    Edit(0, 3);
    QTest::keyClick(Editor(), Qt::Key_F4);
    Leave();
    EXPECT_EQ(Value("SELECT m FROM t"), "2025-01-02 23:59:59.123456") << "the time stays";

    OnList({"it's"});
    Edit(0, 4);
    QTest::keyClick(Editor(), Qt::Key_F4);
    TTestLoop::Settle();
    EXPECT_EQ(Editor(), nullptr) << "one of a list is the end of the edit";
    EXPECT_EQ(Value("SELECT e FROM t"), "it's");
    OnList({"x", "y", "z"}); // y was there
    Edit(0, 5);
    QTest::keyClick(Editor(), Qt::Key_F4);
    Leave();
    EXPECT_EQ(Value("SELECT o FROM t"), "x,z");
    TypeInto(0, 6, "5");
    EXPECT_EQ(Value("SELECT k + 0 FROM t"), "5");
    TypeInto(0, 3, "2024-00-00 00:00:00.000001");
    EXPECT_EQ(Shown(0, 3), Value("SELECT m FROM t"));
}

TEST_F(TDataSetGridEditTest, WhatIsTypedIsWrittenBeforeTheCellGoes)
{
    Exec("CREATE TABLE t (id INT PRIMARY KEY, s VARCHAR(10) UNIQUE)");
    Exec("INSERT INTO t VALUES (1, 'one'), (2, 'two')");
    Open("SELECT * FROM t ORDER BY id");
    EXPECT_TRUE(Grid.CommitEdit()) << "nothing is edited";
    Edit(1, 1);
    QTest::keyClicks(Editor(), "one");
    EXPECT_FALSE(Grid.CommitEdit());
    ASSERT_NE(Editor(), nullptr);
    Click(1);
    EXPECT_FALSE(Grid.horizontalHeader()->isSortIndicatorShown()) << "sorting waits too";
    EXPECT_EQ(Editor()->text(), "one");
    Editor()->selectAll();
    QTest::keyClicks(Editor(), "new");
    EXPECT_TRUE(Grid.CommitEdit());
    TTestLoop::Settle();
    EXPECT_EQ(Value("SELECT s FROM t WHERE id = 2"), "new");

    // NULL by its key drops what was typed; a refusal of it keeps no later editor open.
    Edit(1, 1);
    QTest::keyClicks(Editor(), "more");
    QTest::keyClick(Editor(), Qt::Key_0, Qt::ControlModifier);
    TTestLoop::Settle();
    EXPECT_EQ(Value("SELECT s IS NULL FROM t WHERE id = 2"), "1");
    EXPECT_EQ(Editor(), nullptr);
    Grid.setCurrentIndex(Cell(1, 0));
    QTest::keyClick(&Grid, Qt::Key_0, Qt::ControlModifier);
    EXPECT_NE(Note(), "");
    TypeInto(1, 1, "after");
    EXPECT_EQ(Editor(), nullptr);
    EXPECT_EQ(Value("SELECT s FROM t WHERE id = 2"), "after");
}

TEST_F(TDataSetGridEditTest, BytesAreEditedByADialogOfTheOwner)
{
    Exec("CREATE TABLE t (id INT PRIMARY KEY, b BLOB)");
    Exec("INSERT INTO t VALUES (1, 'old'), (2, '')");
    Open("SELECT * FROM t ORDER BY id");
    QByteArray shown, result = "new";
    Grid.SetOnEditBytes([&](const QString &, QByteArray &bytes) {
        shown = std::exchange(bytes, result);
        return true;
    });
    Edit(0, 1);
    TTestLoop::Settle();
    EXPECT_EQ(shown, "old");
    EXPECT_EQ(Value("SELECT b FROM t WHERE id = 1"), "new");
    result.clear();
    Edit(1, 1);
    TTestLoop::Settle();
    EXPECT_EQ(Value("SELECT b IS NULL FROM t WHERE id = 2"), "0") << "no bytes stay no bytes";
}

TEST_F(TDataSetGridEditTest, ARefreshLeavesTheUserWhereTheyAre)
{
    Exec("CREATE TABLE t (id INT PRIMARY KEY, a TEXT, b TEXT, c TEXT)");
    Exec("INSERT INTO t SELECT seq, REPEAT('a', 80), REPEAT('b', 80), REPEAT('c', 80) "
         "FROM seq_1_to_300");
    Grid.SetEditMode(false);
    Open("SELECT * FROM t ORDER BY id");
    Grid.setCurrentIndex(Cell(150, 2));
    QTest::keyClick(&Grid, Qt::Key_Down, Qt::ShiftModifier);
    Grid.verticalScrollBar()->setValue(145);
    Grid.horizontalScrollBar()->setValue(300);
    TTestLoop::Settle();
    const auto refresh = [this] {
        Query.Refresh();
        Grid.RebuildColumns();
        TTestLoop::Settle();
    };
    const TPaintCounter paints(Grid.viewport());
    refresh();
    EXPECT_EQ(paints.Count, 1);
    EXPECT_EQ(Grid.currentIndex(), Cell(151, 2));
    EXPECT_EQ(Grid.selectionModel()->selectedRows().size(), 2);
    EXPECT_EQ(Grid.verticalScrollBar()->value(), 145);
    EXPECT_EQ(Grid.horizontalScrollBar()->value(), 300);
    EXPECT_EQ(Query.RecNo(), 151);
    Exec("DELETE FROM t WHERE id > 100");
    refresh();
    EXPECT_EQ(Grid.currentIndex(), Cell(99, 2)) << "the last of those that are left";
    EXPECT_TRUE(Grid.selectionModel()->isRowSelected(99));
    Grid.ForgetPlace();
    refresh();
    EXPECT_EQ(Grid.verticalScrollBar()->value(), 0);
}

TEST_F(TDataSetGridEditTest, AViewIsEditedByTheKeyOfItsTable)
{
    Exec("CREATE TABLE t (id INT PRIMARY KEY, n INT, s VARCHAR(20))");
    Exec("INSERT INTO t VALUES (1, 10, 'one'), (2, 20, 'two')");
    Exec("CREATE VIEW v AS SELECT s AS word, id AS number FROM t WHERE n > 0");
    Exec("CREATE VIEW over_v AS SELECT number, word FROM v");
    Exec("CREATE VIEW wrong AS SELECT -id AS id, s FROM t");
    Exec("CREATE VIEW joined AS SELECT a.id, b.s FROM t a JOIN t b ON a.n = b.n");
    Open("SELECT * FROM v ORDER BY number");
    TypeInto(1, 0, "zwei");
    EXPECT_EQ(Note(), "");
    Open("SELECT * FROM over_v ORDER BY number");
    TypeInto(0, 1, "eins");
    EXPECT_EQ(Note(), "");
    EXPECT_EQ(Value("SELECT GROUP_CONCAT(s ORDER BY id) FROM t"), "eins,zwei");
    for (const char *view : {"wrong", "joined"}) {
        Open(QString("SELECT * FROM %1").arg(view));
        EXPECT_NE(Query.ReadOnlyReason(), "") << view;
    }
}

} // namespace
