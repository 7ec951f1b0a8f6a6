#pragma once

#include "client/uDataSet.h"
#include "model/uDbmEntities.h"
#include "sql/uDbmChildFormatters.h"

/// Statements about the privileges of an account on one database.
class TDbmDatabasePrivilegesFormatters : public TDbmChildFormatters
{
public:
    explicit TDbmDatabasePrivilegesFormatters(const TDbmServerFeatures *features)
        : TDbmChildFormatters(features)
    {}

    QString FormatSelect(const QString &user, const QString &host) const;
    TDbmDatabasePrivilegesEntity ParseSelectRow(const TDataSet &row) const;
    /// Empty for an empty set.
    QString FormatCreate(const TDbmDatabasePrivilegesEntity &entity) const;
    /// What is to be revoked, then what is to be granted; empty when nothing changes.
    QString FormatUpdate(const TDbmDatabasePrivilegesEntity &entity,
                         const TDbmDatabasePrivs &newPrivs) const;
    QString FormatDelete(const TDbmDatabasePrivilegesEntity &entity) const;
};
