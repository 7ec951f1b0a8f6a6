#pragma once

#include "core/uDbmConnectionProfile.h"
#include "jobs/uWorker.h"
#include "model/uDbmManager.h"

/// Logs one number per table of a database and one for all of them, in the order of the table
/// list: two copies that hold the same data give the same numbers.
class TDbmChecksumDatabaseWorker : public TWorker
{
public:
    TDbmChecksumDatabaseWorker();
    ~TDbmChecksumDatabaseWorker() override { WaitForEnd(); }

    TDbmConnectionProfile FProfile;
    QString FDatabaseName;

protected:
    void Execute() override;

private:
    /// False when the job was asked to stop.
    bool SumTables(QList<quint32> &numbers);

    std::unique_ptr<TDbmManager> FManager;
};
