#include "widgets/uGridView.h"

#include "widgets/uGridCopy.h"
#include "widgets/uGridModel.h"
#include "widgets/uGridSearchBar.h"
#include "widgets/uKeptMenu.h"
#include "widgets/uLayoutStore.h"
#include "widgets/uStylePalette.h"

#include <QAction>
#include <QApplication>
#include <QHeaderView>
#include <QHelpEvent>
#include <QKeyEvent>
#include <QPainter>
#include <QScrollBar>
#include <QSet>
#include <QStyledItemDelegate>
#include <QToolTip>
#include <algorithm>

namespace {

constexpr int BestFitRows = 200;     // sampled beside those that are seen
constexpr int MaxFitChars = 60;      // a statement or comment must not push the rest away
constexpr int MaxPaintedChars = 512; // more does not fit on a screen; texts may be megabytes
constexpr int MaxTipChars = 2000;

QColor Blend(const QColor &a, const QColor &b, double share)
{
    return QColor::fromRgbF(float(a.redF() + (b.redF() - a.redF()) * share),
                            float(a.greenF() + (b.greenF() - a.greenF()) * share),
                            float(a.blueF() + (b.blueF() - a.blueF()) * share));
}

/// One line per row whatever the text, faint lines between cells, bars for percentages.
class TGridDelegate : public QStyledItemDelegate
{
public:
    using QStyledItemDelegate::QStyledItemDelegate;

    QString displayText(const QVariant &value, const QLocale &locale) const override
    {
        QString text = QStyledItemDelegate::displayText(value, locale);
        text.truncate(MaxPaintedChars);
        for (QChar &c : text)
            if (c == u'\n' || c == u'\r' || c == u'\t' || c == QChar::LineSeparator)
                c = u' ';
        return text;
    }

    void paint(QPainter *painter, const QStyleOptionViewItem &option,
               const QModelIndex &index) const override
    {
        const QVariant percent = index.data(GridPercentRole);
        if (percent.isValid())
            PaintBar(painter, option, index, percent.toDouble());
        else
            QStyledItemDelegate::paint(painter, option, index);
        painter->setPen(TAppPalette::Line(option.palette));
        painter->drawLine(option.rect.topRight(), option.rect.bottomRight());
        painter->drawLine(option.rect.bottomLeft(), option.rect.bottomRight());
    }

    QSize sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const override
    {
        QSize size = QStyledItemDelegate::sizeHint(option, index);
        const int height = option.fontMetrics.height();
        return {size.width() + height / 2, qMax(size.height(), height + height / 3)};
    }

private:
    void PaintBar(QPainter *painter, const QStyleOptionViewItem &option, const QModelIndex &index,
                  double percent) const
    {
        QStyleOptionViewItem cell = option;
        initStyleOption(&cell, index);
        const QString text = std::exchange(cell.text, QString());
        const QWidget *widget = option.widget;
        QStyle *style = widget != nullptr ? widget->style() : QApplication::style();
        style->drawControl(QStyle::CE_ItemViewItem, &cell, painter, widget);
        const bool isSelected = option.state.testFlag(QStyle::State_Selected);
        const QPalette &palette = option.palette;
        const QColor back = palette.color(isSelected ? QPalette::Highlight : QPalette::Base);
        const QColor fore =
            palette.color(isSelected ? QPalette::HighlightedText : QPalette::Highlight);
        QRect bar = option.rect.adjusted(2, 2, -3, -3);
        bar.setWidth(int(bar.width() * qBound(0.0, percent, 100.0) / 100));
        painter->fillRect(bar, Blend(back, fore, 0.4));
        painter->setPen(palette.color(isSelected ? QPalette::HighlightedText : QPalette::Text));
        painter->drawText(option.rect.adjusted(4, 0, -5, 0), Qt::AlignVCenter | Qt::AlignRight,
                          text);
    }
};

} // namespace

TGridView::TGridView(QWidget *parent) : QTreeView(parent)
{
    // The height of the first row serves for all: 100,000 rows are laid out without asking each.
    setUniformRowHeights(true);
    setRootIsDecorated(false);
    setItemsExpandable(false);
    setAllColumnsShowFocus(true);
    setAlternatingRowColors(true);
    setSelectionMode(ExtendedSelection);
    setSelectionBehavior(SelectRows);
    setHorizontalScrollMode(ScrollPerPixel);
    setEditTriggers(DoubleClicked | EditKeyPressed);
    setItemDelegate(new TGridDelegate(this));
    header()->setStretchLastSection(false);
    header()->setSectionsMovable(true);
    header()->setFirstSectionMovable(true);
    header()->setResizeContentsPrecision(BestFitRows);
    FCopy = new TGridCopy(this);
    FSearchBar = new TGridSearchBar(this);
    FOwnActions = actions();
    FCharWidth = CharWidth();
}

