#include "jobs/uWorkerForm.h"

#include "core/uDacMySqlError.h"
#include "core/uDbmErrorNames.h"
#include "support/uException.h"

#include <QFrame>
#include <QHBoxLayout>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QVBoxLayout>

namespace {

// A job that logs without end must not take the memory with it.
constexpr int MaximumLogLines = 200000;

QStringList ExceptionLines(const std::exception &e)
{
    QStringList lines = {QString(), "---"};
    if (const auto *error = dynamic_cast<const EDacMySqlError *>(&e))
        lines << TDbmErrorCodeParser::Parse(error->ErrorCode()) << error->ErrorMessage() << "---"
              << error->CommandText();
    else
        lines << ExceptionMessage(e);
    return lines;
}

} // namespace

bool TWorkerForm::ShowWorker(QWidget *owner, TWorker &worker, const QString &title)
{
    return ShowWorker(owner, worker, false, title);
}

bool TWorkerForm::ShowWorker(QWidget *owner, TWorker &worker, bool closeOnComplete,
                             const QString &title)
{
    TWorkerForm form(owner, worker, closeOnComplete, title);
    return form.exec() == QDialog::Accepted;
}

TWorkerForm::TWorkerForm(QWidget *owner, TWorker &worker, bool closeOnComplete,
                         const QString &title)
    : QDialog(owner), FWorker(worker), FWorkerTitle(title), FCloseOnComplete(closeOnComplete)
{
    setObjectName("frmWorker");
    setWindowTitle("Working...");
    setModal(true);
    BuildControls();
    const QFontMetrics metrics(font());
    resize(metrics.averageCharWidth() * 80, metrics.height() * 20);
}

void TWorkerForm::BuildControls()
{
    auto *column = new QVBoxLayout(this);
    memLog = new QPlainTextEdit(this);
    memLog->setObjectName("memLog");
    memLog->setAccessibleName("Log");
    memLog->setReadOnly(true);
    memLog->setLineWrapMode(QPlainTextEdit::NoWrap);
    memLog->setMaximumBlockCount(MaximumLogLines);
    // Read-only text is selected and copied by the keyboard too.
    memLog->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    column->addWidget(memLog, 1);
    auto *panBottom = new QFrame(this);
    panBottom->setObjectName("panBottom");
    auto *row = new QHBoxLayout(panBottom);
    row->setContentsMargins(0, 0, 0, 0);
    row->addStretch(1);
    butClose = new QPushButton("Close", panBottom);
    butClose->setObjectName("butClose");
    row->addWidget(butClose);
    column->addWidget(panBottom);
    connect(butClose, &QPushButton::clicked, this, &QDialog::reject);
}

void TWorkerForm::showEvent(QShowEvent *event)
{
    QDialog::showEvent(event);
    if (FShown)
        return;
    FShown = true;
    AttachWorker();
    FWorker.Start();
    butClose->setFocus();
}

void TWorkerForm::AttachWorker()
{
    TWorkerEvents events;
    events.OnStatusChanged = [this](TWorker *) { WorkerStatusChanged(); };
    events.OnLog = [this](TWorker *, const QString &value, TWorkerLogType) { AppendLog(value); };
    events.OnComplete = [this](TWorker *, double seconds) { WorkerComplete(seconds); };
    events.OnException = [this](TWorker *, const std::exception &e) { WorkerException(e); };
    FWorker.SetEvents(std::move(events));
}

void TWorkerForm::done(int result)
{
    FWorker.Stop();
    FWorker.ClearEvents();
    QDialog::done(result);
}

void TWorkerForm::WorkerStatusChanged()
{
    const TWorkerStatus status = FWorker.Status();
    setWindowTitle(FWorkerTitle + (status == wsStarted    ? " - Running..."
                                   : status == wsFinished ? " - Finished"
                                                          : ""));
    butClose->setText(status == wsStarted ? "Cancel" : "Close");
}

void TWorkerForm::WorkerComplete(double seconds)
{
    if (FCloseOnComplete)
        accept();
    else
        AppendLog("\n---\n" + TFormat::Format("Task completed (%.2f seconds).", {seconds}));
}

void TWorkerForm::WorkerException(const std::exception &e)
{
    AppendLog(ExceptionLines(e).join(u'\n'));
}

void TWorkerForm::AppendLog(const QString &text)
{
    // Follows the end only while the end is in view: who has scrolled up is reading.
    memLog->appendPlainText(text);
}
