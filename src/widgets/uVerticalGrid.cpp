#include "widgets/uVerticalGrid.h"

#include "support/uException.h"
#include "widgets/uKeptMenu.h"
#include "widgets/uStylePalette.h"

#include <QAbstractButton>
#include <QContextMenuEvent>
#include <QGridLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPainter>
#include <QToolButton>
#include <QVBoxLayout>
#include <algorithm>
#include <memory>
#include <stdexcept>

namespace {

QColor Blend(const QColor &a, const QColor &b, double share)
{
    return QColor::fromRgbF(float(a.redF() + (b.redF() - a.redF()) * share),
                            float(a.greenF() + (b.greenF() - a.greenF()) * share),
                            float(a.blueF() + (b.blueF() - a.blueF()) * share));
}

} // namespace

TVerticalGrid::TVerticalGrid(QWidget *parent) : QScrollArea(parent), FBody(new QWidget)
{
    setWidgetResizable(true);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAsNeeded);
    setFocusPolicy(Qt::NoFocus);
    FBody->setBackgroundRole(QPalette::Base);
    FBody->installEventFilter(this);
    auto *outer = new QVBoxLayout(FBody);
    outer->setContentsMargins(0, 0, 0, 0);
    FLayout = new QGridLayout;
    FLayout->setContentsMargins(0, 0, 0, 0);
    // The gaps are where the lines are painted.
    FLayout->setSpacing(1);
    FLayout->setColumnStretch(1, 1);
    outer->addLayout(FLayout);
    outer->addStretch(1);
    setWidget(FBody);
}

TVerticalRow *TVerticalGrid::Add(TRowKind kind, const QString &name, const QString &caption,
                                 TVerticalRow *parent)
{
    if (FByName.contains(name))
        throw std::logic_error("two rows of one name: " + name.toStdString());
    auto *row = new TVerticalRow(kind, name, caption, parent, this, FBody);
    FByCell.insert(row->Cell(), row);
    const int line = FLayout->rowCount();
    if (row->FHeader != nullptr) {
        FLayout->addWidget(row->FHeader, line, 0, 1, 2);
    } else {
        FLayout->addWidget(row->FLabel, line, 0);
        FLayout->addWidget(row->FEditor, line, 1);
        row->FLabel->installEventFilter(this);
        FByCell.insert(row->FLabel, row);
    }
    if (FRows.empty())
        setFocusProxy(row->Control());
    FRows.push_back(row);
    FByName.insert(name, row);
    WatchRow(row);
    row->UpdateSeen();
    return row;
}

QString TVerticalGrid::NameOf(const QString &caption)
{
    QString name = "row";
    bool isStart = true;
    for (const QChar c : caption) {
        if (c.isLetterOrNumber())
            name += isStart ? c.toUpper() : c;
        isStart = !c.isLetterOrNumber();
    }
    return name;
}

TVerticalRow *TVerticalGrid::Row(const QString &name) const
{
    TVerticalRow *row = FindRow(name);
    if (row == nullptr)
        throw std::logic_error("no row of this name: " + name.toStdString());
    return row;
}

void TVerticalGrid::Clear()
{
    setFocusProxy(nullptr);
    SetFocusedRow(nullptr);
    FByName.clear();
    FByCell.clear();
    for (TVerticalRow *row : std::exchange(FRows, {})) {
        delete row->FLabel;
        delete row->FEditor;
        delete row->FHeader;
        delete row;
    }
}

void TVerticalGrid::WatchRow(TVerticalRow *row)
{
    QList<QWidget *> widgets = row->Cell()->findChildren<QWidget *>();
    widgets.append(row->Cell());
    // The list of a combo is a window of its own, with keys of its own.
    for (QWidget *widget : widgets)
        if (widget->focusPolicy() != Qt::NoFocus && widget->window() == window())
            widget->installEventFilter(this);
}

TVerticalRow *TVerticalGrid::RowOf(const QObject *object) const
{
    while (object != nullptr && object->parent() != FBody)
        object = object->parent();
    return FByCell.value(object);
}

void TVerticalGrid::RowsChanged()
{
    // A row that goes while it has the focus hands it on first; Qt would choose any control.
    if (FFocused != nullptr && !FFocused->IsSeen())
        if (QWidget *focus = focusWidget(); focus != nullptr && RowOf(focus) == FFocused)
            MoveFocus(FFocused, -1) || MoveFocus(FFocused, 1);
    for (TVerticalRow *row : FRows)
        row->UpdateSeen();
    FBody->update();
}

void TVerticalGrid::CommitEdit()
{
    for (TVerticalRow *row : FRows) {
        if (row->TryCommit())
            continue;
        row->SetFocus();
        throw EConvertError(QString("\"%1\" is not a valid value of \"%2\".")
                                .arg(row->FEditor->TypedText(), row->Caption()));
    }
}

void TVerticalGrid::SetFocusedRow(TVerticalRow *row)
{
    if (FFocused == row)
        return;
    FFocused = row;
    FBody->update();
    Q_EMIT OnFocusedRowChanged(row);
}

