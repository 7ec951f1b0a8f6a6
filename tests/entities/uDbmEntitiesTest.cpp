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
}

} // namespace
