#pragma once

#include "client/uDataSet.h"
#include "client/uTableKey.h"

#include <functional>

/// The statements by which a dataset changes rows of its table. Names are quoted and literals are
/// safe for every value, also in sessions without backslash escapes.
class TRowWriter
{
public:
    TRowWriter(const TTableKey &key, const TDataSet &dataset, bool noBackslashEscapes);

    QString UpdateText(qint64 row, const TDataSet::TChanges &changes) const;
    QString InsertText(const TDataSet::TChanges &changes) const;
    QString DeleteText(qint64 row) const;

    /// Columns of the result that lie in the table, in the order in which ReadBackText gives them.
    QList<int> TableColumns() const;
    /// Selects a row as it is after the change, by its key as the change has made it. `insertId` is
    /// the server's number for an appended row.
    QString ReadBackText(qint64 row, const TDataSet::TChanges &changes) const;
    QString ReadBackText(const TDataSet::TChanges &changes, quint64 insertId) const;

private:
    QString Name(int column) const;
    QString Literal(const TVariant &value) const;
    QString QuotedText(const QString &text) const;
    QString TableName() const;
    QString Where(const std::function<QString(int column)> &literal) const;
    QString WhereRow(qint64 row) const;
    QString Select(const QString &where) const;

    const TTableKey &FKey;
    const TDataSet &FDataset;
    const bool FNoBackslashEscapes;
};
