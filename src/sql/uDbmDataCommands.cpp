#include "sql/uDbmDataCommands.h"

#include "sql/uVariantUtils.h"

// Past the splitter, as the rows that are counted are read: it would end a condition of several
// lines at a delimiter inside a text, and drop lines of it that begin as comments.
qint64 TDbmDataCommands::SelectCount(const QString &statement)
{
    qint64 count = 0;
    SafeExecute(statement, [&](const QString &text) {
        FProvider->Command().ExecuteStatement(text, [&](TDataSet *rows) {
            if (!rows || rows->IsEmpty())
                return;
            rows->First();
            count = TFieldReading::Int64(rows->FieldAt(0));
        });
    });
    return count;
}

qint64 TDbmDataCommands::ExecuteSelectRowCount(const QString &database, const QString &table)
{
    return SelectCount(FFormatters->Data().FormatSelectRowCount(database, table));
}

qint64 TDbmDataCommands::ExecuteSelectRowCount(const QString &database, const QString &table,
                                               const QString &whereText)
{
    return SelectCount(FFormatters->Data().FormatSelectRowCount(database, table, whereText));
}

bool TDbmDataCommands::ExecuteSelectRow(const QString &database, const QString &table,
                                        const TReader &reader, const TVariantList &values,
                                        const QStringList &fields)
{
    return SafeExecuteToValue<bool>(
        FFormatters->Data().FormatSelectRow(database, table, values, fields),
        [&](const TDataSet &row) { return row.RecordCount() == 1 && reader(row); }, false);
}

bool TDbmDataCommands::TrySelectRow(const QString &database, const QString &table,
                                    const TReader &reader, const TVariantList &values,
                                    const QStringList &fields) const
{
    bool isRead = false;
    FProvider->Command().ExecuteQuery(
        FFormatters->Data().FormatSelectRow(database, table, values, fields), [&](TDataSet *row) {
            if (!row || row->RecordCount() != 1)
                return;
            row->First();
            isRead = reader(*row);
        });
    return isRead;
}

// A dataset beside the command tells how many rows there were.
qint64 TDbmDataCommands::Change(const QString &statement) const
{
    const auto dataset = FProvider->Connection().CreateDataset();
    FProvider->Command().ExecQuery(statement, {}, dataset.get(), ";");
    return static_cast<qint64>(dataset->AffectedRows());
}

void TDbmDataCommands::ExecuteInsertRow(const QString &database, const QString &table,
                                        const TVariantList &values, const QStringList &fields) const
{
    ExecuteScript(FFormatters->Data().FormatInsertRow(database, table, values, fields), ";");
}

qint64 TDbmDataCommands::ExecuteUpdateRow(const QString &database, const QString &table,
                                          const TVariantList &whereValues,
                                          const QStringList &whereFields,
                                          const TVariantList &values,
                                          const QStringList &fields) const
{
    return Change(FFormatters->Data().FormatUpdateRow(database, table, whereValues, whereFields,
                                                      values, fields));
}

qint64 TDbmDataCommands::ExecuteDeleteRow(const QString &database, const QString &table,
                                          const TVariantList &whereValues,
                                          const QStringList &whereFields) const
{
    return Change(FFormatters->Data().FormatDeleteRow(database, table, whereValues, whereFields));
}
