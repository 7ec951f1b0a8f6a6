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
    const qint64 rest = MinimumMSecs - watch.elapsed();
    if (rest > 0)
        QThread::msleep(static_cast<unsigned long>(rest));
}
