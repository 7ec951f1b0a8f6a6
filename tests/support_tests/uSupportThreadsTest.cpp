#include "support/uCodeProfiler.h"
#include "support/uException.h"
#include "support/uMainThread.h"

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
    const QThread *main = QThread::currentThread();
    int calls = 0; // touched by the main thread only
    const auto call = [&] {
        TMainThread::Synchronize([&] { calls += QThread::currentThread() == main ? 1 : -1; });
    };
    std::vector<TThreadPtr> threads;
    for (int i = 0; i < 8; ++i) {
        TThreadPtr thread(QThread::create([&] {
            for (int each = 0; each < 50; ++each)
                call();
        }));
        QObject::connect(thread.get(), &QThread::finished, thread.get(), call,
                         Qt::DirectConnection);
        thread->start();
        threads.push_back(std::move(thread));
    }
    for (const TThreadPtr &thread : threads)
        TMainThread::WaitFor(*thread);
    EXPECT_EQ(calls, 8 * 51);
}

TEST(TCodeProfiler, MeasuresAlsoWhatThrows)
{
    double elapsed = -1;
    EXPECT_THROW(TCodeProfiler::ExecuteWithElapsed([] { throw EException("stop"); }, elapsed),
                 EException);
    EXPECT_GT(elapsed, 0);
}

} // namespace