void TGridView::setModel(QAbstractItemModel *model)
{
    if (FModel != nullptr)
        FModel->disconnect(this);
    FModel = qobject_cast<TGridModelBase *>(model);
    // Connected before the base class does, what is on the screen can still be asked.
    if (FModel != nullptr)
        connect(FModel, &QAbstractItemModel::modelAboutToBeReset, this,
                &TGridView::ModelAboutToBeReset);
    QTreeView::setModel(model);
    if (FModel == nullptr)
        return;
    connect(FModel, &QAbstractItemModel::modelReset, this, &TGridView::ModelReset);
    FIsFitted = false;
    SortAsColumnsSay();
    ChooseWidths();
}

void TGridView::SortAsColumnsSay()
{
    int column = 0;
    while (column < FModel->ColumnCount() && FModel->ColumnInfo(column).Sort == gsNone)
        ++column;
    const bool isSorted = column < FModel->ColumnCount();
    const bool isDescending = isSorted && FModel->ColumnInfo(column).Sort == gsDescending;
    header()->setSortIndicator(isSorted ? column : -1,
                               isDescending ? Qt::DescendingOrder : Qt::AscendingOrder);
    setSortingEnabled(true);
}

void TGridView::SetFocusedRow(int row)
{
    if (FModel == nullptr || row < 0 || row >= FModel->RowCount()) {
        clearSelection();
        selectionModel()->setCurrentIndex({}, QItemSelectionModel::NoUpdate);
        return;
    }
    const QModelIndex index = FModel->index(row, qMax(currentIndex().column(), 0));
    selectionModel()->setCurrentIndex(index, QItemSelectionModel::ClearAndSelect |
                                                 QItemSelectionModel::Rows);
    scrollTo(index);
}

std::vector<int> TGridView::SelectedRows() const
{
    std::vector<int> rows;
    for (const QItemSelectionRange &range : selectionModel()->selection())
        for (int row = range.top(); row <= range.bottom(); ++row)
            rows.push_back(row);
    std::sort(rows.begin(), rows.end());
    rows.erase(std::unique(rows.begin(), rows.end()), rows.end());
    return rows;
}

void TGridView::BestFit()
{
    for (int column = 0; column < header()->count(); ++column)
        if (!isColumnHidden(column))
            resizeColumnToContents(column);
}

void TGridView::RememberLayout(const QString &key)
{
    FLayoutKey = key;
    TLayoutStore::Remember(header(), key);
}

int TGridView::CharWidth() const
{
    return qMax(fontMetrics().averageCharWidth(), 1);
}

void TGridView::ChooseWidths()
{
    const bool isRemembered =
        !FLayoutKey.isEmpty() && TLayoutStore::HasLayout(*header(), FLayoutKey);
    if (FIsFitted || isRemembered)
        return;
    // A margin of a character on each side belongs to the cell, not to its text.
    for (int column = 0; column < FModel->ColumnCount(); ++column)
        if (const int chars = FModel->ColumnInfo(column).Width; chars > 0)
            setColumnWidth(column, (chars + 2) * CharWidth());
        else
            resizeColumnToContents(column);
    FIsFitted = FModel->RowCount() > 0;
}

int TGridView::sizeHintForColumn(int column) const
{
    return qMin(QTreeView::sizeHintForColumn(column), MaxFitChars * CharWidth());
}

void TGridView::ModelAboutToBeReset()
{
    FIsRefilling = true;
    FHadUpdates = updatesEnabled();
    setUpdatesEnabled(false);
    FPlace = CurrentPlace();
}

void TGridView::ModelReset()
{
    ChooseWidths();
    // The tree lays itself out later and would throw the scroll position away.
    executeDelayedItemsLayout();
    RestorePlace(std::exchange(FPlace, {}));
    FIsRefilling = false;
    setUpdatesEnabled(FHadUpdates);
    Q_EMIT OnFocusedChanged(FocusedRow());
}

TGridView::TPlace TGridView::CurrentPlace() const
{
    TPlace place;
    if (const QModelIndex current = currentIndex(); current.isValid()) {
        place.FocusedKey = FModel->KeyOfRow(current.row());
        place.FocusedColumn = current.column();
    }
    for (const int row : SelectedRows())
        place.SelectedKeys.push_back(FModel->KeyOfRow(row));
    place.ScrollX = horizontalScrollBar()->value();
    place.ScrollY = verticalScrollBar()->value();
    return place;
}

