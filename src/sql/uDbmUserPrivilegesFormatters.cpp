#include "sql/uDbmUserPrivilegesFormatters.h"

#include "sql/uDatasetUtils.h"
#include "sql/uDbmSqlStringFormatter.h"
#include "sql/uDbmSqlUtils.h"
#include "support/uFormat.h"

namespace {

QString UserHost(const QString &user, const QString &host)
{
    return TDbmSqlUtils::FormatUserHost(user, host);
}

} // namespace

QString TDbmUserPrivilegesFormatters::FormatSelect() const
{
    return "SELECT * FROM mysql.user";
}

QString TDbmUserPrivilegesFormatters::FormatSelectRow(const QString &user,
                                                      const QString &host) const
{
    return TFormat::Format(
        "SELECT * FROM mysql.user WHERE User = '%s' AND Host = '%s'",
        {TDbmSqlStringFormatter::Format(user), TDbmSqlStringFormatter::Format(host)});
}

TDbmUserPrivilegesEntity TDbmUserPrivilegesFormatters::ParseSelectRow(const TDataSet &row) const
{
    const auto text = [&](const char *name) { return TDatasetUtils::AsString(row, name, {}); };
    TDbmUserPrivilegesEntity entity;
    entity.UserName = row.FieldByName("user").AsString();
    entity.HostName = row.FieldByName("host").AsString();
    // Servers of today keep some passwords, or all, in the second column.
    entity.HavePassword = !text("password").isEmpty() || !text("authentication_string").isEmpty();
    entity.MaxQueriesPerHour = TDatasetUtils::AsLargeint(row, "max_questions", 0);
    entity.MaxUpdatesPerHour = TDatasetUtils::AsLargeint(row, "max_updates", 0);
    entity.MaxConnectionsPerHour = TDatasetUtils::AsLargeint(row, "max_connections", 0);
    entity.MaxUserConnections = TDatasetUtils::AsLargeint(row, "max_user_connections", 0);
    entity.Privileges = (*FPrivileges).ParsePrivilegesFromFields(row);
    entity.IsRole = text("is_role").compare(u"Y", Qt::CaseInsensitive) == 0;
    return entity;
}

QString TDbmUserPrivilegesFormatters::FormatCreate(const QString &user, const QString &host) const
{
    return "CREATE USER " + UserHost(user, host);
}

QString TDbmUserPrivilegesFormatters::FormatCreate(const QString &user, const QString &host,
                                                   const QString &password) const
{
    return FormatCreate(user, host) + " IDENTIFIED BY '" +
           TDbmSqlStringFormatter::Format(password) + '\'';
}

QString TDbmUserPrivilegesFormatters::FormatDrop(const QString &user, const QString &host) const
{
    return "DROP USER " + UserHost(user, host);
}

QString TDbmUserPrivilegesFormatters::FormatDropRole(const QString &role) const
{
    return TFormat::Format("DROP ROLE '%s'", {TDbmSqlStringFormatter::Format(role)});
}

QString TDbmUserPrivilegesFormatters::FormatRename(const QString &oldUser, const QString &oldHost,
                                                   const QString &newHost,
                                                   const QString &newUser) const
{
    return TFormat::Format("RENAME USER %s TO %s",
                           {UserHost(oldUser, oldHost), UserHost(newUser, newHost)});
}

QStringList TDbmUserPrivilegesFormatters::LimitLines(const TDbmUserPrivilegesEntity &entity) const
{
    const auto line = [](const char *format, qint64 value) {
        return TFormat::Format(format, {static_cast<quint64>(value)});
    };
    // The last one is signed: an account with -1 may not connect at all.
    return {line("  MAX_QUERIES_PER_HOUR %u", entity.MaxQueriesPerHour),
            line("  MAX_UPDATES_PER_HOUR %u", entity.MaxUpdatesPerHour),
            line("  MAX_CONNECTIONS_PER_HOUR %u", entity.MaxConnectionsPerHour),
            TFormat::Format("  MAX_USER_CONNECTIONS %d", {entity.MaxUserConnections})};
}

QString TDbmUserPrivilegesFormatters::FormatGrant(const TDbmUserPrivilegesEntity &entity) const
{
    const TDbmPrivileges privileges = entity.Privileges - TDbmPrivileges{privGrantOption};
    QStringList lines{privileges.IsEmpty() ? QString("GRANT USAGE")
                                           : "GRANT " + (*FPrivileges).FormatPrivileges(privileges),
                      "ON", "  *.*", "TO", "  " + UserHost(entity.UserName, entity.HostName)};
    if (!FServerFeatures->AlterUser) {
        lines.append("WITH");
        lines += LimitLines(entity);
    }
    return lines.join("\r\n").trimmed();
}

QString TDbmUserPrivilegesFormatters::FormatGrantUpdate(const TDbmUserPrivilegesEntity &entity,
                                                        const TDbmPrivileges &granted) const
{
    if (!FServerFeatures->AlterUser)
        return FormatGrant(entity);
    TDbmUserPrivilegesEntity missing = entity;
    missing.Privileges = entity.Privileges - granted - TDbmPrivileges{privGrantOption};
    return missing.Privileges.IsEmpty() ? QString() : FormatGrant(missing);
}

QString TDbmUserPrivilegesFormatters::FormatLimits(const TDbmUserPrivilegesEntity &entity) const
{
    if (!FServerFeatures->AlterUser)
        return {};
    const QStringList lines =
        QStringList{"ALTER USER " + UserHost(entity.UserName, entity.HostName), "WITH"} +
        LimitLines(entity);
    return lines.join("\r\n");
}

QString TDbmUserPrivilegesFormatters::FormatGrantGrantOption(const QString &user,
                                                             const QString &host) const
{
    return "GRANT GRANT OPTION ON *.* TO " + UserHost(user, host);
}

QString TDbmUserPrivilegesFormatters::FormatRevokePrivileges(const QString &user,
                                                             const QString &host,
                                                             const TDbmPrivileges &privileges) const
{
    return TFormat::Format("REVOKE %s ON *.* FROM %s",
                           {(*FPrivileges).FormatPrivileges(privileges), UserHost(user, host)});
}

QString TDbmUserPrivilegesFormatters::FormatRevokeAllPrivileges(const QString &user,
                                                                const QString &host) const
{
    return "REVOKE ALL PRIVILEGES, GRANT OPTION FROM " + UserHost(user, host);
}

QString TDbmUserPrivilegesFormatters::FormatSetPassword(const QString &user, const QString &host,
                                                        const QString &password) const
{
    if (FServerFeatures->AlterUser)
        return TFormat::Format("ALTER USER %s IDENTIFIED BY '%s'",
                               {UserHost(user, host), TDbmSqlStringFormatter::Format(password)});
    if (password.isEmpty())
        return TFormat::Format("SET PASSWORD FOR %s = ''", {UserHost(user, host)});
    return TFormat::Format("SET PASSWORD FOR %s = PASSWORD('%s');",
                           {UserHost(user, host), TDbmSqlStringFormatter::Format(password)});
}
