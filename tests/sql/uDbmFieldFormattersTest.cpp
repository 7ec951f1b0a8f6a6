#include "sql/uDbmFieldFormatters.h"
#include "sql/uDbmColumnDefaults.h"
#include "sql/uDbmFieldUtils.h"
#include "sql/uDbmQuotedText.h"
#include "sql/uDbmSqlValueUtils.h"
#include "support/uException.h"
#include "support/uStringUtils.h"
#include "uTestErrors.h"
#include "uTestPrint.h"

#include <gtest/gtest.h>

namespace {

TDbmFieldType Type(const QString &text, const QString &collation = {})
{
    TDbmFieldType type;
    TDbmFieldUtils::ParseType(text, type, collation);
    return type;
}

QString Written(const TDbmFieldType &type, const QString &tableCollation = {})
{
    QString text;
    TDbmFieldUtils::FormatType(type, tableCollation, text);
    return TStringUtils::Compact(text);
}

TDbmFieldEntity Field(const QString &type)
{
    TDbmFieldEntity field;
    field.FieldName = "c";
    field.FieldType = Type(type);
    return field;
}

/// As a server tells of it.
TDbmFieldEntity ReadField(const QString &type)
{
    TDbmFieldEntity field = Field(type);
    field.ServerText.Type = type;
    field.ServerText.Parsed = field.FieldType;
    return field;
}

const TDbmServerFeatures Features;
const TDbmFieldFormatters Formatters(&Features);

TEST(TFieldTypeTest, IsReadAndWrittenInTheModelsOwnWay)
{
    const struct
    {
        const char *Read;
        const char *Written;
        const char *Collation = "";
        const char *TableCollation = "utf8_general_ci";
    } rows[] = {
        {"tinyint(1) unsigned", "BOOL"},
        {"INTEGER(10) Unsigned Zerofill", "INT(10) UNSIGNED ZEROFILL"},
        {"double(10,2) unsigned", "DOUBLE(10,2) UNSIGNED"},
        {"datetime(6)", "DATETIME"},
        {"enum('a','')", "ENUM('a')"},
        {"enum('a''b','c')", "ENUM('a', 'b', 'c')"},
        {"char(3)", "CHAR(3) COLLATE UTF8_general_ci", "UTF8_general_ci"},
        {"text", "TEXT BINARY COLLATE utf8_bin", "utf8_bin"},
        {"text", "TEXT BINARY", "utf8_bin", "utf8_bin"},
        {"text", "TEXT COLLATE utf8mb4_0900_bin", "utf8mb4_0900_bin", "utf8mb4_0900_bin"},
    };
    for (const auto &row : rows)
        EXPECT_EQ(Written(Type(row.Read, row.Collation), row.TableCollation), row.Written)
            << row.Read;
    EXPECT_EQ(MessageOf([] { Type("geometry"); }),
              "Parse error: unknown field data type \"geometry\"");
}

TEST(TFieldTextTest, KeepsEachBlankInItsPlace)
{
    TDbmFieldEntity id = Field("int unsigned"), plain = Field("int"), text = Field("text");
    id.Autoincrement = true;
    plain.Comment = "x";
    plain.DefaultValue.Value = 1.5;
    text.Nullable = true;
    const auto definition = [](const TDbmFieldEntity &field, bool isNew) {
        return Formatters.FormatDefinition(field, {}, isNew);
    };
    EXPECT_EQ(definition(id, true), "`c` INT UNSIGNED NOT NULL AUTO_INCREMENT");
    EXPECT_EQ(definition(id, false), "`c` INT UNSIGNED NOT NULL AUTO_INCREMENT COMMENT ''");
    EXPECT_EQ(definition(plain, true), "`c` INT NOT NULL DEFAULT '1.5'  COMMENT 'x'");
    EXPECT_EQ(definition(text, true), "`c` TEXT DEFAULT NULL");
    EXPECT_EQ(definition(text, false), "`c` TEXT NULL DEFAULT NULL  COMMENT ''");
    EXPECT_EQ(Formatters.FormatChangeColumn(text, {fptFirst, {}}, "d", {}),
              "CHANGE COLUMN `c` `d` TEXT NULL DEFAULT NULL COMMENT '' FIRST");
}

TEST(TFieldTextTest, FoldsTypedLineBreaksAndKeepsStoredOnes)
{
    TDbmFieldEntity field = Field("int");
    field.Comment = " it's \\ \r\n  two\n";
    EXPECT_EQ(Formatters.FormatDefinition(field, {}, true),
              "`c` INT NOT NULL  COMMENT ' it\\'s \\\\ two '");
    field.ServerText.Comment = field.Comment;
    EXPECT_EQ(Formatters.FormatDefinition(field, {}, true),
              "`c` INT NOT NULL  COMMENT ' it\\'s \\\\ \\r\\n  two\\n'");
}

TEST(TFieldTextTest, TheServersTypeStaysWhereTheModelWouldNarrowIt)
{
    const auto written = [](const TDbmFieldEntity &field) {
        return TStringUtils::Compact(Formatters.FormatColumnType(field, "utf8mb4_general_ci"));
    };
    EXPECT_EQ(written(ReadField("tinyint(1) unsigned")), "tinyint(1) unsigned");
    EXPECT_EQ(written(ReadField("int(8)")), "INT(8)");
    // Where one of the split ones is taken out, nobody can tell what is meant.
    TDbmFieldEntity split = ReadField("enum('a''b','c')");
    split.FieldType.Values = {"b", "c"};
    EXPECT_EQ(written(split), "ENUM('b', 'c')");
}

TEST(TFieldTextTest, AnotherTypeLosesWhatItDoesNotTake)
{
    const auto written = [](const TDbmFieldEntity &field) {
        return Formatters.FormatChangeColumn(field, {}, "d", {}).section("`d` ", 1);
    };
    TDbmFieldEntity moment = ReadField("datetime(6)");
    moment.ServerText.Default = moment.ServerText.OnUpdate = "CURRENT_TIMESTAMP(6)";
    moment.ServerText.ParsedDefault.ValueType = vtCurrentTimeStamp;
    moment.DefaultValue.ValueType = vtCurrentTimeStamp;
    EXPECT_EQ(written(moment), "datetime(6) NOT NULL DEFAULT CURRENT_TIMESTAMP(6) ON UPDATE"
                               " CURRENT_TIMESTAMP(6) COMMENT ''");
    moment.FieldType.DataType = fdtTimeStamp;
    EXPECT_EQ(written(moment), "TIMESTAMP NOT NULL DEFAULT CURRENT_TIMESTAMP ON UPDATE"
                               " CURRENT_TIMESTAMP COMMENT ''");
    moment.FieldType.DataType = fdtInt;
    moment.DefaultValue = {vtValue, 1};
    EXPECT_EQ(written(moment), "INT NOT NULL DEFAULT 1 COMMENT ''");
}

TEST(TFieldDefaultTest, IsWrittenByTheModelWhereThatMeansTheSame)
{
    TDbmServerFeatures old, quoted, marked;
    old.SetParams("5.7.44");
    quoted.SetParams("10.11.6-MariaDB");
    marked.SetParams("9.1.0");
    const struct
    {
        const TDbmServerFeatures &Features;
        TDbmFieldDataType Type;
        const char *Read;
        const char *Written;
        bool IsExpression = false;
    } rows[] = {
        {quoted, fdtDateTime, "'0000-00-00 00:00:00'", "0"},
        {quoted, fdtTimeStamp, "'2001-02-03 00:00:00'", "'2001-02-03'"},
        {marked, fdtDecimal, "-100.00", "'-100'"},
        {quoted, fdtDecimal, "12345678901234567890.1", "12345678901234567890.1"},
        {quoted, fdtVarChar, "'NULL'", "'NULL'"},
        {old, fdtDateTime, "CURRENT_TIMESTAMP(6)", "CURRENT_TIMESTAMP(6)"},
        {old, fdtVarChar, "CURRENT_TIMESTAMP(6)", "'CURRENT_TIMESTAMP(6)'"},
        {marked, fdtVarChar, "concat(_utf8mb4\\'a\\')", "(concat(_utf8mb4'a'))", true},
    };
    for (const auto &row : rows) {
        TDbmValue value;
        QString serverText;
        TDbmColumnDefaults(row.Features)
            .Parse(row.Type, row.Read, row.IsExpression, value, serverText);
        EXPECT_EQ(serverText.isEmpty() ? TDbmSqlValueUtils::FormatValue(value, true) : serverText,
                  row.Written)
            << row.Read;
    }
}

TEST(TColumnCheckTest, IsFoundInEachSpellingOfAName)
{
    const QString ddl = "CREATE TABLE `t` (\n"
                        "  `a` int COMMENT 'x CHECK (y)' CHECK (`a` > 1 and `b` <> 'a)\\'`a`'),\n"
                        "  \"b \"\"c\" int CHECK (\"b \"\"c\" > 0),\n"
                        "  length int CHECK (length(LENGTH) > 2),\n"
                        "  `free` int DEFAULT 1\n"
                        ") ENGINE=InnoDB";
    const auto renamed = [&](const QString &name) {
        return TDbmQuotedText::RenameColumn(TDbmFieldFormatters::ParseColumnCheck(ddl, name), name,
                                            "n`w");
    };
    EXPECT_EQ(TDbmFieldFormatters::ParseColumnCheck(ddl, "b \"c"), "CHECK (\"b \"\"c\" > 0)");
    EXPECT_EQ(TDbmFieldFormatters::ParseColumnCheck(ddl, "free"), "");
    EXPECT_EQ(renamed("a"), "CHECK (`n``w` > 1 and `b` <> 'a)\\'`a`')");
    EXPECT_EQ(renamed("b \"c"), "CHECK (`n``w` > 0)");
    EXPECT_EQ(renamed("length"), "CHECK (length(`n``w`) > 2)");
    EXPECT_THROW(TDbmFieldFormatters::ParseColumnCheck(ddl, "missing"), EException);
}

} // namespace
