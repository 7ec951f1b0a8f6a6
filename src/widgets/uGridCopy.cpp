#include "widgets/uGridCopy.h"

#include <QAction>
#include <QClipboard>
#include <QGuiApplication>
#include <QHeaderView>
#include <QTableView>
#include <QTreeView>
#include <algorithm>
#include <numeric>

namespace {

#ifdef Q_OS_WIN
constexpr QLatin1String LineEnd("\r\n");
#else
constexpr QLatin1String LineEnd("\n");
#endif

const QHeaderView *HeaderOf(const QAbstractItemView &view)
{
    if (const auto *tree = qobject_cast<const QTreeView *>(&view))
        return tree->header();
    if (const auto *table = qobject_cast<const QTableView *>(&view))
        return table->horizontalHeader();
    return nullptr;
}

/// What is selected, as rectangles: with a million selected rows there is one of them, while a list
/// of selected cells would take longer to make than the text.
QItemSelection SelectionOf(const QAbstractItemView &view)
{
    const QItemSelectionModel *selection = view.selectionModel();
    if (selection->hasSelection() || !selection->currentIndex().isValid())
        return selection->selection();
    const QModelIndex current = selection->currentIndex();
    if (view.selectionBehavior() != QAbstractItemView::SelectRows)
        return QItemSelection(current, current);
    return QItemSelection(current.siblingAtColumn(0),
                          current.siblingAtColumn(view.model()->columnCount(current.parent()) - 1));
}

std::vector<int> RowsOf(const QItemSelection &selection)
{
    std::vector<int> rows;
    for (const QItemSelectionRange &range : selection)
        for (int row = range.top(); row <= range.bottom(); ++row)
            rows.push_back(row);
    std::sort(rows.begin(), rows.end());
    rows.erase(std::unique(rows.begin(), rows.end()), rows.end());
    return rows;
}

std::vector<int> ColumnsOf(const QAbstractItemView &view, const QItemSelection &selection)
{
    std::vector<int> columns = TGridCopy::VisibleColumns(view);
    std::erase_if(columns, [&](int column) {
        return std::none_of(selection.begin(), selection.end(), [&](const auto &range) {
            return column >= range.left() && column <= range.right();
        });
    });
    return columns;
}

QString Quoted(QString text)
{
    const bool harmless = !text.contains(u'\t') && !text.contains(u'\n') && !text.contains(u'\r') &&
                          !text.startsWith(u'"');
    return harmless ? text : u'"' + text.replace(u'"', u"\"\""_qs) + u'"';
}

QString HeaderLine(const QAbstractItemModel &model, const std::vector<int> &columns)
{
    QStringList captions;
    for (const int column : columns)
        captions.append(Quoted(model.headerData(column, Qt::Horizontal).toString()));
    return captions.join(u'\t');
}

/// True when there are no unselected cells between the selected ones. Asking the selection for each
/// cell takes as long as it has ranges, which are as many as rows after a sort.
bool HasNoHoles(const QAbstractItemView &view, const QItemSelection &selection)
{
    return selection.size() == 1 || view.selectionBehavior() == QAbstractItemView::SelectRows;
}

QString RowText(const QItemSelection &selection, bool hasNoHoles, int row,
                const std::vector<int> &columns)
{
    const QItemSelectionRange &first = selection.first();
    QString text;
    for (size_t i = 0; i < columns.size(); ++i) {
        if (i > 0)
            text += u'\t';
        const QModelIndex index = first.model()->index(row, columns[i], first.parent());
        if (hasNoHoles || selection.contains(index))
            text += Quoted(TGridCopy::CellText(index));
    }
    return text;
}

} // namespace

TGridCopy::TGridCopy(QAbstractItemView *view) : QObject(view), FView(view)
{
    FCopy = AddAction("actCopy", "Copy", QKeySequence::Copy, false);
    FCopyWithHeaders = AddAction("actCopyWithHeaders", "Copy with Headers",
                                 QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_C), true);
}

QAction *TGridCopy::AddAction(const QString &name, const QString &caption, const QKeySequence &keys,
                              bool withHeaders)
{
    auto *action = new QAction(caption, FView);
    action->setObjectName(name);
    action->setShortcut(keys);
    // An editor in a cell keeps its own Ctrl+C.
    action->setShortcutContext(Qt::WidgetShortcut);
    connect(action, &QAction::triggered, this, [this, withHeaders] {
        const QString text = Text(*FView, withHeaders);
        if (!text.isEmpty())
            QGuiApplication::clipboard()->setText(text);
    });
    FView->addAction(action);
    return action;
}

QString TGridCopy::Text(const QAbstractItemView &view, bool withHeaders)
{
    if (view.model() == nullptr)
        return {};
    const QItemSelection selection = SelectionOf(view);
    const std::vector<int> rows = RowsOf(selection);
    const std::vector<int> columns = ColumnsOf(view, selection);
    if (rows.empty() || columns.empty())
        return {};
    if (rows.size() == 1 && columns.size() == 1 && !withHeaders)
        return CellText(
            view.model()->index(rows.front(), columns.front(), selection.first().parent()));
    const bool hasNoHoles = HasNoHoles(view, selection);
    QString text;
    if (withHeaders)
        text += HeaderLine(*view.model(), columns) + LineEnd;
    for (size_t i = 0; i < rows.size(); ++i) {
        if (i > 0)
            text += LineEnd;
        text += RowText(selection, hasNoHoles, rows[i], columns);
    }
    return text;
}

std::vector<int> TGridCopy::VisibleColumns(const QAbstractItemView &view)
{
    std::vector<int> columns;
    const QHeaderView *header = HeaderOf(view);
    if (header == nullptr) {
        columns.resize(size_t(view.model()->columnCount(view.rootIndex())));
        std::iota(columns.begin(), columns.end(), 0);
        return columns;
    }
    for (int position = 0; position < header->count(); ++position) {
        const int column = header->logicalIndex(position);
        if (!header->isSectionHidden(column))
            columns.push_back(column);
    }
    return columns;
}

QString TGridCopy::WholeText(const QModelIndex &index)
{
    const QVariant whole = index.data(GridCopyRole);
    return whole.isValid() ? whole.toString() : index.data(Qt::DisplayRole).toString();
}

QString TGridCopy::CellText(const QModelIndex &index)
{
    const QString text = WholeText(index);
    if (!text.isEmpty())
        return text;
    const QVariant checked = index.data(Qt::CheckStateRole);
    if (!checked.isValid())
        return text;
    return checked.toInt() == Qt::Unchecked ? QStringLiteral("no") : QStringLiteral("yes");
}
