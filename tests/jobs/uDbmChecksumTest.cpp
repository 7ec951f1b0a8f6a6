#include "support/uCRC32Utils.h"
#include "uJobRuns.h"
#include "uTestPrint.h"

#include <QtEndian>

namespace {

TEST(TCRC32UtilsTest, KnownSums)
{
    EXPECT_EQ(TCRC32Utils::CalculateMemory("123456789", 9), 0xCBF43926u);
    EXPECT_EQ(TCRC32Utils::CalculateString(""), 0xFFFFFFFFu);
    EXPECT_EQ(TCRC32Utils::CalculateString("aя"), TCRC32Utils::CalculateMemory("a\0\x4f\x04", 4));
}

using TDbmChecksumTest = TJobRunsTest;

TEST_P(TDbmChecksumTest, ValuesCountAndTheOrderOfRowsDoesNot)
{
    Exec("CREATE VIEW v AS SELECT 1 AS one");
    EXPECT_EQ(Checksum().Lines,
              (QStringList{"Opening connection", "---", "---", "Database checksum = 0"}));
    Exec("CREATE TABLE a_empty (id INT, t TEXT)");
    Exec("CREATE TABLE b_nulls (id INT, t TEXT)");
    Exec("INSERT INTO b_nulls VALUES (NULL, NULL)");
    Exec("CREATE TABLE `c odd.name` (`my id` INT, t TEXT CHARACTER SET utf8mb4, b BLOB)");
    Exec("INSERT INTO `c odd.name` VALUES (1, 'Пример 東京', x'00ff'), (2, 'it''s', NULL)");
    const QStringList lines = Checksum().Lines;
    ASSERT_EQ(lines.size(), 7) << lines.join('\n').toStdString();
    EXPECT_EQ(lines[2], "Table \"a_empty\" = 0");
    const quint32 zero = TCRC32Utils::CalculateMemory("0", 1);
    EXPECT_EQ(lines[3], "Table \"b_nulls\" = " + QString::number(zero));
    const quint32 third = lines[4].section(" = ", 1).toUInt();
    const quint32 numbers[] = {qToLittleEndian(0u), qToLittleEndian(zero), qToLittleEndian(third)};
    EXPECT_EQ(lines[6], "Database checksum = " +
                            QString::number(TCRC32Utils::CalculateMemory(numbers, sizeof numbers)));

    Exec("DELETE FROM `c odd.name`");
    Exec("INSERT INTO `c odd.name` VALUES (2, 'it''s', NULL), (1, 'Пример 東京', x'00ff')");
    EXPECT_EQ(Checksum().Lines, lines);
    Exec("UPDATE `c odd.name` SET b = x'00fe' WHERE `my id` = 1");
    const QStringList changed = Checksum().Lines;
    EXPECT_NE(changed[4], lines[4]);
    EXPECT_NE(changed[6], lines[6]);
}

ON_BOTH_SERVERS(TDbmChecksumTest);

} // namespace
