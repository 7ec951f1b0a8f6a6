#pragma once

#include "client/uDataSet.h"
#include "model/uDbmEntities.h"
#include "sql/uDbmChildFormatters.h"

/// Statements about the privileges of an account on one table.
class TDbmTablePrivilegesFormatters : public TDbmChildFormatters
{
public:
    explicit TDbmTablePrivilegesFormatters(const TDbmServerFeatures *features)
        : TDbmChildFormatters(features)
    {}

    QString FormatSelect(const QString &user, const QString &host) const;
    TDbmTablePrivilegesEntity ParseSelectRow(const TDataSet &row) const;
    /// Empty for an empty set.
    QString FormatCreate(const TDbmTablePrivilegesEntity &entity) const;
    /// What is to be revoked, then what is to be granted; empty when nothing changes.
    QString FormatUpdate(const TDbmTablePrivilegesEntity &entity,
                         const TDbmTablePrivs &newPrivs) const;
    QString FormatDelete(const TDbmTablePrivilegesEntity &entity) const;
};
