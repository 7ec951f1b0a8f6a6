#pragma once

#include <QString>
#include <QStringList>

/// Texts of one profile's closed query pages, each a file of its own that any program can read:
/// what a close, a failed save or another workspace would otherwise have dropped.
class TAppRecovery
{
public:
    /// At most this many are kept; the oldest go first.
    static constexpr int MaxCount = 1000;

    void SetParams(const QString &folder, const QString &sessionId);
    /// Raises EException when it cannot be written: then the text must not be dropped. A text of
    /// nothing but blanks, or the same as the newest, is not stored again.
    void Store(const QString &text);
    bool IsEmpty() const { return FileNames().isEmpty(); }
    /// Full names, newest first.
    QStringList FileNames() const;
    /// False when there is none; a file that is unreadable raises EException.
    bool TryGetNewest(QString &text, QString &fileName) const;
    /// For a text that is open and journalled again.
    void Remove(const QString &fileName);

private:
    bool IsNewest(const QString &text) const;

    QString FFolder;
};
