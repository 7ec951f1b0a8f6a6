#pragma once

#include <QEventLoop>

#include <functional>

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
};
