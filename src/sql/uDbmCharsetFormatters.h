#pragma once

#include "sql/uDbmVariableFormatters.h"

/// Statements about the server's character sets.
class TDbmCharsetFormatters : public TDbmChildFormatters
{
public:
    explicit TDbmCharsetFormatters(const TDbmServerFeatures *features)
        : TDbmChildFormatters(features), FVariables(features)
    {}

    QString FormatSelect() const;
    TDbmCharsetEntity ParseSelectRow(const TDataSet &row) const;
    QString FormatGetSessionCharset() const;
    QString ParseGetSessionCharset(const TDataSet &row) const;

private:
    TDbmVariableFormatters FVariables;
};
