#include "sql/uDbmOtherUtils.h"

#include "sql/uDbmSqlValueUtils.h"

QString TDbmOtherUtils::FormatUser(const QString &userAtHost)
{
    const qsizetype at = userAtHost.indexOf(u'@');
    const QString user = at < 0 ? userAtHost : userAtHost.left(at);
    const QString host = at < 0 ? QString() : userAtHost.mid(at + 1);
    const QString quotedUser = TDbmSqlValueUtils::FormatString(user, true);
    return host.isEmpty() ? quotedUser
                          : quotedUser + u'@' + TDbmSqlValueUtils::FormatString(host, true);
}
