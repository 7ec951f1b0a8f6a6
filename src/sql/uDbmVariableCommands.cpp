#include "sql/uDbmVariableCommands.h"

QList<TDbmVariableEntity> TDbmVariableCommands::ExecuteSelect(TDbmVariableOption option)
{
    const auto &formatters = FFormatters->Variables();
    return SafeExecuteToList<TDbmVariableEntity>(
        formatters.FormatSelect(option),
        [&](const TDataSet &row) { return formatters.ParseSelectRow(row); });
}

void TDbmVariableCommands::ExecuteGetValue(const QString &name, TDbmVariableOption option,
                                           QString &value)
{
    const auto &formatters = FFormatters->Variables();
    value = SafeExecuteToValue<QString>(
        formatters.FormatGetValue(name, option),
        [&](const TDataSet &row) { return formatters.ParseGetValue(row); }, {});
}

void TDbmVariableCommands::ExecuteSetValue(const QString &name, const TVariant &value,
                                           TDbmVariableOption option) const
{
    ExecuteScript(FFormatters->Variables().FormatSetValue(name, value, option), ";");
}
