#include "jobs/uWorker.h"
#include "jobs/uWorkerThreads.h"
#include "support/uException.h"
#include "support/uMainThread.h"
#include "uTestLoop.h"
#include "uTestPrint.h"

#include <gtest/gtest.h>

namespace {

class TMainThreadReady : public ::testing::Environment
{
public:
    void SetUp() override { TMainThread::Initialize(); }
};

[[maybe_unused]] const auto *const Ready =
    ::testing::AddGlobalTestEnvironment(new TMainThreadReady);

/// Collects what a job says.
struct TListener
{
    explicit TListener(TWorker &worker)
    {
        TWorkerEvents events;
        events.OnStatusChanged = [this](TWorker *sender) {
            Statuses.append(sender->Status());
            OnMain = OnMain && TMainThread::IsMainThread();
        };
        events.OnLog = [this](TWorker *, const QString &line, TWorkerLogType) {
            Lines += line;
            OnMain = OnMain && TMainThread::IsMainThread();
        };
        events.OnComplete = [this](TWorker *, double seconds) { Seconds = seconds; };
        events.OnException = [this](TWorker *, const std::exception &e) {
            Error = ExceptionMessage(e);
        };
        worker.SetEvents(std::move(events));
    }
    QList<TWorkerStatus> Statuses;
    QStringList Lines;
    QString Error;
    double Seconds = -1;
    bool OnMain = true;
};

bool Finished(const TWorker &worker)
{
    return TTestLoop::RunUntil([&] { return worker.Status() == wsFinished; });
}

class TCounting : public TWorker
{
public:
    ~TCounting() override { WaitForEnd(); }
    int Until = 3;
    bool Fails = false;

protected:
    void Execute() override
    {
        for (int i = 1; i <= Until && !StopRequest(); ++i)
            SendLog("line %d", {i});
        if (Fails)
            throw EException("the job failed");
    }
};

TEST(TWorkerTest, LogsAndEndsOnTheMainThread)
{
    for (const bool fails : {false, true}) {
        TCounting worker;
        worker.Fails = fails;
        const TListener heard(worker);
        EXPECT_EQ(worker.Status(), wsNotStarted);
        worker.Start();
        ASSERT_TRUE(Finished(worker));
        EXPECT_EQ(heard.Lines, (QStringList{"line 1", "line 2", "line 3"}));
        EXPECT_EQ(heard.Statuses, (QList<TWorkerStatus>{wsStarted, wsFinished}));
        EXPECT_TRUE(heard.OnMain);
        EXPECT_EQ(heard.Error, fails ? "the job failed" : "");
        EXPECT_EQ(heard.Seconds == -1, fails) << "a failure is told in place of the completion";
    }
}

// Nobody pumps events here: the wait itself has to serve the job's lines.
TEST(TWorkerTest, FreeingWaitsForAJobThatIsLogging)
{
    auto worker = std::make_unique<TCounting>();
    worker->Until = 500;
    TListener heard(*worker);
    worker->Start();
    worker.reset();
    EXPECT_EQ(heard.Lines.size(), 500);
    EXPECT_EQ(heard.Statuses.last(), wsFinished);
}

TEST(TWorkerTest, AfterItsEventsAreClearedNothingIsHeard)
{
    TCounting worker;
    worker.Until = 1000000000;
    TListener heard(worker);
    worker.Start();
    ASSERT_TRUE(TTestLoop::RunUntil([&] { return heard.Lines.size() >= 10; }));
    worker.ClearEvents();
    const qsizetype lines = heard.Lines.size();
    worker.Stop();
    worker.Finish();
    EXPECT_EQ(heard.Lines.size(), lines);
    EXPECT_EQ(heard.Seconds, -1);
}

TEST(TThreads, ATimerRunsOnTheMainThreadUntilItIsEnded)
{
    int ticks = 0;
    bool onMain = true;
    TTimerThread timer(1, [&] {
        ++ticks;
        onMain = onMain && TMainThread::IsMainThread();
    });
    timer.start();
    ASSERT_TRUE(TTestLoop::RunUntil([&] { return ticks >= 3; }));
    EXPECT_TRUE(onMain);
    timer.Terminate();
    TMainThread::WaitFor(timer);
    const int ended = ticks;
    TTestLoop::Settle();
    EXPECT_EQ(ticks, ended);
}

} // namespace
