#include "sql/uDbmRoutinePrivilegesFormatters.h"

#include "sql/uDatasetUtils.h"
#include "sql/uDbmLevelPrivileges.h"
#include "sql/uDbmPathUtils.h"
#include "sql/uDbmSqlStringFormatter.h"
#include "support/uFormat.h"

namespace {

constexpr TDbmPrivilegeText Texts[] = {
    {rpExecute, "EXECUTE", "Execute"},
    {rpAlterRoutine, "ALTER ROUTINE", "Alter Routine"},
    {rpGrant, "GRANT OPTION", "Grant"},
};

QString UserHost(const TDbmRoutinePrivilegesEntity &entity)
{
    return TDbmSqlUtils::FormatUserHost(entity.User, entity.Host);
}

QString ObjectOf(const TDbmRoutinePrivilegesEntity &entity)
{
    return (entity.RoutineType == rtFunction ? "FUNCTION " : "PROCEDURE ") +
           TDbmPathUtils::FormatDbObject(entity.Database, entity.Routine);
}

} // namespace

QString TDbmRoutinePrivilegesFormatters::FormatSelect(const QString &user,
                                                      const QString &host) const
{
    return TFormat::Format(
        "SELECT * FROM mysql.procs_priv User = '%s' AND Host = '%s'",
        {TDbmSqlStringFormatter::Format(user), TDbmSqlStringFormatter::Format(host)});
}

TDbmRoutinePrivilegesEntity
TDbmRoutinePrivilegesFormatters::ParseSelectRow(const TDataSet &row) const
{
    const auto text = [&](const char *name) { return TDatasetUtils::AsString(row, name, {}); };
    TDbmRoutinePrivilegesEntity entity;
    entity.User = text("User");
    entity.Host = text("Host");
    entity.Database = text("Db");
    entity.Routine = text("Routine_name");
    entity.RoutineType = text("Routine_type").compare(u"FUNCTION", Qt::CaseInsensitive) == 0
                             ? rtFunction
                             : rtProcedure;
    entity.Privs = TDbmLevelPrivileges::ParseWords<TDbmRoutinePriv>(Texts, text("Proc_priv"));
    return entity;
}

QString
TDbmRoutinePrivilegesFormatters::FormatCreate(const TDbmRoutinePrivilegesEntity &entity) const
{
    return TDbmLevelPrivileges::FormatGrant(TDbmLevelPrivileges::FormatList(Texts, entity.Privs),
                                            "  " + ObjectOf(entity), UserHost(entity));
}

QString TDbmRoutinePrivilegesFormatters::FormatUpdate(const TDbmRoutinePrivilegesEntity &entity,
                                                      const TDbmRoutinePrivs &newPrivs) const
{
    const QString object = "  " + ObjectOf(entity);
    const QString granted = TDbmLevelPrivileges::FormatList(Texts, newPrivs - entity.Privs);
    const QString revoked = TDbmLevelPrivileges::FormatList(Texts, entity.Privs - newPrivs);
    return TDbmLevelPrivileges::FormatRevoke(revoked, object, UserHost(entity)) +
           TDbmLevelPrivileges::FormatGrant(granted, object, UserHost(entity));
}

QString
TDbmRoutinePrivilegesFormatters::FormatDelete(const TDbmRoutinePrivilegesEntity &entity) const
{
    return TDbmLevelPrivileges::FormatDelete(ObjectOf(entity), UserHost(entity),
                                             entity.Privs.Contains(rpGrant));
}
