#include "sql/uDbmVariableCommands.h"

#include "support/uRegExUtils.h"

#include <cmath>

namespace {

// The numbers of the server's error list. A boolean variable answers the first to '1'.
constexpr int WrongValueForVariable = 1231; // ER_WRONG_VALUE_FOR_VAR
constexpr int WrongTypeForVariable = 1232;  // ER_WRONG_TYPE_FOR_VAR

bool IsNumber(const QString &text)
{
    return TRegExUtils::IsMatch(text, "^-?\\d+(\\.\\d*)?$");
}

// A variable of whole numbers takes no exponent.
QString NumberText(const TVariant &value)
{
    const bool isLarge = value.IsDouble() && std::abs(value.As<double>()) >= 1E15;
    return isLarge ? QString::number(value.As<double>(), 'f', 0) : value.ToString().trimmed();
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
        const QString number = NumberText(value);
        const bool isRefused =
            e.ErrorCode() == WrongTypeForVariable || e.ErrorCode() == WrongValueForVariable;
        if (!isRefused || !IsNumber(number))
            throw;
        try {
            ExecuteScript(formatters.FormatSetNumber(name, number, option), ";");
        } catch (const EDacMySqlError &) {
            throw EDacMySqlError(e); // what was asked for is what was refused
        }
    }
}
