#pragma once

#include <QHash>
#include <QString>

struct TDbmErrorNameItem
{
    QString ErrorName;
    int ErrorCode = 0;
};

/// Symbolic names of error codes, such as ER_ACCESS_DENIED_ERROR.
class TDbmErrorNameList
{
public:
    /// Replaces the list by the file's `error` elements (attributes `code` and `name`). A code that
    /// occurs twice keeps its first name. Raises EException for an unreadable or damaged file.
    void LoadFromXml(const QString &xmlName);
    /// nullptr when the code is unknown. Valid until the next load.
    const TDbmErrorNameItem *Find(int errorCode) const;
    int Count() const { return static_cast<int>(FDict.size()); }

private:
    QHash<int, TDbmErrorNameItem> FDict;
};

/// The one list of names of the program.
class TDbmErrorCodeParser
{
public:
    /// Loads the list; to be called at program start, before there is a second thread.
    static void Initialize(const QString &xmlName);
    /// The name; empty when the code is unknown.
    static QString Parse(int errorCode);
};
