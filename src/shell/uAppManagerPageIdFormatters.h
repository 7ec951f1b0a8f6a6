#pragma once

#include <QString>

/// The identity of a page within its workspace, so that a second "open" finds it.
class TAppManagerPageIdFormatters
{
public:
    static QString FormatSchemaId(const QString &databaseName) { return "schema." + databaseName; }
    static QString FormatTableId(const QString &databaseName, const QString &tableName)
    {
        return "table." + databaseName + '.' + tableName;
    }
    static QString FormatUsersId() { return "users"; }
};
