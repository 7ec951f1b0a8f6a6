#pragma once

#include "core/uDbmConnectionProfile.h"
#include "jobs/uWorker.h"
#include "model/uDbmManager.h"

/// Opens a connection and hands the connected manager to whoever asked.
class TDbmOpenManagerWorker : public TWorker
{
public:
    ~TDbmOpenManagerWorker() override { WaitForEnd(); }

    TDbmConnectionProfile FProfile;
    bool FIsSuccess = false;
    std::unique_ptr<TDbmManager> FManager; // set on success; the caller moves it out

protected:
    void Execute() override;
};
