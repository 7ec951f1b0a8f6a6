#include "sql/uDbmDataFormatters.h"
#include "uTestPrint.h"

#include <gtest/gtest.h>

namespace {

const TDbmServerFeatures Features;
const TDbmDataFormatters Formatters(&Features);

TEST(TRowTextTest, AnUpdateMeetsOneRowAndADeleteAll)
{
    const QStringList key{"id"};
    EXPECT_EQ(Formatters.FormatSelectRowCount("d", "t"), "SELECT count(*) FROM `d`.`t`");
    EXPECT_EQ(Formatters.FormatUpdateRow("d", "t", {5}, key, {1, "x'y"}, {"a", "b"}),
              "UPDATE `d`.`t` SET `a` = 1, `b` = 'x\\'y' WHERE `id` = 5 LIMIT 1");
    EXPECT_EQ(Formatters.FormatDeleteRow("d", "t", {5, TVariant()}, {"id", "k"}),
              "DELETE FROM `d`.`t` WHERE `id` = 5 AND `k` IS NULL");
    EXPECT_EQ(Formatters.FormatInsertRow("d", "t", {1, TVariant()}, {"a", "b"}),
              "INSERT INTO `d`.`t` (`a`, `b`) VALUES (1, NULL)");
    // Deliberate, and for the caller to prevent.
    EXPECT_EQ(Formatters.FormatUpdateRow("d", "t", {}, {}, {1}, {"a"}),
              "UPDATE `d`.`t` SET `a` = 1  LIMIT 1");
    EXPECT_EQ(Formatters.FormatDeleteRow("d", "t", {}, {}), "DELETE FROM `d`.`t` ");
    EXPECT_EQ(Formatters.FormatUpdateRow("d", "t", {5}, key, {}, {}),
              "UPDATE `d`.`t`  WHERE `id` = 5 LIMIT 1");
}

TEST(TRowTextTest, EachKindOfKeyHasItsLiteral)
{
    TDateTime midnight;
    TDateTime::TryEncode(2001, 2, 3, 0, 0, 0, midnight);
    const struct
    {
        TVariant Value;
        const char *Test;
    } rows[] = {
        {qint64(-5), "`k` = -5"},
        {1.5, "`k` = '1.5'"},
        {true, "`k` = TRUE"},
        {QByteArray("\x00\xff", 2), "`k` = 0x00FF"},
        {midnight, "`k` = '2001-02-03'"},
        {"5", "`k` = '5'"},
    };
    for (const auto &row : rows)
        EXPECT_EQ(Formatters.FormatDeleteRow("d", "t", {row.Value}, {"k"}),
                  QString("DELETE FROM `d`.`t` WHERE ") + row.Test);
}

} // namespace
