#include "jobs/uAppWorkers.h"

#include "jobs/uDbmChecksumDatabaseWorker.h"
#include "jobs/uDbmCreateSqlDumpWorker.h"
#include "jobs/uDbmExecuteSqlDumpWorker.h"
#include "jobs/uDbmMigrateDatabaseWorker.h"
#include "jobs/uDbmOpenManagerWorker.h"
#include "jobs/uDbmTestConnectionWorker.h"
#include "jobs/uWorkerForm.h"
#include "model/uDbmManager.h"
#include "widgets/uWaitCursor.h"

#include <QFileInfo>

namespace {

// A cancelled job runs to its end before its results are settled and it can be freed.
void WaitFor(TWorker &worker)
{
    TWaitCursor::Show();
    worker.Finish();
    TWaitCursor::Hide();
}

} // namespace

TAppWorkers &TAppWorkers::Instance()
{
    static TAppWorkers instance;
    return instance;
}

void TAppWorkers::Run(TWorker &worker, const QString &title, bool closeOnComplete)
{
    TWorkerForm::ShowWorker(Owner(), worker, closeOnComplete, title);
    WaitFor(worker);
}

bool TAppWorkers::TryOpenManager(const TDbmConnectionProfile &profile,
                                 std::unique_ptr<TDbmManager> &manager)
{
    manager.reset();
    auto worker = std::make_unique<TDbmOpenManagerWorker>();
    worker->FProfile = profile;
    Run(*worker, TFormat::Format("Open connection to \"%s\"", {profile.GetDisplayString()}), true);
    if (worker->FIsSuccess)
        manager = std::move(worker->FManager);
    return manager != nullptr;
}

bool TAppWorkers::TestConnection(const TDbmConnectionProfile &profile)
{
    auto worker = std::make_unique<TDbmTestConnectionWorker>();
    worker->FProfile = profile;
    Run(*worker, TFormat::Format("Test connection to \"%s\"", {profile.GetDisplayString()}));
    return worker->FIsSuccess;
}

void TAppWorkers::ChecksumDatabase(const TDbmConnectionProfile &profile,
                                   const QString &databaseName)
{
    TDbmChecksumDatabaseWorker worker;
    worker.FProfile = profile;
    worker.FDatabaseName = databaseName;
    Run(worker, TFormat::Format("Calculation Database Checksum \"%s\"", {databaseName}));
}

void TAppWorkers::CloneDatabase(TDbmManager &manager, const QString &sourceName,
                                const QString &targetName)
{
    if (sourceName == targetName)
        return;
    QString charset;
    manager.Commands().Charsets().ExecuteGetSessionCharset(charset);
    const TDbmConnectionProfile profile = manager.ConnectionProfile();
    MigrateDatabase(profile, profile, sourceName, targetName, charset);
    manager.RequestProcess();
}

void TAppWorkers::CreateDump(const TDbmConnectionProfile &profile, const QString &databaseName,
                             const QString &fileName, const QString &charset, bool onlyStructure)
{
    TDbmCreateSqlDumpWorker worker;
    worker.FProfile = profile;
    worker.FDatabaseName = databaseName;
    worker.FFileName = fileName;
    worker.FCharset = charset;
    worker.FOnlyStructure = onlyStructure;
    Run(worker, TFormat::Format("Creation SQL Dump \"%s\"", {QFileInfo(fileName).fileName()}));
}

void TAppWorkers::ExecuteDump(const TDbmConnectionProfile &profile, const QString &fileName,
                              const QString &databaseName, const QString &charset)
{
    TDbmExecuteSqlDumpWorker worker;
    worker.FProfile = profile;
    worker.FFileName = fileName;
    worker.FDatabaseName = databaseName;
    worker.FCharset = charset;
    Run(worker, TFormat::Format("Execution SQL Dump \"%s\"", {QFileInfo(fileName).fileName()}));
}

void TAppWorkers::MigrateDatabase(const TDbmConnectionProfile &sourceProfile,
                                  const TDbmConnectionProfile &targetProfile,
                                  const QString &sourceName, const QString &targetName,
                                  const QString &charset)
{
    TDbmMigrateDatabaseWorker worker;
    worker.FSourceProfile = sourceProfile;
    worker.FTargetProfile = targetProfile;
    worker.FSourceDatabaseName = sourceName;
    worker.FTargetDatabaseName = targetName;
    worker.FCharset = charset;
    Run(worker, TFormat::Format("Migration Database \"%s\"", {sourceName}));
}
