#include "sql/uDbmLevelPrivileges.h"

#include "model/uDbmEntities.h"
#include "support/uFormat.h"

namespace {

constexpr TDbmPrivilegeText UserTexts[] = {
    {upSelect, "SELECT", "select_priv"},
    {upInsert, "INSERT", "insert_priv"},
    {upUpdate, "UPDATE", "update_priv"},
    {upDelete, "DELETE", "delete_priv"},
    {upCreate, "CREATE", "create_priv"},
    {upDrop, "DROP", "drop_priv"},
    {upReload, "RELOAD", "reload_priv"},
    {upShutdown, "SHUTDOWN", "shutdown_priv"},
    {upProcess, "PROCESS", "process_priv"},
    {upFile, "FILE", "file_priv"},
    {upGrant, "GRANT OPTION", "grant_priv"},
    {upReferences, "REFERENCES", "references_priv"},
    {upIndex, "INDEX", "index_priv"},
    {upAlter, "ALTER", "alter_priv"},
    {upShowDb, "SHOW DATABASES", "show_db_priv"},
    {upSuper, "SUPER", "super_priv"},
    {upCreateTmpTable, "CREATE TEMPORARY TABLES", "create_tmp_table_priv"},
    {upLockTable, "LOCK TABLES", "lock_tables_priv"},
    {upExecute, "EXECUTE", "execute_priv"},
    {upReplSlave, "REPLICATION SLAVE", "repl_slave_priv"},
    {upReplClient, "REPLICATION CLIENT", "repl_client_priv"},
    {upCreateView, "CREATE VIEW", "create_view_priv"},
    {upShowView, "SHOW VIEW", "show_view_priv"},
    {upCreateRoutine, "CREATE ROUTINE", "create_routine_priv"},
    {upAlterRoutine, "ALTER ROUTINE", "alter_routine_priv"},
    {upCreateUser, "CREATE USER", "create_user_priv"},
    {upEvent, "EVENT", "event_priv"},
    {upTrigger, "TRIGGER", "trigger_priv"},
};

} // namespace

TDbmLevelPrivileges::TTexts TDbmLevelPrivileges::UserPrivs()
{
    return UserTexts;
}

QString TDbmLevelPrivileges::FormatGrant(const QString &list, const QString &objectLine,
                                         const QString &userHost)
{
    if (list.isEmpty())
        return {};
    return QStringList{"GRANT " + list, "ON", objectLine, "TO", "  " + userHost}.join("\r\n") +
           "\r\n";
}

QString TDbmLevelPrivileges::FormatRevoke(const QString &list, const QString &objectLine,
                                          const QString &userHost)
{
    if (list.isEmpty())
        return {};
    return QStringList{"REVOKE " + list, "ON", objectLine, "FROM", "  " + userHost + ';', ""}.join(
               "\r\n") +
           "\r\n";
}

QString TDbmLevelPrivileges::FormatDelete(const QString &object, const QString &userHost,
                                          bool hasGrantOption)
{
    QString text = TFormat::Format("REVOKE ALL PRIVILEGES ON %s FROM %s", {object, userHost});
    if (hasGrantOption)
        text += ";\r\n" + TFormat::Format("REVOKE GRANT OPTION ON %s FROM %s;", {object, userHost});
    return text;
}
