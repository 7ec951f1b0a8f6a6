#pragma once

#include "shell/uBaseFrame.h"

/// The contract of every page of a tab set. Process shows the model's current state: the one-time
/// load first if needed, nothing when the page is not stale.
class TPageFrame : public TBaseFrame
{
    Q_OBJECT
public:
    explicit TPageFrame(QWidget *owner);

    void Process();
    void RequestProcess() { FIsDrawn = false; }
    QString GetTitle() const { return DoGetTitle(); }
    void UpdateTitle() { Q_EMIT OnUpdateTitle(); }
    void UpdateId(const QString &id) { Q_EMIT OnUpdateId(id); }
    void Close() { Q_EMIT OnClose(); }
    /// Asked before the user closes the page or the window, also of a page that never loaded: saves
    /// what closing would lose. False keeps the page open.
    bool CloseQuery() { return DoCloseQuery(); }
    void Activate() { DoActivate(); }
    void Deactivate() { DoDeactivate(); }
    bool IsLoaded() const { return FIsLoaded; }
    bool IsDrawn() const { return FIsDrawn; }

Q_SIGNALS:
    void OnUpdateTitle();
    void OnUpdateId(const QString &Id);
    void OnClose();

protected:
    /// Text for the tab.
    virtual QString DoGetTitle() const { return {}; }
    /// One-time setup; what it raises leaves the page loaded.
    virtual void DoLoad() {}
    /// The reverse, ahead of destruction.
    virtual void DoUnload() {}
    virtual bool DoCloseQuery() { return true; }
    virtual void DoActivate() {}
    virtual void DoDeactivate() {}
    /// Fills the page from the model; what it raises leaves the page drawn.
    virtual void DoProcess() {}

    void DoDestroy() override;

private:
    bool FIsLoaded = false;
    bool FIsDrawn = false;
};
