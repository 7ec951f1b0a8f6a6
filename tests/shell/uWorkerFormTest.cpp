#include "jobs/uWorkerForm.h"

#include "core/uDacMySqlError.h"
#include "core/uServerProfile.h"
#include "jobs/uAppWorkers.h"
#include "model/uDbmManager.h"
#include "support/uMainThread.h"
#include "uGuiTools.h"
#include "uModalDriver.h"
#include "uTcpProxy.h"
#include "uTestLoop.h"

#include <QClipboard>
#include <QFile>
#include <QGuiApplication>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QTemporaryDir>
#include <QTimer>
#include <gmock/gmock.h>

namespace {

class TTalking : public TWorker
{
public:
    explicit TTalking(int lines) : FLines(lines) {}
    ~TTalking() override { WaitForEnd(); }

protected:
    void Execute() override
    {
        for (int i = 1; i <= FLines && !StopRequest(); ++i)
            SendLog("line %d", {i});
    }

private:
    const int FLines;
};

/// Fails with one statement of megabytes.
class TFailing : public TWorker
{
public:
    ~TFailing() override { WaitForEnd(); }
    const QString FStatement = "INSERT INTO t VALUES ('" + QString(40 << 20, 'x') + "')";

protected:
    void Execute() override { throw EDacMySqlError(1153, "Too long.", FStatement); }
};

class TWorkerFormTest : public TServerTest
{
protected:
    void SetUp() override { TMainThread::Initialize(); }
    static QPlainTextEdit *Log(QWidget *job) { return Find<QPlainTextEdit>(job, "memLog"); }
    /// Shows the job, waits for its end, looks at its window and closes it.
    void RunToItsEnd(TWorker &worker, const TModalDriver::THandler &look)
    {
        Driver.Expect("frmWorker", [&look](QWidget *job) {
            ASSERT_TRUE(
                TTestLoop::RunUntil([&] { return job->windowTitle().endsWith(" - Finished"); }));
            look(job);
            TGuiTools::Click(job, "butClose");
        });
        TWorkerForm::ShowWorker(nullptr, worker, "Working");
    }

    TModalDriver Driver;
};

TEST_F(TWorkerFormTest, StaysAliveUnderALongLogAndKeepsItsEnd)
{
    // Beats of the main loop while the job logs; each line takes a turn of it.
    int beats = 0;
    QTimer timer;
    QObject::connect(&timer, &QTimer::timeout, [&] { ++beats; });
    timer.start(10);
    TTalking talking(100500);
    RunToItsEnd(talking, [&](QWidget *job) {
        EXPECT_GT(beats, 20);
        EXPECT_EQ(Log(job)->blockCount(), 100000);
        EXPECT_TRUE(Log(job)->toPlainText().contains("line 100500\n\n---\nTask completed ("));
        EXPECT_FALSE(Log(job)->toPlainText().contains("line 500\n"));
    });
}

TEST_F(TWorkerFormTest, ItsLogIsSearchedCopiedAndSaved)
{
    QTemporaryDir folder;
    const QString fileName = folder.filePath("job.txt");
    TTalking talking(30);
    RunToItsEnd(talking, [&](QWidget *job) {
        auto *find = Find<QLineEdit>(job, "editFind");
        TGuiTools::Type(find, "line 17");
        TGuiTools::Press(find, Qt::Key_Return);
        EXPECT_TRUE(job->isVisible()) << "Enter is the search's here";
        EXPECT_EQ(Log(job)->textCursor().selectedText(), "line 17");
        TGuiTools::Click(job, "butCopy");
        EXPECT_EQ(QGuiApplication::clipboard()->text(), "line 17");
        Log(job)->moveCursor(QTextCursor::End);
        TGuiTools::Click(job, "butCopy");
        EXPECT_EQ(QGuiApplication::clipboard()->text(), Log(job)->toPlainText());
        Driver.ExpectFile(fileName);
        TGuiTools::Click(job, "butSave");
        QFile file(fileName);
        ASSERT_TRUE(file.open(QIODevice::ReadOnly));
        EXPECT_TRUE(QString::fromUtf8(file.readAll()).contains("line 29\nline 30\n"));
    });
}

TEST_F(TWorkerFormTest, AStatementOfMegabytesIsShownInPartAndCopiedWhole)
{
    TFailing failing;
    RunToItsEnd(failing, [&](QWidget *job) {
        EXPECT_LT(Log(job)->toPlainText().size(), 1 << 20);
        EXPECT_TRUE(Log(job)->toPlainText().contains("Too long.\n---\nINSERT INTO t"));
        EXPECT_TRUE(Log(job)->toPlainText().endsWith("xx')"));
        TGuiTools::Click(job, "butCopy");
        EXPECT_TRUE(QGuiApplication::clipboard()->text().endsWith("---\n" + failing.FStatement));
    });
}

// The server is silent until after the cancel; the session that it gives then is nobody's.
TEST_F(TWorkerFormTest, AConnectionThatOpensAfterItsCancelIsHandedOverAllTheSame)
{
    TTcpProxy proxy(Server().Host(), Server().Port());
    proxy.Stall();
    std::unique_ptr<TDbmManager> manager;
    Driver.Expect("frmWorker", [&](QWidget *job) {
        EXPECT_TRUE(TTestLoop::RunUntil([&] { return proxy.ConnectionCount() > 0; }));
        EXPECT_TRUE(job->windowTitle().endsWith(" - Running..."));
        TGuiTools::Click(job, "butClose");
        proxy.Resume();
    });
    EXPECT_TRUE(
        TAppWorkers::Instance().TryOpenManager(ServerProfile(Server(), proxy.Port()), manager));
    ASSERT_NE(manager, nullptr);
    EXPECT_GT(manager->Databases().Count(), 0) << "it works";
}

} // namespace
