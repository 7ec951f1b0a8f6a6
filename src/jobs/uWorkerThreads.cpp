#include "jobs/uWorkerThreads.h"

#include "support/uMainThread.h"

#include <algorithm>
#include <chrono>
#include <memory>
#include <mutex>
#include <vector>

namespace {

class TActionThread : public QThread
{
public:
    explicit TActionThread(std::function<void()> action) : FAction(std::move(action)) {}

protected:
    void run() override
    {
        try {
            FAction();
        } catch (...) {
            // Whoever starts such a thread has asked for no report; leaving it would end the
            // program.
        }
    }

private:
    std::function<void()> FAction;
};

struct TActionThreads
{
    std::mutex Mutex;
    std::vector<std::unique_ptr<TActionThread>> Threads;
};

TActionThreads &ActionThreads()
{
    static TActionThreads threads;
    return threads;
}

} // namespace

TTimerThread::TTimerThread(int interval, std::function<void()> proc)
    : FInterval(interval), FProc(std::move(proc))
{}

TTimerThread::~TTimerThread()
{
    Terminate();
    if (isRunning())
        TMainThread::WaitFor(*this);
}

void TTimerThread::Terminate()
{
    requestInterruption();
}

void TTimerThread::run()
{
    constexpr int Slice = 20; // milliseconds, so that a request to end is met soon
    while (!isInterruptionRequested()) {
        for (int slept = 0; slept < FInterval && !isInterruptionRequested(); slept += Slice)
            msleep(static_cast<unsigned long>(std::min(Slice, FInterval - slept)));
        if (!isInterruptionRequested())
            TMainThread::Synchronize(FProc);
    }
}

void TThreadUtils::Start(std::function<void()> action)
{
    TActionThreads &threads = ActionThreads();
    const std::lock_guard lock(threads.Mutex);
    std::erase_if(threads.Threads, [](const auto &thread) { return thread->isFinished(); });
    threads.Threads.push_back(std::make_unique<TActionThread>(std::move(action)));
    threads.Threads.back()->start();
}

void TThreadUtils::WaitForAll()
{
    std::vector<std::unique_ptr<TActionThread>> threads;
    {
        const std::lock_guard lock(ActionThreads().Mutex);
        threads.swap(ActionThreads().Threads);
    }
    for (const auto &thread : threads)
        TMainThread::WaitFor(*thread);
}
