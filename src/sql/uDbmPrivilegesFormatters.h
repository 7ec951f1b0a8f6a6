#pragma once

#include "client/uDataSet.h"
#include "model/uDbmEntities.h"
#include "sql/uDbmChildFormatters.h"

#include <QHash>

/// Global privileges between sets, statement words and the columns of mysql.user.
class TDbmPrivilegesFormatters : public TDbmChildFormatters
{
public:
    explicit TDbmPrivilegesFormatters(const TDbmServerFeatures *features)
        : TDbmChildFormatters(features)
    {}

    /// Empty for a privilege without a word.
    QString FormatPrivilege(TDbmPrivilege privilege) const;
    QString FormatPrivileges(const TDbmPrivileges &privileges) const;
    /// False when the server has no such column.
    bool ParsePrivilegeFromField(const TDataSet &row, TDbmPrivilege privilege) const;
    TDbmPrivileges ParsePrivilegesFromFields(const TDataSet &row) const;

protected:
    void DoInitialize() override;

private:
    QHash<int, QString> FPrivStringDict;
    QHash<int, QString> FPrivFieldDict;
};
