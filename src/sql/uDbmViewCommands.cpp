#include "sql/uDbmViewCommands.h"

namespace {

// The numbers of the server's error list: a view without its tables, which may have no text to read
// and has to be mended all the same.
constexpr int NoSuchTable = 1146; // ER_NO_SUCH_TABLE
constexpr int ViewInvalid = 1356; // ER_VIEW_INVALID

} // namespace

QList<TDbmViewEntity> TDbmViewCommands::ExecuteSelect(const QString &database)
{
    const TDbmViewFormatters &formatters = FFormatters->Views();
    return SafeExecuteToList<TDbmViewEntity>(
        formatters.FormatSelect(database),
        [&](const TDataSet &row) { return formatters.ParseSelectRow(row); });
}

bool TDbmViewCommands::ExecuteSelectRow(const QString &database, const QString &view,
                                        TDbmViewEntity &entity)
{
    const TDbmViewFormatters &formatters = FFormatters->Views();
    return SafeTryExecuteToValue<TDbmViewEntity>(
        formatters.FormatSelectRow(database, view),
        [&](const TDataSet &row) { return formatters.ParseSelectRow(row); }, entity);
}

void TDbmViewCommands::Create(const QString &database, const TDbmViewEntity &entity,
                              bool orReplace) const
{
    ExecuteScript(
        FFormatters->Views().FormatCreate(database, entity, false, true, orReplace, QString()),
        ";");
}

void TDbmViewCommands::ExecuteCreate(const QString &database, const TDbmViewEntity &entity) const
{
    Create(database, entity, false);
}

QString TDbmViewCommands::ExecuteSelectAlgorithm(const QString &database, const QString &view) const
{
    const TDbmViewFormatters &formatters = FFormatters->Views();
    try {
        return ExecuteToList<QString>(
                   formatters.FormatSelectDDL(database, view),
                   [&](const TDataSet &row) { return formatters.ParseSelectAlgorithm(row); })
            .value(0);
    } catch (const EDacMySqlError &e) {
        if (e.ErrorCode() != NoSuchTable && e.ErrorCode() != ViewInvalid)
            throw;
        return {};
    }
}

void TDbmViewCommands::ExecuteUpdate(const QString &database, const QString &oldName,
                                     const TDbmViewEntity &entity) const
{
    TDbmViewEntity whole = entity;
    if (whole.Algorithm.isEmpty())
        whole.Algorithm = ExecuteSelectAlgorithm(database, oldName);
    const bool sameName = oldName == entity.ViewName;
    Create(database, whole, sameName);
    if (!sameName)
        ExecuteDelete(database, oldName);
}

void TDbmViewCommands::ExecuteDelete(const QString &database, const QString &name) const
{
    ExecuteScript(FFormatters->Views().FormatDelete(database, name, false), ";");
}

void TDbmViewCommands::ExecuteRename(const QString &database, const QString &oldName,
                                     const QString &newName) const
{
    ExecuteScript(FFormatters->Views().FormatRename(database, oldName, newName), ";");
}
