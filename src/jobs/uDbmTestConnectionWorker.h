#pragma once

#include "core/uDbmConnectionProfile.h"
#include "jobs/uWorker.h"
#include "model/uDbmManager.h"

/// Tries a connection and says how it went.
class TDbmTestConnectionWorker : public TWorker
{
public:
    ~TDbmTestConnectionWorker() override { WaitForEnd(); }

    TDbmConnectionProfile FProfile;
    bool FIsSuccess = false;

protected:
    void Execute() override;
};
