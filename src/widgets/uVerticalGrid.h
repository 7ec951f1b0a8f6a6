#pragma once

#include "widgets/uVerticalGridRow.h"

#include <QHash>
#include <QScrollArea>
#include <vector>

class QGridLayout;

/// The property grid: named rows of a caption and a value, in categories that fold. Up and Down
/// move between rows, Tab to the next control, Enter and F2 edit or open, typing replaces. What is
/// typed becomes the row's value with Enter, when the focus leaves the row and by CommitEdit; Esc
/// drops it.
class TVerticalGrid : public QScrollArea
{
    Q_OBJECT

public:
    explicit TVerticalGrid(QWidget *parent = nullptr);

    /// The rows the new one stands under, such as its category, hide and fold it with them. Throws
    /// std::logic_error when there is a row of this name.
    TVerticalRow *Add(TRowKind kind, const QString &name, const QString &caption,
                      TVerticalRow *parent = nullptr);
    /// The name of a row made from its caption: "Host name" is rowHostName.
    static QString NameOf(const QString &caption);
    /// Throws std::logic_error when there is no such row; FindRow gives null.
    TVerticalRow *Row(const QString &name) const;
    TVerticalRow *FindRow(const QString &name) const { return FByName.value(name); }
    const std::vector<TVerticalRow *> &Rows() const { return FRows; }
    void Clear();

    TVerticalRow *FocusedRow() const { return FFocused; }
    /// Makes what is being typed the value of its row; dialogs call it before they read the rows.
    /// Throws EConvertError, with the focus in the row, when it does not stand for a value.
    void CommitEdit();

    bool eventFilter(QObject *watched, QEvent *event) override;

Q_SIGNALS:
    /// Null when the focus was never in the grid or its row is gone.
    void OnFocusedRowChanged(TVerticalRow *row);
    /// The user gave a row another value; comes after the row's own OnChanged.
    void OnRowChanged(TVerticalRow *row);

private:
    friend class TVerticalRow;

    void WatchRow(TVerticalRow *row);
    TVerticalRow *RowOf(const QObject *object) const;
    void RowsChanged();
    void SetFocusedRow(TVerticalRow *row);
    bool HandleKey(TVerticalRow *row, QObject *watched, const QKeyEvent &event);
    bool ShowMenu(QObject *watched, const QPoint &at);
    bool HandleFold(TVerticalRow *row, int key);
    bool MoveFocus(TVerticalRow *row, int step);
    void PressOrCommit(TVerticalRow *row, QObject *watched);
    void PaintBody();

    QWidget *FBody;
    QGridLayout *FLayout;
    std::vector<TVerticalRow *> FRows;
    QHash<QString, TVerticalRow *> FByName;
    QHash<const QObject *, TVerticalRow *> FByCell;
    TVerticalRow *FFocused = nullptr;
};
