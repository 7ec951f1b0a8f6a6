#include "sql/uDbmCharsetCommands.h"

QList<TDbmCharsetEntity> TDbmCharsetCommands::ExecuteSelect()
{
    const auto &formatters = FFormatters->Charsets();
    return SafeExecuteToList<TDbmCharsetEntity>(
        formatters.FormatSelect(),
        [&](const TDataSet &row) { return formatters.ParseSelectRow(row); });
}

void TDbmCharsetCommands::ExecuteGetSessionCharset(QString &name)
{
    const auto &formatters = FFormatters->Charsets();
    name = SafeExecuteToValue<QString>(
        formatters.FormatGetSessionCharset(),
        [&](const TDataSet &row) { return formatters.ParseGetSessionCharset(row); }, {});
}
