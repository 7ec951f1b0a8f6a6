#pragma once

#include "core/uDbmConnectionProfile.h"
#include "jobs/uDbmDumpSession.h"
#include "jobs/uDbmDumpUtils.h"
#include "jobs/uWorker.h"

class TDbmManager;

/// Copies a database into another one, on the same server or on another. What the target has under
/// a name that the source has is replaced; all else in it stays. Nothing is rolled back.
class TDbmMigrateDatabaseWorker : public TWorker
{
public:
    TDbmMigrateDatabaseWorker();
    ~TDbmMigrateDatabaseWorker() override;

    TDbmConnectionProfile FSourceProfile, FTargetProfile;
    QString FSourceDatabaseName, FTargetDatabaseName;
    QString FCharset; // empty: the source session's own

protected:
    void Execute() override;

private:
    void OpenSource();
    void OpenTarget();
    void SettleCharset();
    void RequireSource();
    void RefuseSameDatabase();
    void PrepareSessions();
    void CheckTargetDatabase();
    void DropReferences();
    void DropReferencesOf(const QString &table);
    void MigrateTables();
    void CreateTable(const QString &table);
    void InsertRows(const QString &table);
    void CreateReferences(const QString &table);
    void CreateTriggers(const QString &table);
    void CreateRoutines();
    void CreateViews();
    void CreateEvents();
    void Exec(const QString &text);
    void ExecProgram(const QString &text, const char *kind, const QString &name);
    void ExecWithCollation(const QString &text, const char *kind, const QString &name);
    QStringList TargetCollations();

    std::unique_ptr<TDbmManager> FSourceManager, FTargetManager;
    TDbmDumpUtils FDumpUtils;
    TDbmDumpModes FModes;
    bool FIsDropDatabaseObjects = false;
    Qt::CaseSensitivity FTargetCase = Qt::CaseSensitive; // of names of databases and tables
    QStringList FTables;
};
