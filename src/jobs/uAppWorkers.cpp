#include "jobs/uAppWorkers.h"

#include "jobs/uDbmOpenManagerWorker.h"
#include "jobs/uDbmTestConnectionWorker.h"
#include "jobs/uWorkerForm.h"

TAppWorkers &TAppWorkers::Instance()
{
    static TAppWorkers instance;
    return instance;
}

bool TAppWorkers::TryOpenManager(const TDbmConnectionProfile &profile,
                                 std::unique_ptr<TDbmManager> &manager)
{
    manager.reset();
    // Freeing the job waits for its end; only then are its results settled.
    auto worker = std::make_unique<TDbmOpenManagerWorker>();
    worker->FProfile = profile;
    TWorkerForm::ShowWorker(
        Owner(), *worker, true,
        TFormat::Format("Open connection to \"%s\"", {profile.GetDisplayString()}));
    worker->Finish();
    if (worker->FIsSuccess)
        manager = std::move(worker->FManager);
    return manager != nullptr;
}

bool TAppWorkers::TestConnection(const TDbmConnectionProfile &profile)
{
    auto worker = std::make_unique<TDbmTestConnectionWorker>();
    worker->FProfile = profile;
    TWorkerForm::ShowWorker(
        Owner(), *worker,
        TFormat::Format("Test connection to \"%s\"", {profile.GetDisplayString()}));
    worker->Finish();
    return worker->FIsSuccess;
}
