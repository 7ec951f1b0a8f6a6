#pragma once

#include "jobs/uWorker.h"

#include <QDialog>

class QPlainTextEdit;
class QPushButton;

/// The modal window of a job: its log lines and a button. Closing it by any means asks the job to
/// stop and cuts its events off.
class TWorkerForm : public QDialog
{
    Q_OBJECT
public:
    /// Starts the job and returns when the window has closed. Gives whether the job's completion
    /// closed it. The worker stays the caller's.
    static bool ShowWorker(QWidget *owner, TWorker &worker, const QString &title);
    static bool ShowWorker(QWidget *owner, TWorker &worker, bool closeOnComplete,
                           const QString &title);

protected:
    void showEvent(QShowEvent *event) override;
    void done(int result) override;

private:
    TWorkerForm(QWidget *owner, TWorker &worker, bool closeOnComplete, const QString &title);
    void BuildControls();
    void AttachWorker();
    void WorkerStatusChanged();
    void WorkerComplete(double seconds);
    void WorkerException(const std::exception &e);
    void AppendLog(const QString &text);

    TWorker &FWorker; // not owned
    const QString FWorkerTitle;
    const bool FCloseOnComplete;
    bool FShown = false;
    QPlainTextEdit *memLog = nullptr;
    QPushButton *butClose = nullptr;
};
