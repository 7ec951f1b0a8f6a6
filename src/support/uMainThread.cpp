#include "support/uMainThread.h"

#include "support/uException.h"

#include <QCoreApplication>
#include <QEvent>
#include <QThread>
#include <chrono>
#include <condition_variable>
#include <deque>
#include <exception>
#include <memory>
#include <mutex>
#include <thread>

namespace {

struct TCall
{
    const TMainThread::TAction *Action = nullptr; // lives on the waiting caller's stack
    std::exception_ptr Error;
    bool IsDone = false;
};

/// The calls that wait for the main thread.
class TCallQueue
{
public:
    void RunAndWait(const TMainThread::TAction &action, const std::function<void()> &wakeUp)
    {
        TCall call{&action};
        std::unique_lock lock(FMutex);
        FCalls.push_back(&call);
        FPosted.notify_all();
        wakeUp();
        FDone.wait(lock, [&] { return call.IsDone; });
        if (call.Error)
            std::rethrow_exception(call.Error);
    }

    // One at a time: an action may open an event loop, in which the others are served.
    void Serve()
    {
        std::unique_lock lock(FMutex);
        while (!FCalls.empty()) {
            TCall *call = FCalls.front();
            FCalls.pop_front();
            lock.unlock();
            try {
                (*call->Action)();
            } catch (...) {
                call->Error = std::current_exception();
            }
            lock.lock();
            call->IsDone = true;
            FDone.notify_all();
        }
    }

    void WaitForCall(std::chrono::milliseconds longest, const bool &ended)
    {
        std::unique_lock lock(FMutex);
        FPosted.wait_for(lock, longest, [&] { return ended || !FCalls.empty(); });
    }

    void SetEnded(bool &ended)
    {
        const std::lock_guard lock(FMutex);
        ended = true;
        FPosted.notify_all();
    }

    bool IsEnded(const bool &ended)
    {
        const std::lock_guard lock(FMutex);
        return ended;
    }

private:
    std::mutex FMutex;
    std::condition_variable FPosted;
    std::condition_variable FDone;
    std::deque<TCall *> FCalls;
};

TCallQueue &Queue()
{
    static TCallQueue queue;
    return queue;
}

/// Serves the queue in whatever event loop the main thread is in.
class TReceiver : public QObject
{
public:
    static QEvent::Type ServeEvent()
    {
        static const int type = QEvent::registerEventType();
        return static_cast<QEvent::Type>(type);
    }

    bool event(QEvent *event) override
    {
        if (event->type() != ServeEvent())
            return QObject::event(event);
        Queue().Serve();
        return true;
    }
};

// Static variables are made by the thread that runs main().
const std::thread::id MainThreadId = std::this_thread::get_id();
std::unique_ptr<TReceiver> Receiver;

} // namespace

void TMainThread::Initialize()
{
    if (!Receiver)
        Receiver = std::make_unique<TReceiver>();
}

bool TMainThread::IsMainThread()
{
    return std::this_thread::get_id() == MainThreadId;
}

void TMainThread::Synchronize(const TAction &action)
{
    if (IsMainThread()) {
        action();
        return;
    }
    if (!Receiver)
        throw EException("Calls to the main thread are not initialized.");
    Queue().RunAndWait(action, [] {
        QCoreApplication::postEvent(Receiver.get(), new QEvent(TReceiver::ServeEvent()));
    });
}

void TMainThread::WaitFor(QThread &thread)
{
    using namespace std::chrono_literals;
    bool ended = false;
    const auto connection = QObject::connect(
        &thread, &QThread::finished, &thread, [&] { Queue().SetEnded(ended); },
        Qt::DirectConnection);
    // The signal may have come before the connection, and comes a little before the end itself,
    // in which time slots of the signal may still synchronise: hence the short waits.
    while (!thread.wait(Queue().IsEnded(ended) ? 1 : 0)) {
        Queue().Serve();
        Queue().WaitForCall(20ms, ended);
    }
    QObject::disconnect(connection);
}
