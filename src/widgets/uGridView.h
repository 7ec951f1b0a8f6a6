#pragma once

#include "widgets/uGridModel.h"

#include <QPointer>
#include <QTreeView>
#include <vector>

class TGridCopy;
class TGridSearchBar;

/// The list grid: rows of a TGridModel with sorting by header click, copy, search, best fit and
/// remembered columns. Read-only rows selected as a whole unless columns have setters. A refill
/// keeps the focused row, the selection and the scroll position by the items' keys. Actions that a
/// page adds with addAction stand in the context menu before those of the grid.
class TGridView : public QTreeView
{
    Q_OBJECT

public:
    explicit TGridView(QWidget *parent = nullptr);

    /// A TGridModelBase; not owned. Sorts it as its columns say.
    void setModel(QAbstractItemModel *model) override;

    /// -1 when no row is focused.
    int FocusedRow() const { return currentIndex().row(); }
    /// Focuses and selects the row and scrolls to it; -1 takes focus and selection away.
    void SetFocusedRow(int row);
    /// From top to bottom.
    std::vector<int> SelectedRows() const;

    /// Makes all columns as wide as what they show at the moment and a sample of further rows.
    void BestFit();
    /// Widths and order of the columns live in the layout store. Call it after setModel.
    void RememberLayout(const QString &key);

    TGridCopy *Copy() const { return FCopy; }
    TGridSearchBar *SearchBar() const { return FSearchBar; }

Q_SIGNALS:
    /// Another row or none has the focus, or the rows were refilled. -1 for none.
    void OnFocusedChanged(int row);
    /// Double click or Enter on a row.
    void OnActivated(int row);

protected:
    void currentChanged(const QModelIndex &current, const QModelIndex &previous) override;
    int sizeHintForColumn(int column) const override;
    void keyPressEvent(QKeyEvent *event) override;
    void mouseDoubleClickEvent(QMouseEvent *event) override;
    void contextMenuEvent(QContextMenuEvent *event) override;
    bool viewportEvent(QEvent *event) override;
    void changeEvent(QEvent *event) override;

private:
    /// What is kept over a refill.
    struct TPlace
    {
        QString FocusedKey;
        int FocusedColumn = -1;
        std::vector<QString> SelectedKeys;
        int ScrollX = 0;
        int ScrollY = 0;
    };

    void SortAsColumnsSay();
    void ChooseWidths();
    void ModelAboutToBeReset();
    void ModelReset();
    TPlace CurrentPlace() const;
    void RestorePlace(const TPlace &place);
    bool ToggleCheck();
    bool ShowCellTip(QHelpEvent *event);
    int CharWidth() const;

    QPointer<TGridModelBase> FModel;
    TGridCopy *FCopy;
    TGridSearchBar *FSearchBar;
    QList<QAction *> FOwnActions;
    TPlace FPlace;
    QString FLayoutKey;
    int FCharWidth = 0; // what the columns were measured with
    bool FIsFitted = false;
    bool FIsRefilling = false;
    bool FHadUpdates = true; // before the refill
};
