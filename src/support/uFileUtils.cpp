#include "support/uFileUtils.h"

#include "support/uException.h"
#include "support/uFormat.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRandomGenerator>
#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <filesystem>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>

namespace {

[[noreturn]] void ThrowFailure(const char *what, const QString &fileName, int code)
{
    throw EException(TFormat::Format(
        "Cannot %s \"%s\": %s.",
        {what, fileName, QString::fromStdString(std::generic_category().message(code))}));
}

bool IsMissing(int code)
{
    return code == ENOENT || code == ENOTDIR;
}

/// An open file; closed with the object.
class TDescriptor
{
public:
    TDescriptor(const QString &fileName, int flags, mode_t mode = 0)
        : FHandle(::open(QFile::encodeName(fileName).constData(), flags | O_CLOEXEC, mode)),
          FOpenError(FHandle < 0 ? errno : 0)
    {}
    ~TDescriptor()
    {
        if (FHandle >= 0)
            ::close(FHandle);
    }
    TDescriptor(const TDescriptor &) = delete;
    TDescriptor &operator=(const TDescriptor &) = delete;

    int Handle() const { return FHandle; }
    int OpenError() const { return FOpenError; }

    /// Gives the system's code of the failure, 0 when all went well.
    int Write(const QByteArray &bytes)
    {
        for (qsizetype at = 0; at < bytes.size();) {
            const ssize_t written =
                ::write(FHandle, bytes.constData() + at, static_cast<size_t>(bytes.size() - at));
            if (written < 0 && errno != EINTR)
                return errno;
            at += std::max<ssize_t>(written, 0);
        }
        return 0;
    }

    int ReadAll(QByteArray &bytes)
    {
        struct stat status = {};
        const bool known = ::fstat(FHandle, &status) == 0 && S_ISREG(status.st_mode);
        qsizetype used = 0;
        bytes.resize(known ? status.st_size + 1 : 65536);
        for (;;) {
            const ssize_t got =
                ::read(FHandle, bytes.data() + used, static_cast<size_t>(bytes.size() - used));
            if (got < 0 && errno != EINTR)
                return errno;
            if (got == 0)
                break;
            used += std::max<ssize_t>(got, 0);
            if (used == bytes.size())
                bytes.resize(used * 2);
        }
        bytes.resize(used);
        return 0;
    }

    int Close()
    {
        const int result = ::close(FHandle);
        FHandle = -1;
        return result < 0 ? errno : 0;
    }

private:
    int FHandle;
    int FOpenError;
};

// Gives false when the file is missing.
bool TryRead(const QString &fileName, QByteArray &bytes)
{
    TDescriptor file(fileName, O_RDONLY);
    if (IsMissing(file.OpenError()))
        return false;
    const int code = file.OpenError() ? file.OpenError() : file.ReadAll(bytes);
    if (code)
        ThrowFailure("read", fileName, code);
    return true;
}

// The name that the rename has to hit: a link is followed, also one whose target is not there yet.
QString LinkTarget(const QString &fileName)
{
    namespace fs = std::filesystem;
    constexpr int mostLinks = 40; // the kernel's own limit
    fs::path path(QFile::encodeName(fileName).toStdString());
    std::error_code error;
    for (int i = 0; i < mostLinks && fs::is_symlink(path, error); ++i) {
        const fs::path target = fs::read_symlink(path, error);
        path = target.is_absolute() ? target : path.parent_path() / target;
    }
    return QFile::decodeName(QByteArray::fromStdString(path.string()));
}

/// Writes a new file under a temporary name and puts it in the place of the target.
class TReplacement
{
public:
    TReplacement(const QString &fileName, TFileUtils::TAccess access)
        : FFileName(fileName), FTarget(LinkTarget(fileName)), FAccess(access)
    {
        FIsNew = ::stat(Name(FTarget).constData(), &FOld) != 0;
        if (FIsNew && !IsMissing(errno))
            Fail(errno);
    }

    void Write(const QByteArray &bytes)
    {
        // A rename would ask only the folder whether the file may be replaced.
        if (!FIsNew && ::access(Name(FTarget).constData(), W_OK) != 0)
            Fail(errno);
        if (!FIsNew && !S_ISREG(FOld.st_mode))
            WriteInPlace(bytes);
        else
            WriteBeside(bytes);
    }

private:
    static QByteArray Name(const QString &fileName) { return QFile::encodeName(fileName); }
    [[noreturn]] void Fail(int code) const { ThrowFailure("write", FFileName, code); }

    void WriteInPlace(const QByteArray &bytes)
    {
        TDescriptor file(FTarget, O_WRONLY);
        int code = file.OpenError();
        if (!code)
            code = file.Write(bytes);
        if (code)
            Fail(code);
    }

