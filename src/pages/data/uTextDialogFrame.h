#pragma once

#include "shell/uDialogFrame.h"

class TEditorFrame;

/// A long text in an editor.
class TTextDialogFrame : public TDialogFrame
{
    Q_OBJECT
public:
    explicit TTextDialogFrame(QWidget *owner) : TDialogFrame(owner) {}

    void SetParams(const QString &title, const QString &text);
    QString GetResultText() const;

protected:
    void DoCreate() override;
    void DoGetTitle(QString &title) const override { title = FTitle; }

private:
    QString FTitle;
    TEditorFrame *FEditorFrame = nullptr; // child widget
};
