#pragma once

#include <QString>

/// Names of server objects as statements write them.
class TDbmPathUtils
{
public:
    /// `db`.`name`, or `name` alone for an empty database.
    static QString FormatDbObject(const QString &database, const QString &name);
    /// `db`.`table`.`name`, or `table`.`name` for an empty database.
    static QString FormatDbObject(const QString &database, const QString &table,
                                  const QString &name);
};
