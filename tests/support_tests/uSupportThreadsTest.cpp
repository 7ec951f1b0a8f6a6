#include "support/uCodeProfiler.h"
#include "support/uException.h"
#include "support/uMainThread.h"
#include "support/uRegExUtils.h"

#include <QCoreApplication>
#include <QEventLoop>
#include <QThread>
#include <gtest/gtest.h>
#include <memory>

namespace {

using TThreadPtr = std::unique_ptr<QThread>;

class TMainThreadTest : public testing::Test
{
protected:
    void SetUp() override { TMainThread::Initialize(); }
    static TThreadPtr Start(std::function<void()> work)
    {
        TThreadPtr thread(QThread::create(std::move(work)));
        thread->start();
        return thread;
    }
};

TEST_F(TMainThreadTest, RunsCallsWhileItWaitsForTheThread)
{
    const QThread *main = QThread::currentThread();
    int calls = 0;
    bool allOnMain = true;
    const TThreadPtr thread = Start([&] {
        for (int i = 0; i < 1000; ++i)
            TMainThread::Synchronize([&] {
                ++calls;
                allOnMain = allOnMain && QThread::currentThread() == main;
            });
    });
    TMainThread::WaitFor(*thread);
    EXPECT_TRUE(thread->isFinished());
    EXPECT_EQ(calls, 1000);
    EXPECT_TRUE(allOnMain);
}

TEST_F(TMainThreadTest, ServesNothingElseWhileItWaits)
{
    bool clicked = false;
    QMetaObject::invokeMethod(
        qApp, [&] { clicked = true; }, Qt::QueuedConnection);
    const TThreadPtr thread = Start([] { TMainThread::Synchronize([] {}); });
    TMainThread::WaitFor(*thread);
    EXPECT_FALSE(clicked);
    QCoreApplication::processEvents();
    EXPECT_TRUE(clicked);
}

TEST_F(TMainThreadTest, RunsCallsInALoopInsideACall)
{
    QEventLoop inner;
    bool innerDone = false;
    TThreadPtr second;
    const TThreadPtr first = Start([&] {
        TMainThread::Synchronize([&] {
            second = Start([&] {
                TMainThread::Synchronize([&] {
                    innerDone = true;
                    inner.quit();
                });
            });
            inner.exec();
        });
    });
    TMainThread::WaitFor(*first);
    TMainThread::WaitFor(*second);
    EXPECT_TRUE(innerDone);
}

TEST_F(TMainThreadTest, GivesBackWhatTheActionThrows)
{
    QString caught;
    const TThreadPtr thread = Start([&] {
        try {
            TMainThread::Synchronize([] { throw EConvertError("from main"); });
        } catch (const EConvertError &e) {
            caught = e.Message();
        }
    });
    TMainThread::WaitFor(*thread);
    EXPECT_EQ(caught, "from main");
    EXPECT_THROW(TMainThread::Synchronize([] { throw EException("direct"); }), EException);
}

TEST_F(TMainThreadTest, ServesManyThreadsAndSlotsOfTheirEnd)
{
    int calls = 0; // touched by the main thread only
    std::vector<TThreadPtr> threads;
    for (int i = 0; i < 8; ++i) {
        TThreadPtr thread(QThread::create([&] {
            for (int call = 0; call < 50; ++call)
                TMainThread::Synchronize([&] { ++calls; });
        }));
        QObject::connect(
            thread.get(), &QThread::finished, thread.get(),
            [&] { TMainThread::Synchronize([&] { ++calls; }); }, Qt::DirectConnection);
        thread->start();
        threads.push_back(std::move(thread));
    }
    for (const TThreadPtr &thread : threads)
        TMainThread::WaitFor(*thread);
    EXPECT_EQ(calls, 8 * 51);
}

TEST_F(TMainThreadTest, DoesNotWaitForAThreadThatNeverRanOrIsOver)
{
    const TThreadPtr idle(QThread::create([] {}));
    TMainThread::WaitFor(*idle);
    const TThreadPtr over = Start([] {});
    over->wait();
    TMainThread::WaitFor(*over);
    EXPECT_TRUE(over->isFinished());
}

TEST(TCodeProfiler, MeasuresAlsoWhatThrows)
{
    double elapsed = -1;
    EXPECT_THROW(TCodeProfiler::ExecuteWithElapsed([] { throw EException("stop"); }, elapsed),
                 EException);
    EXPECT_GT(elapsed, 0);
}

TEST(TCodeProfiler, DividesByTheLoops)
{
    int runs = 0;
    TCodeProfiler profiler;
    profiler.Execute([&] { ++runs; }, 4);
    EXPECT_EQ(runs, 4);
    EXPECT_GT(profiler.Elapsed(), 0);
    EXPECT_DOUBLE_EQ(profiler.LoopTime() * 4, profiler.Elapsed());
    EXPECT_DOUBLE_EQ(profiler.LoopsPerSecond() * profiler.LoopTime(), 1);
    EXPECT_TRUE(TRegExUtils::IsMatch(profiler.GetDisplayString(),
                                     "^Elapsed: [\\d,]+\\.\\d\\d; Loop time: "
                                     "[\\d,]+\\.\\d{8} msec; "
                                     "Loops per second: [\\d,]+\\.\\d\\d$"))
        << qPrintable(profiler.GetDisplayString());
}

} // namespace
