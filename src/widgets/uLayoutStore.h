#pragma once

#include <QByteArray>
#include <QHash>
#include <QString>
#include <QStringList>
#include <functional>
#include <memory>

class QHeaderView;
class QSplitter;
class QWidget;

/// Where sizes of windows are kept. Write comes at the end of each change by the user; a backend
/// over a file keeps it in memory until the file is written anyway.
class TLayoutBackend
{
public:
    virtual ~TLayoutBackend() = default;
    /// Empty when nothing was written under this key.
    virtual QByteArray Read(const QString &key) = 0;
    /// The value is short ASCII text that can stand in an XML attribute.
    virtual void Write(const QString &key, const QByteArray &value) = 0;
};

/// Remembers what the user did to the sizes of windows, splitters and columns. Until a backend is
/// installed everything is remembered as long as the program runs.
class TLayoutStore
{
public:
    static void Install(std::unique_ptr<TLayoutBackend> backend);
    static QByteArray Read(const QString &key);
    static void Write(const QString &key, const QByteArray &value);

    /// Each of these restores what is stored and stores what the user changes from then on. Call it
    /// when the splitter has its parts and the window its first size. A header without columns is
    /// restored when they come.
    static void Remember(QSplitter *splitter, const QString &key);
    static void Remember(QHeaderView *header, const QString &key);
    /// Position, size and whether it is maximised; stored when the window goes.
    static void Remember(QWidget *window, const QString &key);

    /// For a header whose columns are those of some result: their widths by name, and a call behind
    /// each change by the user. What is stored says nothing of columns that it does not name.
    static QHash<QString, int> ReadWidths(const QHeaderView &header, const QString &key);
    static void WriteWidths(const QHeaderView &header, const QString &key,
                            const QStringList &names);
    static void WhenChanged(QHeaderView *header, std::function<void()> changed);

    /// True when there is a stored layout that fits the header's columns.
    static bool HasLayout(const QHeaderView &header, const QString &key);
};
