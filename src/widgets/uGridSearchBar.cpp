#include "widgets/uGridSearchBar.h"

#include "widgets/uGridCopy.h"

#include <QAbstractItemView>
#include <QAction>
#include <QElapsedTimer>
#include <QEvent>
#include <QHBoxLayout>
#include <QItemSelectionModel>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QToolButton>
#include <algorithm>

namespace {

// Short enough that typing and painting do not stutter.
constexpr int StepMilliseconds = 20;
// How many cells are looked at between two looks at the clock.
constexpr int CellsPerLook = 64;

} // namespace

TGridSearchBar::TGridSearchBar(QAbstractItemView *view) : QFrame(view), FView(view)
{
    setObjectName("pnlSearch");
    setFrameShape(QFrame::StyledPanel);
    setAutoFillBackground(true);
    MakeControls();
    FFind = MakeAction("actFind", "Find", QKeySequence::Find, &TGridSearchBar::Open);
    MakeAction("actFindNext", "Find Next", QKeySequence(Qt::Key_F3), &TGridSearchBar::FindNext);
    MakeAction("actFindPrevious", "Find Previous", QKeySequence(Qt::SHIFT | Qt::Key_F3),
               &TGridSearchBar::FindPrevious);
    FTimer.setInterval(0);
    connect(&FTimer, &QTimer::timeout, this, &TGridSearchBar::Step);
    view->installEventFilter(this);
    installEventFilter(this);
    hide();
}

void TGridSearchBar::MakeControls()
{
    FEdit = new QLineEdit(this);
    FEdit->setObjectName("edSearch");
    FEdit->setAccessibleName("Search text");
    FEdit->setPlaceholderText("Find");
    FEdit->setClearButtonEnabled(true);
    FEdit->installEventFilter(this);
    connect(FEdit, &QLineEdit::textEdited, this, &TGridSearchBar::TextEdited);
    FStatus = new QLabel(this);
    FStatus->setObjectName("lblSearchStatus");
    auto *previous = MakeButton("butFindPrevious", "Find Previous", Qt::UpArrow);
    connect(previous, &QToolButton::clicked, this, &TGridSearchBar::FindPrevious);
    auto *next = MakeButton("butFindNext", "Find Next", Qt::DownArrow);
    connect(next, &QToolButton::clicked, this, &TGridSearchBar::FindNext);
    auto *close = MakeButton("butCloseSearch", "Close", Qt::NoArrow);
    close->setText(QStringLiteral("×"));
    connect(close, &QToolButton::clicked, this, &TGridSearchBar::Close);
    auto *layout = new QHBoxLayout(this);
    const int gap = fontMetrics().height() / 4;
    layout->setContentsMargins(gap, gap, gap, gap);
    for (QWidget *widget : std::initializer_list<QWidget *>{FEdit, FStatus, previous, next, close})
        layout->addWidget(widget);
}

QToolButton *TGridSearchBar::MakeButton(const QString &name, const QString &hint,
                                        Qt::ArrowType arrow)
{
    auto *button = new QToolButton(this);
    button->setObjectName(name);
    button->setToolTip(hint);
    button->setAccessibleName(hint);
    button->setAutoRaise(true);
    button->setArrowType(arrow);
    button->setFocusPolicy(Qt::TabFocus);
    return button;
}

QAction *TGridSearchBar::MakeAction(const QString &name, const QString &caption,
                                    const QKeySequence &keys, void (TGridSearchBar::*slot)())
{
    auto *action = new QAction(caption, FView);
    action->setObjectName(name);
    action->setShortcut(keys);
    action->setShortcutContext(Qt::WidgetWithChildrenShortcut);
    connect(action, &QAction::triggered, this, slot);
    FView->addAction(action);
    return action;
}

void TGridSearchBar::Open()
{
    show();
    raise();
    FEdit->setFocus(Qt::ShortcutFocusReason);
    FEdit->selectAll();
}

void TGridSearchBar::Close()
{
    Stop();
    hide();
    FView->setFocus(Qt::OtherFocusReason);
}

void TGridSearchBar::FindNext()
{
    Start(1, false);
}

void TGridSearchBar::FindPrevious()
{
    Start(-1, false);
}

void TGridSearchBar::TextEdited()
{
    // A text that grows should stay where it was found as long as it matches.
    Stop();
    if (!FEdit->text().isEmpty())
        Start(1, true);
}

void TGridSearchBar::Stop()
{
    FTimer.stop();
    if (FModel != nullptr)
        FModel->disconnect(this);
    FModel = nullptr;
    FStatus->clear();
    Place();
}

