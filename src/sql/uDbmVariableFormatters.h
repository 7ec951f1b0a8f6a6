#pragma once

#include "client/uDataSet.h"
#include "model/uDbmEntities.h"
#include "sql/uDbmChildFormatters.h"

/// Statements about the server's variables.
class TDbmVariableFormatters : public TDbmChildFormatters
{
public:
    explicit TDbmVariableFormatters(const TDbmServerFeatures *features)
        : TDbmChildFormatters(features)
    {}

    QString FormatSelect(TDbmVariableOption option) const;
    QString FormatGetValue(const QString &name, TDbmVariableOption option) const;
    QString FormatSetValue(const QString &name, const TVariant &value,
                           TDbmVariableOption option) const;
    /// The number's digits as they are.
    QString FormatSetNumber(const QString &name, const QString &number,
                            TDbmVariableOption option) const;
    TDbmVariableEntity ParseSelectRow(const TDataSet &row) const;
    QString ParseGetValue(const TDataSet &row) const;

private:
    QString Schema() const;
};
