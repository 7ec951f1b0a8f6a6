#pragma once

#include "jobs/uWorker.h"
#include "support/uException.h"
#include "support/uMainThread.h"
#include "uTestLoop.h"

#include <QStringList>

/// Collects what a job says.
struct TListener
{
    explicit TListener(TWorker &worker)
    {
        TWorkerEvents events;
        events.OnStatusChanged = [this](TWorker *sender) {
            Statuses.append(sender->Status());
            OnMain = OnMain && TMainThread::IsMainThread();
        };
        events.OnLog = [this](TWorker *, const QString &line, TWorkerLogType) {
            Lines += line;
            OnMain = OnMain && TMainThread::IsMainThread();
        };
        events.OnComplete = [this](TWorker *, double seconds) { Seconds = seconds; };
        events.OnException = [this](TWorker *, const std::exception &e) {
            Error = ExceptionMessage(e);
        };
        worker.SetEvents(std::move(events));
    }
    QList<TWorkerStatus> Statuses;
    QStringList Lines;
    QString Error;
    double Seconds = -1;
    bool OnMain = true;
};

inline bool Finished(const TWorker &worker)
{
    return TTestLoop::RunUntil([&] { return worker.Status() == wsFinished; });
}

/// Runs a job to its end and gives what it said.
inline void RunJob(TWorker &worker)
{
    worker.Start();
    worker.Finish();
}
