#pragma once

#include "core/uServerProfile.h"
#include "jobs/uDbmChecksumDatabaseWorker.h"
#include "jobs/uDbmCreateSqlDumpWorker.h"
#include "jobs/uDbmExecuteSqlDumpWorker.h"
#include "jobs/uDbmMigrateDatabaseWorker.h"
#include "jobs/uDbmTableCloner.h"
#include "model/uDbmManager.h"
#include "support/uException.h"
#include "support/uMainThread.h"
#include "uDumpDatabase.h"

#include <QFile>
#include <QTemporaryDir>
#include <functional>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

/// What a job said from its start to its end.
struct TJobRun
{
    QStringList Lines;
    QString Error;     // empty when the job completed
    QString Statement; // that failed
    bool Has(const QString &line) const { return Lines.contains(line); }
    QStringList LeftOut() const
    {
        return Lines.filter("Left out: ").replaceInStrings("Left out: ", QString());
    }
};

/// Called at each line of a job's log; the job waits meanwhile, so what is done here is done at
/// that very moment of the job.
using TAtLine = std::function<void(TWorker *job, const QString &line)>;

/// Changes what a job is set up with.
template <typename TJob>
using TEditJob = std::function<void(TJob &job)>;

/// Tests of whole jobs on the two kinds of server, each with a database and a folder of its own.
class TJobRunsTest : public testing::TestWithParam<TTestServerKind>
{
protected:
    void SetUp() override
    {
        TMainThread::Initialize();
        if (GetParam() == skMySQL)
            SKIP_WITHOUT_MYSQL9();
        FDatabase = std::make_unique<TTestDatabase>(Server(GetParam()));
    }
    static TTestServer &Server(TTestServerKind kind)
    {
        return kind == skMySQL ? *TTestServer::MySql9() : TTestServer::Instance();
    }
    TTestServer &Server() const { return FDatabase->Server(); }
    QString Name() const { return FDatabase->Name(); }
    QString File() const { return FFolder.filePath("dump.sql"); }
    void Exec(const QString &sql) const { FDatabase->Exec(sql); }
    QString Value(const QString &sql) const { return FDatabase->Value(sql); }
    static QStringList Contents(const TTestDatabase &database)
    {
        return DumpDatabase::Contents(database.Server(), database.Name());
    }
    QStringList Contents() const { return Contents(*FDatabase); }
    /// The bytes of the file.
    std::string Text() const
    {
        QFile file(File());
        EXPECT_TRUE(file.open(QIODevice::ReadOnly));
        return file.readAll().toStdString();
    }

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
            if (const auto *error = dynamic_cast<const EDacMySqlError *>(&e))
                run.Statement = error->CommandText();
        };
        worker.SetEvents(events);
        worker.Start();
        worker.Finish();
        return run;
    }
    TJobRun Dump(const TAtLine &atLine = {},
                 const TEditJob<TDbmCreateSqlDumpWorker> &edit = {}) const
    {
        TDbmCreateSqlDumpWorker worker;
        worker.FProfile = ServerProfile(Server());
        worker.FDatabaseName = Name();
        worker.FFileName = File();
        if (edit)
            edit(worker);
        return Run(worker, atLine);
    }
    /// With the database in use when there is one.
    TJobRun LoadOn(const TTestServer &server, const QString &database = {},
                   const TAtLine &atLine = {}) const
    {
        TDbmExecuteSqlDumpWorker worker;
        worker.FProfile = ServerProfile(server);
        worker.FFileName = File();
        worker.FDatabaseName = database;
        return Run(worker, atLine);
    }
    TJobRun Load() const { return LoadOn(Server()); }
    void Reload() const
    {
        Server().Exec("DROP DATABASE " + Name());
        EXPECT_EQ(Load().Error, "");
    }
    /// With the test's database in use.
    TJobRun LoadText(const QByteArray &text, const TAtLine &atLine = {}) const
    {
        QFile file(File());
        EXPECT_TRUE(file.open(QIODevice::WriteOnly) && file.write(text) == text.size());
        file.close();
        return LoadOn(Server(), Name(), atLine);
    }
    TJobRun MigrateTo(const TTestServer &server, const QString &database,
                      const TAtLine &atLine = {},
                      const TEditJob<TDbmMigrateDatabaseWorker> &edit = {}) const
    {
        TDbmMigrateDatabaseWorker worker;
        worker.FSourceProfile = ServerProfile(Server());
        worker.FTargetProfile = ServerProfile(server);
        worker.FSourceDatabaseName = Name();
        worker.FTargetDatabaseName = database;
        if (edit)
            edit(worker);
        return Run(worker, atLine);
    }
    TJobRun Migrate(const TTestDatabase &target, const TAtLine &atLine = {},
                    const TEditJob<TDbmMigrateDatabaseWorker> &edit = {}) const
    {
        return MigrateTo(target.Server(), target.Name(), atLine, edit);
    }
    static TJobRun Checksum(const TTestDatabase &database, const TAtLine &atLine = {})
    {
        TDbmChecksumDatabaseWorker worker;
        worker.FProfile = ServerProfile(database.Server());
        worker.FDatabaseName = database.Name();
        return Run(worker, atLine);
    }
    TJobRun Checksum(const TAtLine &atLine = {}) const { return Checksum(*FDatabase, atLine); }

    std::unique_ptr<TDbmManager> Workspace(const QString &charset = {}) const
    {
        TDbmConnectionProfile profile = ServerProfile(Server());
        profile.Charset = charset;
        auto manager = TDbmManager::Create();
        manager->SetParams(profile);
        manager->Connect();
        return manager;
    }
    void Clone(TDbmManager &manager, const QString &from, const QString &to) const
    {
        TDbmTableCloner cloner;
        cloner.Initialize(manager, Name(), to, Name(), from);
        cloner.Execute();
    }

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
