#include "sql/uDbmPrivilegesFormatters.h"

#include "sql/uDatasetUtils.h"

namespace {

struct TPrivilegeTexts
{
    TDbmPrivilege Privilege;
    const char *Words;
    const char *Column;
};

constexpr TPrivilegeTexts Privileges[] = {
    {privGrantOption, "GRANT OPTION", "grant_priv"},
    {privCreateTableSpace, "CREATE TABLESPACE", "create_tablespace_priv"},
    {privCreateUser, "CREATE USER", "create_user_priv"},
    {privFile, "FILE", "file_priv"},
    {privProcess, "PROCESS", "process_priv"},
    {privReload, "RELOAD", "reload_priv"},
    {privReplicationClient, "REPLICATION CLIENT", "repl_client_priv"},
    {privReplicationSlave, "REPLICATION SLAVE", "repl_slave_priv"},
    {privShowDatabases, "SHOW DATABASES", "show_db_priv"},
    {privShutdown, "SHUTDOWN", "shutdown_priv"},
    {privSuper, "SUPER", "super_priv"},
    {privSelect, "SELECT", "select_priv"},
    {privInsert, "INSERT", "insert_priv"},
    {privUpdate, "UPDATE", "update_priv"},
    {privDelete, "DELETE", "delete_priv"},
    {privCreate, "CREATE", "create_priv"},
    {privCreateTemporaryTables, "CREATE TEMPORARY TABLES", "create_tmp_table_priv"},
    {privCreateView, "CREATE VIEW", "create_view_priv"},
    {privCreateRoutine, "CREATE ROUTINE", "create_routine_priv"},
    {privAlter, "ALTER", "alter_priv"},
    {privAlterRoutine, "ALTER ROUTINE", "alter_routine_priv"},
    {privDrop, "DROP", "drop_priv"},
    {privExecute, "EXECUTE", "execute_priv"},
    {privIndex, "INDEX", "index_priv"},
    {privEvent, "EVENT", "event_priv"},
    {privShowView, "SHOW VIEW", "show_view_priv"},
    {privTrigger, "TRIGGER", "trigger_priv"},
    {privLockTables, "LOCK TABLES", "lock_tables_priv"},
    {privReferences, "REFERENCES", "references_priv"},
};

} // namespace

void TDbmPrivilegesFormatters::DoInitialize()
{
    for (const TPrivilegeTexts &texts : Privileges) {
        FPrivStringDict.insert(texts.Privilege, texts.Words);
        FPrivFieldDict.insert(texts.Privilege, texts.Column);
    }
}

QString TDbmPrivilegesFormatters::FormatPrivilege(TDbmPrivilege privilege) const
{
    return FPrivStringDict.value(privilege);
}

QString TDbmPrivilegesFormatters::FormatPrivileges(const TDbmPrivileges &privileges) const
{
    QStringList words;
    for (const TDbmPrivilege privilege : privileges)
        words.append(FormatPrivilege(privilege));
    return words.join(", ");
}

bool TDbmPrivilegesFormatters::ParsePrivilegeFromField(const TDataSet &row,
                                                       TDbmPrivilege privilege) const
{
    return TDatasetUtils::AsString(row, FPrivFieldDict.value(privilege), {})
               .compare(u"Y", Qt::CaseInsensitive) == 0;
}

TDbmPrivileges TDbmPrivilegesFormatters::ParsePrivilegesFromFields(const TDataSet &row) const
{
    TDbmPrivileges privileges;
    for (const TPrivilegeTexts &texts : Privileges)
        if (ParsePrivilegeFromField(row, texts.Privilege))
            privileges.Include(texts.Privilege);
    return privileges;
}
