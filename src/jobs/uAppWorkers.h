#pragma once

#include "core/uDbmConnectionProfile.h"

#include <functional>
#include <memory>

class QWidget;
class TDbmManager;
class TWorker;

/// The only place that builds a job, fills it, shows its window and frees it. Main thread only.
class TAppWorkers
{
public:
    static TAppWorkers &Instance();

    /// Where the windows find their owner; asked at each job. Unset: no owner.
    void SetOwner(std::function<QWidget *()> owner) { FOwner = std::move(owner); }

    /// Gives a connected manager, or false when the connection failed. A cancel hides the window
    /// and does not stop the job: a connection that opens all the same is given too.
    bool TryOpenManager(const TDbmConnectionProfile &profile,
                        std::unique_ptr<TDbmManager> &manager);
    bool TestConnection(const TDbmConnectionProfile &profile);
    void ChecksumDatabase(const TDbmConnectionProfile &profile, const QString &databaseName);
    /// A migration within the server of the manager, whose data is stale afterwards. Does nothing
    /// when the names are equal.
    void CloneDatabase(TDbmManager &manager, const QString &sourceName, const QString &targetName);
    /// `charset` may be empty, here and below: that of the profile.
    void CreateDump(const TDbmConnectionProfile &profile, const QString &databaseName,
                    const QString &fileName, const QString &charset, bool onlyStructure);
    void ExecuteDump(const TDbmConnectionProfile &profile, const QString &fileName,
                     const QString &databaseName, const QString &charset);
    void MigrateDatabase(const TDbmConnectionProfile &sourceProfile,
                         const TDbmConnectionProfile &targetProfile, const QString &sourceName,
                         const QString &targetName, const QString &charset);

private:
    TAppWorkers() = default;
    /// Shows the window and waits for the job's end.
    void Run(TWorker &worker, const QString &title, bool closeOnComplete = false);
    QWidget *Owner() const { return FOwner ? FOwner() : nullptr; }

    std::function<QWidget *()> FOwner;
};
