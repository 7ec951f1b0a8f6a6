#include "uJobRuns.h"
#include "uTestPrint.h"

#include <QThread>

namespace {

using TDbmTableClonerTest = TJobRunsTest;

TEST_P(TDbmTableClonerTest, ATableIsCopiedWithRowsAndKeys)
{
    DumpDatabase::Fill(*FDatabase);
    const auto manager = Workspace();
    // The windows of a workspace hear of its statements.
    int statements = 0;
    manager->SetOnCommandBeforeExecute(
        [&, here = QThread::currentThread()](TDbmManager *, const QString &) {
            EXPECT_EQ(QThread::currentThread(), here);
            ++statements;
        });
    for (const char *table :
         {"types", "a_child", "counted", "zero_days", "refused", "hidden", "parent"})
        Clone(*manager, table, QString(table) + "_copy");
    EXPECT_GT(statements, 10);
    const QStringList all = Contents();
    for (const char *table : {"types", "counted", "zero_days", "refused", "hidden"}) {
        const QString name = table;
        for (const QString &line : all) {
            const bool isRow = line.startsWith(name + ": ");
            EXPECT_TRUE(!isRow || all.contains(name + "_copy" + line.mid(name.size()))) << table;
        }
    }
    const QString referenced = "SELECT GROUP_CONCAT(referenced_table_name) FROM"
                               " information_schema.key_column_usage WHERE table_schema ="
                               " DATABASE() AND table_name = ";
    EXPECT_EQ(Value(referenced + "'a_child_copy'"), "parent,parent");
    EXPECT_EQ(Value(referenced + "'parent_copy'"), "parent_copy");
    EXPECT_ANY_THROW(Clone(*manager, "types", "types_copy"));
    EXPECT_ANY_THROW(Clone(*manager, "missing", "missing_copy"));
}

ON_BOTH_SERVERS(TDbmTableClonerTest);

} // namespace
