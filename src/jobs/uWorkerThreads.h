#pragma once

#include <QThread>
#include <atomic>
#include <functional>

/// The thread of one job: its body calls one callback.
class TWorkerThread : public QThread
{
public:
    explicit TWorkerThread(std::function<void()> onExecute) : FOnExecute(std::move(onExecute)) {}

protected:
    void run() override { FOnExecute(); }

private:
    std::function<void()> FOnExecute;
};

/// Runs a callback on the main thread again and again, an interval apart, until it is told to end.
class TTimerThread : public QThread
{
public:
    TTimerThread(int interval, std::function<void()> proc); // milliseconds
    ~TTimerThread() override;
    /// Ends the thread after the callback that may be running.
    void Terminate();

protected:
    void run() override;

private:
    const int FInterval;
    std::function<void()> FProc;
};

/// Starts callbacks on fire-and-forget threads: no window, no result, no report of a failure.
class TThreadUtils
{
public:
    static void Start(std::function<void()> action);
    /// Blocks until every started callback has ended; called once, as the program ends.
    static void WaitForAll();
};
