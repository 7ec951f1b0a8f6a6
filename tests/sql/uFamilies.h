#pragma once

#include "core/uServerProfile.h"
#include "sql/uDbmCommands.h"
#include "uTestDatabase.h"
#include "uTestPrint.h"

/// Families on a session of their own.
struct TFamilies
{
    explicit TFamilies(const TTestServer &server)
    {
        Provider.SetParams(ServerProfile(server));
        Features.SetParams(Provider.ServerVersion());
        Commands.SetOnCommandNotExecuted(
            [this](TDbmChildCommands *, const QString &message, const QString &command) {
                Failures += {message, command};
            });
    }
    /// What is read from the one row of a SELECT.
    template <typename TParser>
    auto Parse(const QString &select, const TParser &parser)
    {
        decltype(parser(std::declval<const TDataSet &>())) entity;
        Provider.Command().ExecuteQuery(select, [&](TDataSet *rows) {
            rows->First();
            entity = parser(*rows);
        });
        return entity;
    }
    /// The entity that a formatter makes of the one row of a SELECT.
    template <typename TFormatters>
    auto Row(const TFormatters &formatters, const QString &select)
    {
        return Parse(select, [&](const TDataSet &row) { return formatters.ParseSelectRow(row); });
    }

    TDbmProvider Provider;
    TDbmServerFeatures Features;
    TDbmFormatters Formatters{&Features};
    TDbmCommands Commands{&Provider, &Formatters};
    QStringList Failures;
};
