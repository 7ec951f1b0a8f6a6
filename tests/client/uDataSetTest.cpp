#include "uClientTools.h"

#include <gmock/gmock.h>

namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

/// Writes down what a grid would hear.
class TEars : public TDataLink
{
public:
    void ActiveChanged() override { Heard.push_back("all"); }
    void CursorMoved() override { Heard.push_back("moved"); }
    void RowChanged(qint64 row) override { Heard.push_back("changed " + std::to_string(row)); }
    void RowInserted(qint64 row) override { Heard.push_back("inserted " + std::to_string(row)); }
    void RowRemoved(qint64 row) override { Heard.push_back("removed " + std::to_string(row)); }
    void DatasetGone() override { Heard.push_back("gone"); }
    std::vector<std::string> Heard;
};

class TDataSetTest : public TClientTest
{
protected:
    TDataSetTest()
    {
        Exec("CREATE TABLE t (id INT AUTO_INCREMENT PRIMARY KEY, a INT)");
        Exec("INSERT INTO t (a) VALUES (10), (20), (30)");
        FQuery = Open("SELECT * FROM t ORDER BY id");
        FQuery->AddLink(&FEars);
    }

    std::vector<std::string> Heard() { return std::exchange(FEars.Heard, {}); }

    TEars FEars;
    std::unique_ptr<TMyQuery> FQuery;
};

TEST_F(TDataSetTest, IsWalkedBothWaysAndReadAnywhereWithinItsRows)
{
    std::vector<qint64> values;
    for (FQuery->First(); !FQuery->Eof(); FQuery->Next())
        values.push_back(FQuery->FieldAt(1).AsInteger());
    for (FQuery->Last(); !FQuery->Bof(); FQuery->Prior())
        values.push_back(FQuery->FieldAt(1).AsInteger());
    EXPECT_THAT(values, ElementsAre(10, 20, 30, 30, 20, 10));
    EXPECT_FALSE(FQuery->Eof());
    Heard();
    EXPECT_EQ(FQuery->FieldAt(1).AsStringAt(2), QString("30"));
    EXPECT_EQ(FQuery->FieldAt(1).RawAt(1).toByteArray(), QByteArray("20"));
    EXPECT_THAT(Heard(), IsEmpty());

    FQuery->SetRecNo(1);
    const auto bookmark = FQuery->GetBookmark();
    FQuery->SetRecNo(99);
    EXPECT_EQ(FQuery->RecNo(), 2);
    FQuery->GotoBookmark(bookmark);
    EXPECT_EQ(FQuery->RecNo(), 1);
    FQuery->GotoBookmark(3); // a row that is not there
    EXPECT_EQ(FQuery->RecNo(), 1);
    FQuery->SetRecNo(-5);
    EXPECT_EQ(FQuery->RecNo(), 0);
}

TEST_F(TDataSetTest, TellsItsLinksOfEveryChange)
{
    FQuery->Next();
    EXPECT_THAT(Heard(), ElementsAre("moved"));
    FQuery->Edit();
    FQuery->FieldAt(1).SetValue(21);
    FQuery->Post();
    EXPECT_THAT(Heard(), ElementsAre("changed 1", "changed 1"));
    FQuery->Append();
    FQuery->Cancel();
    EXPECT_THAT(Heard(), ElementsAre("inserted 3", "moved", "removed 3", "moved"));
    FQuery->SetRecNo(0);
    FQuery->Delete();
    EXPECT_THAT(Heard(), ElementsAre("moved", "removed 0", "moved"));
    FQuery->Refresh();
    FQuery->Close();
    EXPECT_THAT(Heard(), ElementsAre("all", "all"));
    FQuery.reset();
    EXPECT_THAT(Heard(), ElementsAre("gone"));
}

TEST_F(TDataSetTest, TellsOnceAfterControlsWereDisabled)
{
    FQuery->DisableControls();
    FQuery->DisableControls();
    for (FQuery->First(); !FQuery->Eof(); FQuery->Next())
        ;
    FQuery->EnableControls();
    EXPECT_TRUE(FQuery->ControlsDisabled());
    EXPECT_THAT(Heard(), IsEmpty());
    FQuery->EnableControls();
    EXPECT_THAT(Heard(), ElementsAre("moved"));
}

} // namespace
