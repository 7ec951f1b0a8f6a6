#include "model/uDbmUserPrivilegesList.h"

#include "sql/uDbmCommands.h"
#include "support/uFormat.h"

namespace {

QString Key(const QString &userName, const QString &hostName)
{
    return TFormat::Format("%s.%s", {userName, hostName});
}

} // namespace

QString TDbmUserPrivilegesItem::GetUserNameDisplayString()
{
    return TFormat::Format("%s@%s", {Entity().UserName, Entity().HostName});
}

bool TDbmUserPrivilegesList::TryGetByNameAndHost(const QString &userName, const QString &hostName,
                                                 TItemPtr &item)
{
    return TryGetByName(Key(userName, hostName), item);
}

QList<TDbmUserPrivilegesEntity> TDbmUserPrivilegesList::SelectEntities()
{
    return FCommands->UsersPrivileges().ExecuteSelect();
}

QString TDbmUserPrivilegesList::GetEntityKey(const TDbmUserPrivilegesEntity &entity) const
{
    return Key(entity.UserName, entity.HostName);
}
