#pragma once

#include "sql/uDbmFieldUtils.h"
#include "widgets/uStylePalette.h"

/// Which of the text colours a column of a table takes, by its declared type.
class TFieldItemKinds
{
public:
    static TAppFieldKind KindOf(TDbmFieldDataType type)
    {
        if (TDbmFieldUtils::IsString(type))
            return TAppFieldKind::fkString;
        if (TDbmFieldUtils::IsBoolean(type))
            return TAppFieldKind::fkBoolean;
        if (TDbmFieldUtils::IsNumeric(type) || TDbmFieldUtils::IsOrdinal(type))
            return TAppFieldKind::fkNumber;
        return TDbmFieldUtils::IsDate(type) ? TAppFieldKind::fkDate : TAppFieldKind::fkOther;
    }
};
