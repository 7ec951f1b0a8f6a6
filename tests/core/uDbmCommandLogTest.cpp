#include "core/uDbmCommandLog.h"

#include <gtest/gtest.h>

namespace {

TEST(TCommandLog, ItemsShowWhatTheyHold)
{
    TDbmCommandLog log(10, 0);
    const EDacMySqlError error(99999, "#42000wrong", "text");
    const TDbmCommandLogItem &good = log.Add("SELECT  1,\r\n  2", nullptr, 1.2345678);
    const TDbmCommandLogItem &bad = log.Add("x", &error, 0);

    EXPECT_EQ(good.Query().toStdString(), "SELECT  1,");
    EXPECT_EQ(good.GetStatusDisplayString().toStdString(), "OK");
    EXPECT_EQ(good.GetDurationMSDisplayString().toStdString(), "1,234.57");
    EXPECT_FALSE(good.IsError());

    EXPECT_EQ(bad.GetStatusDisplayString().toStdString(), "99999 ()");
    EXPECT_EQ(bad.ErrorMessage().toStdString(), "wrong");
    EXPECT_TRUE(bad.IsError());
}

} // namespace
