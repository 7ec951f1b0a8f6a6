#pragma once

#include "core/uServerProfile.h"
#include "jobs/uDbmChecksumDatabaseWorker.h"
#include "jobs/uDbmCreateSqlDumpWorker.h"
#include "jobs/uDbmExecuteSqlDumpWorker.h"
#include "jobs/uDbmMigrateDatabaseWorker.h"
#include "uDumpDatabase.h"
#include "uJobListener.h"

#include <QFile>
#include <QTemporaryDir>
#include <functional>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

/// What a job said from its start to its end.
struct TJobRun
{
    QStringList Lines;
    QString Error; // empty when the job completed
    bool Has(const QString &line) const { return Lines.contains(line); }
    QStringList LeftOut() const { return Lines.filter("Left out: "); }
};

/// Called at each line of a job's log; the job waits meanwhile, so what is done here is done at
/// that very moment of the job.
using TAtLine = std::function<void(TWorker *job, const QString &line)>;

/// Tests of whole jobs on the two kinds of server, each with a database and a folder of its own.
class TJobRunsTest : public testing::TestWithParam<TTestServerKind>
{
protected:
    void SetUp() override
    {
        TMainThread::Initialize();
        if (GetParam() == skMySQL)
            SKIP_WITHOUT_MYSQL9();
        FDatabase = std::make_unique<TTestDatabase>(Server());
    }
    static TTestServer &Server(TTestServerKind kind)
    {
        return kind == skMySQL ? *TTestServer::MySql9() : TTestServer::Instance();
    }
    TTestServer &Server() const { return Server(GetParam()); }
    QString Name() const { return FDatabase->Name(); }
    QString File() const { return FFolder.filePath("dump.sql"); }
    void Exec(const QString &sql) const { FDatabase->Exec(sql); }
    QString Value(const QString &sql) const { return FDatabase->Value(sql); }
    QStringList Contents() const { return DumpDatabase::Contents(Server(), Name()); }

    static TJobRun Run(TWorker &worker, const TAtLine &atLine = {})
    {
        TJobRun run;
        TWorkerEvents events;
        events.OnLog = [&](TWorker *sender, const QString &line, TWorkerLogType) {
            run.Lines += line;
            if (atLine)
                atLine(sender, line);
        };
        events.OnException = [&](TWorker *, const std::exception &e) {
            run.Error = ExceptionMessage(e);
        };
        worker.SetEvents(events);
        RunJob(worker);
        return run;
    }
    TJobRun Dump(const TAtLine &atLine = {}, const QString &file = {}) const
    {
        TDbmCreateSqlDumpWorker worker;
        worker.FProfile = ServerProfile(Server());
        worker.FDatabaseName = Name();
        worker.FFileName = file.isEmpty() ? File() : file;
        return Run(worker, atLine);
    }
    /// With the test's database in use when `use` is set.
    TJobRun Load(bool use = false, const TAtLine &atLine = {}) const
    {
        TDbmExecuteSqlDumpWorker worker;
        worker.FProfile = ServerProfile(Server());
        worker.FFileName = File();
        worker.FDatabaseName = use ? Name() : QString();
        return Run(worker, atLine);
    }
    TJobRun LoadText(const QByteArray &text, const TAtLine &atLine = {}) const
    {
        QFile file(File());
        EXPECT_TRUE(file.open(QIODevice::WriteOnly) && file.write(text) == text.size());
        file.close();
        return Load(true, atLine);
    }
    TJobRun Migrate(const TTestDatabase &target, const TAtLine &atLine = {}) const
    {
        TDbmMigrateDatabaseWorker worker;
        worker.FSourceProfile = ServerProfile(Server());
        worker.FTargetProfile = ServerProfile(target.Server());
        worker.FSourceDatabaseName = Name();
        worker.FTargetDatabaseName = target.Name();
        return Run(worker, atLine);
    }
    static TJobRun Checksum(const TTestDatabase &database, const TAtLine &atLine = {})
    {
        TDbmChecksumDatabaseWorker worker;
        worker.FProfile = ServerProfile(database.Server());
        worker.FDatabaseName = database.Name();
        return Run(worker, atLine);
    }
    TJobRun Checksum(const TAtLine &atLine = {}) const { return Checksum(*FDatabase, atLine); }

    static void ExpectSame(const QStringList &before, const QStringList &after)
    {
        for (qsizetype i = 0; i < qMax(before.size(), after.size()); ++i)
            EXPECT_EQ(before.value(i).toStdString(), after.value(i).toStdString());
    }

    QTemporaryDir FFolder;
    std::unique_ptr<TTestDatabase> FDatabase;
};

inline std::string ServerName(const testing::TestParamInfo<TTestServerKind> &info)
{
    return info.param == skMySQL ? "MySQL9" : "MariaDB";
}

/// A fixture's tests on both kinds of server.
#define ON_BOTH_SERVERS(Fixture)                                                                   \
    INSTANTIATE_TEST_SUITE_P(Servers, Fixture, testing::Values(skMariaDB, skMySQL), ServerName)
