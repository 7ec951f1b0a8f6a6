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
    /// What a formatter makes of the one row of a SELECT.
    template <typename T>
    T Parse(const QString &select, const std::function<T(const TDataSet &)> &parser)
    {
        T entity;
        Provider.Command().ExecuteQuery(select, [&](TDataSet *rows) {
            rows->First();
            entity = parser(*rows);
        });
        return entity;
    }

    TDbmProvider Provider;
    TDbmServerFeatures Features;
    TDbmFormatters Formatters{&Features};
    TDbmCommands Commands{&Provider, &Formatters};
    QStringList Failures;
};
