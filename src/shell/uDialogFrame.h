#pragma once

#include "shell/uBaseFrame.h"

/// The content of a modal dialog. It does its work in DoProcess when OK is pressed, so that a
/// failure keeps the dialog open with everything that was typed.
class TDialogFrame : public TBaseFrame
{
    Q_OBJECT
public:
    explicit TDialogFrame(QWidget *owner) : TBaseFrame(owner) {}

    QString GetTitle() const;
    QString GetOkButtonTitle() const;
    void Prepare() { DoPrepare(); }
    /// What it raises leaves the dialog open.
    void Process() { DoProcess(); }

Q_SIGNALS:
    /// The frame asks the window to press OK.
    void OnProcess();
    void OnEnableOkButton(bool enabled);

protected:
    virtual void DoGetTitle(QString &title) const { title.clear(); }
    virtual void DoGetOkButtonTitle(QString &title) const { title = "OK"; }
    virtual void DoPrepare() {}
    virtual void DoProcess() {}
};
