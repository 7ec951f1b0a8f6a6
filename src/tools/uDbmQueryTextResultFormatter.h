#pragma once

#include <QString>
#include <QStringList>

class TDataSet;
class TField;

/// Renders a result as a text table with columns of fixed width.
class TDbmQueryTextResultFormatter
{
public:
    /// The query, the table and a line with the number of rows and the time, with CR LF between the
    /// lines. Without an open dataset there is no table. Walks the dataset twice and leaves it on
    /// its first row.
    void Execute(const QString &queryText, TDataSet *dataset, QString &text,
                 double elapsedSeconds) const;

    /// Whether BLOB and TEXT columns show their content; by default they show their size.
    void SetShowBlobText(bool value) { FShowBlobText = value; }
    bool ShowBlobText() const { return FShowBlobText; }
    void SetTabStop(int value) { FTabStop = value; }
    int TabStop() const { return FTabStop; }
    /// Whether a line stands between two columns; by default it is a blank.
    void SetDrawVertLines(bool value) { FDrawVertLines = value; }
    bool DrawVertLines() const { return FDrawVertLines; }

private:
    QStringList FormatTable(TDataSet &dataset) const;
    QStringList FormatRow(const TDataSet &dataset) const;
    QString FormatCell(const TDataSet &dataset, const TField &field) const;
    QString FormatBlobSize(const TDataSet &dataset, const TField &field) const;
    QString Join(const TDataSet &dataset, const QStringList &cells, const QList<int> &widths) const;
    QString Separator() const { return FDrawVertLines ? " | " : " "; }

    bool FShowBlobText = false;
    int FTabStop = 8;
    bool FDrawVertLines = false;
};
