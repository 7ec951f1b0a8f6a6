#pragma once

#include "core/uDbmConnectionProfile.h"
#include "jobs/uWorker.h"

class TDbmManager;

/// Runs a file of statements on a connection of its own, with each statement in the log. The first
/// one that fails ends the job; what ran before it stays done.
class TDbmExecuteSqlDumpWorker : public TWorker
{
public:
    ~TDbmExecuteSqlDumpWorker() override { WaitForEnd(); }

    TDbmConnectionProfile FProfile;
    QString FFileName;
    QString FDatabaseName; // the database to start in; empty: that of the profile
    QString FCharset;      // empty: that of the profile

protected:
    void Execute() override;

private:
    void Load();
};
