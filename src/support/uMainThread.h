#pragma once

#include <functional>

class QThread;

/// Calls from a job's thread to the main thread. The caller blocks until the main thread has run
/// the action; what the action throws is thrown to the caller. Served by a posted event in every
/// event loop, and by WaitFor.
class TMainThread
{
public:
    using TAction = std::function<void()>;

    /// Called on the main thread before any thread synchronises; a further call changes nothing.
    static void Initialize();
    static bool IsMainThread();
    /// On the main thread itself the action runs at once.
    static void Synchronize(const TAction &action);
    /// Blocks the main thread until the thread has ended, serving synchronised calls meanwhile and
    /// nothing else, so that no user input comes in by the wait.
    static void WaitFor(QThread &thread);
};
