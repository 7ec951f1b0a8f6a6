#include "sql/uDbmCollationCommands.h"

QList<TDbmCollationEntity> TDbmCollationCommands::ExecuteSelect()
{
    const TDbmCollationFormatters &formatters = FFormatters->Collations();
    return SafeExecuteToList<TDbmCollationEntity>(
        formatters.FormatSelect(),
        [&](const TDataSet &row) { return formatters.ParseSelectRow(row); });
}
