#include "support/uFileUtils.h"

#include "uTestErrors.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>
#include <csignal>
#include <gmock/gmock.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

using TAccess = TFileUtils::TAccess;

class TFilesTest : public testing::Test
{
protected:
    QString Path(const QString &name) const { return FFolder.filePath(name); }
    static QByteArray Bytes(const QString &path)
    {
        QByteArray bytes;
        TFileUtils::ReadBinary(path, bytes);
        return bytes;
    }
    static uint Mode(const QString &path)
    {
        struct stat status = {};
        ::stat(QFile::encodeName(path).constData(), &status);
        return status.st_mode & 07777;
    }
    static void SetMode(const QString &path, uint mode)
    {
        ::chmod(QFile::encodeName(path).constData(), mode);
    }
    QStringList Names() const { return QDir(FFolder.path()).entryList(QDir::Files | QDir::Hidden); }

    QTemporaryDir FFolder;
};

TEST_F(TFilesTest, GiveTheDefaultOnlyWhenTheFileIsMissing)
{
    QString text;
    EXPECT_FALSE(TFileUtils::ReadText(Path("none"), "def", text));
    EXPECT_EQ(text, "def");
    TFileUtils::WriteText(Path("empty"), "");
    EXPECT_TRUE(TFileUtils::ReadText(Path("empty"), "def", text));
    EXPECT_EQ(text, "");
    EXPECT_THROW(TFileUtils::ReadText(FFolder.path(), "def", text), EException);
}

TEST_F(TFilesTest, AreReadWholeAlsoWhenTheSystemDoesNotTellTheirSize)
{
    QByteArray bytes(20 * 1024 * 1024, 'x');
    for (qsizetype i = 0; i < bytes.size(); i += 4096)
        bytes[i] = static_cast<char>(i / 4096);
    TFileUtils::WriteBinary(Path("big"), bytes);
    EXPECT_TRUE(Bytes(Path("big")) == bytes);
    EXPECT_TRUE(Bytes("/proc/self/status").contains("VmPeak"));
}

TEST_F(TFilesTest, TakeOverPermissionsOrKeepTheOwnersSecret)
{
    const struct
    {
        const char *Name;
        int Before; // -1: no file
        TAccess Access;
        uint After;
    } rows[] = {
        {"new default", -1, TAccess::faDefault, 0644},
        {"new secret", -1, TAccess::faOwnerOnly, 0600},
        {"closed stays", 0600, TAccess::faDefault, 0600},
        {"open secret is closed", 0644, TAccess::faOwnerOnly, 0600},
    };
    const mode_t mask = ::umask(022);
    for (const auto &row : rows) {
        const QString path = Path(row.Name);
        if (row.Before >= 0) {
            TFileUtils::WriteBinary(path, "old");
            SetMode(path, static_cast<uint>(row.Before));
        }
        TFileUtils::WriteBinary(path, "new", row.Access);
        EXPECT_EQ(Mode(path), row.After) << row.Name;
        EXPECT_EQ(Bytes(path), "new") << row.Name;
    }
    ::umask(mask);
}

TEST_F(TFilesTest, ReplaceTheTargetOfALinkAndNotTheLink)
{
    QDir(FFolder.path()).mkdir("real");
    TFileUtils::WriteBinary(Path("real/file"), "old");
    ASSERT_EQ(::symlink("real/file", qPrintable(Path("link"))), 0);
    ASSERT_EQ(::symlink("link", qPrintable(Path("second"))), 0);
    ASSERT_EQ(::symlink("real/later", qPrintable(Path("dangling"))), 0);
    TFileUtils::WriteBinary(Path("second"), "new");
    TFileUtils::WriteBinary(Path("dangling"), "made");
    for (const char *link : {"second", "link", "dangling"})
        EXPECT_TRUE(QFileInfo(Path(link)).isSymLink()) << link;
    EXPECT_EQ(Bytes(Path("real/file")), "new");
    EXPECT_EQ(Bytes(Path("real/later")), "made");
}

TEST_F(TFilesTest, FailWithPathAndReasonAndLeaveNothingBehind)
{
    TFileUtils::WriteBinary(Path("file"), "old");
    const std::pair<QString, const char *> rows[] = {
        {Path("missing/file"), "No such file or directory"},
        {Path("file/below"), "Not a directory"},
        {FFolder.path(), "Is a directory"},
        {"/dev/full", "No space left on device"},
    };
    for (const auto &[fileName, reason] : rows) {
        const std::string message =
            MessageOf([&] { TFileUtils::WriteBinary(fileName, QByteArray(100000, 'x')); });
        EXPECT_THAT(message, testing::HasSubstr(fileName.toStdString()));
        EXPECT_THAT(message, testing::HasSubstr(reason));
    }
    const QString halfPair = QChar(0xD83D); // no encoding has it
    EXPECT_THROW(TFileUtils::WriteText(Path("file"), halfPair), EException);
    EXPECT_EQ(Names(), QStringList("file"));
    EXPECT_EQ(Bytes(Path("file")), "old");
}

TEST_F(TFilesTest, KeepTheOldFileWhenThereIsNoRoomForTheNew)
{
    TFileUtils::WriteBinary(Path("file"), "old");
    rlimit old = {};
    ::getrlimit(RLIMIT_FSIZE, &old);
    const rlimit small = {4096, old.rlim_max};
    const auto oldHandler = std::signal(SIGXFSZ, SIG_IGN);
    ::setrlimit(RLIMIT_FSIZE, &small);
    const std::string message =
        MessageOf([&] { TFileUtils::WriteBinary(Path("file"), QByteArray(100000, 'x')); });
    ::setrlimit(RLIMIT_FSIZE, &old);
    std::signal(SIGXFSZ, oldHandler);
    EXPECT_THAT(message, testing::HasSubstr("File too large"));
    EXPECT_EQ(Bytes(Path("file")), "old");
    EXPECT_EQ(Names(), QStringList("file"));
}

TEST_F(TFilesTest, RemoveAFolderButNotWhatItsLinksPointTo)
{
    QDir root(FFolder.path());
    root.mkpath("doomed/deep");
    root.mkdir("kept");
    TFileUtils::WriteBinary(Path("doomed/deep/file"), "x");
    TFileUtils::WriteBinary(Path("kept/file"), "x");
    ASSERT_EQ(::symlink(qPrintable(Path("kept")), qPrintable(Path("doomed/link"))), 0);
    TFileUtils::DeleteFolder(Path("doomed"));
    EXPECT_FALSE(TFileUtils::Exists(Path("doomed")));
    ASSERT_EQ(::symlink("kept", qPrintable(Path("link"))), 0);
    TFileUtils::DeleteFolder(Path("link/"));
    EXPECT_FALSE(TFileUtils::Exists(Path("link")));
    EXPECT_TRUE(TFileUtils::Exists(Path("kept/file")));
}

TEST_F(TFilesTest, ShowByTheirStampThatSomebodyElseWrote)
{
    const QString path = Path("file");
    TFileUtils::WriteBinary(path, "one");
    const TFileStamp first = TFileStamp::Of(path);
    EXPECT_EQ(first, TFileStamp::Of(path));
    TFileUtils::WriteBinary(path, "two");
    EXPECT_NE(first, TFileStamp::Of(path)) << "same size, perhaps the same moment";
    QFile::remove(path);
    EXPECT_EQ(TFileStamp::Of(path), TFileStamp());
}

} // namespace
