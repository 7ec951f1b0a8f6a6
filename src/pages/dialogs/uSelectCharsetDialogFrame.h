#pragma once

#include "shell/uDialogFrame.h"

class TDbmManager;
class TGridView;

/// Lets the user choose one of the server's character sets; the session's is focused at the start.
class TSelectCharsetDialogFrame : public TDialogFrame
{
    Q_OBJECT
public:
    explicit TSelectCharsetDialogFrame(QWidget *owner) : TDialogFrame(owner) {}

    void Initialize(TDbmManager &manager);
    QString GetResultName() const; // empty without a focused row

protected:
    void DoCreate() override;
    void DoGetTitle(QString &title) const override { title = "Select Charset"; }
    void DoGetOkButtonTitle(QString &title) const override { title = "Select"; }
    void DoPrepare() override;

private:
    TGridView *lvCharsets = nullptr;
};
