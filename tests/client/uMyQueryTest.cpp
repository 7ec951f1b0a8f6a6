#include "uClientTools.h"

#include "client/uFieldValue.h"

#include <gmock/gmock.h>

namespace {

using namespace Qt::StringLiterals;
using ::testing::HasSubstr;

using TMyQueryTest = TClientTest;

TEST_F(TMyQueryTest, KeepsTheLastAnswerThatHasColumns)
{
    Exec("CREATE PROCEDURE p() BEGIN SELECT 1 AS a; SELECT 2 AS b UNION SELECT 3; "
         "CREATE TEMPORARY TABLE x (i INT); INSERT INTO x VALUES (1), (2); END");
    const auto query = Open("CALL p()");
    EXPECT_EQ(query->FieldAt(0).FieldName(), "b"_L1);
    EXPECT_EQ(query->RecordCount(), 2);
    EXPECT_EQ(Ask("SELECT COUNT(*) FROM x"), "2");
}

TEST_F(TMyQueryTest, IsNotActiveAfterAStatementWithoutRows)
{
    const auto query = Open("SELECT 1");
    query->SetSQL("CREATE TABLE t AS SELECT seq FROM seq_1_to_2");
    query->Execute();
    EXPECT_FALSE(query->Active());
    EXPECT_EQ(query->FieldCount(), 0);
    EXPECT_EQ(query->AffectedRows(), 2u);
    const auto empty = Open("SELECT * FROM t WHERE seq > 5");
    EXPECT_TRUE(empty->Active() && empty->IsEmpty() && empty->Eof());
    EXPECT_EQ(empty->RecNo(), -1);
    EXPECT_TRUE(empty->FieldAt(0).Value().IsNull());
    EXPECT_EQ(ErrorOf([&] { Open("SELECT 1; SELECT 2"); }).ErrorCode(), 1064); // one, not two
}

TEST_F(TMyQueryTest, AFailureLeavesTheRowsOfTheLastStatementUntilNewOnesCame)
{
    Exec("CREATE PROCEDURE p() BEGIN SELECT 1 AS a; SELECT * FROM nowhere; END");
    const auto query = Open("SELECT 7 AS a");
    query->SetSQL("SELECT * FROM nowhere");
    EXPECT_EQ(ErrorOf([&] { query->Execute(); }).ErrorCode(), 1146);
    EXPECT_EQ(query->FieldByName("a").AsInteger(), 7);
    query->SetSQL("CALL p()");
    EXPECT_EQ(ErrorOf([&] { query->Execute(); }).ErrorCode(), 1146);
    EXPECT_FALSE(query->Active());
    EXPECT_EQ(Ask("SELECT 3"), "3");
}

TEST_F(TMyQueryTest, NamesMayBeEmptyDoubleAndOfAnyCase)
{
    QStringList columns = {"1 AS ``", "2 AS `Two`", "3 AS `two`", "4 AS `Ж`"};
    for (const int count : {4, 4096}) { // few names are scanned, many are hashed
        while (columns.size() < count)
            columns += "0";
        const auto query = Open("SELECT " + columns.join(','));
        ASSERT_EQ(query->FieldCount(), count);
        EXPECT_EQ(query->FieldByName("").AsInteger(), 1);
        EXPECT_EQ(query->FieldByName("TWO").AsInteger(), 2);
        EXPECT_EQ(query->FieldByName(u"ж"_s).AsInteger(), 4);
        EXPECT_EQ(MessageOf([&] { query->FieldByName("three"); }), "Field \"three\" not found.");
    }
}

TEST_F(TMyQueryTest, AResultLargerThanMemoryIsAnErrorAndTheSessionGoesOn)
{
    FConnection.Execute("CREATE TEMPORARY TABLE mark (a INT)");
    TMyQuery query(&FConnection);
    query.SetMemoryLimit(8 * 1024 * 1024);
    query.SetSQL("SELECT REPEAT('x', 1000) FROM seq_1_to_100000000");
    const EMyError error = ErrorOf([&] { query.Execute(); });
    EXPECT_EQ(error.ErrorCode(), 2008);
    EXPECT_THAT(error.Message().toStdString(), HasSubstr("Client run out of memory: the result"));
    EXPECT_FALSE(query.Active());
    EXPECT_EQ(query.MemoryBytes(), 0);
    EXPECT_EQ(Ask("SELECT COUNT(*) FROM mark"), "0");
    query.SetSQL("SELECT 1");
    query.Execute();
    EXPECT_EQ(query.FieldAt(0).AsInteger(), 1);
}

class TMyQueryStream : public TClientTest
{
protected:
    /// Sums the first column; stops behind `most` rows.
    qint64 Walk(const QString &sql, qint64 most)
    {
        TMyQuery query(&FConnection);
        query.SetSQL(sql);
        std::vector<TFieldInfo> fields;
        qint64 sum = 0, rows = 0;
        query.Stream([&](const std::vector<TFieldInfo> &infos) { fields = infos; },
                     [&](const TMyQuery::TRowView &row) {
                         EXPECT_EQ(row.Count, static_cast<int>(fields.size()));
                         const QByteArrayView cell(row.Cells[0],
                                                   static_cast<qsizetype>(row.Lengths[0]));
                         sum += TFieldValue::Value(fields[0], cell).ToInt();
                         return ++rows < most;
                     });
        EXPECT_FALSE(query.Active());
        return sum;
    }
};

TEST_F(TMyQueryStream, HandsOverEachRowUntilNobodyWantsMoreAndTheSessionStays)
{
    FConnection.Execute("SET @here = 5");
    EXPECT_EQ(Walk("SELECT seq, 'x' FROM seq_1_to_1000", 5000), 500500);
    EXPECT_EQ(Walk("SELECT seq, REPEAT('x', 1000) FROM seq_1_to_100000000", 10), 55);
    EXPECT_EQ(Ask("SELECT @here"), "5");
    EXPECT_EQ(Walk("SELECT seq FROM seq_1_to_3", 3), 6); // the end and the stop fall together
    EXPECT_EQ(Ask("SELECT @here"), "5");
}

TEST_F(TMyQueryStream, LetsAnExceptionOfItsWalkerOutAndASecondStatementMeanwhileIsOne)
{
    TMyQuery query(&FConnection);
    query.SetSQL("SELECT seq FROM seq_1_to_100000000");
    const auto streamed = [&](const std::function<void()> &atFirstRow) {
        query.Stream({}, [&](const TMyQuery::TRowView &) {
            atFirstRow();
            return true;
        });
    };
    EXPECT_EQ(MessageOf([&] { streamed([] { throw EException("disk full"); }); }), "disk full");
    EXPECT_EQ(ErrorOf([&] { streamed([this] { FConnection.Execute("DO 1"); }); }).ErrorCode(),
              2014);
    EXPECT_EQ(Ask("SELECT 1"), "1");
}

} // namespace
