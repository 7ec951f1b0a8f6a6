#pragma once

#include "core/uDbmServerFeatures.h"

/// Reads COLUMN_DEFAULT, which servers write in three ways, into the value that the oldest of them
/// would have given.
class TDbmColumnDefaults
{
public:
    explicit TDbmColumnDefaults(const TDbmServerFeatures &features) : FFeatures(features) {}

    /// `serverText` gets what a statement has to write behind DEFAULT where the value alone would
    /// not bring the default back; else it stays empty.
    void Parse(TDbmFieldDataType dataType, const QString &text, bool isMarkedExpression,
               TDbmValue &value, QString &serverText) const;

    /// An expression as a statement takes it: servers that mark expressions escape the quotes and
    /// backslashes in them once more where they stand in a column of a result.
    static QString UnescapeExpression(const QString &text);

private:
    void ParseLiteral(TDbmFieldDataType dataType, const QString &text, const QString &literal,
                      TDbmValue &value, QString &serverText) const;
    void ParseExpression(TDbmFieldDataType dataType, const QString &text, TDbmValue &value,
                         QString &serverText) const;

    const TDbmServerFeatures &FFeatures;
};
