#pragma once

#include <QList>
#include <QRect>
#include <QString>

class QTableView;

/// Where somebody is in a grid: what is scrolled to, which column has the focus and which cells are
/// selected. By numbers of rows, since a refresh gives the rows anew.
class TDataSetGridPlace
{
public:
    /// Does nothing while no cell has the focus, so that the place outlives rows that fail to come.
    void Take(const QTableView &view, const QStringList &columns);
    /// Gives the row the focus and brings the rest back as far as it still exists. `anew`: the rows
    /// are others, so the row stands alone and at the top.
    void Restore(QTableView &view, int row, int column, bool anew) const;
    void RestoreAcross(QTableView &view) const; // after the columns have their widths
    bool IsKnown() const { return FIsKnown; }
    const QString &Column() const { return FColumn; }

private:
    bool FIsKnown = false;
    QString FColumn;
    QList<QRect> FSelected;
    int FDown = 0;
    int FAcross = 0;
};
