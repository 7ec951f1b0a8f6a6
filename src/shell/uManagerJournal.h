#pragma once

#include <QString>
#include <QTimer>

class TAppManagerPageUtils;
class TAppManagerSessionUtils;
class TAppSession;
class TPageManagerFrame;

/// Keeps the journal of a workspace's session up to date while its pages are worked in, and the
/// texts of pages that are closed. Refers to the workspace's parts, which outlive it.
class TManagerJournal
{
public:
    TManagerJournal(TAppSession *session, TAppManagerSessionUtils *sessionUtils,
                    TPageManagerFrame *pageManager, TAppManagerPageUtils *pageUtils); // not owned

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
    TAppManagerSessionUtils *FSessionUtils;
    TPageManagerFrame *FPageManagerFrame;
    TAppManagerPageUtils *FPageUtils;
    QTimer FTimer;
    QString FWrittenState;
    bool FFailed = false;
    bool FWorkspaceClosing = false;
};
