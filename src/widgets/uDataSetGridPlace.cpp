#include "widgets/uDataSetGridPlace.h"

#include <QItemSelectionModel>
#include <QScrollBar>
#include <QTableView>

void TDataSetGridPlace::Take(const QTableView &view, const QStringList &columns)
{
    const QModelIndex current = view.currentIndex();
    if (!current.isValid())
        return;
    FIsKnown = true;
    FColumn = columns.value(current.column());
    FDown = view.verticalScrollBar()->value();
    FAcross = view.horizontalScrollBar()->value();
    FSelected.clear();
    for (const QItemSelectionRange &range : view.selectionModel()->selection())
        FSelected +=
            QRect(QPoint(range.left(), range.top()), QPoint(range.right(), range.bottom()));
}

void TDataSetGridPlace::Restore(QTableView &view, int row, int column, bool anew) const
{
    const QAbstractItemModel &model = *view.model();
    const QModelIndex current = model.index(row, column);
    QItemSelection selection;
    const QRect whole(0, 0, model.columnCount(), model.rowCount());
    for (const QRect &range : anew ? QList<QRect>() : FSelected)
        if (const QRect left = range & whole; !left.isEmpty())
            selection.select(model.index(left.top(), left.left()),
                             model.index(left.bottom(), left.right()));
    if (!selection.contains(current))
        selection = QItemSelection(current, current);
    QItemSelectionModel::SelectionFlags how = QItemSelectionModel::ClearAndSelect;
    if (view.selectionBehavior() == QTableView::SelectRows)
        how |= QItemSelectionModel::Rows;
    view.selectionModel()->setCurrentIndex(current, QItemSelectionModel::NoUpdate);
    view.selectionModel()->select(selection, how);
    view.verticalScrollBar()->setValue(anew ? 0 : FDown);
}

void TDataSetGridPlace::RestoreAcross(QTableView &view) const
{
    view.horizontalScrollBar()->setValue(FAcross);
}
