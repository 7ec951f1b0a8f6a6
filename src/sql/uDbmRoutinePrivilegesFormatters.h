#pragma once

#include "client/uDataSet.h"
#include "model/uDbmEntities.h"
#include "sql/uDbmChildFormatters.h"

/// Statements about the privileges of an account on one routine.
class TDbmRoutinePrivilegesFormatters : public TDbmChildFormatters
{
public:
    explicit TDbmRoutinePrivilegesFormatters(const TDbmServerFeatures *features)
        : TDbmChildFormatters(features)
    {}

    /// Deliberate: the statement has no WHERE; the server refuses it and the safe read comes back
    /// empty.
    QString FormatSelect(const QString &user, const QString &host) const;
    TDbmRoutinePrivilegesEntity ParseSelectRow(const TDataSet &row) const;
    /// Empty for an empty set.
    QString FormatCreate(const TDbmRoutinePrivilegesEntity &entity) const;
    /// What is to be revoked, then what is to be granted; empty when nothing changes.
    QString FormatUpdate(const TDbmRoutinePrivilegesEntity &entity,
                         const TDbmRoutinePrivs &newPrivs) const;
    QString FormatDelete(const TDbmRoutinePrivilegesEntity &entity) const;
};
