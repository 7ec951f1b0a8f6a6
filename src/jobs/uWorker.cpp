#include "jobs/uWorker.h"

#include "jobs/uWorkerThreads.h"
#include "support/uCodeProfiler.h"
#include "support/uException.h"
#include "support/uMainThread.h"

#include <atomic>

namespace {

// Takes the event by copy: a window that closes inside its event clears all of them.
template <typename TEvent, typename... TArgs>
void Fire(TEvent event, TArgs &&...args)
{
    if (event)
        event(std::forward<TArgs>(args)...);
}

} // namespace

struct TWorker::TShared
{
    std::atomic<bool> StopRequest = false;
};

TWorker::TWorker() : FShared(std::make_unique<TShared>())
{
    FWorkerThread = std::make_unique<TWorkerThread>([this] { WorkerThreadExecute(); });
}

TWorker::~TWorker()
{
    WaitForEnd();
}

void TWorker::WaitForEnd()
{
    if (FWorkerThread->isRunning())
        TMainThread::WaitFor(*FWorkerThread);
}

void TWorker::Start()
{
    SetStatus(wsStarted);
    FWorkerThread->start();
}

void TWorker::Stop()
{
    FShared->StopRequest = true;
}

bool TWorker::StopRequest() const
{
    return FShared->StopRequest;
}

void TWorker::SendLog(const QString &text, TWorkerLogType logType)
{
    TMainThread::Synchronize([&] { Fire(FEvents.OnLog, this, text, logType); });
}

void TWorker::SendLog(const QString &format, const QList<TFormat::TArgument> &args,
                      TWorkerLogType logType)
{
    SendLog(TFormat::Format(format, args), logType);
}

void TWorker::WorkerThreadExecute()
{
    try {
        const double seconds = TCodeProfiler::ExecuteWithElapsed([this] { Execute(); });
        TMainThread::Synchronize([&] { Fire(FEvents.OnComplete, this, seconds); });
    } catch (const std::exception &e) {
        TMainThread::Synchronize([&] { Fire(FEvents.OnException, this, e); });
    } catch (...) {
        const EException unknown("Unknown exception.");
        TMainThread::Synchronize([&] { Fire(FEvents.OnException, this, unknown); });
    }
    TMainThread::Synchronize([this] { SetStatus(wsFinished); });
}

void TWorker::SetStatus(TWorkerStatus status)
{
    FStatus = status;
    Fire(FEvents.OnStatusChanged, this);
}
