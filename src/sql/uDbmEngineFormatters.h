#pragma once

#include "client/uDataSet.h"
#include "model/uDbmEntities.h"
#include "sql/uDbmChildFormatters.h"

/// Statements about the server's storage engines.
class TDbmEngineFormatters : public TDbmChildFormatters
{
public:
    explicit TDbmEngineFormatters(const TDbmServerFeatures *features)
        : TDbmChildFormatters(features)
    {}

    QString FormatSelect() const;
    TDbmEngineEntity ParseSelectRow(const TDataSet &row) const;
};
