#pragma once

#include "shell/uBaseFrame.h"

class TSqlEditorFrame;

/// A statement to look at.
class TSqlViewerFrame : public TBaseFrame
{
    Q_OBJECT
public:
    explicit TSqlViewerFrame(QWidget *owner) : TBaseFrame(owner) {}

    void SetContent(const QString &text);

protected:
    void DoCreate() override;

private:
    TSqlEditorFrame *FEditorFrame = nullptr; // child widget
};
