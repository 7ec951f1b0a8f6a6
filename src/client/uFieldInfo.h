#pragma once

#include "client/uCharsetCodec.h"

#include <QString>
#include <functional>
#include <memory>
#include <span>
#include <vector>

struct st_mysql_field;

/// Kinds of columns as pages and exports tell them apart.
enum TFieldType {
    ftUnknown,
    ftSmallint,  // TINYINT, SMALLINT
    ftInteger,   // MEDIUMINT, INT
    ftWord,      // YEAR, SMALLINT UNSIGNED
    ftLargeint,  // BIGINT, INT UNSIGNED
    ftULargeint, // BIGINT UNSIGNED
    ftAutoInc,   // an integer column with AUTO_INCREMENT
    ftBoolean,   // BIT(1) and TINYINT(1) stay integers: no column gives it by itself
    ftFloat,     // FLOAT, DOUBLE
    ftCurrency,
    ftBCD, // DECIMAL
    ftBit,
    ftDate,
    ftTime,
    ftDateTime, // DATETIME, TIMESTAMP
    ftString,   // CHAR, VARCHAR, ENUM, SET, UUID, INET4, INET6
    ftBytes,    // BINARY, VARBINARY
    ftMemo,     // TEXT of every size, JSON
    ftBlob,     // BLOB of every size
    ftGeometry  // GEOMETRY family, VECTOR
};

/// What the server told of a result's column.
struct TFieldInfo
{
    QString Name;     // as shown: the alias if there is one
    QString OrgName;  // name in its table; empty for an expression
    QString Table;    // table's alias
    QString OrgTable; // empty for an expression
    QString Database;
    TFieldType DataType = ftUnknown;
    int ServerType = 0; // enum_field_types of the protocol
    uint Flags = 0;     // NOT_NULL_FLAG, PRI_KEY_FLAG ... of the protocol
    uint CharsetNr = 0; // collation id; 63 is binary
    quint64 Length = 0; // display width in bytes
    uint Decimals = 0;
    bool IsUnsigned = false;
    bool IsText = false;                        // bytes of the cell are characters
    std::shared_ptr<const TCharsetCodec> Codec; // of the cell's characters; never null

    /// Gives the codec of a collation id. Never null.
    using TCodecOfCollation = std::function<std::shared_ptr<const TCharsetCodec>(uint collation)>;

    /// Columns of a result, in its order. `names` reads what they are called.
    static std::vector<TFieldInfo> Read(std::span<const st_mysql_field> fields,
                                        const TCharsetCodec &names,
                                        const TCodecOfCollation &codecOf);

    bool IsNumeric() const;
    bool IsBinary() const
    {
        return DataType == ftBytes || DataType == ftBlob || DataType == ftGeometry;
    }
    bool IsAutoIncrement() const;
    /// FLOAT keeps more than it shows, so its text does not find the row again.
    bool IsSinglePrecision() const;
    /// A year of two digits counts from 1970 as a text and from 2000 as a number.
    bool IsShortYear() const;
    int DisplayWidth() const;
};
