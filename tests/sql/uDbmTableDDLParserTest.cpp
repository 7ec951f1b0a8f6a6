#include "sql/uDbmTableDDLParser.h"
#include "uTestPrint.h"

#include <gtest/gtest.h>

namespace {

const QString Text = "CREATE TABLE `t` (\n"
                     "  `id` int NOT NULL,\n"
                     "  `key` int DEFAULT NULL,\n"
                     "  `not seen` int,\n"
                     "  PRIMARY KEY (`id`,`key`) USING BTREE,\n"
                     "  unique key `u` (`key`),\n"
                     "  UNIQUE KEY `u$` (`id`),\n"
                     "  KEY `k` (`a`(10),`b`) USING BTREE,\n"
                     "  KEY `kk` (`c` DESC,`d e`,`f`),\n"
                     "  FULLTEXT KEY `ft` (`txt`),\n"
                     "  SPATIAL KEY `sp` (`geo`),\n"
                     "  CONSTRAINT `plain` FOREIGN KEY (`a`) REFERENCES `p` (`x`),\n"
                     "  CONSTRAINT `two` FOREIGN KEY (`a`, `b`) REFERENCES `p` (`x`, `y`) ON DELETE"
                     " SET NULL ON UPDATE CASCADE,\n"
                     "  CONSTRAINT `upd` FOREIGN KEY (`a`) REFERENCES `p` (`x`) on update no "
                     "action,\n"
                     "  CONSTRAINT `far` FOREIGN KEY (`a`) REFERENCES `d2`.`p` (`x`),\n"
                     "  CONSTRAINT `odd` FOREIGN KEY (`a-b`) REFERENCES `p` (`x`)\n"
                     ") ENGINE=InnoDB";

template <typename T, typename TName>
QStringList Names(const QList<T> &entities, TName name)
{
    QStringList names;
    for (const T &entity : entities)
        names += entity.*name;
    return names;
}

TDbmTableDDLParser Parser(const QString &text = Text)
{
    static const TDbmServerFeatures features;
    return {&features, "d", text};
}

QString Columns(const QString &name, TDbmIndexKind kind)
{
    TDbmIndexEntity index;
    index.IndexName = name;
    index.IndexKind = kind;
    QStringList columns;
    for (const TDbmIndexColumnEntity &column : Parser().ParseIndexColumns(index))
        columns +=
            QString("%1 %2 %3").arg(column.Position).arg(column.ColumnName).arg(column.Length);
    return columns.join(", ");
}

TEST(TTableTextTest, ListsWhatPlainNamesAndKindsAllow)
{
    const TDbmTableDDLParser parser = Parser();
    EXPECT_EQ(Names(parser.ParseColumns(), &TDbmFieldEntity::FieldName),
              QStringList({"id", "key"}));
    TDbmIndexEntity primary;
    ASSERT_TRUE(parser.TryParsePrimaryKey(primary));
    EXPECT_EQ(primary.IndexName, "PRIMARY");
    EXPECT_EQ(primary.IndexKind, ikPrimary);
    // Full-text and spatial indexes are not listed, nor is a name with a $.
    EXPECT_EQ(Names(parser.ParseUniqueKeys(), &TDbmIndexEntity::IndexName), QStringList({"u"}));
    EXPECT_EQ(Names(parser.ParseKeys(), &TDbmIndexEntity::IndexName), QStringList({"k", "kk"}));

    const TDbmTableDDLParser none = Parser("CREATE TABLE `t` (\n  `a` int\n)");
    EXPECT_FALSE(none.TryParsePrimaryKey(primary));
    EXPECT_TRUE(none.ParseUniqueKeys().isEmpty() && none.ParseForeignKeys().isEmpty());
}

TEST(TTableTextTest, IndexColumnsAreFoundAlsoOfKindsThatAreNotListed)
{
    EXPECT_EQ(Columns("PRIMARY", ikPrimary), "0 id 0, 1 key 0");
    EXPECT_EQ(Columns("k", ikIndex), "0 a 10, 1 b 0");
    EXPECT_EQ(Columns("kk", ikIndex), "0 c 0, 1 f 0");
    EXPECT_EQ(Columns("ft", ikFulltext), "0 txt 0");
}

TEST(TTableTextTest, ForeignKeysShowTheirOptionsAndFirstPair)
{
    const TDbmTableDDLParser parser = Parser();
    QStringList shown;
    for (const TDbmReferenceEntity &reference : parser.ParseForeignKeys())
        shown +=
            QString("%1 %2.%3 %4 %5")
                .arg(reference.ReferenceName, reference.RefDatabaseName, reference.RefTableName)
                .arg(reference.OnDelete)
                .arg(reference.OnUpdate);
    const auto expected = [](const char *name, int onDelete, int onUpdate) {
        return QString("%1 d.p %2 %3").arg(name).arg(onDelete).arg(onUpdate);
    };
    // A key into another database and one with a hyphen in a name are not listed.
    EXPECT_EQ(shown, QStringList({expected("plain", roRestrict, roRestrict),
                                  expected("two", roSetNull, roCascade),
                                  expected("upd", roRestrict, roNoAction)}));
    const auto pairs = parser.ParseForeignKeyColumns("two");
    ASSERT_EQ(pairs.size(), 1);
    EXPECT_EQ(pairs.first().SrcColumnName, "a");
    EXPECT_EQ(pairs.first().RefColumnName, "x");
    EXPECT_TRUE(parser.ParseForeignKeyColumns("far").isEmpty());
}

} // namespace
