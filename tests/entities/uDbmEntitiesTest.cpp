#include "model/uDbmEntities.h"
#include "model/uDbmComparers.h"

#include <gtest/gtest.h>

namespace {

TEST(TEntities, StartEmpty)
{
    const TDbmTableEntity table;
    EXPECT_TRUE(table.AutoIncrement.IsNull());
    EXPECT_TRUE(table.Info.CreateTime.IsNull());
    EXPECT_EQ(table.Info.Rows, 0);
    EXPECT_TRUE(TDbmFieldEntity().DefaultValue.Value.IsNull());
}

// Other parts store these numbers or rely on their order: grant tables, combo boxes, images.
TEST(TEnumerations, KeepTheOrderThatOthersRelyOn)
{
    EXPECT_EQ(fdtBit, 29);
    EXPECT_EQ(privGrantOption, 0);
    EXPECT_EQ(privReferences, 28);
    EXPECT_EQ(upTrigger, 27);
    EXPECT_EQ(dpTrigger, 18);
    EXPECT_EQ(tpTrigger, 12);
    EXPECT_EQ(vcoCascaded, 1);
    EXPECT_EQ(ikSpatial, 5);
}

TEST(TComparers, PutUpperCaseBeforeLowerCase)
{
    TDbmDatabaseEntity upper, lower;
    upper.DatabaseName = "Z";
    lower.DatabaseName = "a";
    const auto compare = TDbmComparers::CreateDatabaseEntityComparer();
    EXPECT_LT(compare(upper, lower), 0);
    EXPECT_GT(compare(lower, upper), 0);
    EXPECT_EQ(compare(lower, lower), 0);
    EXPECT_EQ(TDbmComparers::CreateNullComparer<TDbmDatabaseEntity>()(upper, lower), 0);
    TDbmFieldEntity first, third;
    first.Info.PosIndex = 1;
    third.Info.PosIndex = 3;
    EXPECT_EQ(TDbmComparers::CreateFieldEntityComparer()(first, third), -2);
}

} // namespace
