#pragma once

#include "sql/uDbmCharsetFormatters.h"
#include "sql/uDbmDatabaseFormatters.h"
#include "sql/uDbmOtherFormatters.h"
#include "sql/uDbmVariableFormatters.h"

/// One instance of each family of formatters, made in this order on the features of one connection,
/// which must outlive them.
class TDbmFormatters
{
public:
    explicit TDbmFormatters(const TDbmServerFeatures *features)
        : FDatabases(features), FVariables(features), FCharsets(features), FOther(features)
    {}

    const TDbmDatabaseFormatters &Databases() const { return *FDatabases; }
    const TDbmVariableFormatters &Variables() const { return *FVariables; }
    const TDbmCharsetFormatters &Charsets() const { return *FCharsets; }
    const TDbmOtherFormatters &Other() const { return *FOther; }

private:
    TDbmFormattersOwner<TDbmDatabaseFormatters> FDatabases;
    TDbmFormattersOwner<TDbmVariableFormatters> FVariables;
    TDbmFormattersOwner<TDbmCharsetFormatters> FCharsets;
    TDbmFormattersOwner<TDbmOtherFormatters> FOther;
};
