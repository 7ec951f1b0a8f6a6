#pragma once

#include <QString>
#include <functional>
#include <memory>

#include "support/uFormat.h"

enum TWorkerStatus { wsNotStarted, wsStarted, wsFinished };
enum TWorkerLogType { wltInfo, wltWarning, wltError };

class TWorker;
class TWorkerThread;

using TWorkerStatusEvent = std::function<void(TWorker *Sender)>;
using TWorkerLogEvent =
    std::function<void(TWorker *Sender, const QString &Value, TWorkerLogType LogType)>;
using TWorkerCompleteEvent = std::function<void(TWorker *Sender, double Seconds)>;
using TWorkerExceptionEvent = std::function<void(TWorker *Sender, const std::exception &E)>;

/// Everything a window hears of a job; all fire on the main thread. Cleared at a stroke.
struct TWorkerEvents
{
    TWorkerStatusEvent OnStatusChanged;
    TWorkerLogEvent OnLog;
    TWorkerCompleteEvent OnComplete;
    TWorkerExceptionEvent OnException;
};

/// A long job on a thread of its own, used once. A job never shares a connection with a workspace:
/// it makes its own from a copy of the profile. Made, started and freed on the main thread; freeing
/// waits for the job's end while serving its synchronised calls.
class TWorker
{
public:
    TWorker();
    virtual ~TWorker();
    TWorker(const TWorker &) = delete;
    TWorker &operator=(const TWorker &) = delete;

    /// Call once.
    void Start();
    /// Asks the job to end; a job looks at the request where it can leave off.
    void Stop();
    /// Waits for the job's end, serving its synchronised calls; its results are settled then.
    void Finish() { WaitForEnd(); }
    TWorkerStatus Status() const { return FStatus; }
    void SetEvents(TWorkerEvents events) { FEvents = std::move(events); }
    void ClearEvents() { FEvents = {}; }

protected:
    /// The job, on its own thread. What it throws ends it and reaches OnException.
    virtual void Execute() {}
    /// Blocks until the main thread has shown the line.
    void SendLog(const QString &text, TWorkerLogType logType = wltInfo);
    void SendLog(const QString &format, const QList<TFormat::TArgument> &args,
                 TWorkerLogType logType = wltInfo);
    bool StopRequest() const;
    /// Waits for the thread; descendants whose Execute uses their own fields call it first thing in
    /// their destructor.
    void WaitForEnd();

private:
    void WorkerThreadExecute();
    void SetStatus(TWorkerStatus status);

    struct TShared;
    std::unique_ptr<TShared> FShared;
    std::unique_ptr<TWorkerThread> FWorkerThread;
    TWorkerStatus FStatus = wsNotStarted;
    TWorkerEvents FEvents;
};
