#pragma once

#include "model/uDbmList.h"

/// One account of the server, or a role.
class TDbmUserPrivilegesItem : public TDbmItem<TDbmUserPrivilegesEntity>
{
public:
    explicit TDbmUserPrivilegesItem(TDbmElement *owner) : TDbmItem(owner) {}

    QString GetUserNameDisplayString();
    bool HavePrivilege(TDbmPrivilege privilege) { return Entity().Privileges.Contains(privilege); }
};

class TDbmUserPrivilegesList : public TDbmList<TDbmUserPrivilegesItem, TDbmUserPrivilegesEntity>
{
public:
    explicit TDbmUserPrivilegesList(TDbmElement *owner) : TDbmList(owner) {}

    bool TryGetByNameAndHost(const QString &userName, const QString &hostName, TItemPtr &item);

protected:
    TItemPtr CreateItem() override { return New<TDbmUserPrivilegesItem>(this); }
    QList<TDbmUserPrivilegesEntity> SelectEntities() override;
    QString GetEntityKey(const TDbmUserPrivilegesEntity &entity) const override;
};
