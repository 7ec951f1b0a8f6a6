#pragma once

#include "app/uAppRecovery.h"
#include "app/uConfigChanges.h"
#include "support/uFileUtils.h"

#include <functional>
#include <future>
#include <memory>

/// How a table page is browsed.
struct TTableDataSessionData
{
    bool EditMode = false;
    bool UseFilter = false;
    bool ShowTextColumns = false;
    qint32 RowCount = 100; // rows of a page
    qint32 CurrentPage = 0;
    QString SortFieldName;
    bool SoftAscending = true; // ascending sort
    QString WhereCommandText;
    bool operator==(const TTableDataSessionData &) const = default;
};

class TAppTablePageSession;

/// What a workspace looked like: one file per profile, read when the workspace opens and written
/// when it closes. Between the two a journal beside it is brought up to date, so that a crash or a
/// power loss takes nothing with it. Main thread only.
class TAppSession
{
public:
    TAppSession();
    ~TAppSession(); // without Close the journal stays, as after a crash
    TAppSession(const TAppSession &) = delete;
    TAppSession &operator=(const TAppSession &) = delete;

    /// A missing file is a new session. A journal that a crash left behind is taken instead of an
    /// older file; the texts of further journals go into the recovery folder. A file that cannot be
    /// read is put aside under another name, see DamagedFile. Raises EException when the folder
    /// cannot be used.
    void Open(const QString &folder, const QString &sessionId);
    /// Saves, and ends the journal. Texts that only the file of another workspace of the same
    /// profile had, which saved meanwhile, go into the recovery folder first. Raises EException
    /// when it cannot be saved; the journal keeps the session then.
    void Close();
    /// Brings the journal up to date with what was written here and with the changes, which are
    /// not kept in memory. Writes nothing when it is.
    void SaveJournal(const TConfigChanges &changes = {});
    /// The same on a thread of its own, so that nobody who types waits for the disk. FinishJournal
    /// waits for its end and raises what it raised; so does the next start.
    void StartJournal(const TConfigChanges &changes);
    void FinishJournal();
    bool IsJournalRunning() const;

    /// Where an unreadable file or journal was put by Open; empty when everything was readable.
    const QString &DamagedFile() const { return FDamagedFile; }
    /// Whether Open took up the journal of a run that did not end well.
    bool IsRestored() const { return FIsRestored; }
    TAppRecovery &Recovery() { return FRecovery; }
    TConfig &Config() { return FConfig; }

    QString ReadSqlPath() const; // as a full path
    void WriteSqlPath(const QString &value);
    QString ReadSelectedDatabase() const;
    void WriteSelectedDatabase(const QString &value);

    /// `path` is the page's group, as "pages.page_0".
    void ReadTableDataFrame(const QString &path, TTableDataSessionData &data) const;
    void WriteTableDataFrame(const QString &path, const TTableDataSessionData &data);
    static void WriteTableDataFrame(TConfigChanges &changes, const QString &path,
                                    const TTableDataSessionData &data);
    static TTableDataSessionData GetDefaultDataPageData() { return {}; }
    std::unique_ptr<TAppTablePageSession> CreateTablePageSession(const QString &databaseName,
                                                                 const QString &tableName);

private:
    void ClaimJournal();
    void OpenFile();
    void TakeUpJournals();
    void PutAside(const QString &fileName);
    void KeepTexts(const TConfig &other);
    void KeepTextsOfOtherWorkspace();
    std::function<void()> JournalWork(const TConfigChanges &changes);
    void AwaitJournal();
    void ReleaseJournal();

    TConfig FConfig;
    TAppRecovery FRecovery;
    QString FFolder;
    QString FSessionId;
    QString FFileName;
    TFileStamp FStamp; // of the file as this session knows it
    QString FJournalFile;
    QString FLockFile;
    int FLock = -1;            // descriptor; the system lets go of it when the process dies
    QByteArray FJournalDigest; // belongs to the thread while it runs
    QString FDamagedFile;
    bool FIsRestored = false;
    std::future<void> FJournalRun;
};

/// What is kept of a table's page also when the page is not open.
class TAppTablePageSession
{
public:
    TAppTablePageSession(TAppSession *appSession, const QString &databaseName,
                         const QString &tableName);

    bool ReadDataShown() const;
    void WriteDataShow(bool value);

private:
    QString Path() const;

    TAppSession *FAppSession; // not owned
    QString FDatabaseName;
    QString FTableName;
};
