#include "sql/uDbmSelectFormatter.h"
#include "sql/uDbmDataFormatters.h"
#include "sql/uDbmSqlUtils.h"
#include "sql/uDbmStatementsFormatters.h"
#include "support/uException.h"
#include "uTestPrint.h"

#include <gtest/gtest.h>

namespace {

using TClauses = TDbmStatementsFormatters;

TDbmSelectFormatter OfTable()
{
    TDbmSelectFormatter select;
    select.FDatabaseName = "d";
    select.FTableName = "x";
    return select;
}

QString Text(const TDbmSelectFormatter &select)
{
    QString sql;
    select.Format(sql);
    return sql;
}

TEST(TSelect, CountsItsOffsetFromOne)
{
    TDbmSelectFormatter select = OfTable();
    EXPECT_EQ(Text(select), "SELECT * FROM `d`.`x`");
    select.FPrimaryFieldNames = {"id"};
    select.FLimitRowCount = 100;
    select.FLimitOffset = 0;
    EXPECT_EQ(Text(select), "SELECT * FROM `d`.`x` LIMIT 100");
    select.FLimitOffset = 200;
    EXPECT_EQ(Text(select), "SELECT `t`.* FROM `d`.`x` AS t JOIN (SELECT `id` FROM `d`.`x` "
                            "ORDER BY `id` ASC LIMIT 200, 100) AS q ON `t`.`id` = `q`.`id`");
    select.FPrimaryFieldNames.clear();
    EXPECT_EQ(Text(select), "SELECT * FROM `d`.`x` LIMIT 200, 100");
}

TEST(TSelect, OrdersTheSubqueryAndTheAnswer)
{
    TDbmSelectFormatter select = OfTable();
    select.FFieldNames = {"id", "name", "body"};
    select.FTextFields = {"body", "NAME"}; // the look-up is exact: NAME is no column of these
    select.FPrimaryFieldNames = {"a", "b"};
    select.FOrderFields = {"name", "id"};
    select.FWhereCommandText = "id > 5";
    select.FLimitOffset = 1;
    select.FLimitRowCount = 10;
    EXPECT_EQ(Text(select),
              "SELECT `t`.`id`, `t`.`name`, length(`t`.`body`) AS `body` FROM `d`.`x` AS t JOIN "
              "(SELECT `a`, `b` FROM `d`.`x` WHERE id > 5 ORDER BY `name`, `id` DESC LIMIT 1, 10) "
              "AS q ON `t`.`a` = `q`.`a` AND `t`.`b` = `q`.`b` ORDER BY `name`, `id` DESC");
}

TEST(TSelect, OrdersByATextThatComesAsItsLength)
{
    TDbmSelectFormatter select = OfTable();
    select.FFieldNames = {"id", "body"};
    select.FTextFields = {"body"};
    select.FPrimaryFieldNames = {"id"};
    select.FOrderFields = {"body"};
    select.FLimitRowCount = 10;
    EXPECT_EQ(Text(select), "SELECT `id`, length(`body`) AS `body` FROM `d`.`x` ORDER BY "
                            "`x`.`body` DESC LIMIT 10");
    select.FLimitOffset = 10;
    EXPECT_TRUE(Text(select).contains("(SELECT `id` FROM `d`.`x` ORDER BY `body` DESC LIMIT"))
        << Text(select).toStdString();
    EXPECT_TRUE(Text(select).endsWith(" ORDER BY `t`.`body` DESC"));
}

TEST(TSelect, CountsWithConditionAndLimitButWithoutOrder)
{
    TDbmSelectFormatter select = OfTable();
    select.FWhereFields = {"a", "b"};
    select.FWhereValues = {qint64(1), TVariant()};
    select.FWhereCommandText = "c OR d";
    select.FOrderFields = {"a"};
    select.FLimitRowCount = 7;
    QString sql;
    select.FormatRowCount(sql);
    EXPECT_EQ(sql, "SELECT count(*) FROM `d`.`x` WHERE `a` = 1 AND `b` IS NULL AND (c OR d) "
                   "LIMIT 7");
}

TEST(TClauseTexts, RefuseAColumnWithoutAValue)
{
    EXPECT_THROW(TClauses::FormatSet({"a", "b"}, {1}), EException);
    EXPECT_THROW(TDbmSqlUtils::FormatWhere({"a"}, {}), EException);
    TDbmSelectFormatter select = OfTable();
    select.FPrimaryFieldNames = {"id"};
    select.FWhereFields = {"a"};
    select.FWhereValues = {1};
    select.FLimitOffset = 1; // the form that pages by a condition text alone
    EXPECT_THROW(Text(select), EException);
}

// Deliberate, and for the caller to prevent: without a key all rows are meant, or any one.
TEST(TClauseTexts, AreEmptyWithoutContent)
{
    const TDbmServerFeatures features;
    const TDbmDataFormatters rows(&features);
    EXPECT_EQ(rows.FormatUpdateRow("d", "t", {}, {}, {1}, {"a"}),
              "UPDATE `d`.`t` SET `a` = 1  LIMIT 1");
    EXPECT_EQ(rows.FormatDeleteRow("d", "t", {}, {}), "DELETE FROM `d`.`t` ");
    EXPECT_EQ(rows.FormatDeleteRow("d", "t", {1.5, TVariant()}, {"id", "k"}),
              "DELETE FROM `d`.`t` WHERE `id` = '1.5' AND `k` IS NULL");
    EXPECT_EQ(TClauses::FormatLimit(3000000000, 5000000000), "LIMIT 3000000000, 5000000000");
    EXPECT_EQ(TClauses::FormatSet({"a", "b"}, {"x'", TVariant()}), "SET `a` = 'x\\'', `b` = NULL");
}

} // namespace
