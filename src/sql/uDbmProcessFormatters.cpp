#include "sql/uDbmProcessFormatters.h"

#include "sql/uDatasetUtils.h"
#include "sql/uVariantUtils.h"
#include "support/uFormat.h"

QString TDbmProcessFormatters::FormatSelect() const
{
    return FServerFeatures->ISProcessList ? "SELECT * FROM INFORMATION_SCHEMA.PROCESSLIST"
                                          : "SHOW FULL PROCESSLIST";
}

QList<TDbmProcessEntity> TDbmProcessFormatters::ParseSelect(TDataSet &rows) const
{
    // The names of both forms differ in letter case alone, to which the lookup is blind.
    const TField &id = rows.FieldByName("ID");
    const TField &user = rows.FieldByName("USER");
    const TField &host = rows.FieldByName("HOST");
    const TField &db = rows.FieldByName("DB");
    const TField &command = rows.FieldByName("COMMAND");
    const TField &time = rows.FieldByName("TIME");
    const TField &state = rows.FieldByName("STATE");
    const TField &info = rows.FieldByName("INFO");
    QList<TDbmProcessEntity> processes;
    TDatasetUtils::ForEach(rows, [&](TDataSet &) {
        TDbmProcessEntity entity;
        entity.Id = TFieldReading::Int64(id);
        entity.User = TFieldReading::Text(user);
        entity.Host = TFieldReading::Text(host);
        entity.Db = TFieldReading::Text(db);
        entity.Command = TFieldReading::Text(command);
        entity.Time = TFieldReading::Int64(time);
        entity.State = TFieldReading::Text(state);
        entity.Info = TFieldReading::Text(info);
        processes.append(entity);
    });
    return processes;
}

QString TDbmProcessFormatters::FormatKillQuery(qint64 id) const
{
    return TFormat::Format("KILL QUERY %u", {static_cast<quint64>(id)});
}

QString TDbmProcessFormatters::FormatKillConnection(qint64 id) const
{
    return TFormat::Format("KILL CONNECTION %u", {static_cast<quint64>(id)});
}
