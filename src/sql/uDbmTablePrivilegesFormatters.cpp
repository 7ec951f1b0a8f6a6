#include "sql/uDbmTablePrivilegesFormatters.h"

#include "sql/uDatasetUtils.h"
#include "sql/uDbmLevelPrivileges.h"
#include "sql/uDbmPathUtils.h"
#include "sql/uDbmSqlStringFormatter.h"
#include "support/uFormat.h"

namespace {

constexpr TDbmPrivilegeText Texts[] = {
    {tpSelect, "SELECT", "Select"},
    {tpInsert, "INSERT", "Insert"},
    {tpUpdate, "UPDATE", "Update"},
    {tpDelete, "DELETE", "Delete"},
    {tpCreate, "CREATE", "Create"},
    {tpDrop, "DROP", "Drop"},
    {tpGrant, "GRANT OPTION", "Grant"},
    {tpReferences, "REFERENCES", "References"},
    {tpIndex, "INDEX", "Index"},
    {tpAlter, "ALTER", "Alter"},
    {tpCreateView, "CREATE VIEW", "Create view"},
    {tpShowView, "SHOW VIEW", "Show view"},
    {tpTrigger, "TRIGGER", "Trigger"},
};

QString UserHost(const TDbmTablePrivilegesEntity &entity)
{
    return TDbmSqlUtils::FormatUserHost(entity.User, entity.Host);
}

QString ObjectOf(const TDbmTablePrivilegesEntity &entity)
{
    return "TABLE " + TDbmPathUtils::FormatDbObject(entity.Database, entity.Table);
}

} // namespace

QString TDbmTablePrivilegesFormatters::FormatSelect(const QString &user, const QString &host) const
{
    return TFormat::Format(
        "SELECT * FROM mysql.tables_priv WHERE User = '%s' AND Host = '%s'",
        {TDbmSqlStringFormatter::Format(user), TDbmSqlStringFormatter::Format(host)});
}

TDbmTablePrivilegesEntity TDbmTablePrivilegesFormatters::ParseSelectRow(const TDataSet &row) const
{
    const auto text = [&](const char *name) { return TDatasetUtils::AsString(row, name, {}); };
    TDbmTablePrivilegesEntity entity;
    entity.User = text("User");
    entity.Host = text("Host");
    entity.Database = text("Db");
    entity.Table = text("Table_name");
    entity.Privs = TDbmLevelPrivileges::ParseWords<TDbmTablePriv>(Texts, text("Table_priv"));
    return entity;
}

QString TDbmTablePrivilegesFormatters::FormatCreate(const TDbmTablePrivilegesEntity &entity) const
{
    return TDbmLevelPrivileges::FormatGrant(TDbmLevelPrivileges::FormatList(Texts, entity.Privs),
                                            "  " + ObjectOf(entity), UserHost(entity));
}

QString TDbmTablePrivilegesFormatters::FormatUpdate(const TDbmTablePrivilegesEntity &entity,
                                                    const TDbmTablePrivs &newPrivs) const
{
    const QString object = "  " + ObjectOf(entity);
    const QString granted = TDbmLevelPrivileges::FormatList(Texts, newPrivs - entity.Privs);
    const QString revoked = TDbmLevelPrivileges::FormatList(Texts, entity.Privs - newPrivs);
    return TDbmLevelPrivileges::FormatRevoke(revoked, object, UserHost(entity)) +
           TDbmLevelPrivileges::FormatGrant(granted, object, UserHost(entity));
}

QString TDbmTablePrivilegesFormatters::FormatDelete(const TDbmTablePrivilegesEntity &entity) const
{
    return TDbmLevelPrivileges::FormatDelete(ObjectOf(entity), UserHost(entity),
                                             entity.Privs.Contains(tpGrant));
}