void TGridSearchBar::Start(int step, bool includesFocused)
{
    if (isHidden() || FEdit->text().isEmpty())
        return Open();
    Stop();
    FModel = FView->model();
    if (FModel == nullptr)
        return Finish(false);
    FColumns = TGridCopy::VisibleColumns(*FView);
    FIsByRow = FView->selectionBehavior() == QAbstractItemView::SelectRows;
    FMatcher = QStringMatcher(FEdit->text(), Qt::CaseInsensitive);
    FStep = step;
    FLeft = FCount = qint64(FModel->rowCount(FView->rootIndex())) * CellsPerRow();
    // Without a focused cell the walk starts just before the first or behind the last one.
    FPosition = step > 0 ? -1 : FCount;
    if (const QModelIndex current = FView->currentIndex(); current.isValid()) {
        const auto column = std::find(FColumns.begin(), FColumns.end(), current.column());
        const qint64 offset = FIsByRow || column == FColumns.end() ? 0 : column - FColumns.begin();
        FPosition = qint64(current.row()) * CellsPerRow() + offset - (includesFocused ? step : 0);
    }
    // Positions mean something else as soon as rows come or go.
    connect(FModel, &QAbstractItemModel::modelAboutToBeReset, this, &TGridSearchBar::Stop);
    connect(FModel, &QAbstractItemModel::layoutChanged, this, &TGridSearchBar::Stop);
    connect(FModel, &QAbstractItemModel::rowsInserted, this, &TGridSearchBar::Stop);
    connect(FModel, &QAbstractItemModel::rowsRemoved, this, &TGridSearchBar::Stop);
    FTimer.start();
    Step();
}

void TGridSearchBar::Step()
{
    if (FModel == nullptr || FView->model() != FModel)
        return Stop();
    QElapsedTimer clock;
    clock.start();
    while (FLeft > 0) {
        for (int i = 0; i < CellsPerLook && FLeft > 0; ++i, --FLeft) {
            FPosition = (FPosition + FStep + FCount) % FCount;
            if (IsMatch(FPosition))
                return Finish(true);
        }
        if (clock.elapsed() >= StepMilliseconds) {
            FStatus->setText(QString("Searching... %1 %").arg((FCount - FLeft) * 100 / FCount));
            return Place();
        }
    }
    Finish(false);
}

void TGridSearchBar::Finish(bool found)
{
    const qint64 position = FPosition;
    if (found)
        Show(position);
    Stop();
    if (!found)
        FStatus->setText("Not found");
    Place();
    Q_EMIT OnFinished(found);
}

bool TGridSearchBar::IsMatch(qint64 position) const
{
    const auto matches = [&](int row, int column) {
        const QModelIndex index = FModel->index(row, column, FView->rootIndex());
        return FMatcher.indexIn(TGridCopy::WholeText(index)) >= 0;
    };
    if (!FIsByRow)
        return matches(int(position / CellsPerRow()), FColumns[size_t(position % CellsPerRow())]);
    return std::any_of(FColumns.begin(), FColumns.end(),
                       [&](int column) { return matches(int(position), column); });
}

void TGridSearchBar::Show(qint64 position)
{
    const int column = FIsByRow ? FColumns.front() : FColumns[size_t(position % CellsPerRow())];
    const QModelIndex index =
        FModel->index(int(position / CellsPerRow()), column, FView->rootIndex());
    // Not the view's own way: it would extend the selection while Shift+F3 is held.
    QItemSelectionModel::SelectionFlags flags = QItemSelectionModel::ClearAndSelect;
    flags.setFlag(QItemSelectionModel::Rows, FIsByRow);
    FView->selectionModel()->setCurrentIndex(index, flags);
    FView->scrollTo(index);
    // What was found must not lie under the bar.
    const QRect covered = geometry().translated(-FView->viewport()->pos());
    if (FView->visualRect(index).intersects(covered))
        FView->scrollTo(index, QAbstractItemView::PositionAtCenter);
}

void TGridSearchBar::Place()
{
    if (isHidden())
        return;
    const QRect area = FView->viewport()->geometry();
    resize(sizeHint().boundedTo(area.size()));
    move(area.right() + 1 - width(), area.bottom() + 1 - height());
}

void TGridSearchBar::showEvent(QShowEvent *event)
{
    QFrame::showEvent(event);
    Place();
}

bool TGridSearchBar::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == FView && event->type() == QEvent::Resize)
        Place();
    // What the controls leave over is not for the grid: Delete and Insert mean a record there.
    if (watched == this && event->type() == QEvent::KeyPress) {
        if (static_cast<QKeyEvent *>(event)->key() == Qt::Key_Escape)
            Close();
        return true;
    }
    if (watched != FEdit || event->type() != QEvent::KeyPress)
        return false;
    const auto *key = static_cast<QKeyEvent *>(event);
    const bool isShift = key->modifiers().testFlag(Qt::ShiftModifier);
    switch (key->key()) {
    case Qt::Key_Escape:
        Close();
        return true;
    case Qt::Key_Return:
    case Qt::Key_Enter:
        isShift ? FindPrevious() : FindNext();
        return true;
    default:
        return false;
    }
}
