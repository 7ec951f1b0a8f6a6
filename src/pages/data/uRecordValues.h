#pragma once

#include "support/uVariant.h"

struct TDbmFieldEntity;

/// How a text that was typed into a row of the record dialog becomes a value, and what a value
/// looks like there.
class TRecordValues
{
public:
    /// Trimmed at both ends. A number or a date whose text its native type would not hold exactly
    /// stays a text, which the server takes as it is. Raises EConvertError when the text stands for
    /// no value of the field.
    static TVariant FromText(const TDbmFieldEntity &field, const QString &text);
    static QString ToText(const TVariant &value);
    /// Of an ENUM or SET, by its type as the server writes it.
    static QStringList MembersOf(const QString &typeText);
    static QString SizeText(const TVariant &value); // of a blob: its size, or NULL

private:
    static TVariant Empty(const TDbmFieldEntity &field);
    static TVariant Number(const TDbmFieldEntity &field, const QString &text);
    static TVariant Bit(const TDbmFieldEntity &field, const QString &text);
    static TVariant Date(const TDbmFieldEntity &field, const QString &text);
    static TVariant Bytes(const QString &text);
};
