#include "sql/uDbmEngineCommands.h"

QList<TDbmEngineEntity> TDbmEngineCommands::ExecuteSelect()
{
    const TDbmEngineFormatters &formatters = FFormatters->Engines();
    return SafeExecuteToList<TDbmEngineEntity>(formatters.FormatSelect(), [&](const TDataSet &row) {
        return formatters.ParseSelectRow(row);
    });
}
