#include "app/uAppConfig.h"
#include "model/uDbmManager.h"
#include "model/uDbmTableList.h"
#include "shell/uAppManagerPageUtils.h"
#include "shell/uManagerFrame.h"
#include "shell/uWorkbenchFixture.h"
#include "widgets/uVerticalGrid.h"

#include <QAbstractItemView>
#include <QFileInfo>
#include <QLineEdit>
#include <QMessageBox>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTest>
#include <gtest/gtest.h>

namespace {

class TJobDialogsTest : public TWorkbenchTest
{
protected:
    static TVerticalRow &Row(QWidget *dialog, const char *name)
    {
        return *dialog->findChild<TVerticalGrid *>()->Row(name);
    }
    static QPushButton *Ok(QWidget *dialog) { return ::Find<QPushButton>(dialog, "butOK"); }
    static void Press(TVerticalRow &row, const char *button) { Q_EMIT row.OnButton(&row, button); }
    /// Waits for the job's end, keeps what it said and closes its window.
    void ExpectJob(const QString &title)
    {
        Driver.Expect("frmWorker", [this, title](QWidget *job) {
            EXPECT_TRUE(TTestLoop::RunUntil([&] {
                return job->windowTitle() == title + " - Finished";
            })) << job->windowTitle().toStdString();
            Log = ::Find<QPlainTextEdit>(job, "memLog")->toPlainText();
            ::Find<QPushButton>(job, "butClose")->click();
        });
    }
    void ChooseDatabase(const QString &name)
    {
        Driver.Expect("frmDialog", [name](QWidget *dialog) {
            EXPECT_EQ(dialog->windowTitle(), "Select Database");
            auto *list = ::Find<QAbstractItemView>(dialog, "lvList");
            for (int row = 0; row < list->model()->rowCount(); ++row)
                if (list->model()->index(row, 0).data().toString() == name)
                    list->setCurrentIndex(list->model()->index(row, 0));
            Ok(dialog)->click();
        });
    }

    QString Log;
};

TEST_F(TJobDialogsTest, ADumpIsWrittenAndRunAgain)
{
    Exec("CREATE TABLE t (id INT PRIMARY KEY)");
    Exec("INSERT INTO t VALUES (1), (2)");
    OpenWorkspace();
    const QString file = FilePath("out.sql");
    Driver.Expect("frmDialog", [&](QWidget *dialog) {
        EXPECT_EQ(dialog->windowTitle(), "Create SQL Dump");
        EXPECT_EQ(Ok(dialog)->text(), "Start");
        ChooseDatabase(Database().Name());
        Press(Row(dialog, "rowDatabase"), "select");
        EXPECT_FALSE(Ok(dialog)->isEnabled()) << "the file is missing";
        Driver.ExpectFile(file);
        Press(Row(dialog, "rowFileName"), "Select");
        EXPECT_TRUE(Ok(dialog)->isEnabled());
        EXPECT_EQ(Row(dialog, "rowFileName").Text(), file);
        ExpectJob("Creation SQL Dump \"out.sql\"");
        Ok(dialog)->click();
    });
    Trigger("actSchemaCreateSqlDump");
    EXPECT_TRUE(Log.contains("Writing data for \"t\" (0, 2)")) << Log.toStdString();
    EXPECT_EQ(TAppConfig::ReadLastDumpFolder(), QFileInfo(file).path());

    Server().Exec("DROP DATABASE `" + Database().Name() + '`');
    Driver.Expect("frmDialog", [&](QWidget *dialog) {
        EXPECT_EQ(dialog->windowTitle(), "Execute SQL Dump");
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
    EXPECT_FALSE(Log.contains("USE `mysql`"));
}

TEST_F(TJobDialogsTest, ABoundConnectionDumpsItsOwnDatabase)
{
    OpenWorkspace(Database().Name());
    for (const char *action : {"actSchemaCreateSqlDump", "actToolsExecuteSQLDump"}) {
        Driver.Expect("frmDialog", [&](QWidget *dialog) {
            EXPECT_FALSE(Row(dialog, "rowDatabase").IsShown());
            ::Find<QPushButton>(dialog, "butCancel")->click();
        });
        Trigger(action);
    }
}

TEST_F(TJobDialogsTest, ADatabaseAndATableAreCloned)
{
    Exec("CREATE TABLE t (id INT PRIMARY KEY, w TEXT, FULLTEXT KEY words (w))");
    Exec("INSERT INTO t VALUES (1, 'a')");
    TManagerFrame &workspace = OpenWorkspace();
    const QString copy = Database().Name() + "_two";
    ChooseDatabase(Database().Name());
    Driver.Expect("frmDialog", [&](QWidget *dialog) {
        EXPECT_EQ(dialog->windowTitle(), "Clone database");
        ::Find<QLineEdit>(dialog, "edName")->setText(copy);
        ExpectJob("Migration Database \"" + Database().Name() + '"');
        Ok(dialog)->click();
    });
    Trigger("actSchemaClone");
    EXPECT_EQ(Server().Value("SELECT COUNT(*) FROM t", copy), "1") << Log.toStdString();
    Server().Exec("DROP DATABASE `" + copy + '`');

    workspace.PageUtils().ShowTable(Database().Name(), "t", true);
    Driver.Expect("frmDialog", [&](QWidget *dialog) {
        EXPECT_EQ(dialog->windowTitle(), "Clone table");
        EXPECT_EQ(Row(dialog, "rowDatabase").Text(), Database().Name());
        EXPECT_EQ(Row(dialog, "rowName").Text(), "t_copy");
        EXPECT_EQ(Ok(dialog)->text(), "Clone");
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

TEST_F(TJobDialogsTest, AMigrationNeedsATarget)
{
    OpenWorkspace();
    ChooseDatabase(Database().Name());
    Driver.Expect("frmDialog", [&](QWidget *dialog) {
        EXPECT_EQ(dialog->windowTitle(), "Migrate Database");
        EXPECT_EQ(Row(dialog, "rowSource").Text(), Database().Name());
        EXPECT_EQ(Row(dialog, "rowTargetDatabase").Text(), Database().Name());
        Press(Row(dialog, "rowTargetDatabase"), "select"); // nothing without a host
        EXPECT_FALSE(Ok(dialog)->isEnabled());
        ::Find<QPushButton>(dialog, "butCancel")->click();
    });
    Trigger("actSchemaMigrate");
}

} // namespace
