#include "model/uDbmEntities.h"
#include "model/uDbmComparers.h"

#include <gtest/gtest.h>

namespace {

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
