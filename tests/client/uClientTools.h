#pragma once

#include "client/uMyConnection.h"
#include "client/uMyQuery.h"
#include "uTestDatabase.h"
#include "uTestErrors.h"

/// Points a connection at a server, as root and with the text in UTF-8.
inline void Aim(TMyConnection &connection, const TTestServer &server, const QString &database = {})
{
    connection.Server = server.Host();
    connection.Port = server.Port();
    connection.Username = server.User();
    connection.Password = server.Password();
    connection.Database = database;
    connection.Options.Charset = "utf8mb4";
    connection.Options.UseUnicode = true;
}

/// The error with which an operation ends; code 0 when there is none.
inline EMyError ErrorOf(const std::function<void()> &operation)
{
    try {
        operation();
    } catch (const EMyError &error) {
        return error;
    }
    return EMyError(0, QString());
}

/// A database on the run's MariaDB and a connection of the product's to it.
class TClientTest : public TServerTest
{
protected:
    TClientTest() { Aim(FConnection, Server(), Database().Name()); }

    std::unique_ptr<TMyQuery> Open(const QString &sql)
    {
        auto query = std::make_unique<TMyQuery>(&FConnection);
        query->SetSQL(sql);
        query->Execute();
        return query;
    }
    std::string Ask(const QString &sql) { return Open(sql)->FieldAt(0).AsString().toStdString(); }

    TMyConnection FConnection;
};
