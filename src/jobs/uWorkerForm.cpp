#include "jobs/uWorkerForm.h"

#include "core/uDacMySqlError.h"
#include "core/uDbmErrorNames.h"
#include "shell/uFileDialogs.h"
#include "shell/uGuard.h"
#include "support/uException.h"
#include "support/uFileUtils.h"

#include <QClipboard>
#include <QFrame>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QShortcut>
#include <QVBoxLayout>

namespace {

// A job that logs without end must not take the memory with it.
constexpr int MaximumLogLines = 100000;

// Below what an eye takes for a delay.
constexpr int FlushMSecs = 40;

// Of one text. A statement with a row of 64 MiB is one line, which is laid out as a whole before
// anything of it is seen.
constexpr qsizetype MaximumShownChars = 512 * 1024;

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
    // One append for all lines of a moment: laid out one by one, a job's hundred thousand lines
    // would take longer than the job.
    FFlushTimer.setSingleShot(true);
    FFlushTimer.setInterval(FlushMSecs);
    connect(&FFlushTimer, &QTimer::timeout, this, &TWorkerForm::FlushLog);
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
    row->addWidget(MakeLogButtons());
    row->addStretch(1);
    butClose = new QPushButton("Close", panBottom);
    butClose->setObjectName("butClose");
    row->addWidget(butClose);
    column->addWidget(panBottom);
    connect(butClose, &QPushButton::clicked, this, &QDialog::reject);
}

QWidget *TWorkerForm::MakeLogButtons()
{
    auto *panBottomLeft = new QFrame(this);
    panBottomLeft->setObjectName("panBottomLeft");
    auto *row = new QHBoxLayout(panBottomLeft);
    row->setContentsMargins(0, 0, 0, 0);
    const auto button = [&](const char *name, const QString &caption, const QString &hint) {
        auto *made = new QPushButton(caption, panBottomLeft);
        made->setObjectName(name);
        made->setToolTip(hint);
        // Enter belongs to the one button that closes the window.
        made->setAutoDefault(false);
        row->addWidget(made);
        return made;
    };
    connect(button("butCopy", "Copy", "Copy the selected lines, or the whole log"),
            &QPushButton::clicked, this, &TWorkerForm::CopyLog);
    connect(button("butSave", "Save...", "Save the log as a text file"), &QPushButton::clicked,
            this, &TWorkerForm::SaveLog);
    editFind = new QLineEdit(panBottomLeft);
    editFind->setObjectName("editFind");
    editFind->setAccessibleName("Find in the log");
    editFind->setPlaceholderText("Find (Ctrl+F)");
    editFind->setClearButtonEnabled(true);
    row->addWidget(editFind);
    connect(editFind, &QLineEdit::returnPressed, this, &TWorkerForm::FindNext);
    connect(new QShortcut(QKeySequence::Find, this), &QShortcut::activated, editFind,
            [this] { editFind->setFocus(Qt::ShortcutFocusReason); });
    connect(new QShortcut(QKeySequence(Qt::Key_F3), this), &QShortcut::activated, this,
            &TWorkerForm::FindNext);
    return panBottomLeft;
}

void TWorkerForm::keyPressEvent(QKeyEvent *event)
{
    const bool enter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    // Enter in the search field searches; it must not press the button that ends the job.
    if (enter && editFind->hasFocus())
        event->accept();
    else
        QDialog::keyPressEvent(event);
}

void TWorkerForm::FindNext()
{
    const QString text = editFind->text();
    if (text.isEmpty() || memLog->find(text))
        return;
    // Nothing more below: the search goes on at the first line.
    const QTextCursor before = memLog->textCursor();
    memLog->moveCursor(QTextCursor::Start);
    if (!memLog->find(text))
        memLog->setTextCursor(before);
}

void TWorkerForm::CopyLog() const
{
    if (memLog->textCursor().hasSelection())
        memLog->copy();
    else
        QGuiApplication::clipboard()->setText(LogText());
}

QString TWorkerForm::LogText() const
{
    QString text = memLog->toPlainText();
    return FGap.isEmpty() ? text : text.replace(FGap, FHidden);
}

void TWorkerForm::SaveLog()
{
    TGuard::Run([this] {
        QString fileName;
        if (TFileDialogs::Save(this,
                               {.Title = "Save Log", .DefaultName = "log.txt", .Extension = "txt"},
                               fileName))
            TFileUtils::WriteText(fileName, LogText() + u'\n');
    });
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
    if (status == wsFinished)
        FlushLog();
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
    QStringList lines = {QString(), "---"};
    if (const auto *error = dynamic_cast<const EDacMySqlError *>(&e))
        lines << TDbmErrorCodeParser::Parse(error->ErrorCode()) << error->ErrorMessage() << "---"
              << Shown(error->CommandText());
    else
        lines << ExceptionMessage(e);
    AppendLog(lines.join(u'\n'));
}

QString TWorkerForm::Shown(const QString &text)
{
    if (text.size() <= MaximumShownChars)
        return text;
    constexpr qsizetype End = MaximumShownChars / 2;
    FHidden = text.sliced(End, text.size() - 2 * End);
    FGap = TFormat::Format(" [... %n characters, which Copy and Save give as well ...] ",
                           {FHidden.size()});
    return text.first(End) + FGap + text.last(End);
}

void TWorkerForm::AppendLog(const QString &text)
{
    FPending += text;
    if (FPending.size() > MaximumLogLines)
        FPending.removeFirst();
    if (!FFlushTimer.isActive())
        FFlushTimer.start();
}

void TWorkerForm::FlushLog()
{
    if (FPending.isEmpty())
        return;
    // Follows the end only while the end is in view: who has scrolled up is reading.
    memLog->appendPlainText(FPending.join(u'\n'));
    FPending.clear();
}
