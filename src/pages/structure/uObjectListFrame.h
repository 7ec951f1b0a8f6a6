#pragma once

#include "shell/uBaseFrame.h"
#include "widgets/uGridColumns.h"

#include <QStringList>
#include <vector>

class QAction;
class TGridView;
class TToolBar;

/// One column of a list of server objects.
struct TObjectListColumn
{
    QString Caption;
    QString Hint;
    Qt::Alignment Align = Qt::AlignLeft;
    TGridColumnKind Kind = gkText;
    TGridSort Sort = gsNone;
};

/// One object: its name, and for each column what the cell shows and sorts by.
struct TObjectListRow
{
    struct TCell
    {
        TCell() = default;
        TCell(const QString &text) : Text(text), SortValue(text) {}
        TCell(const QString &text, TGridValue sortValue) : Text(text), SortValue(sortValue) {}
        TCell(bool checked) : SortValue(checked), Checked(checked) {}

        QString Text;
        TGridValue SortValue;
        bool Checked = false;
    };

    QString Name;
    std::vector<TCell> Cells;
    QColor Color;
};

/// A read-only grid of objects under a tool bar whose actions stand in the context menu too.
class TObjectListFrame : public TBaseFrame
{
    Q_OBJECT
public:
    explicit TObjectListFrame(QWidget *owner) : TBaseFrame(owner) {}

    /// Once; the layout is remembered under the key.
    void SetColumns(const std::vector<TObjectListColumn> &columns, const QString &layoutKey);
    void SetColumnVisible(int column, bool visible);
    /// Focus, selection and scroll position stay where the names stay.
    void SetRows(std::vector<TObjectListRow> rows);
    QString FocusedName() const; // empty without a focused row

Q_SIGNALS:
    void OnFocusedChanged();

protected:
    void DoCreate() override;
    /// In the tool bar and in the context menu; an empty icon name gives none.
    QAction *AddAction(const char *name, const QString &caption, const QString &hint,
                       const char *icon);
    void AddSeparator();
    /// The context menu alone has the actions then.
    void HideToolBar();
    /// Room for the tool bar, the header and all rows, or for so many when there are fewer.
    int HeightOfRows(int atLeast) const;
    TGridView *Grid() const { return lvList; }

private:
    TToolBar *FToolBar = nullptr;
    TGridView *lvList = nullptr;
};
