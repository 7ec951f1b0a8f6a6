#pragma once

#include "support/uFileUtils.h"

#include <QString>

/// The file behind an editor: read once, written back in the form it came with.
class TTextDocumentFile
{
public:
    const QString &FileName() const { return FFileName; } // empty without a file
    /// The text; a missing file is an empty text.
    QString Load(const QString &fileName);
    /// Whether the text could not be decoded: the editor must be read-only then.
    bool IsUndecodable() const { return FForm.Encoding == teUndecodable; }
    /// Whether somebody else changed the file since it was read or written here.
    bool IsChangedOnDisk() const;
    /// Of the file as it was read or written here; the text of a TFileStamp.
    QString Stamp() const { return FStamp.Text(); }
    void SetStamp(const QString &text) { FStamp = TFileStamp::Parse(text); }
    /// Raises EException with the path and the reason; the file is as it was then.
    void Save(const QString &text);
    void SaveAs(const QString &fileName, const QString &text);

private:
    QString FFileName;
    TTextForm FForm; // of a new file: UTF-8 with mark
    TFileStamp FStamp;
};
