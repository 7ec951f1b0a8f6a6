#include "sql/uDbmPathUtils.h"

// Deliberate: a backtick inside a name is not doubled; the server rejects the statement.
QString TDbmPathUtils::FormatDbObject(const QString &database, const QString &name)
{
    if (database.isEmpty())
        return u'`' + name + u'`';
    return u'`' + database + "`.`" + name + u'`';
}

QString TDbmPathUtils::FormatDbObject(const QString &database, const QString &table,
                                      const QString &name)
{
    const QString inTable = FormatDbObject(table, name);
    return database.isEmpty() ? inTable : u'`' + database + "`." + inTable;
}
