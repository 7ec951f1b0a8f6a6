#pragma once

#include "core/uDacMySqlConnection.h"
#include "uTestDatabase.h"
#include "uTestErrors.h"

/// Points a connection at the database of a test.
inline void Aim(TDacMySqlConnection &connection, const TTestDatabase &database)
{
    connection.SetHost(database.Server().Host());
    connection.SetPort(database.Server().Port());
    connection.SetUserName(database.Server().User());
    connection.SetDatabase(database.Name());
    connection.SetCharset("utf8mb4");
}

/// The error with which an operation ends; code 0 when there is none.
inline EDacMySqlError ErrorOf(const std::function<void()> &operation)
{
    try {
        operation();
    } catch (const EDacMySqlError &error) {
        return error;
    }
    return EDacMySqlError(0, QString(), QString());
}
