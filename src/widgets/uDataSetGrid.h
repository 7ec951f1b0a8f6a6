#pragma once

#include "widgets/uDataSetGridPlace.h"

#include <QHash>
#include <QPointer>
#include <QStringList>
#include <QTableView>
#include <functional>

class QLabel;
class TDataSetCellDelegate;
class TDataSetModel;
class TGridCopy;
class TGridSearchBar;

/// The grid over a dataset: a million rows as cheap as ten. In edit mode cells are selected and
/// edited in place; otherwise whole rows are selected and the record keys work. Actions added with
/// addAction stand in the context menu before those of the grid.
class TDataSetGrid : public QTableView
{
    Q_OBJECT

public:
    /// Lets the user change the bytes; false when nothing is to be written.
    using TEditBytesEvent = std::function<bool(const QString &FieldName, QByteArray &Bytes)>;

    /// Edits a value that the rows have only the length of.
    using TEditWholeEvent = std::function<void(const QString &FieldName)>;

    explicit TDataSetGrid(QWidget *parent = nullptr);
    ~TDataSetGrid() override;

    TDataSetModel *DataModel() const { return FModel; }
    void SetEditMode(bool value);
    bool EditMode() const { return FEditMode; }
    /// Writes what is being typed and ends the edit. False when the server refuses: then the editor
    /// stays open, says why, and what would drop it should wait.
    bool CommitEdit();
    /// Cells of BLOB columns are edited by this; empty bytes stand for NULL.
    void SetOnEditBytes(TEditBytesEvent event) { FOnEditBytes = std::move(event); }
    /// Whether a header click sorts the rows at hand or is only told.
    void SetSortsItself(bool value) { FSortsItself = value; }
    /// Marks a column as sorted without sorting; -1 for none.
    void MarkSort(int column, bool ascending);

    void SetOnEditWhole(TEditWholeEvent event) { FOnEditWhole = std::move(event); }
    /// The next rows are others than these, as those of another page: the place goes to their top.
    void ForgetPlace() { FStartsAnew = true; }
    /// Widths that the user gives to columns come back with the next grid of this key.
    void RememberWidths(const QString &key);
    /// Keeps the width of each column whose name was there before and fits the new ones.
    void RebuildColumns();
    /// Makes these columns as wide as the header and a sample of their cells.
    void BestFit(const QStringList &fieldNames);
    void FitColumn(int column);

    TGridCopy *Copy() const { return FCopy; }
    TGridSearchBar *SearchBar() const { return FSearchBar; }

Q_SIGNALS:
    void OnSortRequested(int column, bool ascending); // column -1: no order any more
    /// The record keys; only outside edit mode.
    void OnUpdateRequested();
    void OnAppendRequested();
    void OnDeleteRequested();

protected:
    bool edit(const QModelIndex &index, EditTrigger trigger, QEvent *event) override;
    void closeEditor(QWidget *editor, QAbstractItemDelegate::EndEditHint hint) override;
    void currentChanged(const QModelIndex &current, const QModelIndex &previous) override;
    void keyPressEvent(QKeyEvent *event) override;
    void mouseDoubleClickEvent(QMouseEvent *event) override;
    /// Nothing: a letter typed on a read-only cell would make the texts of a million rows. Ctrl+F
    /// searches.
    void keyboardSearch(const QString &) override {}
    void contextMenuEvent(QContextMenuEvent *event) override;
    void changeEvent(QEvent *event) override;

private:
    void SetUpHeaders();
    void MakeNullAction();
    void SetNull();
    bool EditInDialog(const QModelIndex &index);
    void EditBytes(const QModelIndex &index);
    void RestorePlace();
    void HeaderClicked(int column);
    void EditRefused(const QModelIndex &index, const QString &message);
    void ShowNote(const QModelIndex &index, const QString &text);
    void HideNote();
    QString ReadOnlyReason(const QModelIndex &index) const;
    void FollowRecord();
    bool HandleRecordKey(int key);
    int WantedWidth(int column, int samples) const;
    void UpdateRowHeight();
    void KeepWidths();

    TDataSetModel *FModel;
    TDataSetCellDelegate *FDelegate;
    TGridCopy *FCopy;
    TGridSearchBar *FSearchBar;
    QAction *FSetNull = nullptr;
    QList<QAction *> FOwnActions;
    QPointer<QLabel> FNote;   // the refusal or the reason at a cell
    QStringList FColumnNames; // of the last rebuild
    TDataSetGridPlace FPlace;
    TEditBytesEvent FOnEditBytes;
    TEditWholeEvent FOnEditWhole;
    QString FWidthsKey;          // empty: widths live as long as the grid
    QHash<QString, int> FWidths; // by field name, of the columns before the rebuild
    int FSortedColumn = -1;
    bool FSortedAscending = true;
    bool FEditMode = true;
    bool FSortsItself = true;
    bool FRefused = false;
    bool FFollowing = false;
    bool FStartsAnew = false;
};
