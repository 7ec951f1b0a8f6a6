#include "support/uException.h"
#include "uGuiTools.h"
#include "widgets/uPropertyRows.h"

#include <QCheckBox>
#include <QTest>
#include <gtest/gtest.h>

namespace {

enum TOption { opUnknown, opCascaded, opLocal, opUnlisted };

struct TNote
{
    QString Name;
    QString Secret;
    TOption Option = opUnknown;
    quint64 Next = 0;
    double Ratio = 0;
    bool IsRecurring = false;
    TDateTime At;
    int Days = 0;
    QString Comment;
    bool operator==(const TNote &) const = default;
};

QList<int> Codes()
{
    return {opUnknown, opLocal, opCascaded};
}

const TPropertyRows<TNote> Rows = {
    {.Caption = "Name", .Field = &TNote::Name},
    {.Caption = "Secret word", .Kind = rkMasked, .Field = &TNote::Secret},
    {.Caption = "Check option",
     .Kind = rkFixedCombo,
     .Field = &TNote::Option,
     .Values = [] { return QString("none local cascaded").split(' '); },
     .Codes = Codes},
    {.Caption = "Next", .Field = &TNote::Next},
    {.Caption = "Ratio", .Field = &TNote::Ratio},
    {.Caption = "Recurring",
     .Kind = rkCheck,
     .Field = &TNote::IsRecurring,
     .Changed = [](TVerticalRow &row) { row.Grid()->Row("rowName")->SetValue("touched"); }},
    {.Caption = "At",
     .Kind = rkDateTime,
     .Field = &TNote::At,
     .Parent = "rowRecurring",
     .Shown = [](const TVerticalGrid &grid) { return !grid.Row("rowRecurring")->IsChecked(); }},
    {.Name = "rowInterval",
     .Caption = "Interval",
     .Kind = rkCategory,
     .Shown = [](const TVerticalGrid &grid) { return grid.Row("rowRecurring")->IsChecked(); }},
    {.Caption = "Days", .Kind = rkNumber, .Field = &TNote::Days, .Min = 0},
    {.Kind = rkCategoryEnd},
    {.Caption = "Comment",
     .Kind = rkTextButton,
     .Field = &TNote::Comment,
     .Buttons = [] { return QStringList{"edit"}; },
     .Pressed = [](TVerticalRow &row, const QString &button) { row.SetValue(button); }},
};

class TPropertyRowsTest : public testing::Test
{
protected:
    TPropertyRowsTest()
    {
        Rows.Build(Grid);
        Grid.resize(400, 500);
        TGuiTools::Show(&Grid);
        Note.Name = "n";
        Note.Secret = " s ";
        Note.Option = opLocal;
        Note.Next = 1ull << 62;
        Note.Ratio = 0.1;
        Note.IsRecurring = true;
        Note.At = TDateTime(45000.5);
        Note.Days = 3;
    }

    TVerticalGrid Grid;
    TNote Note;
};

TEST_F(TPropertyRowsTest, LoadShowsAndStoreGivesBackTheSame)
{
    Rows.Load(Grid, Note);
    EXPECT_EQ(Grid.Row("rowCheckOption")->Text(), "local");
    EXPECT_EQ(Grid.Row("rowAt")->Value().toDateTime(), QDateTime(QDate(2023, 3, 15), QTime(12, 0)));
    TNote stored;
    Rows.Store(Grid, stored);
    EXPECT_EQ(stored.Secret, " s ") << "passwords are not trimmed";
    EXPECT_TRUE(stored == Note);
}

TEST_F(TPropertyRowsTest, StoreCommitsTrimsAndReadsHiddenRows)
{
    Rows.Load(Grid, Note);
    Grid.Row("rowNext")->SetValue("many");
    auto *name = Find<QLineEdit>(&Grid, "rowName");
    name->setFocus();
    name->selectAll();
    QTest::keyClicks(name, "  new name ");
    const QString longText(100'000, 'x');
    Find<QLineEdit>(&Grid, "rowComment")->setText(longText); // as a paste does
    ASSERT_FALSE(Grid.Row("rowAt")->IsSeen());
    Grid.Row("rowAt")->SetValue(QDateTime());
    TNote stored = Note;
    Rows.Store(Grid, stored);
    EXPECT_EQ(stored.Name, "new name");
    EXPECT_TRUE(stored.Comment == longText) << stored.Comment.size();
    EXPECT_EQ(stored.Next, 0u) << "no number";
    EXPECT_TRUE(stored.At.IsNull());
}

TEST_F(TPropertyRowsTest, StoreLeavesTheEntityAloneWhenARowHasNoValue)
{
    Note.IsRecurring = false;
    Rows.Load(Grid, Note);
    auto *at = Find<QLineEdit>(&Grid, "rowAt");
    at->setText("soon");
    Find<QLineEdit>(&Grid, "rowName")->setText("new");
    TNote stored = Note;
    EXPECT_THROW(Rows.Store(Grid, stored), EConvertError);
    EXPECT_EQ(stored.Name, "n");
}

TEST_F(TPropertyRowsTest, AnUnknownCodeShowsNothingAndStays)
{
    Note.Option = opUnlisted;
    Rows.Load(Grid, Note);
    EXPECT_EQ(Grid.Row("rowCheckOption")->Text(), "");
    Rows.Store(Grid, Note);
    EXPECT_EQ(Note.Option, opUnlisted);
}

TEST_F(TPropertyRowsTest, DependentRowsFollowChanges)
{
    Rows.Load(Grid, Note);
    EXPECT_FALSE(Grid.Row("rowAt")->IsSeen());
    EXPECT_TRUE(Grid.Row("rowDays")->IsSeen());
    EXPECT_TRUE(Grid.Row("rowComment")->IsSeen());
    TGuiTools::Press(Find<QCheckBox>(&Grid, "rowRecurring"), Qt::Key_Space);
    EXPECT_TRUE(Grid.Row("rowAt")->IsSeen());
    EXPECT_FALSE(Grid.Row("rowDays")->IsSeen());
    EXPECT_TRUE(Grid.Row("rowComment")->IsSeen()) << "behind the end of the category";
    EXPECT_EQ(Grid.Row("rowName")->Text(), "touched");
    TGuiTools::Click(&Grid, "rowCommentedit");
    EXPECT_EQ(Grid.Row("rowComment")->Text(), "edit");
}

} // namespace
