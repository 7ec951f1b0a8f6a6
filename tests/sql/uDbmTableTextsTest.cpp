#include "sql/uDbmFormatters.h"
#include "uTestPrint.h"

#include <gtest/gtest.h>

namespace {

const TDbmServerFeatures NoFeatures;
const TDbmTableFormatters Tables(&NoFeatures);
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

} // namespace
