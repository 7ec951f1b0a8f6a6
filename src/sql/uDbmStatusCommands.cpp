#include "sql/uDbmStatusCommands.h"

QList<TDbmStatusEntity> TDbmStatusCommands::ExecuteSelect(TDbmStatusOption option)
{
    const TDbmStatusFormatters &formatters = FFormatters->Status();
    return SafeExecuteToList<TDbmStatusEntity>(
        formatters.FormatSelect(option),
        [&](const TDataSet &row) { return formatters.ParseSelectRow(row); });
}
