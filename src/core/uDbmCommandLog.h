#pragma once

#include "core/uDacMySqlError.h"
#include "support/uDateTime.h"

#include <deque>
#include <functional>
#include <memory>

/// One statement that ran.
class TDbmCommandLogItem
{
public:
    /// `e` is nullptr for a statement that went well. Keeps the first `maxLogItemLength` characters
    /// of the text, made one line.
    TDbmCommandLogItem(const QString &query, const EDacMySqlError *e, double execTimeSec,
                       int maxLogItemLength);

    const QString &Query() const { return FQuery; }
    TDateTime Date() const { return FDate; } // when it had run
    double ExecTimeSec() const { return FExecTimeSec; }
    bool IsError() const { return FIsError; }
    int ErrorCode() const { return FErrorCode; }
    const QString &ErrorName() const { return FErrorName; }
    const QString &ErrorMessage() const { return FErrorMessage; }
    const QString &Comment() const { return FComment; } // the log page's
    void SetComment(const QString &value) { FComment = value; }

    /// Time of day in the locale's format, with seconds.
    QString GetTimeDisplayString() const;
    /// Milliseconds with thousands separators and two decimals.
    QString GetDurationMSDisplayString() const;
    /// "OK" or "1064 (ER_PARSE_ERROR)".
    QString GetStatusDisplayString() const;

private:
    QString FQuery;
    TDateTime FDate;
    double FExecTimeSec;
    bool FIsError = false;
    int FErrorCode = 0;
    QString FErrorName;
    QString FErrorMessage;
    QString FComment;
};

/// The record of what ran, oldest first.
class TDbmCommandLog
{
public:
    using TItemAction = std::function<void(TDbmCommandLogItem &item)>;

    /// `maxLogItemCount` 0 is no limit. A full list settles at one item more than the limit.
    TDbmCommandLog(int maxLogItemLength, int maxLogItemCount);

    /// The new item; owned by the log.
    TDbmCommandLogItem &Add(const QString &query, const EDacMySqlError *e, double execTimeSec);
    void Clear() { FList.clear(); }
    void ForEach(const TItemAction &action) const;
    int Count() const { return static_cast<int>(FList.size()); }

private:
    std::deque<std::unique_ptr<TDbmCommandLogItem>> FList;
    int FMaxLogItemLength;
    int FMaxLogItemCount;
};