    void WriteBeside(const QByteArray &bytes)
    {
        const QString temporary = QFileInfo(FTarget).path() + "/.korvane-" +
                                  QString::number(QRandomGenerator::global()->generate64(), 36);
        // A file that is to replace another gets its permissions only when its content is there.
        const bool closed = FAccess == TFileUtils::TAccess::faOwnerOnly || !FIsNew;
        TDescriptor file(temporary, O_WRONLY | O_CREAT | O_EXCL, closed ? 0600 : 0666);
        if (file.OpenError())
            Fail(file.OpenError());
        int code = Fill(file, bytes);
        if (!code && ::rename(Name(temporary).constData(), Name(FTarget).constData()) != 0)
            code = errno;
        if (code) {
            ::unlink(Name(temporary).constData());
            Fail(code);
        }
        SyncFolder();
    }

    int Fill(TDescriptor &file, const QByteArray &bytes)
    {
        int code = file.Write(bytes);
        if (!code)
            code = TakeOverRights(file);
        if (!code && ::fsync(file.Handle()) != 0)
            code = errno;
        const int closeCode = file.Close();
        return code ? code : closeCode;
    }

    int TakeOverRights(TDescriptor &file)
    {
        if (FIsNew)
            return 0;
        // Only root can give a file away; for anybody else the file becomes his own.
        const bool given = ::fchown(file.Handle(), FOld.st_uid, FOld.st_gid) == 0;
        if (FAccess == TFileUtils::TAccess::faOwnerOnly)
            return 0;
        const mode_t kept = given ? 07777 : 0777;
        return ::fchmod(file.Handle(), FOld.st_mode & kept) == 0 ? 0 : errno;
    }

    // Makes the rename itself last; the file is whole either way, so a refusal is no failure.
    void SyncFolder()
    {
        TDescriptor folder(QFileInfo(FTarget).path(), O_RDONLY | O_DIRECTORY);
        if (!folder.OpenError())
            ::fsync(folder.Handle());
    }

    const QString FFileName;
    const QString FTarget;
    const TFileUtils::TAccess FAccess;
    struct stat FOld = {};
    bool FIsNew = true;
};

} // namespace

bool TFileUtils::Exists(const QString &fileName)
{
    struct stat status = {};
    if (::stat(QFile::encodeName(fileName).constData(), &status) == 0)
        return true;
    if (!IsMissing(errno))
        ThrowFailure("read", fileName, errno);
    return false;
}

bool TFileUtils::ReadText(const QString &fileName, const QString &def, QString &text)
{
    TTextForm form;
    return ReadText(fileName, def, text, form);
}

bool TFileUtils::ReadText(const QString &fileName, const QString &def, QString &text,
                          TTextForm &form)
{
    QByteArray bytes;
    const bool found = TryRead(fileName, bytes);
    form = TTextForm();
    text = found ? TTextCoding::Decode(bytes, form) : def;
    return found;
}

void TFileUtils::WriteText(const QString &fileName, const QString &text, const TTextForm &form)
{
    WriteBinary(fileName, TTextCoding::Encode(text, form));
}

void TFileUtils::ReadBinary(const QString &fileName, QByteArray &bytes)
{
    if (!TryRead(fileName, bytes))
        ThrowFailure("read", fileName, ENOENT);
}

void TFileUtils::WriteBinary(const QString &fileName, const QByteArray &bytes, TAccess access)
{
    TReplacement(fileName, access).Write(bytes);
}

void TFileUtils::DeleteFolder(const QString &folder)
{
    // A slash behind a link's name would lead into what it points to.
    const QByteArray name = QFile::encodeName(QDir::cleanPath(folder));
    try {
        std::filesystem::remove_all(name.toStdString());
    } catch (const std::filesystem::filesystem_error &e) {
        ThrowFailure("remove", QFile::decodeName(e.path1().c_str()), e.code().value());
    }
}

TFileStamp TFileStamp::Of(const QString &fileName)
{
    TFileStamp stamp;
    struct stat status = {};
    if (::stat(QFile::encodeName(fileName).constData(), &status) != 0)
        return stamp;
    stamp.FExists = true;
    stamp.FSize = status.st_size;
    stamp.FModifiedNSecs = status.st_mtim.tv_sec * 1000000000LL + status.st_mtim.tv_nsec;
    stamp.FNode = status.st_ino;
    return stamp;
}

QString TFileStamp::Text() const
{
    return QString("%1 %2 %3 %4").arg(int(FExists)).arg(FSize).arg(FModifiedNSecs).arg(FNode);
}

TFileStamp TFileStamp::Parse(const QString &text)
{
    const QStringList numbers = text.split(' ');
    TFileStamp stamp;
    stamp.FExists = numbers.value(0) == u"1";
    stamp.FSize = numbers.value(1).toLongLong();
    stamp.FModifiedNSecs = numbers.value(2).toLongLong();
    stamp.FNode = numbers.value(3).toULongLong();
    return stamp;
}
