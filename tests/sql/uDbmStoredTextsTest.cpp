#include "sql/uDbmIntervalUtils.h"
#include "sql/uDbmProgramTexts.h"
#include "uFamilies.h"
#include "uTestErrors.h"

#include <gtest/gtest.h>

namespace {

const TDbmServerFeatures NoFeatures;
const TDbmViewFormatters Views(&NoFeatures);
const TDbmRoutineFormatters Routines(&NoFeatures);
const TDbmTriggerFormatters Triggers(&NoFeatures);

TEST(TViewTexts, HaveALineForWhatTheViewHas)
{
    TDbmViewEntity view;
    view.ViewName = "v";
    view.Definition = "select `d`.`t`.`a` from `d`.`t` where `D`.`t`.`b`";
    EXPECT_EQ(Views.FormatCreate("x", view, true, true, false, "d"),
              "CREATE\r\n  VIEW `x`.`v`\r\nAS\r\nselect `t`.`a` from `t` where `D`.`t`.`b`");
    view.Definer = "root@%";
    view.SecurityType = vsInvoker;
    view.CheckOption = vcoCascaded;
    view.Definition = "select 1";
    EXPECT_EQ(Views.FormatCreate("d", view, false, true, true, {}),
              "CREATE OR REPLACE\r\n  DEFINER = 'root'@'%'\r\n  SQL SECURITY INVOKER\r\n"
              "  VIEW `d`.`v`\r\nAS\r\nselect 1\r\nWITH CASCADED CHECK OPTION");
}

TEST(TRoutineTexts, NeverNameTheDefiner)
{
    TDbmRoutineEntity routine;
    routine.RoutineName = "r";
    routine.Definer = "root@localhost";
    routine.Definition = "SELECT 1";
    EXPECT_EQ(Routines.FormatCreate("d", routine, {}), "CREATE PROCEDURE `d`.`r` ()\r\nSELECT 1");
    // Deliberate: ALTER always writes the comment, and takes the name of the entity alone.
    EXPECT_EQ(Routines.FormatUpdate("d", "old", routine),
              "ALTER PROCEDURE `d`.`r`\r\n  SQL SECURITY DEFINER\r\n  COMMENT ''");
    routine.RoutineType = rtFunction;
    routine.Returns = "varchar(10) CHARSET utf8";
    routine.Deterministic = true;
    routine.SecurityType = rsInvoker;
    routine.Comment = "c";
    EXPECT_EQ(Routines.FormatCreate("d", routine, "a int"),
              "CREATE FUNCTION `d`.`r` (a int) RETURNS varchar(10) CHARSET utf8\r\n"
              "DETERMINISTIC\r\nSQL SECURITY INVOKER\r\nCOMMENT 'c'\r\nSELECT 1");
}

TEST(TRoutineTexts, ATextThatIsPutBackNamesItsDatabase)
{
    TFamilies families(TTestServer::Instance());
    for (const char *const head :
         {"CREATE PROCEDURE ", "CREATE DEFINER=`a``b c`@`%` PROCEDURE ",
          "CREATE DEFINER=\"r\"@\"PROCEDURE x\" PROCEDURE ", "CREATE DEFINER=role PROCEDURE "}) {
        const auto text = families.Parse(
            QString("SELECT '") + head +
                "`p`() SELECT 1' AS `Create Procedure`, 'ANSI' AS sql_mode",
            [](const TDataSet &row) { return Routines.ParseSelectText(row, "d", rtProcedure); });
        EXPECT_EQ(text.Statement, QString(head) + "`d`.`p`() SELECT 1");
        EXPECT_EQ(text.Settings.SQLMode, "ANSI");
    }
}

TEST(TTriggerTexts, TellThePlaceOnlyWhenPutBack)
{
    TDbmWholeTrigger first, second;
    first.Entity.TriggerName = "a";
    first.Entity.Event = second.Entity.Event = teBeforeInsert;
    first.ActionOrder = 1;
    second.Entity.TriggerName = "b";
    second.Entity.Body = "SET @a = 1";
    second.Entity.Definer = "root@localhost";
    second.ActionOrder = 2;
    EXPECT_EQ(Triggers.FormatCreate("d", "t", second.Entity),
              "CREATE TRIGGER `d`.`b` BEFORE INSERT ON `d`.`t`\r\nFOR EACH ROW\r\nSET @a = 1");
    EXPECT_TRUE(Triggers.FormatRestore("d", "t", second, {first, second}).contains("FOLLOWS `a`"));
    first.Entity.Event = teAfterInsert;
    EXPECT_EQ(Triggers.FormatRestore("d", "t", second, {first, second}),
              "CREATE DEFINER = 'root'@'localhost' TRIGGER `d`.`b` BEFORE INSERT ON `d`.`t`\r\n"
              "FOR EACH ROW\r\nSET @a = 1");
}

TEST(TDbmProgramTextsTest, FindsTheBodyInTheStatement)
{
    const struct
    {
        const char *Kind, *Create, *Body;
    } programs[] = {
        {"PROCEDURE", "CREATE DEFINER=`a(`@`%` PROCEDURE `p)`(a INT, b ENUM(')'))\nSELECT ''",
         "SELECT ''"},
        {"PROCEDURE",
         "CREATE PROCEDURE `p`()\n    NO SQL\n    DETERMINISTIC\n    SQL SECURITY INVOKER\n"
         "    COMMENT 'a\\n''b'\n    BEGIN\n    NO SQL\nEND",
         "    BEGIN\n    NO SQL\nEND"},
        {"TRIGGER",
         "CREATE TRIGGER `for each row` BEFORE INSERT ON t\n for each\nROW SET @x = ''''",
         "SET @x = ''''"},
        {"TRIGGER", "CREATE TRIGGER t BEFORE INSERT ON t FOR EACH ROW FOLLOWS `a b` BEGIN END",
         "BEGIN END"},
        {"EVENT", "CREATE EVENT `DO ` ON SCHEDULE EVERY 1 DAY COMMENT ' DO ' DO SET @x = 1",
         "SET @x = 1"},
    };
    for (const auto &program : programs)
        EXPECT_EQ(TDbmProgramTexts::Body(program.Kind, program.Create), program.Body);
}

TEST(TIntervals, AreReadWrittenAndShown)
{
    const struct
    {
        const char *Value, *Unit, *Shown;
    } intervals[] = {
        {"1", "DAY", "1d"},
        {"4", "MICROSECOND", "4ms"},
        {"'1-6'", "YEAR_MONTH", "1y 6m"},
        {"'1 0:0:5'", "DAY_SECOND", "1d 5s"},
        {"'1:2:3.4'", "HOUR_MICROSECOND", "1h 2m 3s 4ms"},
    };
    TDbmInterval interval;
    for (const auto &each : intervals) {
        interval = {};
        TDbmIntervalUtils::ParseValue(each.Value, each.Unit, interval);
        EXPECT_EQ(TDbmIntervalUtils::IntervalToDisplayString(interval), each.Shown);
        EXPECT_EQ(TDbmIntervalUtils::FormatValue(interval), QString(each.Value) + ' ' + each.Unit);
    }
    // Deliberate: one value short, so that nothing but what was asked for reaches the server.
    interval = {};
    TDbmIntervalUtils::ParseValue("'1 2:3:4.5'", "DAY_MICROSECOND", interval);
    EXPECT_EQ(TDbmIntervalUtils::IntervalToDisplayString(interval), "1d 2h 3m 4s 5ms");
    EXPECT_THROW(TDbmIntervalUtils::FormatValue(interval), EException);

    EXPECT_EQ(MessageOf([] { TDbmIntervalUtils::FormatValue({}); }),
              "Format interval error. Can not detect type.");
}

} // namespace
