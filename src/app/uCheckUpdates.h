#pragma once

#include <QByteArray>
#include <QString>
#include <functional>
#include <memory>

struct TCheckUpdatesResult
{
    bool Status = false; // a newer version exists
    QString Version;     // for the user
    QString URL;         // where to get it
};

/// Asks once whether a newer version exists. Main thread only; the request has a thread of its own.
class TCheckUpdates
{
public:
    using TCheckUpdatesAfterExecuteEvent =
        std::function<void(TCheckUpdates *Sender, const TCheckUpdatesResult &Result)>;

    /// `version` is the running one. An empty address means that nothing is asked.
    TCheckUpdates(const QString &version, const QString &url);
    ~TCheckUpdates();
    TCheckUpdates(const TCheckUpdates &) = delete;
    TCheckUpdates &operator=(const TCheckUpdates &) = delete;

    /// The event fires on the main thread, also when the request failed; not after this object is
    /// gone.
    void SetOnAfterExecute(TCheckUpdatesAfterExecuteEvent event);
    void Execute();

    /// What a document tells, against the running version. Anything that is no such document is
    /// no update.
    static TCheckUpdatesResult Read(const QByteArray &document, const QString &version);

private:
    struct TState;
    std::shared_ptr<TState> FState; // shared with the thread that asks
};
