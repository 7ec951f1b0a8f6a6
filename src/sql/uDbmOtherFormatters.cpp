#include "sql/uDbmOtherFormatters.h"

#include "sql/uDbmPathUtils.h"
#include "support/uFormat.h"

QString TDbmOtherFormatters::FormatLockTable(const QString &database, const QString &table,
                                             TDbmLockTableOption option) const
{
    return TFormat::Format("LOCK TABLE %s %s", {TDbmPathUtils::FormatDbObject(database, table),
                                                option == ltoRead ? "READ" : "WRITE"});
}
