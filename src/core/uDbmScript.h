#pragma once

#include "core/uDacMySqlConnection.h"
#include "core/uDbmSqlProcessor.h"

/// Runs a script on a connection, with no log and no results. The first failing statement ends it.
class TDbmScript
{
public:
    using TNotifyEvent = std::function<void(TDbmScript *Sender)>;
    using TProgressEvent = std::function<void(TDbmScript *Sender, double Percent)>;

    explicit TDbmScript(TDacMySqlConnection &connection); // not owned
    TDbmScript(const TDbmScript &) = delete;
    TDbmScript &operator=(const TDbmScript &) = delete;

    /// Raises EDacMySqlError for a failing statement, EException for an unreadable file.
    void ExecuteFromText(const QString &value, const QString &delimiter);
    void ExecuteFromFile(const QString &fileName, const QString &delimiter);

    void SetOnBeforeExecute(TNotifyEvent event) { FOnBeforeExecute = std::move(event); }
    void SetOnAfterExecute(TNotifyEvent event) { FOnAfterExecute = std::move(event); }
    void SetOnProgress(TProgressEvent event) { FOnProgress = std::move(event); }

private:
    void Run(const QString &delimiter, const std::function<void()> &action);

    TDacMySqlConnection &FConnection;
    TDbmSqlProcessor FSqlProcessor;
    TNotifyEvent FOnBeforeExecute;
    TNotifyEvent FOnAfterExecute;
    TProgressEvent FOnProgress;
};
