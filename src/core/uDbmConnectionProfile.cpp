#include "core/uDbmConnectionProfile.h"

namespace {

QString WithPort(const QString &hostName, int port, int defaultPort)
{
    return port == defaultPort ? hostName : hostName + u':' + QString::number(port);
}

} // namespace

QString TDbmConnectionProfile::GetDisplayString() const
{
    if (ConnectionType == ctSSHTunnel)
        return QStringLiteral("ssh: ") + WithPort(SSHSettings.HostName, SSHSettings.Port, 22);

    const QString address = WithPort(HostName, Port, 3306);
    return Database.isEmpty() ? address : address + u'/' + Database;
}
