#include "uFamilies.h"

#include <gtest/gtest.h>

namespace {

const TDbmServerFeatures NoFeatures;
const TDbmTableFormatters Tables(&NoFeatures);
const TDbmIndexFormatters Indexes(&NoFeatures);
const TDbmReferenceFormatters References(&NoFeatures);

TDbmTableEntity Table(const QString &name)
{
    TDbmTableEntity entity;
    entity.TableName = name;
    return entity;
}

TEST(TTableTexts, ANewTableHasAKeyAndSaysItsRowFormat)
{
    EXPECT_EQ(Tables.FormatCreate("d", Table("t"), {}),
              "CREATE TABLE `d`.`t`(\r\n"
              "  `id` INT UNSIGNED NOT NULL AUTO_INCREMENT,\r\n"
              "  PRIMARY KEY (`id`)\r\n"
              ")\r\n"
              "ROW_FORMAT = DEFAULT");
    TDbmTableEntity same = Table("t");
    same.Collation = "utf8mb4_bin";
    EXPECT_FALSE(Tables.FormatCreate("", same, "utf8mb4_bin").contains("COLLATE"));
    EXPECT_TRUE(Tables.FormatCreate("", same, "latin1_bin").contains("COLLATE = utf8mb4_bin"));
}

// Deliberate: what did not change is written too, without commas, and a line break ends it all.
TEST(TTableTexts, AnUpdateWritesAllOptions)
{
    EXPECT_EQ(Tables.FormatUpdate("d", "old", Table("new")),
              "ALTER TABLE `d`.`old`\r\nROW_FORMAT = DEFAULT\r\nCHECKSUM = 0\r\n"
              "PACK_KEYS = DEFAULT\r\nDELAY_KEY_WRITE = 0\r\nCOMMENT = ''\r\n");
}

TEST(TTableTexts, TheLastOptionLosesItsLastCharacter)
{
    TFamilies families(TTestServer::Instance());
    const auto parse = [&](const QString &options) {
        const auto entity =
            families.Row(Tables, "SELECT 't' AS TABLE_NAME, '" + options + "' AS CREATE_OPTIONS");
        return QString("%1 %2 %3")
            .arg(entity.Checksum)
            .arg(entity.PackKeys)
            .arg(entity.DelayKeyWrite);
    };
    const QString isDefault = QString::number(pkDefault);
    EXPECT_EQ(parse("checksum=1"), "0 " + isDefault + " 0");
    EXPECT_EQ(parse("CHECKSUM=1 delay_key_write=1"), "1 " + isDefault + " 0");
    EXPECT_EQ(parse("pack_keys=0 delay_key_write=1 checksum=1 "),
              "1 " + QString::number(pkOff) + " 1");
}

TEST(TIndexTexts, OnlyTheExactWordIsThePrimaryKey)
{
    EXPECT_EQ(Indexes.FormatDropIndex("PRIMARY"), "DROP PRIMARY KEY");
    EXPECT_EQ(Indexes.FormatDropIndex("primary"), "DROP INDEX `primary`");
}

// Deliberate: the order of the rows carries the position, which is not among the columns.
TEST(TIndexTexts, PositionsReadZero)
{
    TFamilies families(TTestServer::Instance());
    const TTestDatabase database;
    database.Exec("CREATE TABLE t (a int, b int, KEY k (b, a))");
    const auto columns = families.Commands.IndexColumns().ExecuteSelectOnDatabase(database.Name());
    ASSERT_EQ(columns.size(), 2);
    EXPECT_EQ(columns[0].ColumnName + columns[1].ColumnName, "ba");
    EXPECT_EQ(columns[1].Position, 0);
}

TEST(TReferenceTexts, NameAnotherDatabaseAlone)
{
    TDbmReferenceEntity reference;
    reference.RefDatabaseName = "d";
    reference.RefTableName = "p";
    reference.OnDelete = roSetNull;
    TDbmReferenceColumnEntity column;
    column.SrcColumnName = "a";
    column.RefColumnName = "b";
    // Deliberate: the place of a missing name stays as a second blank.
    EXPECT_EQ(References.FormatAddForeignKey(reference, {column}, "d"),
              "ADD FOREIGN KEY  (`a`) REFERENCES `p` (`b`) ON DELETE SET NULL");
    reference.ReferenceName = "fk";
    reference.OnDelete = roUnknown;
    reference.OnUpdate = roNoAction;
    EXPECT_EQ(References.FormatAddForeignKey(reference, {column, column}, "other"),
              "ADD FOREIGN KEY `fk` (`a`, `a`) REFERENCES `d`.`p` (`b`, `b`)  ON UPDATE NO ACTION");
}

// Deliberate: the parser of a table's text tells an unknown rule as unknown instead.
TEST(TReferenceTexts, AnUnknownRuleOfTheCatalogueIsRestrict)
{
    TFamilies families(TTestServer::Instance());
    const auto entity = families.Row(References, "SELECT 'fk' AS constraint_name, 'SET DEFAULT' AS"
                                                 " update_rule, 'cascade' AS delete_rule");
    EXPECT_EQ(entity.OnUpdate, roRestrict);
    EXPECT_EQ(entity.OnDelete, roCascade);
}

} // namespace
