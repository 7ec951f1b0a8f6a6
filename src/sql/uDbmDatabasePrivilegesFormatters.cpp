#include "sql/uDbmDatabasePrivilegesFormatters.h"

#include "sql/uDatasetUtils.h"
#include "sql/uDbmLevelPrivileges.h"
#include "sql/uDbmPathUtils.h"
#include "sql/uDbmSqlStringFormatter.h"
#include "support/uFormat.h"

namespace {

constexpr TDbmPrivilegeText Texts[] = {
    {dpSelect, "SELECT", "select_priv"},
    {dpInsert, "INSERT", "insert_priv"},
    {dpUpdate, "UPDATE", "update_priv"},
    {dpDelete, "DELETE", "delete_priv"},
    {dpCreate, "CREATE", "create_priv"},
    {dpDrop, "DROP", "drop_priv"},
    {dpGrant, "GRANT OPTION", "grant_priv"},
    {dpReferences, "REFERENCES", "references_priv"},
    {dpIndex, "INDEX", "index_priv"},
    {dpAlter, "ALTER", "alter_priv"},
    {dpCreateTmpTable, "CREATE TEMPORARY TABLES", "create_tmp_table_priv"},
    {dpLockTable, "LOCK TABLES", "lock_tables_priv"},
    {dpCreateView, "CREATE VIEW", "create_view_priv"},
    {dpShowView, "SHOW VIEW", "show_view_priv"},
    {dpCreateRoutine, "CREATE ROUTINE", "create_routine_priv"},
    {dpAlterRoutine, "ALTER ROUTINE", "alter_routine_priv"},
    {dpExecute, "EXECUTE", "execute_priv"},
    {dpEvent, "EVENT", "event_priv"},
    {dpTrigger, "TRIGGER", "trigger_priv"},
};

QString UserHost(const TDbmDatabasePrivilegesEntity &entity)
{
    return TDbmSqlUtils::FormatUserHost(entity.User, entity.Host);
}

QString ObjectOf(const TDbmDatabasePrivilegesEntity &entity)
{
    return TFormat::Format("`%s`.*", {entity.Database});
}

} // namespace

QString TDbmDatabasePrivilegesFormatters::FormatSelect(const QString &user,
                                                       const QString &host) const
{
    return TFormat::Format(
        "SELECT * FROM mysql.db WHERE User = '%s' AND Host = '%s'",
        {TDbmSqlStringFormatter::Format(user), TDbmSqlStringFormatter::Format(host)});
}

TDbmDatabasePrivilegesEntity
TDbmDatabasePrivilegesFormatters::ParseSelectRow(const TDataSet &row) const
{
    const auto text = [&](const char *name) { return TDatasetUtils::AsString(row, name, {}); };
    TDbmDatabasePrivilegesEntity entity;
    entity.User = text("User");
    entity.Host = text("Host");
    entity.Database = text("Db");
    for (const TDbmPrivilegeText &priv : Texts)
        if (text(priv.Stored).compare(u"Y", Qt::CaseInsensitive) == 0)
            entity.Privs.Include(static_cast<TDbmDatabasePriv>(priv.Bit));
    return entity;
}

QString
TDbmDatabasePrivilegesFormatters::FormatCreate(const TDbmDatabasePrivilegesEntity &entity) const
{
    return TDbmLevelPrivileges::FormatGrant(TDbmLevelPrivileges::FormatList(Texts, entity.Privs),
                                            "  " + ObjectOf(entity), UserHost(entity));
}

QString TDbmDatabasePrivilegesFormatters::FormatUpdate(const TDbmDatabasePrivilegesEntity &entity,
                                                       const TDbmDatabasePrivs &newPrivs) const
{
    const QString object = "  " + ObjectOf(entity);
    const QString granted = TDbmLevelPrivileges::FormatList(Texts, newPrivs - entity.Privs);
    const QString revoked = TDbmLevelPrivileges::FormatList(Texts, entity.Privs - newPrivs);
    return TDbmLevelPrivileges::FormatRevoke(revoked, object, UserHost(entity)) +
           TDbmLevelPrivileges::FormatGrant(granted, object, UserHost(entity));
}

QString
TDbmDatabasePrivilegesFormatters::FormatDelete(const TDbmDatabasePrivilegesEntity &entity) const
{
    return TDbmLevelPrivileges::FormatDelete(ObjectOf(entity), UserHost(entity),
                                             entity.Privs.Contains(dpGrant));
}
