#include "sql/uDbmChildCommands.h"

#include "sql/uDbmSqlValueUtils.h"
#include "support/uException.h"

#include <algorithm>

void TDbmChildCommands::ExecuteScript(const QString &commandText, const QString &delimiter) const
{
    FProvider->Command().ExecScript(commandText, {}, delimiter);
}

namespace {

QString FormatSettings(const TDbmTextSettings &settings)
{
    const auto assign = [](const char *name, const QString &value) {
        return QString(name) + " = " + TDbmSqlValueUtils::FormatString(value, true);
    };
    QStringList texts{assign("SESSION sql_mode", settings.SQLMode)};
    if (!settings.CollationConnection.isEmpty())
        texts.append(assign("SESSION collation_connection", settings.CollationConnection));
    if (!settings.CharsetClient.isEmpty())
        texts.append(assign("SESSION character_set_client", settings.CharsetClient));
    return "SET " + texts.join(", ");
}

QString FailureOf(const std::function<void()> &action)
{
    try {
        action();
        return {};
    } catch (const std::exception &e) {
        return ExceptionMessage(e);
    }
}

bool IsAscii(const QString &text)
{
    return std::all_of(text.begin(), text.end(), [](QChar c) { return c.unicode() < 0x80; });
}

} // namespace

void TDbmChildCommands::ExecuteAsMade(const QString &statement,
                                      const TDbmTextSettings &settings) const
{
    TDbmCommand &command = FProvider->Command();
    // As values, not as variables of the session: it may have to be opened anew.
    const auto own = ExecuteToList<TDbmTextSettings>(
        "SELECT @@sql_mode, @@character_set_client, @@collation_connection",
        [](const TDataSet &row) {
            return TDbmTextSettings{row.FieldAt(0).AsString(), row.FieldAt(1).AsString(),
                                    row.FieldAt(2).AsString()};
        });
    TDbmTextSettings made = settings;
    // The server would read the bytes of other letters in that character set.
    if (!IsAscii(statement))
        made.CharsetClient.clear();
    const QString back = FormatSettings(own.value(0));
    command.ExecStatement(FormatSettings(made));
    try {
        command.ExecStatement(statement);
    } catch (const EException &) {
        command.ExecStatement(back);
        throw;
    }
    command.ExecStatement(back);
}

void TDbmChildCommands::ExecuteOrPutBack(const std::function<void()> &change,
                                         const std::function<void()> &putBack, const QString &lost)
{
    try {
        change();
    } catch (const EException &e) {
        const QString failure = FailureOf(putBack);
        if (failure.isEmpty())
            throw;
        const QString told =
            "\r\nWhat was there before could not be put back: " + failure + "\r\n" + lost;
        if (const auto *error = dynamic_cast<const EDacMySqlError *>(&e))
            throw EDacMySqlError(error->ErrorCode(), error->ErrorMessage() + told,
                                 error->CommandText());
        throw EException(e.Message() + told);
    }
}

bool TDbmChildCommands::SafeExecute(const QString &commandText,
                                    const std::function<void(const QString &)> &action)
{
    QString message;
    try {
        action(commandText);
        return true;
    } catch (const std::exception &e) {
        message = ExceptionMessage(e);
    } catch (...) {
        message = "Unknown exception.";
    }
    if (FOnCommandNotExecuted)
        FOnCommandNotExecuted(this, message, commandText);
    return false;
}
