#include "widgets/uStyle.h"

#include "widgets/uStyleDrawing.h"
#include "widgets/uStyleSystem.h"

#include <QApplication>
#include <QEvent>
#include <QFontDatabase>
#include <QFontMetrics>
#include <QPointer>
#include <QStyleOptionComplex>

#include <algorithm>
#include <cmath>

namespace {

QPointer<TAppStyle> Current;
int CachedEm = 0; // 0 until asked for; painting asks for sizes all the time

int EvenPx(double ems)
{
    return int(std::lround(TAppStyle::Em() * ems / 2)) * 2;
}

// The base style draws icon and text against the left edge and leaves all spare room on the right.
QStyleOptionToolButton Balanced(QStyleOptionToolButton button)
{
    if (button.toolButtonStyle != Qt::ToolButtonTextBesideIcon || button.icon.isNull())
        return button;
    button.text.prepend(QChar(0x2009)); // a thin space more between the two
    const int content = button.iconSize.width() + 4 +
                        button.fontMetrics.size(Qt::TextShowMnemonic, button.text).width();
    button.rect.setLeft(button.rect.left() + std::max(0, (button.rect.width() - content) / 2));
    return button;
}

} // namespace

TAppStyle::TAppStyle() : QProxyStyle(QStringLiteral("Fusion")) {}

void TAppStyle::Apply(QApplication &app)
{
    const TAppTheme theme = TStyleSystem::Theme(QGuiApplication::palette());
    Current = new TAppStyle;
    app.setStyle(Current);
    app.installEventFilter(Current);
    CachedEm = 0;
    ApplyTheme(theme);
}

void TAppStyle::SetTheme(TAppTheme theme)
{
    if (Current)
        Current->FFollows = false;
    ApplyTheme(theme);
}

TAppTheme TAppStyle::Theme()
{
    return TAppPalette::ThemeOf(QGuiApplication::palette());
}

int TAppStyle::Em()
{
    if (CachedEm == 0)
        CachedEm = std::max(8, QFontMetrics(QApplication::font()).height());
    return CachedEm;
}

int TAppStyle::Px(double ems)
{
    return int(std::lround(Em() * ems));
}

QFont TAppStyle::MonospaceFont()
{
    QFont font = QFontDatabase::systemFont(QFontDatabase::FixedFont);
    font.setStyleHint(QFont::Monospace);
    font.setFixedPitch(true);
    const QFont general = QApplication::font();
    if (general.pointSizeF() > 0)
        font.setPointSizeF(general.pointSizeF());
    else
        font.setPixelSize(general.pixelSize());
    return font;
}

int TAppStyle::pixelMetric(PixelMetric metric, const QStyleOption *option,
                           const QWidget *widget) const
{
    switch (metric) {
    case PM_SmallIconSize:
    case PM_ListViewIconSize:
    case PM_TabBarIconSize:
    case PM_ButtonIconSize:
        return EvenPx(1.0);
    case PM_ToolBarIconSize:
        return EvenPx(1.1);
    case PM_IndicatorWidth:
    case PM_IndicatorHeight:
    case PM_ExclusiveIndicatorWidth:
    case PM_ExclusiveIndicatorHeight:
        return EvenPx(0.9);
    case PM_TabCloseIndicatorWidth:
    case PM_TabCloseIndicatorHeight:
        return EvenPx(1.0);
    case PM_MessageBoxIconSize:
        return EvenPx(2.2);
    case PM_HeaderMargin:
        return Px(0.3);
    case PM_TreeViewIndentation:
        return Px(1.15);
    case PM_ScrollBarExtent:
        return Px(0.85);
    case PM_SplitterWidth:
        return std::max(5, Px(0.35));
    case PM_ToolBarItemSpacing:
        return Px(0.1);
    case PM_ToolBarItemMargin:
    case PM_ToolBarFrameWidth:
        return Px(0.08);
    case PM_TabBarTabHSpace:
        return Px(1.5);
    case PM_TabBarTabVSpace:
        return Px(0.7);
    case PM_TabBarBaseOverlap:
    case PM_TabBarTabOverlap:
    case PM_TabBarTabShiftVertical:
        return 0;
    case PM_LayoutLeftMargin:
    case PM_LayoutTopMargin:
    case PM_LayoutRightMargin:
    case PM_LayoutBottomMargin:
        return Px(0.55);
    case PM_LayoutHorizontalSpacing:
    case PM_LayoutVerticalSpacing:
        return Px(0.4);
    default:
        return QProxyStyle::pixelMetric(metric, option, widget);
    }
}

int TAppStyle::styleHint(StyleHint hint, const QStyleOption *option, const QWidget *widget,
                         QStyleHintReturn *result) const
{
    switch (hint) {
    case SH_ItemView_ShowDecorationSelected:
        return 1;
    case SH_Table_GridLineColor:
        return int(QGuiApplication::palette().color(QPalette::Midlight).rgb());
    case SH_DialogButtonBox_ButtonsHaveIcons:
    case SH_EtchDisabledText:
        return 0;
    default:
        return QProxyStyle::styleHint(hint, option, widget, result);
    }
}

void TAppStyle::drawPrimitive(PrimitiveElement element, const QStyleOption *option,
                              QPainter *painter, const QWidget *widget) const
{
    if (!TStyleDrawing::DrawPrimitive(element, *option, *painter, widget))
        QProxyStyle::drawPrimitive(element, option, painter, widget);
}

void TAppStyle::drawControl(ControlElement element, const QStyleOption *option, QPainter *painter,
                            const QWidget *widget) const
{
    if (TStyleDrawing::DrawControl(element, *option, *painter))
        return;
    if (const auto *button = qstyleoption_cast<const QStyleOptionToolButton *>(option);
        button && element == CE_ToolButtonLabel) {
        const QStyleOptionToolButton balanced = Balanced(*button);
        QProxyStyle::drawControl(element, &balanced, painter, widget);
        return;
    }
    QProxyStyle::drawControl(element, option, painter, widget);
}

void TAppStyle::drawComplexControl(ComplexControl control, const QStyleOptionComplex *option,
                                   QPainter *painter, const QWidget *widget) const
{
    QProxyStyle::drawComplexControl(control, option, painter, widget);
    TStyleDrawing::FinishComplexControl(control, *option, *painter);
}

bool TAppStyle::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::ApplicationFontChange)
        CachedEm = 0;
    else if (event->type() == QEvent::ThemeChange && FFollows)
        FollowSystem();
    return QProxyStyle::eventFilter(watched, event);
}

void TAppStyle::ApplyTheme(TAppTheme theme)
{
    QApplication::setPalette(TAppPalette::Palette(theme));
}

void TAppStyle::FollowSystem()
{
    // An empty palette lets the platform's own through, which is what is to be followed.
    QApplication::setPalette(QPalette());
    ApplyTheme(TStyleSystem::Theme(QGuiApplication::palette()));
}
