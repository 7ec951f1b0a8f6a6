#include "sql/uDbmUserPrivilegesCommands.h"

#include "support/uException.h"
#include "support/uFormat.h"

namespace {

constexpr int PasswordRefused = 1819; // ER_NOT_VALID_PASSWORD

} // namespace

QList<TDbmUserPrivilegesEntity> TDbmUserPrivilegesCommands::ExecuteSelect()
{
    const TDbmUserPrivilegesFormatters &formatters = FFormatters->UsersPrivileges();
    return SafeExecuteToList<TDbmUserPrivilegesEntity>(
        formatters.FormatSelect(),
        [&](const TDataSet &row) { return formatters.ParseSelectRow(row); });
}

void TDbmUserPrivilegesCommands::Execute(const QString &statement) const
{
    if (!statement.isEmpty())
        ExecuteScript(statement, ";");
}

void TDbmUserPrivilegesCommands::FlushPrivileges() const
{
    Execute(FFormatters->Other().FormatFlushPrivileges());
}

QList<TDbmUserPrivilegesEntity> TDbmUserPrivilegesCommands::SelectRow(const QString &user,
                                                                      const QString &host) const
{
    const TDbmUserPrivilegesFormatters &formatters = FFormatters->UsersPrivileges();
    return ExecuteToList<TDbmUserPrivilegesEntity>(
        formatters.FormatSelectRow(user, host),
        [&](const TDataSet &row) { return formatters.ParseSelectRow(row); });
}

void TDbmUserPrivilegesCommands::ExecuteCreate(const TDbmUserPrivilegesEntity &entity,
                                               const QString &password) const
{
    const TDbmUserPrivilegesFormatters &formatters = FFormatters->UsersPrivileges();
    try {
        Execute(formatters.FormatCreate(entity.UserName, entity.HostName));
    } catch (const EDacMySqlError &e) {
        // Servers that look at passwords take no account that has none, not even for a moment.
        if (e.ErrorCode() != PasswordRefused || password.isEmpty())
            throw;
        Execute(formatters.FormatCreate(entity.UserName, entity.HostName, password));
    }
    Execute(formatters.FormatGrant(entity));
    Execute(formatters.FormatLimits(entity));
    if (entity.Privileges.Contains(privGrantOption))
        Execute(formatters.FormatGrantGrantOption(entity.UserName, entity.HostName));
    if (!password.isEmpty())
        Execute(formatters.FormatSetPassword(entity.UserName, entity.HostName, password));
    FlushPrivileges();
}

void TDbmUserPrivilegesCommands::ExecuteUpdate(const QString &oldUser, const QString &oldHost,
                                               const QString &password, bool changePassword,
                                               const TDbmUserPrivilegesEntity &entity) const
{
    const TDbmUserPrivilegesFormatters &formatters = FFormatters->UsersPrivileges();
    const QList<TDbmUserPrivilegesEntity> rows = SelectRow(oldUser, oldHost);
    // A GRANT to nobody would make an account without a password on some servers.
    if (rows.isEmpty())
        throw EException(
            TFormat::Format("The account \"%s@%s\" cannot be found.", {oldUser, oldHost}));
    const TDbmUserPrivilegesEntity &old = rows.first();
    if (old.IsRole)
        throw EException(TFormat::Format("\"%s\" is a role and not an account.", {oldUser}));
    const QString &user = entity.UserName;
    const QString &host = entity.HostName;
    if (user != oldUser || host != oldHost)
        Execute(formatters.FormatRename(oldUser, oldHost, host, user));
    // Revoking everything would take the rights on databases, tables and routines too.
    const TDbmPrivileges gone = old.Privileges - entity.Privileges;
    if (!gone.IsEmpty())
        Execute(formatters.FormatRevokePrivileges(user, host, gone));
    // Granted once more it would reach rights that are not modelled.
    if (entity.Privileges.Contains(privGrantOption) && !old.Privileges.Contains(privGrantOption))
        Execute(formatters.FormatGrantGrantOption(user, host));
    Execute(formatters.FormatGrantUpdate(entity, old.Privileges));
    Execute(formatters.FormatLimits(entity));
    if (changePassword)
        Execute(formatters.FormatSetPassword(user, host, password));
    FlushPrivileges();
}

void TDbmUserPrivilegesCommands::ExecuteDelete(const QString &user, const QString &host) const
{
    const TDbmUserPrivilegesFormatters &formatters = FFormatters->UsersPrivileges();
    const bool isRole =
        host.isEmpty() && formatters.HaveRoles() && SelectRow(user, host).value(0).IsRole;
    Execute(isRole ? formatters.FormatDropRole(user) : formatters.FormatDrop(user, host));
    FlushPrivileges();
}
