#pragma once

#include "support/uVariant.h"

/// Composes one SELECT over one table. Made, filled, asked once.
class TDbmSelectFormatter
{
public:
    QString FDatabaseName;
    QString FTableName;
    QStringList FFieldNames;        // output columns; empty means all
    QStringList FPrimaryFieldNames; // the table's key columns
    QStringList FTextFields;        // fetched only by their length
    QStringList FBlobFields;        // fetched only by their length
    QStringList FFloatFields;       // FLOAT columns, widened so that every digit comes
    QStringList FWhereFields;
    TVariantList FWhereValues; // same order as FWhereFields
    QString FWhereCommandText; // the user's own condition, inserted as it is
    QStringList FOrderFields;
    bool FOrderAscending = false;
    qint64 FLimitOffset = -1;   // first row; below 1 means none
    qint64 FLimitRowCount = -1; // -1 means no limit

    /// With an offset and a known key the skipped rows are passed in a subquery that reads the key
    /// alone, else the plain form.
    void Format(QString &sql) const;
    void FormatRowCount(QString &sql) const;

private:
    QString PlainForm() const;
    QString KeyJoinForm() const;
    QString OrderBy(const QString &alias, bool isQualified) const;
    QString OuterOrderBy() const;
    QString Columns(const QString &alias) const;
    bool ComesAsLength(const QString &name) const;
};
