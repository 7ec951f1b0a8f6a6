#pragma once

#include "shell/uBaseFrame.h"

#include <functional>

class TSqlEditorFrame;

/// The panel in which the user types the text of a WHERE condition.
class TDataFilterFrame : public TBaseFrame
{
    Q_OBJECT
public:
    explicit TDataFilterFrame(QWidget *owner) : TBaseFrame(owner) {}

    QString Text() const; // trimmed
    void SetText(const QString &text);
    void SetOnApply(std::function<void()> event) { FOnApply = std::move(event); }

protected:
    void DoCreate() override;

private:
    std::function<void()> FOnApply;
    TSqlEditorFrame *FEditorFrame = nullptr; // child widget
};
