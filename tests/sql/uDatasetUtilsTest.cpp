#include "sql/uDatasetUtils.h"
#include "core/uDbmProvider.h"
#include "core/uServerProfile.h"
#include "uTestDatabase.h"
#include "uTestPrint.h"

#include <gtest/gtest.h>

namespace {

TEST(TDatasetReading, GivesTheDefaultOnlyForAnAbsentColumn)
{
    TDateTime noon;
    ASSERT_TRUE(TDateTime::TryEncode(2010, 5, 1, 12, 30, 1, noon));
    const std::pair<const char *, TDateTime> moments[] = {
        {"WHOLE", noon}, {"cut", noon}, {"zero", {}}, {"none", {}}, {"absent", TDateTime(7)}};
    int reads = 0;
    TDbmProvider provider;
    provider.SetParams(ServerProfile(TTestServer::Instance()));
    provider.Command().ExecuteQuery(
        "SELECT TIMESTAMP'2010-05-01 12:30:01' AS whole, TIMESTAMP'2010-05-01 12:30:01.75' AS cut,"
        " CAST('0000-00-00' AS DATETIME) AS zero, CAST(NULL AS DATETIME) AS none, NULL AS n,"
        " 'x' AS t, 42 AS i",
        [&](TDataSet *rows) {
            rows->First();
            for (const auto &[name, moment] : moments)
                EXPECT_EQ(TDatasetUtils::AsDateTime(*rows, name, TDateTime(7)), moment) << name;
            EXPECT_EQ(TDatasetUtils::AsString(*rows, "absent", "def"), "def");
            EXPECT_EQ(TDatasetUtils::AsInteger(*rows, "n", 7), 0);
            EXPECT_EQ(TDatasetUtils::AsInteger(*rows, "t", 7), 0);
            EXPECT_EQ(TDatasetUtils::AsLargeint(*rows, "I", 7), 42);
            EXPECT_TRUE(TDatasetUtils::AsVariant(*rows, "n", 7).IsNull());
            ++reads;
        });
    EXPECT_EQ(reads, 1);
}

} // namespace
