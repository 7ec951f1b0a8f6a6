#pragma once

#include "client/uDataSet.h"
#include "model/uDbmEntities.h"
#include "sql/uDbmChildFormatters.h"

/// Statements about the server's status.
class TDbmStatusFormatters : public TDbmChildFormatters
{
public:
    explicit TDbmStatusFormatters(const TDbmServerFeatures *features)
        : TDbmChildFormatters(features)
    {}

    QString FormatSelect(TDbmStatusOption option) const;
    /// Names in lower case. Deliberate: of an old server's SHOW form, whose second column has
    /// another name, the values stay empty.
    TDbmStatusEntity ParseSelectRow(const TDataSet &row) const;
};
