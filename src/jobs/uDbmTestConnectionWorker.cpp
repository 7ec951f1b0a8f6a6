#include "jobs/uDbmTestConnectionWorker.h"

#include <mutex>

namespace {

// Deliberate: the manager of a test that succeeded is left alone and its connection stays open to
// the end of the program. It is kept reachable, so that it is no leak.
void KeepToTheEnd(std::unique_ptr<TDbmManager> manager)
{
    static std::mutex mutex;
    static std::vector<TDbmManager *> *const kept = new std::vector<TDbmManager *>;
    const std::lock_guard lock(mutex);
    kept->push_back(manager.release());
}

} // namespace

void TDbmTestConnectionWorker::Execute()
{
    TWorker::Execute();
    FIsSuccess = false;
    auto manager = TDbmManager::Create();
    manager->SetOnConnectionMessage(
        [this](TDbmManager *, const QString &message) { SendLog(message); });
    manager->SetParams(FProfile);
    manager->Connect();
    manager->SetOnConnectionMessage({});
    SendLog("Connection to \"%s\" successfully completed.", {FProfile.GetDisplayString()});
    FIsSuccess = true;
    KeepToTheEnd(std::move(manager));
}
