#include "sql/uDbmProcessCommands.h"

QList<TDbmProcessEntity> TDbmProcessCommands::ExecuteSelect() const
{
    const TDbmProcessFormatters &formatters = FFormatters->Processes();
    QList<TDbmProcessEntity> processes;
    FProvider->Command().ExecuteQuery(formatters.FormatSelect(), [&](TDataSet *rows) {
        if (rows)
            processes = formatters.ParseSelect(*rows);
    });
    return processes;
}

void TDbmProcessCommands::ExecuteKillQuery(qint64 id) const
{
    ExecuteScript(FFormatters->Processes().FormatKillQuery(id), ";");
}

void TDbmProcessCommands::ExecuteKillConnection(qint64 id) const
{
    ExecuteScript(FFormatters->Processes().FormatKillConnection(id), ";");
}
