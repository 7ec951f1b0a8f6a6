#include "jobs/uDbmStatementPipe.h"

namespace {

constexpr size_t MostWaiting = 2;
// A statement above this size is not held beside another one.
constexpr qsizetype LargeStatement = 1024 * 1024;

} // namespace

TDbmStatementPipe::~TDbmStatementPipe()
{
    Join(true);
}

bool TDbmStatementPipe::Put(TDbmRowsStatement statement)
{
    if (!FIsThreaded) {
        FEnded = FEnded || !FAction(statement);
        return !FEnded;
    }
    const bool isLarge = statement.Text.size() > LargeStatement;
    std::unique_lock lock(FMutex);
    FChanged.wait(lock, [this] { return FWaiting.size() < MostWaiting || FEnded; });
    if (FEnded)
        return false;
    FWaiting.push_back(std::move(statement));
    if (!FThread.joinable() && (isLarge || FWaiting.size() == MostWaiting))
        FThread = std::thread([this] { Work(); });
    FChanged.notify_all();
    if (isLarge)
        FChanged.wait(lock, [this] { return (FWaiting.empty() && !FWorking) || FEnded; });
    return !FEnded;
}

void TDbmStatementPipe::Work()
{
    std::unique_lock lock(FMutex);
    for (;;) {
        FChanged.wait(lock, [this] { return !FWaiting.empty() || FClosed; });
        if (FWaiting.empty() || FEnded)
            return;
        TDbmRowsStatement statement = std::move(FWaiting.front());
        FWaiting.pop_front();
        FWorking = true;
        FChanged.notify_all();
        lock.unlock();
        const bool goesOn = Take(statement);
        statement = {};
        lock.lock();
        FWorking = false;
        FEnded = FEnded || !goesOn;
        FChanged.notify_all();
    }
}

bool TDbmStatementPipe::Take(const TDbmRowsStatement &statement)
{
    try {
        return FAction(statement);
    } catch (...) {
        const std::lock_guard lock(FMutex);
        FError = std::current_exception();
        return false;
    }
}

bool TDbmStatementPipe::Finish()
{
    Join(false);
    for (; !FWaiting.empty() && !FEnded; FWaiting.pop_front())
        FEnded = !Take(FWaiting.front());
    if (FError)
        std::rethrow_exception(std::exchange(FError, nullptr));
    return !FEnded;
}

void TDbmStatementPipe::Join(bool drop)
{
    if (!FThread.joinable())
        return;
    {
        const std::lock_guard lock(FMutex);
        FClosed = true;
        FEnded = FEnded || drop;
        FChanged.notify_all();
    }
    FThread.join();
}
