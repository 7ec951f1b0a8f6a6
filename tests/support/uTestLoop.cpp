#include "uTestLoop.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QTimer>

#include <gtest/gtest.h>

bool TTestLoop::RunUntil(const std::function<bool()> &done, int deadline)
{
    QElapsedTimer clock;
    clock.start();
    QTimer waker; // what done() asks may change on another thread, without an event here
    waker.start(5);
    while (!done()) {
        if (clock.elapsed() > deadline) {
            ADD_FAILURE() << "What the test waits for did not come in " << deadline << " ms";
            return false;
        }
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        // A loop that never returns to exec() would keep deleteLater() waiting for ever.
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }
    return true;
}

void TTestLoop::Settle()
{
    QCoreApplication::processEvents();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QCoreApplication::processEvents();
}
