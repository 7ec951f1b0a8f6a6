#include "core/uServerProfile.h"
#include "jobs/uDbmMigrateDatabaseWorker.h"
#include "jobs/uDbmTableCloner.h"
#include "model/uDbmManager.h"
#include "uDumpDatabase.h"
#include "uJobListener.h"
#include "uJobRuns.h"

#include <QThread>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

using testing::HasSubstr;

class TDbmMigrateTest : public TJobRunsTest
{
protected:
    QStringList Migrate(const QString &target, TTestServerKind kind)
    {
        TDbmMigrateDatabaseWorker worker;
        worker.FSourceProfile = ServerProfile(Server());
        worker.FTargetProfile = ServerProfile(Server(kind));
        worker.FSourceDatabaseName = Name();
        worker.FTargetDatabaseName = target;
        const TListener heard(worker);
        RunJob(worker);
        Error = heard.Error;
        return heard.Lines;
    }
    QString Error;
};

TEST_P(TDbmMigrateTest, ADatabaseIsCopiedAndReplacedOnItsServer)
{
    DumpDatabase::Fill(*FDatabase);
    const QString target = Name() + "_copy";
    Server().Exec("DROP DATABASE IF EXISTS `" + target + '`');
    const QStringList before = Contents();
    const QStringList log = Migrate(target, GetParam());
    EXPECT_EQ(Error.toStdString(), "");
    const auto copied = [&] {
        QStringList lines = DumpDatabase::Contents(Server(), target);
        return lines;
    };
    ExpectSame(before, copied());
    EXPECT_EQ(log.value(0), "Opening source connection");
    EXPECT_EQ(log.value(2), "Opening target connection");
    EXPECT_EQ(log.value(4), "Getting the current charset on the source connection");
    EXPECT_EQ(log.value(5), "Setting the charset to \"utf8mb4\" on the target connection");
    EXPECT_EQ(log.value(6), "Checking the target database \"" + target + '"');
    EXPECT_EQ(log.value(7), "Creating database \"" + target + '"');

    Server().Exec("CREATE TABLE own (id INT)", target);
    Server().Exec("DELETE FROM log_of", target);
    Exec("INSERT INTO log_of VALUES ('new')");
    Migrate(target, GetParam());
    EXPECT_EQ(Error.toStdString(), "");
    Server().Exec("DROP TABLE own", target);
    ExpectSame(Contents(), copied());
    Server().Exec("DROP DATABASE `" + target + '`');
}

TEST_P(TDbmMigrateTest, ADatabaseIsNotMigratedOntoItself)
{
    Exec("CREATE TABLE t (id INT)");
    Exec("INSERT INTO t VALUES (1)");
    Migrate(Name(), GetParam());
    EXPECT_THAT(Error.toStdString(), HasSubstr("the same database"));
    EXPECT_EQ(Value("SELECT COUNT(*) FROM t"), "1");
}

TEST_P(TDbmMigrateTest, ADatabaseCrossesToTheOtherKindOfServer)
{
    if (GetParam() == skMariaDB)
        SKIP_WITHOUT_MYSQL9();
    const TTestServerKind other = GetParam() == skMySQL ? skMariaDB : skMySQL;
    DumpDatabase::Fill(*FDatabase);
    // UUID and INET6 are of one kind of server, VECTOR of the other.
    Exec(GetParam() == skMySQL ? "DROP TABLE oracle" : "DROP TABLE maria");
    const QString target = "far_" + Name();
    Server(other).Exec("DROP DATABASE IF EXISTS `" + target + '`');
    Migrate(target, other);
    EXPECT_EQ(Error.toStdString(), "");
    const auto rows = [](const QStringList &lines) {
        QStringList kept;
        for (const QString &line : lines)
            if (line.contains(": "))
                kept += line;
        return kept;
    };
    const QStringList from = rows(Contents());
    const QStringList to = rows(DumpDatabase::Contents(Server(other), target));
    ExpectSame(from, to);
    Server(other).Exec("DROP DATABASE `" + target + '`');
}

class TDbmTableClonerTest : public TJobRunsTest
{};

TEST_P(TDbmTableClonerTest, ATableIsCopiedWithRowsAndKeys)
{
    DumpDatabase::Fill(*FDatabase);
    const auto manager = TDbmManager::Create();
    manager->SetParams(ServerProfile(Server()));
    manager->Connect();
    FDatabase->Exec("CREATE TABLE many (id int PRIMARY KEY, t varchar(60))");
    FDatabase->Exec(
        "INSERT INTO many WITH RECURSIVE s AS (SELECT 0 AS i UNION ALL SELECT i + 1 FROM s"
        " WHERE i < 99) SELECT a.i * 100 + b.i, REPEAT('x', 60) FROM s AS a, s AS b");
    // The windows of a workspace hear of its statements.
    int statements = 0;
    manager->SetOnCommandBeforeExecute(
        [&, here = QThread::currentThread()](TDbmManager *, const QString &) {
            EXPECT_EQ(QThread::currentThread(), here);
            ++statements;
        });
    const auto clone = [&](const QString &from, const QString &to) {
        TDbmTableCloner cloner;
        cloner.Initialize(*manager, Name(), to, Name(), from);
        cloner.Execute();
    };
    for (const char *table :
         {"types", "a_child", "counted", "zero_days", "refused", "hidden", "parent", "many"})
        clone(table, QString(table) + "_copy");
    EXPECT_GT(statements, 10);
    EXPECT_EQ(Value("SELECT COUNT(*) FROM many_copy"), "10000");
    const QStringList all = Contents();
    for (const char *table : {"types", "counted", "zero_days", "refused", "hidden"}) {
        const QString name = table;
        for (const QString &line : all) {
            const bool isRow = line.startsWith(name + ": ");
            EXPECT_TRUE(!isRow || all.contains(name + "_copy" + line.mid(name.size()))) << table;
        }
    }
    EXPECT_EQ(Value("SELECT GROUP_CONCAT(referenced_table_name ORDER BY ordinal_position) FROM"
                    " information_schema.key_column_usage WHERE table_schema = '" +
                    Name() +
                    "' AND table_name = 'a_child_copy' AND referenced_table_name IS NOT NULL"),
              "parent,parent");
    EXPECT_EQ(Value("SELECT referenced_table_name FROM information_schema.key_column_usage WHERE"
                    " table_schema = '" +
                    Name() +
                    "' AND table_name = 'parent_copy' AND"
                    " referenced_table_name IS NOT NULL"),
              "parent_copy");
    EXPECT_ANY_THROW(clone("types", "types_copy"));
    EXPECT_ANY_THROW(clone("missing", "missing_copy"));
}

ON_BOTH_SERVERS(TDbmMigrateTest);
ON_BOTH_SERVERS(TDbmTableClonerTest);

} // namespace
