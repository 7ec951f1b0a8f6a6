#include "jobs/uDbmChecksumTableDataUtils.h"

#include "jobs/uDbmDumpNames.h"
#include "model/uDbmFieldList.h"
#include "model/uDbmManager.h"
#include "model/uDbmTableList.h"
#include "sql/uDbmPathUtils.h"
#include "support/uException.h"
#include "support/uFormat.h"

quint32 TDbmChecksumTableDataUtils::Calculate(const QString &database, const QString &table)
{
    std::shared_ptr<TDbmTableItem> item;
    if (!FManager.TryGetTable(database, table, item))
        throw EException(TFormat::Format("Table \"%s.%s\" not found.", {database, table}));
    QStringList sums;
    item->Fields().ForEach([&](TDbmFieldItem &field) {
        sums << TFormat::Format("sum(ifnull(crc32(%s), 0))",
                                {TDbmPathUtils::FormatDbObject(
                                    QString(), TDbmDumpNames::Escaped(field.Entity().FieldName))});
    });
    if (sums.isEmpty())
        throw EException(TFormat::Format("The columns of table \"%s\" cannot be read.", {table}));
    const QString sql = TFormat::Format(
        "SELECT ifnull(crc32(%s), 0) FROM %s",
        {sums.join(" + "), TDbmPathUtils::FormatDbObject(TDbmDumpNames::Escaped(database),
                                                         TDbmDumpNames::Escaped(table))});
    const TDbmCommandExecQueryResult result = FManager.Command().ExecQuery(sql);
    return static_cast<quint32>(result.Query->FieldAt(0).AsInteger());
}
