#pragma once

#include <QToolBar>

/// A tool bar that can be reached without a mouse: the base class keeps the focus off its buttons,
/// which leaves actions without a menu or a shortcut to the mouse alone.
class TToolBar : public QToolBar
{
    Q_OBJECT
public:
    TToolBar(QWidget *parent, const QString &name,
             Qt::ToolButtonStyle style = Qt::ToolButtonTextBesideIcon);

protected:
    void actionEvent(QActionEvent *event) override;
};
