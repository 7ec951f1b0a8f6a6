#include "widgets/uToolBar.h"

#include <QActionEvent>
#include <QToolButton>

TToolBar::TToolBar(QWidget *parent, const QString &name, Qt::ToolButtonStyle style)
    : QToolBar(parent)
{
    setObjectName(name);
    setToolButtonStyle(style);
}

void TToolBar::actionEvent(QActionEvent *event)
{
    QToolBar::actionEvent(event);
    if (event->type() != QEvent::ActionAdded)
        return;
    if (auto *button = qobject_cast<QToolButton *>(widgetForAction(event->action())))
        button->setFocusPolicy(Qt::TabFocus);
}
