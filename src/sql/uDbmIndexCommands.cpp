#include "sql/uDbmIndexCommands.h"

namespace {

// The numbers of the server's error list.
constexpr int WrongAutoKey = 1075;          // ER_WRONG_AUTO_KEY
constexpr int DropIndexOfForeignKey = 1553; // ER_DROP_INDEX_FK
constexpr int TableWithoutKey = 3750;       // ER_TABLE_WITHOUT_PK, with sql_require_primary_key

bool HasToBeReplacedAtOnce(int errorCode)
{
    return errorCode == WrongAutoKey || errorCode == DropIndexOfForeignKey ||
           errorCode == TableWithoutKey;
}

} // namespace

QList<TDbmIndexEntity> TDbmIndexCommands::ExecuteSelect(const QString &database,
                                                        const QString &table)
{
    const TDbmIndexFormatters &formatters = FFormatters->Indexes();
    return SafeExecuteToList<TDbmIndexEntity>(
        formatters.FormatSelect(database, table),
        [&](const TDataSet &row) { return formatters.ParseSelectRow(row); });
}

void TDbmIndexCommands::ExecuteCreate(const QString &database, const QString &table,
                                      const QList<TDbmIndexColumnEntity> &columns,
                                      const TDbmIndexEntity &index) const
{
    ExecuteScript(FFormatters->Indexes().FormatAlterTableAddIndex(database, table, index, columns),
                  ";");
}

void TDbmIndexCommands::ExecuteUpdate(const QString &database, const QString &table,
                                      const QList<TDbmIndexColumnEntity> &columns,
                                      const TDbmIndexEntity &index, const QString &oldName) const
{
    try {
        ExecuteDelete(database, table, oldName);
    } catch (const EDacMySqlError &e) {
        if (!HasToBeReplacedAtOnce(e.ErrorCode()))
            throw;
        ExecuteScript(FFormatters->Indexes().FormatAlterTableReplaceIndex(database, table, index,
                                                                          columns, oldName),
                      ";");
        return;
    }
    ExecuteCreate(database, table, columns, index);
}

void TDbmIndexCommands::ExecuteDelete(const QString &database, const QString &table,
                                      const QString &name) const
{
    ExecuteScript(FFormatters->Indexes().FormatAlterTableDropIndex(database, table, name), ";");
}
