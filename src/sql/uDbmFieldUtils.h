#pragma once

#include "client/uDataSet.h"
#include "model/uDbmEntities.h"

/// A column's type between the server's text and the structured record, and what each type allows.
class TDbmFieldUtils
{
public:
    /// Raises EException "Unknown field data type." for fdtUnknown.
    static QString FormatDataType(TDbmFieldDataType dataType);
    /// Blind to letter case. Raises EException for a word that is no type of the model's.
    static TDbmFieldDataType ParseDataType(const QString &text);
    /// Lines, which the caller compacts. Deliberate: the width of BIT and YEAR is not written, and
    /// members of an ENUM or SET are written as they are: they are kept in the server's own
    /// spelling, in which a quote is doubled and a backslash too.
    static void FormatType(const TDbmFieldType &fieldType, const QString &tableCollation,
                           QString &text);
    /// `text` is as the server's COLUMN_TYPE. Raises what ParseDataType raises, and EException when
    /// the arguments of a type are no numbers.
    static void ParseType(const QString &text, TDbmFieldType &fieldType, const QString &collation);

    static TDbmFieldTypeAttrs GetAttributes(TDbmFieldDataType dataType);
    static bool HaveAttribute(TDbmFieldDataType dataType, TDbmFieldTypeAttr attr);

    static bool IsOrdinal(TDbmFieldDataType dataType);
    static bool IsNumeric(TDbmFieldDataType dataType);
    static bool IsBoolean(TDbmFieldDataType dataType) { return dataType == fdtBool; }
    static bool IsDate(TDbmFieldDataType dataType);
    static bool IsString(TDbmFieldDataType dataType);
    static bool IsText(TDbmFieldDataType dataType);
    static bool IsBlob(TDbmFieldDataType dataType);
    /// Deliberate: the same set as IsBlob; BINARY and VARBINARY do not count.
    static bool IsBinary(TDbmFieldDataType dataType) { return IsBlob(dataType); }
    static bool HaveLength(TDbmFieldDataType dataType);
    static bool HaveDecimals(TDbmFieldDataType dataType) { return IsNumeric(dataType); }
    static bool HaveValues(TDbmFieldDataType dataType);
    static bool HaveNullable(TDbmFieldDataType dataType) { return dataType != fdtUnknown; }
    static bool HaveUnsigned(TDbmFieldDataType dataType);
    static bool HaveZerofill(TDbmFieldDataType dataType) { return HaveUnsigned(dataType); }
    static bool HaveAutoInc(TDbmFieldDataType dataType) { return HaveUnsigned(dataType); }
    static bool HaveBinary(TDbmFieldDataType dataType) { return IsString(dataType); }
    static bool HaveCharset(TDbmFieldDataType dataType) { return IsString(dataType); }
    static bool HaveDefault(TDbmFieldDataType dataType);

    /// A text that does not parse reads as the integer 0.
    static void ParseValue(TDbmFieldDataType dataType, const TDataSet &row,
                           const QString &fieldName, TDbmValue &value);
    static void ParseValue(TDbmFieldDataType dataType, const QString &text, TDbmValue &value);

    /// Whether the type's word, width and flags as the model would write them say the same as the
    /// server's text. BIT(8), DATETIME(6) or TINYINT(1) UNSIGNED do not.
    static bool IsExactType(const TDbmFieldType &fieldType, const QString &serverText);
    /// The COLLATE clause and what else stands behind the type of a text column; lines.
    static QString FormatCharset(const TDbmFieldType &fieldType, const QString &tableCollation);

    /// All members of an ENUM or SET, in the server's own spelling.
    static QStringList Members(const QString &serverText);
    /// The members of an edited ENUM or SET, in the server's own spelling. Those that were read
    /// wrongly (empty ones, ones with a quote) stay while others are taken away or added behind
    /// them; `parsed` is what `serverText` was read into.
    static QStringList WholeMembers(const QStringList &values, const QStringList &parsed,
                                    const QString &serverText);

private:
    static QString FormatTypeWord(const TDbmFieldType &fieldType);
};