void TGridView::RestorePlace(const TPlace &place)
{
    QSet<QString> keys(place.SelectedKeys.begin(), place.SelectedKeys.end());
    QItemSelection selection;
    const int lastColumn = FModel->ColumnCount() - 1;
    for (int row = 0; row < FModel->RowCount() && !keys.isEmpty(); ++row)
        if (keys.remove(FModel->KeyOfRow(row)))
            selection.append({FModel->index(row, 0), FModel->index(row, lastColumn)});
    selectionModel()->select(selection, QItemSelectionModel::ClearAndSelect);
    const int focused = place.FocusedColumn < 0 ? -1 : FModel->RowOfKey(place.FocusedKey);
    if (focused >= 0)
        selectionModel()->setCurrentIndex(FModel->index(focused, place.FocusedColumn),
                                          QItemSelectionModel::NoUpdate);
    updateGeometries();
    horizontalScrollBar()->setValue(place.ScrollX);
    verticalScrollBar()->setValue(place.ScrollY);
}

void TGridView::currentChanged(const QModelIndex &current, const QModelIndex &previous)
{
    QTreeView::currentChanged(current, previous);
    if (!FIsRefilling && current.row() != previous.row())
        Q_EMIT OnFocusedChanged(current.row());
}

void TGridView::keyPressEvent(QKeyEvent *event)
{
    const bool isEnter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    if (isEnter && currentIndex().isValid() && state() != EditingState) {
        event->accept();
        Q_EMIT OnActivated(FocusedRow());
        return;
    }
    if (event->key() == Qt::Key_Space && ToggleCheck())
        return;
    QTreeView::keyPressEvent(event);
}

bool TGridView::ToggleCheck()
{
    // The focus is on the row as a whole, so Space means its check box wherever the column is.
    const QModelIndex current = currentIndex();
    for (int column = 0; FModel != nullptr && column < FModel->ColumnCount(); ++column) {
        const QModelIndex cell = current.siblingAtColumn(column);
        if (!cell.flags().testFlag(Qt::ItemIsUserCheckable) || isColumnHidden(column))
            continue;
        const bool isChecked = cell.data(Qt::CheckStateRole).toInt() != Qt::Unchecked;
        return FModel->setData(cell, isChecked ? Qt::Unchecked : Qt::Checked, Qt::CheckStateRole);
    }
    return false;
}

void TGridView::mouseDoubleClickEvent(QMouseEvent *event)
{
    const QModelIndex index = indexAt(event->pos());
    const bool isEditor = index.flags().testFlag(Qt::ItemIsEditable) ||
                          index.flags().testFlag(Qt::ItemIsUserCheckable);
    QTreeView::mouseDoubleClickEvent(event);
    if (event->button() == Qt::LeftButton && index.isValid() && !isEditor)
        Q_EMIT OnActivated(index.row());
}

void TGridView::contextMenuEvent(QContextMenuEvent *event)
{
    QMenu &menu = KeptMenu(*this, "pmGrid");
    for (QAction *action : actions())
        if (!FOwnActions.contains(action))
            menu.addAction(action);
    menu.addSeparator(); // not shown when it is the first
    menu.addActions(
        {FCopy->CopyAction(), FCopy->CopyWithHeadersAction(), FSearchBar->FindAction()});
    menu.exec(event->globalPos());
}

bool TGridView::viewportEvent(QEvent *event)
{
    if (event->type() == QEvent::ToolTip && ShowCellTip(static_cast<QHelpEvent *>(event)))
        return true;
    return QTreeView::viewportEvent(event);
}

bool TGridView::ShowCellTip(QHelpEvent *event)
{
    const QModelIndex index = indexAt(event->pos());
    if (!index.isValid() || index.data(Qt::ToolTipRole).isValid())
        return false;
    QStyleOptionViewItem option;
    initViewItemOption(&option);
    const QRect cell = visualRect(index);
    if (itemDelegate()->sizeHint(option, index).width() <= cell.width())
        return false;
    // Cells hold text of servers: never to be read as markup.
    const QString text = index.data(Qt::DisplayRole).toString().left(MaxTipChars).toHtmlEscaped();
    QToolTip::showText(event->globalPos(), "<p style='white-space:pre-wrap'>" + text + "</p>",
                       viewport(), cell);
    return true;
}

void TGridView::changeEvent(QEvent *event)
{
    QTreeView::changeEvent(event);
    if (event->type() != QEvent::FontChange && event->type() != QEvent::StyleChange)
        return;
    const int oldWidth = std::exchange(FCharWidth, CharWidth());
    for (int column = 0; oldWidth > 0 && column < header()->count(); ++column)
        if (!isColumnHidden(column))
            setColumnWidth(column, columnWidth(column) * FCharWidth / oldWidth);
}
