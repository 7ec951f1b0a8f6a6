#include "app/uAppSession.h"

#include "support/uException.h"

#include <QCryptographicHash>
#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSet>
#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

namespace {

const QString Pages = QStringLiteral("pages");
const QString PageGroup = QStringLiteral("pages.page_%1");

/// The texts of a session's query pages which no file has.
QStringList TextsOf(const TConfig &config)
{
    QStringList texts;
    for (int i = 0; i < config.GetChildCount(Pages); ++i) {
        const QString path = PageGroup.arg(i);
        const bool hasFile = !config.GetValue(path, "filename", QString(), true).isEmpty();
        const QString text =
            config.GetValue(path, hasFile ? "unsaved_text" : "text", QString(), true);
        if (!text.isEmpty())
            texts.append(text);
    }
    return texts;
}

/// The descriptor of the lock file if nobody else holds it, else -1.
int TryLock(const QString &fileName)
{
    const int lock =
        ::open(QFile::encodeName(fileName).constData(), O_RDWR | O_CREAT | O_CLOEXEC, 0600);
    if (lock < 0)
        throw EException("Cannot write the file \"" + fileName + "\": " + qt_error_string(errno));
    if (::flock(lock, LOCK_EX | LOCK_NB) == 0)
        return lock;
    ::close(lock);
    return -1;
}

} // namespace

TAppSession::TAppSession() = default;

TAppSession::~TAppSession()
{
    AwaitJournal();
    if (FLock >= 0)
        ::close(FLock);
}

void TAppSession::Open(const QString &folder, const QString &sessionId)
{
    FFolder = folder;
    FSessionId = sessionId;
    FFileName = folder + '/' + sessionId + ".xml";
    FRecovery.SetParams(folder, sessionId);
    OpenFile();
    TakeUpJournals();
    ClaimJournal();
    SaveJournal();
}

void TAppSession::OpenFile()
{
    FStamp = TFileStamp::Of(FFileName);
    try {
        FConfig.Open(FFileName);
    } catch (const EException &) {
        PutAside(FFileName);
        FConfig.New(FFileName);
        FStamp = {};
    }
}

// Nothing in it is lost, and its place is free for what this run writes.
void TAppSession::PutAside(const QString &fileName)
{
    const QString aside =
        fileName + ".damaged-" + QDateTime::currentDateTimeUtc().toString("yyyyMMdd-hhmmsszzz");
    if (!QFile::rename(fileName, aside))
        throw EException("Cannot rename the damaged file \"" + fileName + "\".");
    TConfig::ForgetUnreadable(fileName);
    FDamagedFile = aside;
}

// Journals whose lock is free were left by a process that died. The newest is what was on the
// screen last.
void TAppSession::TakeUpJournals()
{
    QFileInfoList journals =
        QDir(FFolder).entryInfoList({FSessionId + ".*.journal"}, QDir::Files, QDir::Time);
    for (const QFileInfo &journal : std::as_const(journals)) {
        const QString lockFile = journal.path() + '/' + journal.completeBaseName() + ".lock";
        const int lock = TryLock(lockFile);
        if (lock < 0)
            continue;
        TConfig left;
        try {
            left.Open(journal.filePath());
            const bool isNewer = !QFileInfo::exists(FFileName) ||
                                 journal.lastModified() >= QFileInfo(FFileName).lastModified();
            if (isNewer && !FIsRestored) {
                KeepTexts(left);
                FConfig.Open(journal.filePath());
                FConfig.SaveCopy(FFileName);
                FConfig.Open(FFileName);
                FStamp = TFileStamp::Of(FFileName);
                FIsRestored = true;
            } else {
                for (const QString &text : TextsOf(left))
                    FRecovery.Store(text);
            }
            QFile::remove(journal.filePath());
            QFile::remove(lockFile);
        } catch (...) {
            ::close(lock);
            if (!TConfig::IsUnreadable(journal.filePath()))
                throw;
            PutAside(journal.filePath());
            continue;
        }
        ::close(lock);
    }
}

/// Ahead of `other` taking this session's place: what only this one has is kept.
void TAppSession::KeepTexts(const TConfig &other)
{
    const QStringList kept = TextsOf(other);
    const QSet<QString> known(kept.begin(), kept.end());
    for (const QString &text : TextsOf(FConfig))
        if (!known.contains(text))
            FRecovery.Store(text);
}

void TAppSession::ClaimJournal()
{
    for (int number = 0; FLock < 0; ++number) {
        const QString stem = FFolder + '/' + FSessionId + '.' + QString::number(number);
        FLockFile = stem + ".lock";
        FJournalFile = stem + ".journal";
        FLock = TryLock(FLockFile);
    }
}

// The copy is of this thread; what takes long is left to whoever runs the work.
std::function<void()> TAppSession::JournalWork(const TConfigChanges &changes)
{
    auto config = std::make_shared<TConfig>();
    config->Copy(FConfig);
    return [this, config, changes] {
        changes.ApplyTo(*config);
        const QByteArray bytes = config->ToBytes();
        const QByteArray digest = QCryptographicHash::hash(bytes, QCryptographicHash::Sha1);
        if (digest == FJournalDigest)
            return;
        TFileUtils::WriteBinary(FJournalFile, bytes, TFileUtils::TAccess::faOwnerOnly);
        FJournalDigest = digest;
    };
}

