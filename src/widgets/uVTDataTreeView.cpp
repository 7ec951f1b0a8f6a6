#include "widgets/uVTDataTreeView.h"

#include <QHeaderView>
#include <QKeyEvent>
#include <QScrollBar>

TVTTreeView::TVTTreeView(QWidget *parent, const QString &name) : QTreeView(parent)
{
    setObjectName(name);
    setUniformRowHeights(true);
    setAllColumnsShowFocus(true);
    setSelectionMode(SingleSelection);
    setSelectionBehavior(SelectRows);
    setEditTriggers(NoEditTriggers);
    // What a double click does is the page's affair.
    setExpandsOnDoubleClick(false);
    setVerticalScrollMode(ScrollPerPixel);
    setHorizontalScrollMode(ScrollPerPixel);
    setHeaderHidden(true);
    // A lone column is as wide as its text, so that a narrow panel scrolls instead of cutting
    // names short, and at least as wide as the view.
    header()->setStretchLastSection(false);
    header()->setResizeContentsPrecision(200); // rows measured around the visible ones
    viewport()->setAttribute(Qt::WA_Hover);
}

TVTTreeView::~TVTTreeView()
{
    Q_EMIT OnDestroying();
}

void TVTTreeView::BeginRefresh()
{
    setUpdatesEnabled(false);
    FPlaces.clear();
    // At the very top what is new above the first row shall be seen.
    if (verticalScrollBar()->value() == 0)
        return;
    QModelIndex index = indexAt(QPoint(0, 0));
    for (; index.isValid(); index = indexBelow(index)) {
        const int top = visualRect(index).top();
        if (top >= viewport()->height())
            break;
        FPlaces.append({index, top});
    }
}

void TVTTreeView::EndRefresh()
{
    executeDelayedItemsLayout();
    RestorePlaces();
    setUpdatesEnabled(true);
}

void TVTTreeView::Relayout()
{
    scheduleDelayedItemsLayout();
}

void TVTTreeView::keyPressEvent(QKeyEvent *event)
{
    // The built-in "expand everything below" would read every object of a database from the
    // server, one by one.
    if (event->key() == Qt::Key_Asterisk)
        return;
    QTreeView::keyPressEvent(event);
}

void TVTTreeView::resizeEvent(QResizeEvent *event)
{
    QTreeView::resizeEvent(event);
    if (header()->count() != 1)
        return;
    header()->setMinimumSectionSize(viewport()->width());
    header()->setSectionResizeMode(0, QHeaderView::ResizeToContents);
}

void TVTTreeView::closeEditor(QWidget *editor, QAbstractItemDelegate::EndEditHint hint)
{
    QTreeView::closeEditor(editor, hint);
    Q_EMIT OnEditorClosed(hint == QAbstractItemDelegate::RevertModelCache);
}

void TVTTreeView::RestorePlaces()
{
    for (const TPlace &place : std::as_const(FPlaces)) {
        const QRect rect = visualRect(place.Index);
        if (!rect.isValid())
            continue;
        verticalScrollBar()->setValue(verticalScrollBar()->value() + rect.top() - place.Top);
        break;
    }
    FPlaces.clear();
}
