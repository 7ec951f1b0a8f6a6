#pragma once

#include "sql/uDbmChildCommands.h"

/// The rows of a table.
class TDbmDataCommands : public TDbmChildCommands
{
public:
    using TDbmChildCommands::TDbmChildCommands;

    using TReader = std::function<bool(const TDataSet &row)>;

    /// 0 when the read failed.
    qint64 ExecuteSelectRowCount(const QString &database, const QString &table);
    qint64 ExecuteSelectRowCount(const QString &database, const QString &table,
                                 const QString &whereText);
    /// What the reader gave for the one row that matches; false, without calling it, when there
    /// is none or more than one.
    bool ExecuteSelectRow(const QString &database, const QString &table, const TReader &reader,
                          const TVariantList &values, const QStringList &fields);
    /// The same, but a read that failed raises EDacMySqlError.
    bool TrySelectRow(const QString &database, const QString &table, const TReader &reader,
                      const TVariantList &values, const QStringList &fields) const;
    void ExecuteInsertRow(const QString &database, const QString &table, const TVariantList &values,
                          const QStringList &fields) const;
    // These give the number of rows that matched, changed or not.
    qint64 ExecuteUpdateRow(const QString &database, const QString &table,
                            const TVariantList &whereValues, const QStringList &whereFields,
                            const TVariantList &values, const QStringList &fields) const;
    qint64 ExecuteDeleteRow(const QString &database, const QString &table,
                            const TVariantList &whereValues, const QStringList &whereFields) const;

private:
    qint64 SelectCount(const QString &statement);
    qint64 Change(const QString &statement) const;
};
