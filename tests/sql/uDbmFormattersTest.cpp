#include "sql/uDbmFormatters.h"
#include "uTestPrint.h"

#include <gtest/gtest.h>

namespace {

TEST(TDatabaseTexts, TellACollationOnlyWhereItSaysSomething)
{
    const TDbmServerFeatures features;
    const TDbmDatabaseFormatters formatters(&features);
    TDbmDatabaseEntity plain, collated;
    plain.DatabaseName = collated.DatabaseName = "d";
    collated.Collation = "utf8mb4_bin";
    EXPECT_EQ(formatters.FormatCreateDatabase(plain), "CREATE SCHEMA `d`");
    EXPECT_EQ(formatters.FormatCreateDatabase(collated), "CREATE SCHEMA `d` COLLATE utf8mb4_bin");
    EXPECT_EQ(formatters.FormatAlterDatabase(plain, collated),
              "ALTER SCHEMA `d` COLLATE utf8mb4_bin");
    EXPECT_EQ(formatters.FormatAlterDatabase(collated, plain), "ALTER SCHEMA `d`");
    EXPECT_EQ(formatters.FormatAlterDatabaseFull(plain), "");
    EXPECT_EQ(formatters.FormatDropDatabase("d", true), "DROP SCHEMA IF EXISTS `d`");
    EXPECT_EQ(formatters.FormatDropDatabase("d", false), "DROP SCHEMA `d`");
}

TEST(TVariableTexts, FollowTheServer)
{
    TDbmServerFeatures features;
    const TDbmVariableFormatters formatters(&features);
    features.SetParams("5.1.11");
    EXPECT_EQ(formatters.FormatSelect(svoGlobal), "SHOW GLOBAL VARIABLES");
    features.SetParams("10.11.6-MariaDB");
    EXPECT_EQ(formatters.FormatGetValue("x", svoSession),
              "SELECT variable_value FROM information_schema.session_variables "
              "WHERE variable_name = 'x'");
    features.SetParams("9.1.0");
    EXPECT_EQ(formatters.FormatSelect(svoGlobal),
              "SELECT * FROM performance_schema.global_variables");
    EXPECT_EQ(formatters.FormatSetValue("max_connections", qint64(100), svoGlobal),
              "SET GLOBAL max_connections = 100");
    // A number that a page delivers as text is quoted.
    EXPECT_EQ(formatters.FormatSetValue("max_connections", "100", svoSession),
              "SET SESSION max_connections = '100'");
}

TEST(TControlTexts, LockOneTableAtATime)
{
    const TDbmServerFeatures features;
    const TDbmOtherFormatters formatters(&features);
    EXPECT_EQ(formatters.FormatLockTable("d", "t", ltoRead), "LOCK TABLE `d`.`t` READ");
    EXPECT_EQ(formatters.FormatLockTable("", "t", ltoWrite), "LOCK TABLE `t` WRITE");
    EXPECT_EQ(formatters.FormatSetNames("utf8mb4"), "SET NAMES 'utf8mb4'");
    EXPECT_EQ(formatters.FormatDelimiter("$$"), "DELIMITER $$");
}

} // namespace
