#pragma once

#include "client/uField.h"
#include "widgets/uStylePalette.h"

/// Which of the text colours a column takes.
inline TAppFieldKind FieldKindOf(TFieldType type)
{
    switch (type) {
    case ftString:
    case ftMemo:
        return TAppFieldKind::fkString;
    case ftBoolean:
        return TAppFieldKind::fkBoolean;
    case ftSmallint:
    case ftInteger:
    case ftWord:
    case ftLargeint:
    case ftULargeint:
    case ftAutoInc:
    case ftFloat:
    case ftCurrency:
    case ftBCD:
        return TAppFieldKind::fkNumber;
    case ftDate:
    case ftTime:
    case ftDateTime:
        return TAppFieldKind::fkDate;
    default:
        return TAppFieldKind::fkOther;
    }
}
