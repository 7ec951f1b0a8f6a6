#pragma once

#include <QAbstractItemView>
#include <QObject>
#include <vector>

class QAction;

/// Role of a cell's whole text, where what is shown is cut or marked; models without it copy and
/// search what they show.
inline constexpr int GridCopyRole = Qt::UserRole + 2;

/// Copies the selection of any item view as text: cells by tabs, rows by line ends of the platform.
/// Works for tree, table and other views, with columns in the order and choice the user sees. Only
/// selected cells are asked of the model.
class TGridCopy : public QObject
{
    Q_OBJECT

public:
    /// Gives the view its actions `actCopy` (Ctrl+C) and `actCopyWithHeaders` (Ctrl+Shift+C), which
    /// work while the view itself has the focus. The view becomes the owner.
    explicit TGridCopy(QAbstractItemView *view);

    QAction *CopyAction() const { return FCopy; }
    QAction *CopyWithHeadersAction() const { return FCopyWithHeaders; }

    /// The selection, or the focused row or cell when nothing is selected. A single cell is given
    /// as it is; among several, one that holds a tab or a line break is put in double quotes.
    static QString Text(const QAbstractItemView &view, bool withHeaders);
    /// The columns that can be seen, from left to right.
    static std::vector<int> VisibleColumns(const QAbstractItemView &view);
    /// What a cell shows; a check box without a text gives "yes" or "no".
    static QString CellText(const QModelIndex &index);
    /// The whole text of a cell, without the words for a check box.
    static QString WholeText(const QModelIndex &index);

private:
    QAction *AddAction(const QString &name, const QString &caption, const QKeySequence &keys,
                       bool withHeaders);

    QAbstractItemView *FView;
    QAction *FCopy;
    QAction *FCopyWithHeaders;
};
