#include "client/uFieldInfo.h"

#include <limits>
#include <mysql.h>

namespace {

constexpr uint BinaryCollation = 63;
// Newer than the library's header; MySQL 9 sends it, and the bytes pass through unchanged.
constexpr int TypeVector = 242;

bool HoldsCharacters(const st_mysql_field &field)
{
    switch (static_cast<int>(field.type)) {
    case MYSQL_TYPE_JSON: // told as binary by MySQL and yet sent in the session's set
    case MYSQL_TYPE_ENUM:
    case MYSQL_TYPE_SET:
        return true;
    case MYSQL_TYPE_VARCHAR:
    case MYSQL_TYPE_VAR_STRING:
    case MYSQL_TYPE_STRING:
    case MYSQL_TYPE_TINY_BLOB:
    case MYSQL_TYPE_MEDIUM_BLOB:
    case MYSQL_TYPE_LONG_BLOB:
    case MYSQL_TYPE_BLOB:
        return field.charsetnr != BinaryCollation;
    default:
        return false;
    }
}

TFieldType IntegerType(const st_mysql_field &field)
{
    if (field.flags & AUTO_INCREMENT_FLAG)
        return ftAutoInc;
    const bool isUnsigned = (field.flags & UNSIGNED_FLAG) != 0;
    switch (field.type) {
    case MYSQL_TYPE_TINY:
        return ftSmallint;
    case MYSQL_TYPE_SHORT:
        return isUnsigned ? ftWord : ftSmallint;
    case MYSQL_TYPE_LONG:
        return isUnsigned ? ftLargeint : ftInteger;
    case MYSQL_TYPE_LONGLONG:
        return isUnsigned ? ftULargeint : ftLargeint;
    default:
        return ftInteger;
    }
}

TFieldType TypeOf(const st_mysql_field &field)
{
    switch (static_cast<int>(field.type)) {
    case MYSQL_TYPE_TINY:
    case MYSQL_TYPE_SHORT:
    case MYSQL_TYPE_INT24:
    case MYSQL_TYPE_LONG:
    case MYSQL_TYPE_LONGLONG:
        return IntegerType(field);
    case MYSQL_TYPE_YEAR:
        return ftWord;
    case MYSQL_TYPE_FLOAT:
    case MYSQL_TYPE_DOUBLE:
        return ftFloat;
    case MYSQL_TYPE_DECIMAL:
    case MYSQL_TYPE_NEWDECIMAL:
        return ftBCD;
    case MYSQL_TYPE_BIT:
        return ftBit;
    case MYSQL_TYPE_DATE:
    case MYSQL_TYPE_NEWDATE:
        return ftDate;
    case MYSQL_TYPE_TIME:
    case MYSQL_TYPE_TIME2:
        return ftTime;
    case MYSQL_TYPE_DATETIME:
    case MYSQL_TYPE_DATETIME2:
    case MYSQL_TYPE_TIMESTAMP:
    case MYSQL_TYPE_TIMESTAMP2:
        return ftDateTime;
    case MYSQL_TYPE_JSON:
        return ftMemo;
    case MYSQL_TYPE_GEOMETRY:
    case TypeVector:
        return ftGeometry;
    case MYSQL_TYPE_TINY_BLOB:
    case MYSQL_TYPE_MEDIUM_BLOB:
    case MYSQL_TYPE_LONG_BLOB:
    case MYSQL_TYPE_BLOB:
        return HoldsCharacters(field) ? ftMemo : ftBlob;
    case MYSQL_TYPE_VARCHAR:
    case MYSQL_TYPE_VAR_STRING:
    case MYSQL_TYPE_STRING:
    case MYSQL_TYPE_ENUM:
    case MYSQL_TYPE_SET:
        return HoldsCharacters(field) ? ftString : ftBytes;
    default:
        return ftUnknown;
    }
}

QByteArrayView View(const char *bytes, uint size)
{
    return QByteArrayView(bytes, static_cast<qsizetype>(bytes ? size : 0));
}

/// Decodes names of which most equal the one ahead: a result's columns mostly have one table.
/// The bytes have to stay where they are.
class TRepeatedName
{
public:
    explicit TRepeatedName(const TCharsetCodec &codec) : FCodec(codec) {}

    const QString &Decode(QByteArrayView bytes)
    {
        if (bytes != FBytes) {
            FBytes = bytes;
            FText = FCodec.Decode(bytes);
        }
        return FText;
    }

private:
    const TCharsetCodec &FCodec;
    QByteArrayView FBytes;
    QString FText;
};

int ClampedWidth(quint64 width)
{
    constexpr quint64 Most = std::numeric_limits<int>::max();
    return static_cast<int>(qBound<quint64>(1, width, Most));
}

} // namespace

std::vector<TFieldInfo> TFieldInfo::Read(std::span<const st_mysql_field> fields,
                                         const TCharsetCodec &names,
                                         const TCodecOfCollation &codecOf)
{
    TRepeatedName table(names), orgTable(names), database(names);
    std::vector<TFieldInfo> infos;
    infos.reserve(fields.size());
    for (const st_mysql_field &field : fields) {
        TFieldInfo &info = infos.emplace_back();
        const QByteArrayView name = View(field.name, field.name_length);
        const QByteArrayView orgName = View(field.org_name, field.org_name_length);
        info.Name = names.Decode(name);
        info.OrgName = orgName == name ? info.Name : names.Decode(orgName);
        info.Table = table.Decode(View(field.table, field.table_length));
        info.OrgTable = orgTable.Decode(View(field.org_table, field.org_table_length));
        info.Database = database.Decode(View(field.db, field.db_length));
        info.DataType = TypeOf(field);
        info.ServerType = field.type;
        info.Flags = field.flags;
        info.CharsetNr = field.charsetnr;
        info.Length = field.length;
        info.Decimals = field.decimals;
        info.IsUnsigned = (field.flags & UNSIGNED_FLAG) != 0;
        info.IsText = HoldsCharacters(field);
        info.Codec = codecOf(field.charsetnr);
    }
    return infos;
}

bool TFieldInfo::IsNumeric() const
{
    switch (DataType) {
    case ftSmallint:
    case ftInteger:
    case ftWord:
    case ftLargeint:
    case ftULargeint:
    case ftAutoInc:
    case ftFloat:
    case ftCurrency:
    case ftBCD:
        return true;
    default:
        return false;
    }
}

bool TFieldInfo::IsAutoIncrement() const
{
    return (Flags & AUTO_INCREMENT_FLAG) != 0;
}

bool TFieldInfo::IsSinglePrecision() const
{
    return ServerType == MYSQL_TYPE_FLOAT;
}

bool TFieldInfo::IsShortYear() const
{
    return ServerType == MYSQL_TYPE_YEAR && Length == 2;
}

int TFieldInfo::DisplayWidth() const
{
    if (IsText)
        return ClampedWidth(Length / static_cast<quint64>(Codec->MaxBytes()));
    if (IsBinary())
        return ClampedWidth(Length * 2 + 2); // 0x and two digits a byte
    if (DataType == ftBit)
        return ClampedWidth(Length * 3 / 10 + 1); // decimal digits of so many bits
    return ClampedWidth(Length);
}
