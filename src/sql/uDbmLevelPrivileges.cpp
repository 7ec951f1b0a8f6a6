#include "sql/uDbmLevelPrivileges.h"

#include "support/uFormat.h"

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
