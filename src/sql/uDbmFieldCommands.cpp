#include "sql/uDbmFieldCommands.h"

#include "sql/uDbmQuotedText.h"

QList<TDbmFieldEntity> TDbmFieldCommands::ExecuteSelect(const QString &database,
                                                        const QString &table)
{
    const TDbmFieldFormatters &formatters = FFormatters->Fields();
    return SafeExecuteToList<TDbmFieldEntity>(
        formatters.FormatSelect(database, table),
        [&](const TDataSet &row) { return formatters.ParseSelectRow(row); });
}

void TDbmFieldCommands::ExecuteCreate(const QString &database, const QString &table,
                                      const TDbmFieldEntity &field,
                                      const TDbmFieldPosition &position,
                                      const QString &tableCollation) const
{
    ExecuteScript(FFormatters->Fields().FormatAlterTableAddColumn(database, table, field, position,
                                                                  tableCollation),
                  ";");
}

void TDbmFieldCommands::ExecuteUpdate(const QString &database, const QString &table,
                                      const TDbmFieldEntity &field,
                                      const TDbmFieldPosition &position, const QString &newName,
                                      const QString &tableCollation) const
{
    const TDbmFieldFormatters &formatters = FFormatters->Fields();
    const TDbmFieldEntity whole = WithCheck(database, table, field, newName);
    ExecuteScript(newName == field.FieldName
                      ? formatters.FormatAlterTableModifyColumn(database, table, whole, position,
                                                                tableCollation)
                      : formatters.FormatAlterTableChangeColumn(database, table, whole, position,
                                                                newName, tableCollation),
                  ";");
}

TDbmFieldEntity TDbmFieldCommands::WithCheck(const QString &database, const QString &table,
                                             TDbmFieldEntity field, const QString &newName) const
{
    if (field.ServerText.Type.isEmpty() || !FFormatters->Fields().HaveColumnChecks())
        return field;
    const TDbmTableFormatters &tables = FFormatters->Tables();
    const QStringList ddl =
        ExecuteToList<QString>(tables.FormatSelectDDL(database, table),
                               [&](const TDataSet &row) { return tables.ParseSelectDDL(row); });
    const QString check = TDbmFieldFormatters::ParseColumnCheck(ddl.value(0), field.FieldName);
    // The server reads the clause with the column's name as it will be.
    if (!check.isEmpty() && !field.ServerText.Trailing.contains(check))
        field.ServerText.Trailing +=
            ' ' + TDbmQuotedText::RenameColumn(check, field.FieldName, newName);
    return field;
}

void TDbmFieldCommands::ExecuteDelete(const QString &database, const QString &table,
                                      const QString &name) const
{
    ExecuteScript(FFormatters->Fields().FormatAlterTableDropColumn(database, table, name), ";");
}