bool TVerticalGrid::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == FBody && event->type() == QEvent::Paint) {
        PaintBody();
        return false;
    }
    TVerticalRow *row = RowOf(watched);
    switch (event->type()) {
    case QEvent::MouseButtonPress:
        if (auto *label = qobject_cast<QLabel *>(watched); label != nullptr && label->buddy())
            label->buddy()->setFocus(Qt::TabFocusReason);
        return false;
    case QEvent::FontChange:
        if (row != nullptr && watched == row->FLabel)
            row->UpdateMargins();
        return false;
    case QEvent::FocusIn:
        if (row != nullptr) {
            SetFocusedRow(row);
            ensureWidgetVisible(static_cast<QWidget *>(watched), 0, fontMetrics().height());
        }
        return false;
    case QEvent::FocusOut:
        // A context menu or the list of a combo is part of the edit.
        if (row != nullptr && static_cast<QFocusEvent *>(event)->reason() != Qt::PopupFocusReason)
            row->TryCommit();
        return false;
    case QEvent::ShortcutOverride:
        if (row == nullptr || static_cast<QKeyEvent *>(event)->key() != Qt::Key_Escape ||
            !row->IsModified())
            return false;
        event->accept();
        return true;
    case QEvent::ContextMenu:
        return ShowMenu(watched, static_cast<QContextMenuEvent *>(event)->globalPos());
    case QEvent::KeyPress:
        return row != nullptr && HandleKey(row, watched, *static_cast<QKeyEvent *>(event));
    default:
        return false;
    }
}

bool TVerticalGrid::HandleKey(TVerticalRow *row, QObject *watched, const QKeyEvent &event)
{
    if (event.modifiers() != Qt::NoModifier && event.modifiers() != Qt::KeypadModifier)
        return false;
    switch (event.key()) {
    case Qt::Key_Up:
        return MoveFocus(row, -1), true;
    case Qt::Key_Down:
        return MoveFocus(row, 1), true;
    case Qt::Key_Return:
    case Qt::Key_Enter:
    case Qt::Key_F2:
        return PressOrCommit(row, watched), true;
    case Qt::Key_Escape:
        if (!row->IsModified())
            return false;
        return row->Revert(), true;
    case Qt::Key_Left:
    case Qt::Key_Right:
        return HandleFold(row, event.key());
    default:
        return false;
    }
}

// A line has a menu of its own, which would hide the actions of the grid.
bool TVerticalGrid::ShowMenu(QObject *watched, const QPoint &at)
{
    auto *line = qobject_cast<QLineEdit *>(watched);
    if (line == nullptr || actions().isEmpty())
        return false;
    const std::unique_ptr<QMenu> standard(line->createStandardContextMenu());
    QMenu &menu = KeptMenu(*this, "pmLine");
    menu.addActions(standard->actions());
    menu.addSeparator();
    menu.addActions(actions());
    menu.exec(at);
    return true;
}

bool TVerticalGrid::HandleFold(TVerticalRow *row, int key)
{
    if (row->Kind() != rkCategory)
        return false;
    row->SetExpanded(key == Qt::Key_Right);
    return true;
}

bool TVerticalGrid::MoveFocus(TVerticalRow *row, int step)
{
    auto position = std::find(FRows.begin(), FRows.end(), row) - FRows.begin() + step;
    for (; position >= 0 && position < int(FRows.size()); position += step)
        if (TVerticalRow *other = FRows[size_t(position)];
            other->IsSeen() && other->Control()->isEnabled()) {
            other->SetFocus();
            return true;
        }
    return false;
}

void TVerticalGrid::PressOrCommit(TVerticalRow *row, QObject *watched)
{
    auto *button = qobject_cast<QAbstractButton *>(watched);
    if (button != nullptr && button != row->Control())
        button->click();
    else if (row->IsModified())
        row->TryCommit();
    else
        row->StartEdit();
}

void TVerticalGrid::PaintBody()
{
    QPainter painter(FBody);
    const QPalette &colors = palette();
    const QColor base = colors.color(QPalette::Base);
    const QColor line = TAppPalette::Line(colors);
    painter.fillRect(FBody->rect(), base);
    for (const TVerticalRow *row : FRows) {
        QRect cell = row->Geometry();
        if (cell.isEmpty())
            continue;
        cell.setLeft(0);
        cell.setRight(FBody->width() - 1);
        if (row->Kind() == rkCategory)
            painter.fillRect(cell, Blend(base, colors.color(QPalette::Text), 0.08));
        if (row == FFocused)
            painter.fillRect(cell, Blend(base, colors.color(QPalette::Highlight), 0.3));
        painter.fillRect(QRect(0, cell.bottom() + 1, cell.width(), 1), line);
        if (row->FLabel != nullptr)
            painter.fillRect(
                QRect(row->FLabel->geometry().right() + 1, cell.top(), 1, cell.height()), line);
    }
}
