#pragma once

#include <QStyle>

class QPainter;
class QStyleOption;

/// The parts of the style that are drawn here instead of by Fusion. False: not one of them.
class TStyleDrawing
{
public:
    static bool DrawPrimitive(QStyle::PrimitiveElement element, const QStyleOption &option,
                              QPainter &painter, const QWidget *widget);
    static bool DrawControl(QStyle::ControlElement element, const QStyleOption &option,
                            QPainter &painter);
    /// What is put over a control that Fusion has drawn.
    static void FinishComplexControl(QStyle::ComplexControl control, const QStyleOption &option,
                                     QPainter &painter);
};
