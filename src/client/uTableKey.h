#pragma once

#include "client/uFieldInfo.h"

#include <QList>
#include <QString>
#include <QStringList>
#include <functional>
#include <vector>

/// The one table that a result shows, and the columns that identify a row of it.
struct TTableKey
{
    QString Reason; // why rows cannot be changed; empty when they can
    QString Database;
    QString Table;
    QList<int> Columns; // indexes of the result's columns

    /// Asks the server for the table's keys: the metadata of a result tells which columns belong
    /// to the primary key, but not whether they are all of it. `sql` is the result's statement.
    using TRows = std::function<std::vector<QStringList>(const QString &sql)>;
    static TTableKey Find(const TRows &rows, const std::vector<TFieldInfo> &fields,
                          const QString &sql);
};

QString QuotedIdentifier(const QString &name);
