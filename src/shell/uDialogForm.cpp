#include "shell/uDialogForm.h"

#include "shell/uGuard.h"

#include <QApplication>
#include <QFrame>
#include <QHBoxLayout>
#include <QPushButton>
#include <QScreen>
#include <QToolBar>
#include <QVBoxLayout>
#include <memory>

bool TDialogForm::Run(QWidget *owner, const TFactory &factory, const TResultAction &takeResult)
{
    if (!owner)
        owner = QApplication::activeWindow();
    const std::unique_ptr<TDialogForm> form(new TDialogForm(owner));
    form->SetFrame(factory(form.get()));
    if (form->exec() != QDialog::Accepted)
        return false;
    if (takeResult)
        takeResult(*form->FDialogFrame);
    return true;
}

TDialogForm::TDialogForm(QWidget *owner) : QDialog(owner)
{
    setObjectName("frmDialog");
    setModal(true);
    auto *column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);

    panBottom = new QFrame(this);
    panBottom->setObjectName("panBottom");
    auto *row = new QHBoxLayout(panBottom);
    row->addStretch(1);
    butOK = new QPushButton(panBottom);
    butOK->setObjectName("butOK");
    butOK->setDefault(true);
    butCancel = new QPushButton("Cancel", panBottom);
    butCancel->setObjectName("butCancel");
    butCancel->setAutoDefault(false);
    row->addWidget(butOK);
    row->addWidget(butCancel);
    column->addWidget(panBottom);

    connect(butOK, &QPushButton::clicked, this, &TDialogForm::ProcessAndAccept);
    connect(butCancel, &QPushButton::clicked, this, &QDialog::reject);
}

TDialogForm::~TDialogForm()
{
    if (FDialogFrame)
        FDialogFrame->PrepareDestroy();
}

void TDialogForm::SetFrame(TDialogFrame *frame)
{
    FDialogFrame = frame;
    const QSize wish = frame->size(); // docking changes it
    setWindowTitle(frame->GetTitle());
    butOK->setText(frame->GetOkButtonTitle());
    connect(frame, &TDialogFrame::OnProcess, this, &TDialogForm::ProcessAndAccept);
    connect(frame, &TDialogFrame::OnEnableOkButton, butOK, &QPushButton::setEnabled);
    static_cast<QVBoxLayout *>(layout())->insertWidget(0, frame, 1);
    frame->show();
    frame->ApplyStyle();
    frame->Prepare();
    const QSize wanted =
        wish.expandedTo(frame->sizeHint()) + QSize(0, panBottom->sizeHint().height());
    // The frame's wish counts as far as the screen has room.
    setFixedSize(wanted.boundedTo(screen()->availableSize() * 9 / 10));
}

// A failure leaves the window open with its input, and is shown.
void TDialogForm::ProcessAndAccept()
{
    if (TGuard::Run([this] { FDialogFrame->Process(); }))
        accept();
}

void TDialogForm::showEvent(QShowEvent *event)
{
    QDialog::showEvent(event);
    if (FShown)
        return;
    FShown = true;
    FocusFirstControl();
}

void TDialogForm::FocusFirstControl()
{
    // A tool bar above the content is reached by Tab; typing starts in the content.
    QWidget *first = nullptr;
    for (QWidget *next = FDialogFrame->nextInFocusChain(); next != FDialogFrame && !first;
         next = next->nextInFocusChain())
        if (FDialogFrame->isAncestorOf(next) && next->isVisible() && next->isEnabled() &&
            (next->focusPolicy() & Qt::TabFocus) && !qobject_cast<QToolBar *>(next->parent()))
            first = next;
    if (first)
        first->setFocus(Qt::TabFocusReason);
}
