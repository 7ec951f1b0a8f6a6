#include "sql/uDbmOtherUtils.h"

QString TDbmOtherUtils::FormatUser(const QString &userAtHost)
{
    const qsizetype at = userAtHost.indexOf(u'@');
    const QString user = at < 0 ? userAtHost : userAtHost.left(at);
    const QString host = at < 0 ? QString() : userAtHost.mid(at + 1);
    const QString quotedUser = u'\'' + user + u'\'';
    return host.isEmpty() ? quotedUser : quotedUser + "@'" + host + u'\'';
}
