#pragma once

#include "support/uTextCoding.h"

#include <QByteArray>
#include <QString>

/// Whole-file reads and writes. Every write goes to a temporary name beside the target, is flushed
/// to the disk and renamed, so that a crash or a full disk leaves the old file as it was. Failures
/// raise EException with the path and the system's reason.
class TFileUtils
{
public:
    enum class TAccess { faDefault, faOwnerOnly };

    /// Whether there is anything of that name. Raises when the system does not let us know.
    static bool Exists(const QString &fileName);

    /// The file's text, or `def` when the file is missing. Gives false when it is missing.
    static bool ReadText(const QString &fileName, const QString &def, QString &text);
    /// The same with the form the text had on disk, so that it can be written back alike; the form
    /// of a new file when it is missing.
    static bool ReadText(const QString &fileName, const QString &def, QString &text,
                         TTextForm &form);
    /// Encodes by `form`. Raises when a character does not exist in the form's encoding; the file
    /// is untouched then.
    static void WriteText(const QString &fileName, const QString &text,
                          const TTextForm &form = TTextForm());
    static void ReadBinary(const QString &fileName, QByteArray &bytes);
    /// The target keeps its permissions and owner, and a symbolic link keeps pointing to it; with
    /// `faOwnerOnly` nobody else can read the new content at any time. A device or a pipe is
    /// written to in place.
    static void WriteBinary(const QString &fileName, const QByteArray &bytes,
                            TAccess access = TAccess::faDefault);
    /// Removes the folder with its content. What symbolic links point to is not touched.
    static void DeleteFolder(const QString &folder);
};

/// What a file looked like when it was read or written: tells whether it was changed by somebody
/// else since.
class TFileStamp
{
public:
    TFileStamp() = default; // a missing file
    static TFileStamp Of(const QString &fileName);
    /// For another run of the program.
    QString Text() const;
    static TFileStamp Parse(const QString &text);
    bool operator==(const TFileStamp &) const = default;

private:
    bool FExists = false;
    qint64 FSize = 0;
    qint64 FModifiedNSecs = 0;
    quint64 FNode = 0; // replaced by a rename, the file is another node
};