void TAppSession::SaveJournal(const TConfigChanges &changes)
{
    if (FLock < 0)
        return;
    AwaitJournal();
    JournalWork(changes)();
}

void TAppSession::StartJournal(const TConfigChanges &changes)
{
    if (FLock < 0)
        return;
    FinishJournal();
    FJournalRun = std::async(std::launch::async, JournalWork(changes));
}

void TAppSession::FinishJournal()
{
    if (FJournalRun.valid())
        FJournalRun.get();
}

bool TAppSession::IsJournalRunning() const
{
    return FJournalRun.valid() &&
           FJournalRun.wait_for(std::chrono::seconds(0)) != std::future_status::ready;
}

// For who writes the same and more: an error of the older write does not count any more.
void TAppSession::AwaitJournal()
{
    if (FJournalRun.valid())
        FJournalRun.wait();
    FJournalRun = {};
}

void TAppSession::Close()
{
    AwaitJournal();
    KeepTextsOfOtherWorkspace();
    FConfig.Close();
    ReleaseJournal();
}

// The last workspace to close wins the file.
void TAppSession::KeepTextsOfOtherWorkspace()
{
    const TFileStamp now = TFileStamp::Of(FFileName);
    if (now == FStamp || now == TFileStamp())
        return;
    TConfig other;
    try {
        other.Open(FFileName);
    } catch (const EException &) {
        PutAside(FFileName);
        return;
    }
    const QStringList ours = TextsOf(FConfig);
    for (const QString &text : TextsOf(other))
        if (!ours.contains(text))
            FRecovery.Store(text);
}

void TAppSession::ReleaseJournal()
{
    if (FLock < 0)
        return;
    QFile::remove(FJournalFile);
    QFile::remove(FLockFile);
    ::close(FLock);
    FLock = -1;
    FJournalDigest.clear();
}

QString TAppSession::ReadSqlPath() const
{
    const QString path = FConfig.GetValue(QString(), "sqlpath", QString(), true);
    return path.isEmpty() ? path : QFileInfo(path).absoluteFilePath();
}

void TAppSession::WriteSqlPath(const QString &value)
{
    FConfig.SetValue(QString(), "sqlpath", value, true);
}

QString TAppSession::ReadSelectedDatabase() const
{
    return FConfig.GetValue(QString(), "selected_database", QString(), true);
}

void TAppSession::WriteSelectedDatabase(const QString &value)
{
    FConfig.SetValue(QString(), "selected_database", value, true);
}

void TAppSession::ReadTableDataFrame(const QString &path, TTableDataSessionData &data) const
{
    const TTableDataSessionData def = GetDefaultDataPageData();
    const QString group = path + ".data";
    data.CurrentPage = FConfig.GetValue(group, "current_page", def.CurrentPage);
    data.EditMode = FConfig.GetValue(group, "edit_mode", def.EditMode);
    data.UseFilter = FConfig.GetValue(group, "use_filter", def.UseFilter);
    data.RowCount = FConfig.GetValue(group, "row_count", def.RowCount);
    data.ShowTextColumns = FConfig.GetValue(group, "show_text_columns", def.ShowTextColumns);
    data.SoftAscending = FConfig.GetValue(group, "sort_ascending", def.SoftAscending);
    data.SortFieldName = FConfig.GetValue(group, "sort_field", def.SortFieldName);
    data.WhereCommandText =
        FConfig.GetValue(group, "where_command_text", def.WhereCommandText, true);
}

void TAppSession::WriteTableDataFrame(const QString &path, const TTableDataSessionData &data)
{
    TConfigChanges changes;
    WriteTableDataFrame(changes, path, data);
    changes.ApplyTo(FConfig);
}

void TAppSession::WriteTableDataFrame(TConfigChanges &changes, const QString &path,
                                      const TTableDataSessionData &data)
{
    const QString group = path + ".data";
    changes.SetValue(group, "current_page", data.CurrentPage);
    changes.SetValue(group, "edit_mode", data.EditMode);
    changes.SetValue(group, "use_filter", data.UseFilter);
    changes.SetValue(group, "row_count", data.RowCount);
    changes.SetValue(group, "show_text_columns", data.ShowTextColumns);
    changes.SetValue(group, "sort_ascending", data.SoftAscending);
    changes.SetValue(group, "sort_field", data.SortFieldName);
    changes.SetValue(group, "where_command_text", data.WhereCommandText, true);
}

std::unique_ptr<TAppTablePageSession>
TAppSession::CreateTablePageSession(const QString &databaseName, const QString &tableName)
{
    return std::make_unique<TAppTablePageSession>(this, databaseName, tableName);
}

TAppTablePageSession::TAppTablePageSession(TAppSession *appSession, const QString &databaseName,
                                           const QString &tableName)
    : FAppSession(appSession), FDatabaseName(databaseName), FTableName(tableName)
{}

QString TAppTablePageSession::Path() const
{
    return "table_page." + FDatabaseName + '.' + FTableName;
}

bool TAppTablePageSession::ReadDataShown() const
{
    return FAppSession->Config().GetValue(Path(), "data_shown", false);
}

void TAppTablePageSession::WriteDataShow(bool value)
{
    FAppSession->Config().SetValue(Path(), "data_shown", value);
}
