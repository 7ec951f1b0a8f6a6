#include "support/uCodeProfiler.h"

#include "support/uFormat.h"

#include <QElapsedTimer>

void TCodeProfiler::Execute(const TAction &action, qint64 loops)
{
    QElapsedTimer timer;
    timer.start();
    const auto stop = [&] {
        FElapsed = static_cast<double>(timer.nsecsElapsed()) / 1e9;
        FLoopTime = loops > 0 ? FElapsed / static_cast<double>(loops) : 0;
        FLoopsPerSecond = FLoopTime > 0 ? 1 / FLoopTime : 0;
    };
    try {
        for (qint64 i = 0; i < loops; ++i)
            action();
    } catch (...) {
        stop();
        throw;
    }
    stop();
}

void TCodeProfiler::ExecuteWithElapsed(const TAction &action, double &elapsed, qint64 loops)
{
    TCodeProfiler profiler;
    try {
        profiler.Execute(action, loops);
    } catch (...) {
        elapsed = profiler.Elapsed();
        throw;
    }
    elapsed = profiler.Elapsed();
}

double TCodeProfiler::ExecuteWithElapsed(const TAction &action, qint64 loops)
{
    double elapsed = 0;
    ExecuteWithElapsed(action, elapsed, loops);
    return elapsed;
}

QString TCodeProfiler::ExecuteWithString(const TAction &action, qint64 loops)
{
    TCodeProfiler profiler;
    profiler.Execute(action, loops);
    return profiler.GetDisplayString();
}

QString TCodeProfiler::GetDisplayString() const
{
    return TFormat::Format("Elapsed: %.2n; Loop time: %.8n msec; Loops per second: %.2n",
                           {FElapsed, FLoopTime * 1000, FLoopsPerSecond});
}
