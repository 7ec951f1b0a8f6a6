#include "widgets/uVerticalGrid.h"
#include "support/uException.h"
#include "uGuiTools.h"
#include "uModalDriver.h"
#include "uTestLoop.h"

#include <QCalendarWidget>
#include <QDateTime>
#include <QDialog>
#include <QListView>
#include <QPushButton>
#include <QSignalSpy>
#include <QTest>
#include <QVBoxLayout>
#include <gtest/gtest.h>

namespace {

/// A dialog with a grid of one row of each kind.
class TVerticalGridTest : public testing::Test
{
protected:
    TVerticalGridTest()
    {
        auto *layout = new QVBoxLayout(&Dialog);
        layout->addWidget(Grid = new TVerticalGrid);
        layout->addWidget(Ok = new QPushButton("OK"));
        Grid->Add(rkText, "rowName", "Name")->SetWhenEmpty("(auto)");
        TVerticalRow *server = Grid->Add(rkCategory, "rowServer", "Server");
        Grid->Add(rkNumber, "rowPort", "Port", server)->SetRange(1, 65535);
        Grid->Add(rkCheck, "rowCompression", "Compression", server);
        TVerticalRow *type = Grid->Add(rkFixedCombo, "rowType", "Type");
        type->SetValues({"direct", "tunnel"});
        Grid->Add(rkCombo, "rowCharset", "Charset", type)->SetValuesFunction([this] {
            ++Asked;
            return QStringList{"utf8", "ascii", "latin1"};
        });
        Grid->Add(rkMasked, "rowPassword", "Password");
        Grid->Add(rkReadOnlyButtons, "rowKey", "Key")->SetButtons({"Import", "Clear"});
        Grid->Add(rkTextButton, "rowDatabase", "Database")->SetButtons({" select "});
        Grid->Add(rkDateTime, "rowStarts", "Starts")->SetWhenEmpty("now");
        Dialog.resize(500, 600);
        TGuiTools::Show(&Dialog);
        Row("rowName")->SetFocus();
    }

    TVerticalRow *Row(const QString &name) const { return Grid->Row(name); }
    void Press(int key, Qt::KeyboardModifiers modifiers = {})
    {
        if (!QApplication::focusWidget()) // a popup that went gives it back a moment later
            TGuiTools::Show(&Dialog);
        QTest::keyClick(QApplication::focusWidget(), Qt::Key(key), modifiers);
    }
    void Type(const QString &text) { QTest::keyClicks(QApplication::focusWidget(), text); }
    QString FocusedName() const
    {
        return Grid->FocusedRow() != nullptr ? Grid->FocusedRow()->Name() : QString();
    }
    QStringList WalkDown()
    {
        QStringList names = {FocusedName()};
        for (size_t i = 0; i < Grid->Rows().size(); ++i) {
            Press(Qt::Key_Down);
            if (FocusedName() != names.last())
                names.append(FocusedName());
        }
        return names;
    }

