#pragma once

#include <QString>
#include <functional>

/// Measures how long something takes, on the monotonic high-resolution clock.
class TCodeProfiler
{
public:
    using TAction = std::function<void()>;

    /// Runs the action `loops` times. What it throws passes on; the elapsed time up to then is
    /// kept.
    void Execute(const TAction &action, qint64 loops = 1);
    /// Elapsed seconds of Execute. When the action throws, `elapsed` still gets its time.
    static void ExecuteWithElapsed(const TAction &action, double &elapsed, qint64 loops = 1);
    static double ExecuteWithElapsed(const TAction &action, qint64 loops = 1);
    static QString ExecuteWithString(const TAction &action, qint64 loops = 1);
    /// "Elapsed: 1.00; Loop time: 0.50000000 msec; Loops per second: 2.00".
    QString GetDisplayString() const;

    double Elapsed() const { return FElapsed; }               // seconds
    double LoopTime() const { return FLoopTime; }             // seconds per loop
    double LoopsPerSecond() const { return FLoopsPerSecond; } // loops per second

private:
    double FElapsed = 0;
    double FLoopTime = 0;
    double FLoopsPerSecond = 0;
};
