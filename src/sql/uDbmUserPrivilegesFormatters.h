#pragma once

#include "sql/uDbmPrivilegesFormatters.h"

/// Statements about accounts and their global privileges.
class TDbmUserPrivilegesFormatters : public TDbmChildFormatters
{
public:
    explicit TDbmUserPrivilegesFormatters(const TDbmServerFeatures *features)
        : TDbmChildFormatters(features), FPrivileges(features)
    {}

    QString FormatSelect() const;
    QString FormatSelectRow(const QString &user, const QString &host) const;
    TDbmUserPrivilegesEntity ParseSelectRow(const TDataSet &row) const;
    QString FormatCreate(const QString &user, const QString &host) const;
    QString FormatCreate(const QString &user, const QString &host, const QString &password) const;
    QString FormatDrop(const QString &user, const QString &host) const;
    QString FormatDropRole(const QString &role) const;
    QString FormatRename(const QString &oldUser, const QString &oldHost, const QString &newHost,
                         const QString &newUser) const;
    QString FormatGrant(const TDbmUserPrivilegesEntity &entity) const;
    /// FormatGrant of an account that has `granted` already. Where the limits go another way only
    /// what is missing: granted once more, a privilege would lose its partial revokes.
    QString FormatGrantUpdate(const TDbmUserPrivilegesEntity &entity,
                              const TDbmPrivileges &granted) const;
    /// The limits of the account where GRANT does not take them; else empty.
    QString FormatLimits(const TDbmUserPrivilegesEntity &entity) const;
    QString FormatGrantGrantOption(const QString &user, const QString &host) const;
    QString FormatRevokePrivileges(const QString &user, const QString &host,
                                   const TDbmPrivileges &privileges) const;
    QString FormatRevokeAllPrivileges(const QString &user, const QString &host) const;
    QString FormatSetPassword(const QString &user, const QString &host,
                              const QString &password) const;
    /// Whether the accounts may hold roles.
    bool HaveRoles() const { return FServerFeatures->Roles; }

private:
    QStringList LimitLines(const TDbmUserPrivilegesEntity &entity) const;

    TDbmFormattersOwner<TDbmPrivilegesFormatters> FPrivileges;
};
