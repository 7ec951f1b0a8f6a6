#pragma once

#include "jobs/uWorker.h"

#include <QDialog>
#include <QTimer>

class QLineEdit;
class QPlainTextEdit;
class QPushButton;

/// The modal window of a job: its log lines, which can be searched, copied and saved, and a button.
/// Closing it by any means asks the job to stop and cuts its events off. The last 100,000 lines are
/// kept.
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
    void keyPressEvent(QKeyEvent *event) override;

private:
    TWorkerForm(QWidget *owner, TWorker &worker, bool closeOnComplete, const QString &title);
    void BuildControls();
    QWidget *MakeLogButtons();
    void AttachWorker();
    void WorkerStatusChanged();
    void WorkerComplete(double seconds);
    void WorkerException(const std::exception &e);
    void AppendLog(const QString &text);
    void FlushLog();
    void FindNext();
    void CopyLog() const;
    /// The whole log, also where a part of it is not shown.
    QString LogText() const;
    QString Shown(const QString &text);
    void SaveLog();

    TWorker &FWorker; // not owned
    const QString FWorkerTitle;
    const bool FCloseOnComplete;
    bool FShown = false;
    QStringList FPending; // lines on their way into memLog
    QString FGap;         // stands in memLog for FHidden; empty when all is shown
    QString FHidden;
    QTimer FFlushTimer;
    QPlainTextEdit *memLog = nullptr;
    QLineEdit *editFind = nullptr;
    QPushButton *butClose = nullptr;
};
