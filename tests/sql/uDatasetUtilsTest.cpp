#include "sql/uDatasetUtils.h"
#include "core/uDbmProvider.h"
#include "core/uServerProfile.h"
#include "uTestDatabase.h"
#include "uTestPrint.h"

#include <gtest/gtest.h>

namespace {

class TDatasetReading : public TServerTest
{
protected:
    TDatasetReading() { FProvider.SetParams(ServerProfile(Server())); }
    std::unique_ptr<TMyQuery> Open(const QString &sql)
    {
        FProvider.OpenConnection();
        auto rows = FProvider.Connection().CreateDataset();
        FProvider.Connection().ExecuteDataset(sql, *rows);
        return rows;
    }

private:
    TDbmProvider FProvider;
};

TEST_F(TDatasetReading, ReadsDateTimesInWholeSeconds)
{
    TDateTime noon;
    ASSERT_TRUE(TDateTime::TryEncode(2010, 5, 1, 12, 30, 1, noon));
    const auto rows = Open("SELECT TIMESTAMP'2010-05-01 12:30:01' AS whole, "
                           "TIMESTAMP'2010-05-01 12:30:01.75' AS cut, "
                           "CAST('0000-00-00' AS DATETIME) AS zero, CAST(NULL AS DATETIME) AS n");
    const std::pair<const char *, TDateTime> expected[] = {
        {"WHOLE", noon}, {"cut", noon}, {"zero", {}}, {"n", {}}, {"absent", TDateTime(7)}};
    for (const auto &[name, value] : expected)
        EXPECT_EQ(TDatasetUtils::AsDateTime(*rows, name, TDateTime(7)), value) << name;
}

TEST_F(TDatasetReading, GivesTheDefaultOnlyForAnAbsentColumn)
{
    const auto rows = Open("SELECT NULL AS n, 'x' AS t, 42 AS i");
    EXPECT_EQ(TDatasetUtils::AsString(*rows, "n", "def"), "");
    EXPECT_EQ(TDatasetUtils::AsString(*rows, "absent", "def"), "def");
    EXPECT_EQ(TDatasetUtils::AsInteger(*rows, "n", 7), 0);
    EXPECT_EQ(TDatasetUtils::AsInteger(*rows, "t", 7), 0);
    EXPECT_EQ(TDatasetUtils::AsLargeint(*rows, "I", 7), 42);
    EXPECT_EQ(TDatasetUtils::AsLargeint(*rows, "absent", 7), 7);
    EXPECT_TRUE(TDatasetUtils::AsVariant(*rows, "n", 7).IsNull());
    EXPECT_EQ(TDatasetUtils::AsVariant(*rows, "absent", 7), TVariant(7));
}

} // namespace
