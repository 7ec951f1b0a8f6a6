#include "sql/uDbmSqlUtils.h"
#include "core/uDbmProvider.h"
#include "core/uServerProfile.h"
#include "sql/uDbmOtherUtils.h"
#include "sql/uDbmPathUtils.h"
#include "uTestDatabase.h"
#include "uTestPrint.h"

#include <gtest/gtest.h>

namespace {

TEST(TNames, AreWrappedAndNeverRepaired)
{
    EXPECT_EQ(TDbmPathUtils::FormatDbObject("", "t", "n"), "`t`.`n`");
    EXPECT_EQ(TDbmPathUtils::FormatDbObject("d", "a`b"), "`d`.`a`b`");
    EXPECT_EQ(TDbmSqlUtils::FormatUserHost("bob", ""), "'bob'@'%'");
    EXPECT_EQ(TDbmOtherUtils::FormatUser("root"), "'root'");
    EXPECT_EQ(TDbmOtherUtils::FormatUser("a@b@c"), "'a'@'b@c'");
}

using TSingleCell = TServerTest;

TEST_F(TSingleCell, IsReadAndWrittenByItsKey)
{
    Exec("CREATE TABLE t (id INT PRIMARY KEY, v VARCHAR(20)); ");
    Exec("INSERT INTO t VALUES (1, 'one'), (2, NULL)");
    TDbmProvider provider;
    provider.SetParams(ServerProfile(Server()));
    const auto read = [&](int id) {
        return TDbmSqlUtils::ExecuteGetFieldValue(provider.Command(), Database().Name(), "t",
                                                  {"id"}, {id}, "v");
    };
    EXPECT_EQ(read(1), TVariant("one"));
    EXPECT_TRUE(read(2).IsNull());
    EXPECT_TRUE(read(3).IsNull());
    TDbmSqlUtils::ExecuteSetFieldValue(provider.Command(), Database().Name(), "t", {"id"}, {2}, "v",
                                       "it's \\ two");
    EXPECT_EQ(Value("SELECT v FROM t WHERE id = 2"), "it's \\ two");
    EXPECT_EQ(Value("SELECT v FROM t WHERE id = 1"), "one");
    // Deliberate: a null key is compared with = NULL and so finds nothing.
    EXPECT_EQ(TDbmSqlUtils::FormatWhere({"v"}, {TVariant()}), "(`v` = NULL)");
}

} // namespace
