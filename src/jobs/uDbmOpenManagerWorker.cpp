#include "jobs/uDbmOpenManagerWorker.h"

#include <QElapsedTimer>
#include <QThread>

void TDbmOpenManagerWorker::Execute()
{
    // A window that flashes by cannot be read, so a success stays on the screen for this long.
    constexpr qint64 MinimumMSecs = 1000;
    TWorker::Execute();
    QElapsedTimer watch;
    watch.start();
    FIsSuccess = false;
    auto manager = TDbmManager::Create();
    manager->SetOnConnectionMessage(
        [this](TDbmManager *, const QString &message) { SendLog(message); });
    manager->SetParams(FProfile);
    manager->Connect();
    manager->SetOnConnectionMessage({});
    FManager = std::move(manager);
    FIsSuccess = true;
    while (watch.elapsed() < MinimumMSecs && !StopRequest())
        QThread::msleep(10);
}