    QDialog Dialog;
    TVerticalGrid *Grid;
    QPushButton *Ok;
    int Asked = 0;
};

TEST_F(TVerticalGridTest, UpAndDownMoveBetweenRowsOfEveryKind)
{
    QStringList all;
    for (const TVerticalRow *row : Grid->Rows())
        all.append(row->Name());
    EXPECT_EQ(WalkDown(), all);
    Press(Qt::Key_Up);
    EXPECT_EQ(FocusedName(), "rowDatabase");
    EXPECT_EQ(Row("rowType")->Text(), "") << "passing a combo does not change it";
    Press(Qt::Key_Tab);
    Press(Qt::Key_Tab);
    EXPECT_EQ(FocusedName(), "rowStarts") << "Tab goes by way of the row's button";
}

TEST_F(TVerticalGridTest, RowsThatAreNotSeenAreSkipped)
{
    Row("rowServer")->SetExpanded(false);
    Row("rowType")->SetShown(false); // and with it the row under it
    Row("rowKey")->SetShown(false);
    EXPECT_FALSE(Find<QComboBox>(Grid, "rowCharset")->isVisible());
    EXPECT_EQ(WalkDown(),
              QStringList({"rowName", "rowServer", "rowPassword", "rowDatabase", "rowStarts"}));
    Row("rowType")->SetShown(true);
    EXPECT_TRUE(Find<QComboBox>(Grid, "rowCharset")->isVisible());
}

TEST_F(TVerticalGridTest, TypingReplacesAndEnterCommits)
{
    Row("rowName")->SetValue("old");
    Row("rowServer")->SetFocus();
    Press(Qt::Key_Up);
    QSignalSpy changes(Grid, &TVerticalGrid::OnRowChanged);
    Type("new");
    EXPECT_EQ(Row("rowName")->Text(), "old") << "not before it is committed";
    EXPECT_TRUE(Row("rowName")->IsModified());
    Press(Qt::Key_Return);
    EXPECT_EQ(Row("rowName")->Text(), "new");
    EXPECT_TRUE(Dialog.isVisible()) << "the key is not for the dialog's button";
    Press(Qt::Key_F2);
    Press(Qt::Key_F2);
    Type("er");
    EXPECT_EQ(changes.count(), 1);
    Ok->setFocus();
    EXPECT_EQ(Row("rowName")->Text(), "newer") << "leaving commits";
    EXPECT_EQ(changes.count(), 2);
    Row("rowName")->SetValue("by code");
    EXPECT_EQ(changes.count(), 2);
}

TEST_F(TVerticalGridTest, EscapeDropsTheEditAndOnlyThenClosesTheDialog)
{
    Row("rowName")->SetValue("kept");
    Row("rowName")->SetFocus();
    Type("dropped");
    Press(Qt::Key_Escape);
    EXPECT_TRUE(Dialog.isVisible());
    EXPECT_EQ(Find<QLineEdit>(Grid, "rowName")->text(), "kept");
    Press(Qt::Key_Escape);
    EXPECT_FALSE(Dialog.isVisible());
}

struct TTypedCase
{
    const char *Name;
    const char *Row;
    const char *Typed;
    QVariant Expected;
};

const QDate LeapDay(2024, 2, 29);
const TTypedCase Typed[] = {
    {"LettersAreNoNumber", "rowPort", "1e2x", qint64(12)},
    {"NumberAboveTheRange", "rowPort", "70000", qint64(65535)},
    {"LettersOfACaseOfTheirOwn", "rowCharset", "UTF8", "UTF8"},
    {"ALetterChoosesInAFixedCombo", "rowType", "t", "tunnel"},
    {"Password", "rowPassword", "s3 ", "s3 "},
    {"DateAndTime", "rowStarts", "2024-02-29 23:59:58", QDateTime(LeapDay, QTime(23, 59, 58))},
};

TEST_F(TVerticalGridTest, WhatIsTypedBecomesTheValue)
{
    for (const TTypedCase &typed : Typed) {
        TVerticalRow *row = Row(typed.Row);
        Ok->setFocus(); // out of a row that was the one before too
        row->SetValue(QString());
        row->SetFocus();
        Type(typed.Typed);
        Grid->CommitEdit();
        EXPECT_EQ(row->Value(), typed.Expected) << typed.Name;
    }
}

TEST_F(TVerticalGridTest, TextThatIsNoDateIsAnErrorAtTheCommit)
{
    const QDateTime date(QDate(2024, 1, 1), QTime(12, 0));
    Row("rowStarts")->SetValue(date);
    Row("rowStarts")->SetFocus();
    Type("2023-02-29");
    Ok->setFocus();
    EXPECT_EQ(Find<QLineEdit>(Grid, "rowStarts")->text(), "2023-02-29") << "not thrown away";
    EXPECT_EQ(Row("rowStarts")->Value(), date);
    try {
        Grid->CommitEdit();
        ADD_FAILURE() << "committed";
    } catch (const EConvertError &e) {
        EXPECT_EQ(e.Message(), "\"2023-02-29\" is not a valid value of \"Starts\".");
    }
    EXPECT_EQ(FocusedName(), "rowStarts");
    Find<QLineEdit>(Grid, "rowStarts")->clear();
    Grid->CommitEdit();
    EXPECT_FALSE(Row("rowStarts")->Value().toDateTime().isValid());
}

TEST_F(TVerticalGridTest, ComboAsksForItsValuesWhenItDrops)
{
    Row("rowCharset")->SetValue("koi8r");
    EXPECT_EQ(Asked, 0);
    Row("rowCharset")->SetFocus();
    Press(Qt::Key_F2);
    auto *combo = Find<QComboBox>(Grid, "rowCharset");
    ASSERT_TRUE(combo->view()->isVisible());
    EXPECT_EQ(Asked, 1);
    QStringList items;
    for (int i = 0; i < combo->count(); ++i)
        items.append(combo->itemText(i));
    EXPECT_EQ(items, QStringList({"ascii", "latin1", "utf8"})) << "sorted";
    EXPECT_EQ(combo->currentText(), "koi8r") << "kept though not in the list";
    QSignalSpy changes(Row("rowCharset"), &TVerticalRow::OnChanged);
    QTest::keyClick(combo->view(), Qt::Key_Home);
    QTest::keyClick(combo->view(), Qt::Key_Return);
    EXPECT_EQ(Row("rowCharset")->Text(), "ascii");
    EXPECT_EQ(changes.count(), 1);
    EXPECT_EQ(Row("rowCharset")->ItemIndex(), 0);
}

TEST_F(TVerticalGridTest, AFixedComboShowsWhatItsListLacks)
{
    TVerticalRow *row = Row("rowType");
    auto *combo = Find<QComboBox>(Grid, "rowType");
    row->SetValue("pipe");
    EXPECT_EQ(row->ItemIndex(), -1);
    EXPECT_EQ(combo->currentText(), "pipe");
}

TEST_F(TVerticalGridTest, ADateIsChosenBehindItsButton)
{
    TModalDriver driver;
    TVerticalRow *date = Grid->Add(rkDateText, "rowDate", "Date");
    TVerticalRow *day = Grid->Add(rkDayText, "rowDay", "Day");
    const std::tuple<TVerticalRow *, const char *, const char *> days[] = {
        {date, "0000-00-00 23:59:59.000001", "2025-01-02 23:59:59.000001"},
        {date, "tomorrow", "2025-01-02 00:00:00"},
        {day, "", "2025-01-02"},
    };
    for (const auto &[row, before, after] : days) {
        row->SetValue(before);
        EXPECT_EQ(row->Text(), before) << "the text stays as it is";
        driver.ExpectMenu([](QMenu *menu) {
            Q_EMIT Find<QCalendarWidget>(menu, "calDate")->activated(QDate(2025, 1, 2));
        });
        row->SetFocus();
        Press(Qt::Key_F4);
        EXPECT_EQ(row->Text(), after);
    }
}

TEST_F(TVerticalGridTest, RowsCanBeReplacedInTheMiddleOfAnEdit)
{
    Row("rowPort")->SetFocus();
    Type("7");
    Grid->Clear();
    EXPECT_EQ(Grid->FocusedRow(), nullptr);
    EXPECT_EQ(Grid->FindRow("rowPort"), nullptr);
    Grid->Add(rkText, "rowPort", "Port");
    EXPECT_TRUE(Find<QLineEdit>(Grid, "rowPort")->isVisible());
}

} // namespace
