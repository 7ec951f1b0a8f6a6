#pragma once

#include <QString>
#include <QTimer>
#include <functional>

class TAppManagerPageUtils;
class TAppSession;
class TPageManagerFrame;

/// Keeps the journal of a workspace's session up to date while its pages are worked in, and the
/// texts of pages that are closed. Refers to the workspace's parts, which outlive it.
class TManagerJournal
{
public:
    /// `writeSession` writes the workspace's state into the session. The others are not owned.
    TManagerJournal(TAppSession *session, TPageManagerFrame *pageManager,
                    TAppManagerPageUtils *pageUtils, std::function<void()> writeSession);

    /// From now on texts that pages drop are kept and the journal follows every change.
    void Start();
    void Stop() { FTimer.stop(); }
    /// Brings the journal up to date with the pages. Raises EException when it cannot be written;
    /// the next call tries again.
    void Write();
    /// The pages go because the workspace does: its session holds their texts.
    void SetWorkspaceClosing(bool value) { FWorkspaceClosing = value; }

    bool HasClosedQueries() const;
    /// Opens the text that was closed last in a page of its own.
    void ReopenClosedQuery();

private:
    void Tick();
    void KeepText(const QString &text);
    QString State() const;

    TAppSession *FSession;
    TPageManagerFrame *FPageManagerFrame;
    TAppManagerPageUtils *FPageUtils;
    const std::function<void()> FWriteSession;
    QTimer FTimer;
    QString FWrittenState;
    bool FFailed = false;
    bool FWorkspaceClosing = false;
};
