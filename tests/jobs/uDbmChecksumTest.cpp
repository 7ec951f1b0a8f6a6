#include "core/uServerProfile.h"
#include "jobs/uDbmChecksumDatabaseWorker.h"
#include "support/uCRC32Utils.h"
#include "uJobListener.h"
#include "uTestDatabase.h"
#include "uTestPrint.h"

#include <QtEndian>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

TEST(TCRC32UtilsTest, KnownSums)
{
    EXPECT_EQ(TCRC32Utils::CalculateMemory("123456789", 9), 0xCBF43926u);
    EXPECT_EQ(TCRC32Utils::CalculateString(""), 0xFFFFFFFFu);
    EXPECT_EQ(TCRC32Utils::CalculateString("aя"), TCRC32Utils::CalculateMemory("a\0\x4f\x04", 4));
}

class TDbmChecksumTest : public testing::TestWithParam<TTestServerKind>
{
protected:
    void SetUp() override
    {
        if (GetParam() == skMySQL)
            SKIP_WITHOUT_MYSQL9();
        FDatabase = std::make_unique<TTestDatabase>(Server());
    }
    TTestServer &Server() const
    {
        return GetParam() == skMySQL ? *TTestServer::MySql9() : TTestServer::Instance();
    }
    void Exec(const QString &sql) const { FDatabase->Exec(sql); }

    /// What the job logs for a database, and its error behind it.
    QStringList Run(const QString &database)
    {
        TDbmChecksumDatabaseWorker worker;
        worker.FProfile = ServerProfile(Server());
        worker.FDatabaseName = database;
        const TListener heard(worker);
        RunJob(worker);
        return heard.Error.isEmpty() ? heard.Lines : heard.Lines + QStringList{heard.Error};
    }
    QStringList Run() { return Run(FDatabase->Name()); }

    std::unique_ptr<TTestDatabase> FDatabase;
};

TEST_P(TDbmChecksumTest, ADatabaseWithoutTablesSumsUpToNothing)
{
    Exec("CREATE VIEW v AS SELECT 1 AS one");
    EXPECT_EQ(Run(), (QStringList{"Opening connection", "---", "---", "Database checksum = 0"}));
}

TEST_P(TDbmChecksumTest, ValuesCountAndTheOrderOfRowsDoesNot)
{
    Exec("CREATE TABLE a_empty (id INT, t TEXT)");
    Exec("CREATE TABLE b_nulls (id INT, t TEXT)");
    Exec("INSERT INTO b_nulls VALUES (NULL, NULL)");
    Exec("CREATE TABLE `c odd.name` (`my id` INT, t TEXT CHARACTER SET utf8mb4, b BLOB)");
    Exec("INSERT INTO `c odd.name` VALUES (1, 'Пример 東京', x'00ff'), (2, 'it''s', NULL)");
    const QStringList lines = Run();
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
    EXPECT_EQ(Run(), lines);
    Exec("UPDATE `c odd.name` SET b = x'00fe' WHERE `my id` = 1");
    const QStringList changed = Run();
    EXPECT_NE(changed[4], lines[4]);
    EXPECT_NE(changed[6], lines[6]);
}

TEST_P(TDbmChecksumTest, AMissingDatabaseAndAFailingTableEndTheJobWithTheirNames)
{
    EXPECT_THAT(Run("no_such_db").last().toStdString(), testing::HasSubstr("no_such_db"));
    if (GetParam() != skMariaDB)
        return;
    Exec("CREATE TABLE a (id INT)");
    Exec("CREATE TABLE z (id INT) ENGINE=MRG_MYISAM UNION=(gone)");
    const QStringList lines = Run();
    EXPECT_TRUE(lines.contains("Table \"a\" = 0"));
    EXPECT_FALSE(lines.join('\n').contains("Database checksum"));
}

INSTANTIATE_TEST_SUITE_P(Servers, TDbmChecksumTest, testing::Values(skMariaDB, skMySQL),
                         [](const testing::TestParamInfo<TTestServerKind> &info) {
                             return info.param == skMySQL ? "MySQL9" : "MariaDB";
                         });

} // namespace
