#pragma once

#include <QDomDocument>
#include <QString>
#include <QStringList>
#include <concepts>

/// A file of named groups and named properties. A group path is the names joined by "."; the empty
/// path is the root. Reads and writes go to memory; Close saves. The file is readable by its owner
/// only, since profiles hold passwords and sessions the text of statements.
///
/// A file that was there and could not be read is not written again by this process, through
/// whichever object, so that nothing in it is lost.
class TConfig
{
public:
    TConfig();
    TConfig(const TConfig &) = delete;
    TConfig &operator=(const TConfig &) = delete;

    /// Starts an empty document, even if the file exists.
    void New(const QString &fileName);
    /// Loads the file, or starts an empty document when it is missing. Raises EException with the
    /// file's path when it cannot be read; the document is empty then and Close does not save it.
    void Open(const QString &fileName);
    /// Saves if there is a file name, and releases the document. Raises EException when it cannot
    /// be saved; the document stays then, so that Close can be called again.
    void Close();
    /// Writes a copy beside the file that Close saves; the document stays as it is.
    void SaveCopy(const QString &fileName) const;
    /// Takes over the content of another one, but not the name of its file.
    void Copy(const TConfig &other);
    /// What Close would write.
    QByteArray ToBytes() const;
    const QString &FileName() const { return FFileName; }
    /// Whether the file could not be read in this run.
    static bool IsUnreadable(const QString &fileName);
    /// For a file whose content turned out to be of no use.
    static void MarkUnreadable(const QString &fileName);
    /// For a file that was put aside: its place is free again.
    static void ForgetUnreadable(const QString &fileName);

    /// The property `name` of the group, or the group itself when `name` is empty. A null element
    /// when it is missing and `create` is not set.
    void GetNode(const QString &groupPath, const QString &name, QDomElement &node,
                 bool create = false) const;

    /// The default when the property is missing or is no value of the kind. `hex` texts are stored
    /// as hexadecimal digits of UTF-8 behind a byte order mark; without the mark they are read in
    /// the legacy code page.
    QString GetValue(const QString &groupPath, const QString &name, const QString &def,
                     bool hex = false) const;
    int GetValue(const QString &groupPath, const QString &name, int def) const;
    double GetValue(const QString &groupPath, const QString &name, double def) const;
    // Only bool itself: a text literal would choose it before QString.
    template <std::same_as<bool> T>
    T GetValue(const QString &groupPath, const QString &name, T def) const
    {
        return GetBoolean(groupPath, name, def);
    }

    void SetValue(const QString &groupPath, const QString &name, const QString &value,
                  bool hex = false);
    void SetValue(const QString &groupPath, const QString &name, int value);
    void SetValue(const QString &groupPath, const QString &name, double value);
    template <std::same_as<bool> T>
    void SetValue(const QString &groupPath, const QString &name, T value)
    {
        SetBoolean(groupPath, name, value);
    }

    /// Deletes all children of the group, if there is one.
    void ClearNode(const QString &groupPath);
    /// Groups and properties of the group; 0 if it is missing.
    int GetChildCount(const QString &groupPath) const;
    /// Names of the groups right below the group, in the order of the file.
    QStringList GetGroupNames(const QString &groupPath) const;

private:
    QDomElement Node(const QString &groupPath, const QString &name = QString()) const;
    QDomElement NewNode(const QString &groupPath, const QString &name);
    bool GetBoolean(const QString &groupPath, const QString &name, bool def) const;
    void SetBoolean(const QString &groupPath, const QString &name, bool value);
    void StartDocument();

    QDomDocument Fxml;
    QString FFileName;
};
