#include "uGuiTools.h"
#include "uTestLoop.h"
#include "widgets/uGridModel.h"
#include "widgets/uGridSearchBar.h"

#include <QLabel>
#include <QLineEdit>
#include <QSignalSpy>
#include <QTableView>
#include <QTest>
#include <QTimer>
#include <gtest/gtest.h>
#include <numeric>

namespace {

/// The cell of row r and column c shows "R<r>.<c>".
TGridColumns<int> Columns()
{
    TGridColumns<int> columns;
    for (int c = 0; c < 3; ++c)
        columns.push_back(
            {.Text = [c](const int &row) { return QString("R%1.%2").arg(row).arg(c); }});
    return columns;
}

class TGridSearch : public testing::Test
{
protected:
    void Show(int rows)
    {
        SetRows(rows);
        View = std::make_unique<QTableView>();
        View->setModel(&Model);
        Bar = new TGridSearchBar(View.get());
        View->resize(500, 300);
        TGuiTools::Show(View.get());
        View->setFocus();
        QTest::keyClick(View.get(), Qt::Key_F, Qt::ControlModifier);
        ASSERT_TRUE(Bar->isVisible());
        Edit = Find<QLineEdit>(View.get(), "edSearch");
        ASSERT_TRUE(Edit->hasFocus());
    }
    void SetRows(int count)
    {
        std::vector<int> rows(size_t(count), 0);
        std::iota(rows.begin(), rows.end(), 0);
        Model.SetValues(std::move(rows));
    }
    void Type(const QString &text)
    {
        QTest::keyClicks(Edit, text);
        EXPECT_TRUE(TTestLoop::RunUntil([&] { return !Bar->IsSearching(); }));
    }
    void Press(int key, Qt::KeyboardModifiers modifiers = {})
    {
        QTest::keyClick(Edit, Qt::Key(key), modifiers);
        EXPECT_TRUE(TTestLoop::RunUntil([&] { return !Bar->IsSearching(); }));
    }
    QString Found() const { return View->currentIndex().data().toString(); }
    QString Status() const { return Find<QLabel>(View.get(), "lblSearchStatus")->text(); }

    TGridModel<int> Model{Columns()};
    std::unique_ptr<QTableView> View;
    TGridSearchBar *Bar = nullptr;
    QLineEdit *Edit = nullptr;
};

TEST_F(TGridSearch, GoesThroughCellsBothWaysAndRound)
{
    Show(30);
    Type("r1"); // R1.0 matches with its first letters
    EXPECT_EQ(Found(), "R1.0") << "blind to case";
    Type("9.");
    EXPECT_EQ(Found(), "R19.0") << "a text that grows goes on from where it is";
    Press(Qt::Key_Return);
    EXPECT_EQ(Found(), "R19.1");
    Press(Qt::Key_F3);
    Press(Qt::Key_F3);
    EXPECT_EQ(Found(), "R19.0") << "round from the end";
    Press(Qt::Key_Return, Qt::ShiftModifier);
    EXPECT_EQ(Found(), "R19.2") << "round from the start";
    EXPECT_EQ(View->selectionModel()->selectedIndexes().size(), 1);
    const QRect covered = Bar->geometry().translated(-View->viewport()->pos());
    EXPECT_FALSE(View->visualRect(View->currentIndex()).intersects(covered));
    Press(Qt::Key_Escape);
    EXPECT_FALSE(Bar->isVisible());
    EXPECT_TRUE(View->hasFocus());
}

TEST_F(TGridSearch, LeavesTheWindowAliveInAMillionRowsAndCanBeStopped)
{
    Show(1000000);
    QSignalSpy finished(Bar, &TGridSearchBar::OnFinished);
    QTest::keyClicks(Edit, "nowhere");
    ASSERT_TRUE(Bar->IsSearching());
    // The loop gets its turn again long before the end.
    bool hadTurn = false;
    QTimer::singleShot(0, Bar, [&] { hadTurn = Bar->IsSearching(); });
    EXPECT_TRUE(TTestLoop::RunUntil([&] { return hadTurn; }));
    EXPECT_TRUE(Status().startsWith("Searching"));
    QTest::keyClick(Edit, Qt::Key_Escape);
    EXPECT_FALSE(Bar->IsSearching());
    EXPECT_EQ(finished.count(), 0);
}

TEST_F(TGridSearch, StopsWhenTheRowsChange)
{
    Show(1000000);
    QTest::keyClicks(Edit, "nowhere");
    ASSERT_TRUE(Bar->IsSearching());
    SetRows(5);
    EXPECT_FALSE(Bar->IsSearching());
    SetRows(0);
    Press(Qt::Key_Return);
    EXPECT_EQ(Status(), "Not found");
}

} // namespace
