#pragma once

#include "widgets/uStylePalette.h"

#include <QFont>
#include <QProxyStyle>

class QApplication;

/// The look of all windows: Fusion with flat bars, tabs and buttons, sizes in units of the font,
/// and the palette of the system's theme.
class TAppStyle : public QProxyStyle
{
    Q_OBJECT

public:
    TAppStyle();

    /// Gives the application this style and the palette of the system's theme, and follows when
    /// the system changes it.
    static void Apply(QApplication &app);
    /// One theme from now on, whatever the system has.
    static void SetTheme(TAppTheme theme);
    /// Of the palette that the application has now.
    static TAppTheme Theme();

    /// Height of the application's font in pixels; every size is a multiple of it.
    static int Em();
    static int Px(double ems);
    /// Fixed pitch, as large as the application's font.
    static QFont MonospaceFont();

    int pixelMetric(PixelMetric metric, const QStyleOption *option,
                    const QWidget *widget) const override;
    int styleHint(StyleHint hint, const QStyleOption *option, const QWidget *widget,
                  QStyleHintReturn *result) const override;
    void drawPrimitive(PrimitiveElement element, const QStyleOption *option, QPainter *painter,
                       const QWidget *widget) const override;
    void drawControl(ControlElement element, const QStyleOption *option, QPainter *painter,
                     const QWidget *widget) const override;
    void drawComplexControl(ComplexControl control, const QStyleOptionComplex *option,
                            QPainter *painter, const QWidget *widget) const override;

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    static void ApplyTheme(TAppTheme theme);
    void FollowSystem();

    bool FFollows = true;
};
