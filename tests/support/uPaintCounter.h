#pragma once

#include <QEvent>
#include <QWidget>

/// Counts how often a widget is painted from now on.
class TPaintCounter : public QObject
{
public:
    explicit TPaintCounter(QWidget *widget) { widget->installEventFilter(this); }
    int Count = 0;

protected:
    bool eventFilter(QObject *, QEvent *event) override
    {
        Count += event->type() == QEvent::Paint;
        return false;
    }
};
