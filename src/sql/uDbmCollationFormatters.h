#pragma once

#include "client/uDataSet.h"
#include "model/uDbmEntities.h"
#include "sql/uDbmChildFormatters.h"

/// Statements about the server's collations.
class TDbmCollationFormatters : public TDbmChildFormatters
{
public:
    explicit TDbmCollationFormatters(const TDbmServerFeatures *features)
        : TDbmChildFormatters(features)
    {}

    QString FormatSelect() const;
    /// The charset is empty for a collation that serves several.
    TDbmCollationEntity ParseSelectRow(const TDataSet &row) const;
};
