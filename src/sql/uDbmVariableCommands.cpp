#include "sql/uDbmVariableCommands.h"

#include "support/uRegExUtils.h"

namespace {

constexpr int WrongTypeForVariable = 1232; // ER_WRONG_TYPE_FOR_VAR of the server's error list

bool IsNumber(const QString &text)
{
    return TRegExUtils::IsMatch(text, "^-?\\d+(\\.\\d*)?$");
}

} // namespace

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
    const auto &formatters = FFormatters->Variables();
    try {
        ExecuteScript(formatters.FormatSetValue(name, value, option), ";");
    } catch (const EDacMySqlError &e) {
        // A number that arrives as text or float is quoted, which a numeric variable refuses.
        const QString number = value.ToString().trimmed();
        if (e.ErrorCode() != WrongTypeForVariable || !IsNumber(number))
            throw;
        ExecuteScript(formatters.FormatSetNumber(name, number, option), ";");
    }
}
