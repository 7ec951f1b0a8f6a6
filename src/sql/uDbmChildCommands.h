#pragma once

#include "core/uDbmCommand.h"
#include "core/uDbmProvider.h"
#include "sql/uDatasetUtils.h"
#include "sql/uDbmFormatters.h"
#include "sql/uDbmTextSettings.h"

#include <functional>
#include <optional>
#include <utility>

class TDbmChildCommands;

/// A safe read failed: the family, the exception's text and the statement.
using TDbmCommandNotExecutedEvent = std::function<void(
    TDbmChildCommands *Sender, const QString &ErrorMessage, const QString &Command)>;

/// Base of the command families: joins formatters to the executor. Reads are safe: a failure gives
/// an empty answer and fires the event. Changes are not: their errors pass to the caller. Runs on
/// the calling thread.
class TDbmChildCommands
{
public:
    TDbmChildCommands(TDbmProvider *provider, const TDbmFormatters *formatters)
        : FProvider(provider), FFormatters(formatters)
    {}
    virtual ~TDbmChildCommands() = default;
    TDbmChildCommands(const TDbmChildCommands &) = delete;
    TDbmChildCommands &operator=(const TDbmChildCommands &) = delete;

    void SetOnCommandNotExecuted(TDbmCommandNotExecutedEvent event)
    {
        FOnCommandNotExecuted = std::move(event);
    }

protected:
    template <typename T>
    using TRowParser = std::function<T(const TDataSet &row)>;

    void ExecuteScript(const QString &commandText, const QString &delimiter) const;
    /// Runs one statement as it stands, in a session that is set as the one that made the text.
    void ExecuteAsMade(const QString &statement, const TDbmTextSettings &settings) const;
    /// Runs a change that destroyed something first. When it fails `putBack` gives that back, and
    /// the error of the change is raised; when that fails too, the error tells so, and `lost`.
    static void ExecuteOrPutBack(const std::function<void()> &change,
                                 const std::function<void()> &putBack, const QString &lost);
    /// Gives true when nothing was raised. Nothing is retried.
    bool SafeExecute(const QString &commandText,
                     const std::function<void(const QString &)> &action);

    template <typename T>
    QList<T> ExecuteToList(const QString &commandText, const TRowParser<T> &rowParser) const
    {
        QList<T> list;
        FProvider->Command().ExecuteQuery(commandText, [&](TDataSet *rows) {
            if (!rows)
                return;
            list.reserve(rows->RecordCount());
            TDatasetUtils::ForEach(*rows, [&](TDataSet &row) { list.append(rowParser(row)); });
        });
        return list;
    }

    template <typename T>
    QList<T> SafeExecuteToList(const QString &commandText, const TRowParser<T> &rowParser)
    {
        QList<T> list;
        SafeExecute(commandText,
                    [&](const QString &text) { list = ExecuteToList<T>(text, rowParser); });
        return list;
    }

    template <typename T>
    T SafeExecuteToValue(const QString &commandText, const TRowParser<T> &valueReader, T def)
    {
        T value = def;
        return SafeTryExecuteToValue<T>(commandText, valueReader, value) ? value : def;
    }

    /// False when there is no row or the read failed; `value` is then left alone.
    template <typename T>
    bool SafeTryExecuteToValue(const QString &commandText, const TRowParser<T> &valueReader,
                               T &value)
    {
        std::optional<T> read;
        SafeExecute(commandText, [&](const QString &text) {
            FProvider->Command().ExecuteQuery(text, [&](TDataSet *rows) {
                if (!rows || rows->IsEmpty())
                    return;
                rows->First();
                read = valueReader(*rows);
            });
        });
        if (read)
            value = std::move(*read);
        return read.has_value();
    }

    TDbmProvider *FProvider;           // not owned
    const TDbmFormatters *FFormatters; // not owned

private:
    TDbmCommandNotExecutedEvent FOnCommandNotExecuted;
};
