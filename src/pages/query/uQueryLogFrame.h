#pragma once

#include "shell/uBaseFrame.h"

class QLabel;
class TDbmCommandLog;
class TGridView;

/// The statements of the last run, one row each, with the focused one's error below.
class TQueryLogFrame : public TBaseFrame
{
    Q_OBJECT
public:
    explicit TQueryLogFrame(QWidget *owner);

    /// `execTime` is the run's total in seconds.
    void Initialize(const TDbmCommandLog *log, double execTime);
    void InitializeNull() { Initialize(nullptr, 0); }
    void Process();

protected:
    void DoCreate() override;

private:
    void FocusChanged();

    const TDbmCommandLog *FLog = nullptr; // not owned
    double FExecTime = 0;
    TGridView *lvLog = nullptr;
    QLabel *labError = nullptr;
};
