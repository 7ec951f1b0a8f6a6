#pragma once

#include "app/uConfigChanges.h"

#include <QTimer>
#include <functional>

class TAppManagerPageUtils;
class TAppSession;
class TPageManagerFrame;

/// Keeps the journal of a workspace's session up to date while its pages are worked in, and opens
/// the texts of pages that were closed again. Refers to the workspace's parts, which outlive it.
class TManagerJournal
{
public:
    /// `takeSession` writes the workspace's state into the session, save that of the pages, which
    /// it gives; `panelState` is another text after each change of the panels that the session
    /// knows of. The others are not owned.
    TManagerJournal(TAppSession *session, TPageManagerFrame *pageManager,
                    TAppManagerPageUtils *pageUtils, std::function<TConfigChanges()> takeSession,
                    std::function<QString()> panelState);

    /// From now on the journal follows every change.
    void Start();
    void Stop() { FTimer.stop(); }
    /// Brings the journal up to date with the pages, and is back when it is on the disk. Raises
    /// EException when it cannot be written; the next call tries again.
    void Write();
    bool HasClosedQueries() const;
    /// Opens the text that was closed last in a page of its own.
    void ReopenClosedQuery();

private:
    void Tick();
    void Start(const QString &state);
    QString State() const;

    TAppSession *FSession;
    TPageManagerFrame *FPageManagerFrame;
    TAppManagerPageUtils *FPageUtils;
    const std::function<TConfigChanges()> FTakeSession;
    const std::function<QString()> FPanelState;
    QTimer FTimer;
    QString FWrittenState;
    QString FStartedState; // of the write that is under way
    bool FFailed = false;
};
