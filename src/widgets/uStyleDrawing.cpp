#include "widgets/uStyleDrawing.h"

#include "widgets/uStyle.h"

#include <QApplication>
#include <QPainter>
#include <QStyleOption>
#include <QToolButton>

#include <algorithm>

namespace {

/// Saves the painter for as long as a part is drawn.
class TPainterState
{
public:
    explicit TPainterState(QPainter &painter) : FPainter(painter) { FPainter.save(); }
    ~TPainterState() { FPainter.restore(); }

private:
    QPainter &FPainter;
};

bool Has(const QStyleOption &option, QStyle::State flags)
{
    return (option.state & flags) == flags;
}

QColor Translucent(QColor color, int alpha)
{
    color.setAlpha(alpha);
    return color;
}

/// Darkens light grounds and brightens dark ones; alpha of 255.
QColor Overlay(const QStyleOption &option, int alpha)
{
    return Translucent(option.palette.color(QPalette::WindowText), alpha);
}

QColor AccentOf(const QStyleOption &option)
{
    return TAppPalette::Accent(option.palette);
}

QColor LineOf(const QStyleOption &option)
{
    return TAppPalette::Line(option.palette);
}

void DrawRounded(QPainter &painter, const QRect &rect, const QColor &fill, const QColor &border)
{
    const TPainterState state(painter);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setBrush(fill);
    painter.setPen(border.isValid() ? QPen(border, 1) : QPen(Qt::NoPen));
    const double radius = TAppStyle::Em() * 0.2;
    painter.drawRoundedRect(QRectF(rect).adjusted(0.5, 0.5, -0.5, -0.5), radius, radius);
}

void DrawCommandButton(const QStyleOption &option, QPainter &painter)
{
    const auto *button = qstyleoption_cast<const QStyleOptionButton *>(&option);
    const bool enabled = Has(option, QStyle::State_Enabled);
    const bool isDefault = button && (button->features & QStyleOptionButton::DefaultButton);
    const bool accented = enabled && (isDefault || Has(option, QStyle::State_HasFocus));
    if (button && (button->features & QStyleOptionButton::Flat) &&
        !(option.state & (QStyle::State_Sunken | QStyle::State_On | QStyle::State_MouseOver)))
        return;
    DrawRounded(painter, option.rect,
                option.palette.color(enabled ? QPalette::Button : QPalette::Window),
                accented ? AccentOf(option) : LineOf(option));
    if (option.state & (QStyle::State_Sunken | QStyle::State_On))
        DrawRounded(painter, option.rect, Overlay(option, 36), QColor());
    else if (enabled && Has(option, QStyle::State_MouseOver))
        DrawRounded(painter, option.rect, Overlay(option, 14), QColor());
}

bool DrawToolButton(const QStyleOption &option, QPainter &painter, const QWidget *widget)
{
    const auto *button = qobject_cast<const QToolButton *>(widget);
    if (button && !button->autoRaise())
        DrawCommandButton(option, painter);
    else if (Has(option, QStyle::State_Sunken))
        DrawRounded(painter, option.rect, Overlay(option, 40), QColor());
    else if (Has(option, QStyle::State_On))
        DrawRounded(painter, option.rect, Translucent(AccentOf(option), 56), AccentOf(option));
    else if (Has(option, QStyle::State_Enabled | QStyle::State_MouseOver))
        DrawRounded(painter, option.rect, Overlay(option, 22), QColor());
    return true;
}

void DrawChevron(const QStyleOption &option, QPainter &painter, bool open)
{
    const TPainterState state(painter);
    painter.setRenderHint(QPainter::Antialiasing);
    const double half = TAppStyle::Em() * 0.22;
    QPolygonF chevron;
    if (open)
        chevron << QPointF(-half, -half / 2) << QPointF(0, half / 2) << QPointF(half, -half / 2);
    else
        chevron << QPointF(-half / 2, -half) << QPointF(half / 2, 0) << QPointF(-half / 2, half);
    const bool selected = Has(option, QStyle::State_Selected);
    QColor color = option.palette.color(selected ? QPalette::HighlightedText : QPalette::Text);
    if (!selected)
        color = Has(option, QStyle::State_MouseOver) ? AccentOf(option) : Translucent(color, 190);
    painter.setPen(QPen(color, TAppStyle::Em() * 0.1, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.translate(QRectF(option.rect).center());
    painter.drawPolyline(chevron);
}

bool DrawBranch(const QStyleOption &option, QPainter &painter)
{
    const QPoint mid = option.rect.center();
    const bool mirrored = option.direction == Qt::RightToLeft;
    const int gap = Has(option, QStyle::State_Children) ? TAppStyle::Px(0.4) : 0;
    const TPainterState state(painter);
    const bool selected = Has(option, QStyle::State_Selected);
    painter.setPen(selected ? Translucent(option.palette.color(QPalette::HighlightedText), 120)
                            : LineOf(option));
    if (option.state & (QStyle::State_Item | QStyle::State_Sibling))
        painter.drawLine(mid.x(), option.rect.top(), mid.x(), mid.y() - gap);
    if (option.state & QStyle::State_Sibling)
        painter.drawLine(mid.x(), mid.y() + gap, mid.x(), option.rect.bottom());
    if (option.state & QStyle::State_Item) {
        const int end = mirrored ? option.rect.left() : option.rect.right();
        painter.drawLine(mid.x() + (mirrored ? -gap : gap), mid.y(), end, mid.y());
    }
    if (gap > 0)
        DrawChevron(option, painter, Has(option, QStyle::State_Open));
    return true;
}

/// Calm until the mouse is on it: there is one on every tab.
bool DrawTabClose(const QStyleOption &option, QPainter &painter)
{
    const TPainterState state(painter);
    painter.setRenderHint(QPainter::Antialiasing);
    const bool hot = Has(option, QStyle::State_Enabled | QStyle::State_MouseOver);
    const bool sunken = Has(option, QStyle::State_Sunken);
    const int side = std::min(option.rect.width(), option.rect.height());
    QRect box(0, 0, side, side);
    box.moveCenter(option.rect.center());
    if (hot || sunken)
        DrawRounded(painter, box, Overlay(option, sunken ? 60 : 32), QColor());
    const QColor text = option.palette.color(QPalette::WindowText);
    painter.setPen(QPen(hot ? text : Translucent(text, 130), TAppStyle::Em() * 0.09, Qt::SolidLine,
                        Qt::RoundCap));
    const double arm = TAppStyle::Em() * 0.2;
    painter.translate(QRectF(box).center());
    painter.drawLine(QPointF(-arm, -arm), QPointF(arm, arm));
    painter.drawLine(QPointF(-arm, arm), QPointF(arm, -arm));
    return true;
}

/// Hot tracking; the rest of an item is Fusion's.
bool DrawHotItem(const QStyleOption &option, QPainter &painter)
{
    if (Has(option, QStyle::State_MouseOver | QStyle::State_Enabled) &&
        !Has(option, QStyle::State_Selected))
        painter.fillRect(option.rect, Translucent(AccentOf(option), 28));
    return false;
}

bool DrawTab(const QStyleOption &option, QPainter &painter)
{
    const auto *tab = qstyleoption_cast<const QStyleOptionTab *>(&option);
    if (!tab || (tab->shape != QTabBar::RoundedNorth && tab->shape != QTabBar::RoundedSouth))
        return false;
    const QRect rect = option.rect;
    const bool north = tab->shape == QTabBar::RoundedNorth;
    if (!Has(option, QStyle::State_Selected)) {
        if (Has(option, QStyle::State_MouseOver | QStyle::State_Enabled))
            painter.fillRect(rect, Overlay(option, 14));
        painter.fillRect(rect.right(), rect.top() + rect.height() / 4, 1, rect.height() / 2,
                         LineOf(option));
        return true;
    }
    painter.fillRect(rect, option.palette.color(QPalette::Base));
    painter.fillRect(rect.left(), rect.top(), 1, rect.height(), LineOf(option));
    painter.fillRect(rect.right(), rect.top(), 1, rect.height(), LineOf(option));
    const int bar = std::max(2, TAppStyle::Px(0.14));
    painter.fillRect(rect.left(), north ? rect.top() : rect.bottom() - bar + 1, rect.width(), bar,
                     AccentOf(option));
    return true;
}

/// Fusion derives its outlines from the window's colour, which a dark palette makes invisible.
QColor OutlineOf(const QStyleOption &option)
{
    const bool accented = Has(option, QStyle::State_HasFocus | QStyle::State_Enabled);
    return accented ? AccentOf(option) : LineOf(option);
}

void DrawOutline(const QStyleOption &option, QPainter &painter)
{
    DrawRounded(painter, option.rect, Qt::transparent, OutlineOf(option));
}

/// The title stands above the frame, in a band that Fusion leaves free by this same sum.
void DrawGroupBoxFrame(QStyleOption option, QPainter &painter, const QWidget *widget)
{
    const QStyle *style = widget ? widget->style() : QApplication::style();
    const int indicator = style->pixelMetric(QStyle::PM_ExclusiveIndicatorHeight, &option, widget);
    const int band = std::max(indicator, option.fontMetrics.height()) + 3;
    option.rect.setTop(option.rect.top() + band);
    DrawRounded(painter, option.rect, Qt::transparent, LineOf(option));
}

void DrawCheckBox(const QStyleOption &option, QPainter &painter)
{
    const TPainterState state(painter);
    const bool enabled = Has(option, QStyle::State_Enabled);
    const bool on = option.state & (QStyle::State_On | QStyle::State_NoChange);
    const bool hot = Has(option, QStyle::State_MouseOver | QStyle::State_Enabled);
    const QColor ground = option.palette.color(on        ? QPalette::Highlight
                                               : enabled ? QPalette::Base
                                                         : QPalette::Window);
    const QColor line = option.palette.color(QPalette::PlaceholderText);
    DrawRounded(painter, option.rect, ground, on ? ground : hot ? AccentOf(option) : line);
    if (!on)
        return;
    const QRectF rect = option.rect;
    const auto at = [&](double x, double y) {
        return QPointF(rect.left() + x * rect.width(), rect.top() + y * rect.height());
    };
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(option.palette.color(QPalette::HighlightedText), rect.width() * 0.13,
                        Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    if (Has(option, QStyle::State_NoChange))
        painter.drawLine(at(0.28, 0.5), at(0.72, 0.5));
    else
        painter.drawPolyline(QPolygonF({at(0.25, 0.52), at(0.43, 0.7), at(0.75, 0.3)}));
}

void DrawFrame(const QStyleOption &option, QPainter &painter)
{
    const TPainterState state(painter);
    painter.setPen(LineOf(option));
    painter.setBrush(Qt::NoBrush);
    painter.drawRect(option.rect.adjusted(0, 0, -1, -1));
}

void DrawHeaderSection(const QStyleOption &option, QPainter &painter)
{
    const QRect rect = option.rect;
    painter.fillRect(rect, option.palette.color(QPalette::Window));
    if (Has(option, QStyle::State_Sunken))
        painter.fillRect(rect, Overlay(option, 30));
    else if (Has(option, QStyle::State_MouseOver | QStyle::State_Enabled))
        painter.fillRect(rect, Overlay(option, 14));
    painter.fillRect(rect.right(), rect.top(), 1, rect.height(), LineOf(option));
    painter.fillRect(rect.left(), rect.bottom(), rect.width(), 1, LineOf(option));
}

void DrawToolBar(const QStyleOption &option, QPainter &painter)
{
    painter.fillRect(option.rect, option.palette.color(QPalette::Window));
    if (Has(option, QStyle::State_Horizontal))
        painter.fillRect(option.rect.left(), option.rect.bottom(), option.rect.width(), 1,
                         Translucent(LineOf(option), 150));
}

void DrawSplitter(const QStyleOption &option, QPainter &painter)
{
    const bool hot = Has(option, QStyle::State_MouseOver | QStyle::State_Enabled);
    const QColor color = hot ? AccentOf(option) : LineOf(option);
    const QPoint mid = option.rect.center();
    const int grip = TAppStyle::Px(1.6);
    const int width = std::max(2, TAppStyle::Px(0.12));
    // The handle of a horizontal splitter stands upright.
    if (Has(option, QStyle::State_Horizontal))
        painter.fillRect(mid.x() - width / 2, mid.y() - grip / 2, width, grip, color);
    else
        painter.fillRect(mid.x() - grip / 2, mid.y() - width / 2, grip, width, color);
}

} // namespace

bool TStyleDrawing::DrawPrimitive(QStyle::PrimitiveElement element, const QStyleOption &option,
                                  QPainter &painter, const QWidget *widget)
{
    switch (element) {
    case QStyle::PE_PanelButtonCommand:
        DrawCommandButton(option, painter);
        return true;
    case QStyle::PE_PanelButtonTool:
        return DrawToolButton(option, painter, widget);
    case QStyle::PE_IndicatorTabClose:
        return DrawTabClose(option, painter);
    case QStyle::PE_IndicatorBranch:
        return DrawBranch(option, painter);
    case QStyle::PE_PanelItemViewItem:
        return DrawHotItem(option, painter);
    case QStyle::PE_Frame:
    case QStyle::PE_FrameTabWidget:
        DrawFrame(option, painter);
        return true;
    case QStyle::PE_FrameLineEdit:
        DrawOutline(option, painter);
        return true;
    case QStyle::PE_FrameGroupBox:
        DrawGroupBoxFrame(option, painter, widget);
        return true;
    case QStyle::PE_IndicatorCheckBox:
        DrawCheckBox(option, painter);
        return true;
    default:
        return false;
    }
}

bool TStyleDrawing::DrawControl(QStyle::ControlElement element, const QStyleOption &option,
                                QPainter &painter)
{
    switch (element) {
    case QStyle::CE_TabBarTabShape:
        return DrawTab(option, painter);
    case QStyle::CE_HeaderSection:
        DrawHeaderSection(option, painter);
        return true;
    case QStyle::CE_HeaderEmptyArea:
        painter.fillRect(option.rect, option.palette.color(QPalette::Window));
        painter.fillRect(option.rect.left(), option.rect.bottom(), option.rect.width(), 1,
                         LineOf(option));
        return true;
    case QStyle::CE_ProgressBarGroove:
        DrawRounded(painter, option.rect, option.palette.color(QPalette::Base), LineOf(option));
        return true;
    case QStyle::CE_ToolBar:
        DrawToolBar(option, painter);
        return true;
    case QStyle::CE_Splitter:
        DrawSplitter(option, painter);
        return true;
    default:
        return false;
    }
}

void TStyleDrawing::FinishComplexControl(QStyle::ComplexControl control, const QStyleOption &option,
                                         QPainter &painter)
{
    if (const auto *spin = qstyleoption_cast<const QStyleOptionSpinBox *>(&option);
        control == QStyle::CC_SpinBox && spin && spin->frame)
        DrawOutline(option, painter);
    if (const auto *combo = qstyleoption_cast<const QStyleOptionComboBox *>(&option);
        control == QStyle::CC_ComboBox && combo && combo->frame && combo->editable)
        DrawOutline(option, painter);
}
