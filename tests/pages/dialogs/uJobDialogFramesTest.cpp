#include "app/uAppConfig.h"
#include "jobs/uAppWorkers.h"
#include "model/uDbmFieldList.h"
#include "model/uDbmTableList.h"
#include "shell/uAppDialogs.h"
#include "shell/uWorkbenchFixture.h"
#include "widgets/uVerticalGrid.h"

#include <QFileInfo>
#include <QPushButton>

namespace {

class TJobDialogsTest : public TWorkbenchTest
{
protected:
    static TVerticalRow &Row(QWidget *dialog, const char *name)
    {
        return *dialog->findChild<TVerticalGrid *>()->Row(name);
    }
    static QPushButton *Ok(QWidget *dialog) { return Find<QPushButton>(dialog, "butOK"); }
    static void Press(TVerticalRow &row, const char *button) { Q_EMIT row.OnButton(&row, button); }
};

TEST_F(TJobDialogsTest, ADumpIsWrittenAndRunAgain)
{
    Exec("CREATE TABLE t (id INT PRIMARY KEY)");
    Exec("INSERT INTO t VALUES (1), (2)");
    OpenWorkspace();
    const QString file = FilePath("out.sql");
    Driver.Expect("Create SQL Dump", [&](QWidget *dialog) {
        ChooseDatabase(Database().Name());
        Press(Row(dialog, "rowDatabase"), "select");
        EXPECT_FALSE(Ok(dialog)->isEnabled()) << "the file is missing";
        Driver.ExpectFile(file);
        Press(Row(dialog, "rowFileName"), "Select");
        EXPECT_EQ(Row(dialog, "rowFileName").Text(), file);
        ExpectJob("Creation SQL Dump \"out.sql\"");
        Ok(dialog)->click();
    });
    Trigger("actSchemaCreateSqlDump");
    EXPECT_TRUE(JobLog.contains("Writing data for \"t\" (0, 2)")) << JobLog.toStdString();
    EXPECT_EQ(TAppConfig::ReadLastDumpFolder(), QFileInfo(file).path());

    Server().Exec("DROP DATABASE `" + Database().Name() + '`');
    Driver.Expect("Execute SQL Dump", [&](QWidget *dialog) {
        EXPECT_FALSE(Ok(dialog)->isEnabled());
        Driver.ExpectFile(file);
        Press(Row(dialog, "rowFileName"), "select");
        ChooseDatabase("mysql");
        Press(Row(dialog, "rowDatabase"), "select");
        EXPECT_EQ(Row(dialog, "rowDatabase").Text(), "mysql");
        Press(Row(dialog, "rowDatabase"), "none");
        EXPECT_EQ(Row(dialog, "rowDatabase").Text(), "");
        Row(dialog, "rowCharset").SetValue("utf8mb4");
        ExpectJob("Execution SQL Dump \"out.sql\"");
        Ok(dialog)->click();
    });
    Trigger("actToolsExecuteSQLDump");
    EXPECT_EQ(Value("SELECT COUNT(*) FROM t"), "2");
    EXPECT_FALSE(JobLog.contains("USE `mysql`"));
}

TEST_F(TJobDialogsTest, ATableIsClonedUnderANameThatIsFree)
{
    Exec("CREATE TABLE t (id INT PRIMARY KEY, w TEXT, FULLTEXT KEY words (w))");
    Exec("INSERT INTO t VALUES (1, 'a')");
    OpenWorkspace();
    Pages().ShowTable(Database().Name(), "t", true);
    Driver.Expect("Clone table", [&](QWidget *dialog) {
        EXPECT_EQ(Row(dialog, "rowDatabase").Text(), Database().Name());
        EXPECT_EQ(Row(dialog, "rowName").Text(), "t_copy");
        // A name that is taken keeps the dialog open.
        Row(dialog, "rowName").SetValue("t");
        ExpectError("t' already exists");
        Ok(dialog)->click();
        EXPECT_TRUE(dialog->isVisible());
        Row(dialog, "rowName").SetValue("t_copy");
        Driver.ExpectMessage("Left out: fulltext index \"words\" of table \"t\"", QMessageBox::Ok);
        Ok(dialog)->click();
    });
    Trigger("actClone");
    EXPECT_EQ(Value("SELECT COUNT(*) FROM t_copy"), "1");
}

TEST_F(TJobDialogsTest, ADatabaseIsNotClonedOntoItself)
{
    Exec("CREATE TABLE t (id INT); INSERT INTO t VALUES (1)");
    TDbmManager &manager = OpenWorkspace().Manager();
    // Any job's window would be one that nobody expects.
    TAppWorkers::Instance().CloneDatabase(manager, Database().Name(), Database().Name());
    EXPECT_EQ(Value("SELECT COUNT(*) FROM t"), "1");
}

TEST_F(TJobDialogsTest, FieldsAreChosen)
{
    Exec("CREATE TABLE t (id INT, name VARCHAR(10), price DECIMAL(5,2))");
    TDbmManager &manager = OpenWorkspace().Manager();
    TDbmTableList::TItemPtr table;
    ASSERT_TRUE(manager.TryGetTable(Database().Name(), "t", table));
    Driver.Expect("frmDialog", [&](QWidget *dialog) {
        EXPECT_TRUE(Ok(dialog)->isEnabled());
        auto *model = Find<QAbstractItemView>(dialog, "lvFields")->model();
        const auto check = [&](int row, Qt::CheckState state) {
            model->setData(model->index(row, 0), state, Qt::CheckStateRole);
        };
        check(2, Qt::Unchecked);
        EXPECT_FALSE(Ok(dialog)->isEnabled()) << "nothing is chosen";
        check(1, Qt::Checked);
        check(0, Qt::Checked);
        Ok(dialog)->click();
    });
    QStringList chosen{"price"};
    EXPECT_TRUE(TAppDialogs::SelectFields("Select fields", table->Fields(), chosen));
    EXPECT_EQ(chosen, (QStringList{"id", "name"})) << "in the order of the table";
}

} // namespace
