#include "shell/uBaseFrame.h"

#include <QVBoxLayout>

TBaseFrame::TBaseFrame(QWidget *owner) : QWidget(owner) {}

TBaseFrame::~TBaseFrame() = default;

void TBaseFrame::Created()
{
    // Frames of one kind stand beside each other in one window; their names must not collide.
    if (objectName().isEmpty())
        setObjectName(QString("%1_%2").arg(metaObject()->className()).arg(quintptr(this), 0, 16));
    DoCreate();
}

void TBaseFrame::PrepareDestroy()
{
    if (FDestroyed)
        return;
    FDestroyed = true;
    DoDestroy();
    for (TBaseFrame *child : findChildren<TBaseFrame *>())
        child->PrepareDestroy();
}

void TBaseFrame::Discard(TBaseFrame *frame)
{
    if (!frame)
        return;
    frame->PrepareDestroy();
    frame->hide();
    frame->deleteLater();
}

void TBaseFrame::MoveTo(QWidget *parent)
{
    QLayout *layout = parent->layout();
    if (!layout) {
        layout = new QVBoxLayout(parent);
        layout->setContentsMargins(0, 0, 0, 0);
        layout->setSpacing(0);
    }
    layout->addWidget(this);
    show();
    DoMoved();
    ApplyStyle();
}

void TBaseFrame::Drop()
{
    if (parentWidget() && parentWidget()->layout())
        parentWidget()->layout()->removeWidget(this);
    setParent(nullptr);
    DoDropped();
}

void TBaseFrame::ApplyStyle()
{
    DoApplyStyle();
    for (TBaseFrame *child : findChildren<TBaseFrame *>())
        child->DoApplyStyle();
}
