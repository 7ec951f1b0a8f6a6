#pragma once

#include <QEventLoop>

#include <exception>
#include <functional>
#include <thread>

/// The event loop of the main thread, for tests: always until something is true, never for a time.
class TTestLoop
{
public:
    /// Long enough for a loaded machine under the sanitizers; only a broken test waits that long.
    static constexpr int Deadline = 60000; // milliseconds

    /// Runs the loop until done() is true, which is asked between events and every few
    /// milliseconds. Past the deadline the test fails and the result is false.
    static bool RunUntil(const std::function<bool()> &done, int deadline = Deadline);
    /// Runs the loop until all that is posted by now is delivered, deferred deletes included.
    static void Settle();
    /// Runs work on a thread of its own and the loop meanwhile, so that calls which the work
    /// synchronises with the main thread are served. What work throws is thrown here.
    static void RunThread(const std::function<void()> &work);
};
