#include "uClientTools.h"

#include "client/uFieldValue.h"
#include "support/uStringUtils.h"

namespace {

using namespace Qt::StringLiterals;

QString Quoted(QString text)
{
    return u'\'' + text.replace("\\", "\\\\").replace("'", "\\'") + u'\'';
}

/// The literal that the layers above make of a variant: the test that a value survives is only as
/// good as this is theirs.
QString LiteralOf(const TVariant &value)
{
    if (value.IsNull())
        return "NULL";
    if (value.IsBytes())
        return "0x" + TStringUtils::BytesToHex(value.As<QByteArray>());
    if (value.IsInt())
        return value.ToString();
    return value.IsUInt() ? QString("NULL") : Quoted(value.ToString());
}

enum TKind { kText, kInt, kDouble, kDateTime, kBytes };

TKind KindOf(const TVariant &value)
{
    return value.IsInt()        ? kInt
           : value.IsDouble()   ? kDouble
           : value.IsDateTime() ? kDateTime
           : value.IsBytes()    ? kBytes
                                : kText;
}

struct TValue
{
    QString Type;    // of the column
    QString Literal; // as the server takes it
    TFieldType Field;
    TKind Kind; // of the variant
};

// The bounds of each type, and the values just inside and outside of what a variant holds exactly.
const TValue Values[] = {
    {"TINYINT", "-128", ftSmallint, kInt},
    {"INT", "-2147483648", ftInteger, kInt},
    {"INT(8) ZEROFILL", "42", ftLargeint, kInt},
    {"BIGINT", "-9223372036854775808", ftLargeint, kInt},
    {"BIGINT UNSIGNED", "9223372036854775807", ftULargeint, kInt},
    {"BIGINT UNSIGNED", "9223372036854775808", ftULargeint, kText},
    {"BIGINT UNSIGNED", "18446744073709551615", ftULargeint, kText},
    {"YEAR", "1999", ftWord, kInt},
    {"DECIMAL(65, 30)", "-12345678901234567890123456789012345.123456789012345678901234567890",
     ftBCD, kText},
    {"FLOAT", "1.5", ftFloat, kDouble},
    {"DOUBLE", "0.1", ftFloat, kDouble},
    {"DOUBLE", "0.30000000000000004", ftFloat, kText},
    {"DOUBLE", "1.7976931348623157e308", ftFloat, kText},
    {"BIT(63)", "0x7FFFFFFFFFFFFFFF", ftBit, kInt},
    {"BIT(64)", "0x8000000000000000", ftBit, kBytes},
    {"DATE", "'2010-05-01'", ftDate, kDateTime},
    {"DATE", "'1899-12-29'", ftDate, kDateTime},
    {"DATE", "'1899-12-30'", ftDate, kText},
    {"DATE", "'0000-00-00'", ftDate, kText},
    {"DATETIME", "'2010-05-01 12:30:59'", ftDateTime, kDateTime},
    {"DATETIME", "'1899-12-30 10:00:00'", ftDateTime, kText},
    {"DATETIME(6)", "'2010-05-01 12:30:59.000001'", ftDateTime, kText},
    {"DATETIME", "'0000-00-00 00:00:00'", ftDateTime, kText},
    {"TIMESTAMP NULL", "'2037-01-01 01:02:03'", ftDateTime, kDateTime},
    {"TIME", "'23:59:59'", ftTime, kDateTime},
    {"TIME", "'24:00:00'", ftTime, kText},
    {"TIME", "'-00:00:01'", ftTime, kText},
    {"TIME(6)", "'12:00:00.5'", ftTime, kText},
    {"CHAR(5)", "'ab'", ftString, kText},
    {"VARCHAR(90)", u"'\\\\ \\' \\0 \\Z \" % _ я€😀'"_s, ftString, kText},
    {"LONGTEXT", "REPEAT('x', 300000)", ftMemo, kText},
    {"VARBINARY(9)", "0xFF00", ftBytes, kBytes},
    {"VARBINARY(9)", "''", ftBytes, kText},
    {"BLOB", "0x5C27", ftBlob, kBytes},
    {"ENUM('a', 'b''c')", "'b''c'", ftString, kText},
    {"SET('a', 'b')", "'a,b'", ftString, kText},
    {"JSON", u"'{\"a\": [1, \"я\\\\\"\"]}'"_s, ftMemo, kText},
    {"GEOMETRY", "ST_GeomFromText('POLYGON((0 0,1 0,1 1,0 0))', 4326)", ftGeometry, kBytes},
    {"INT", "NULL", ftInteger, kText},
};

const TValue MariaDbValues[] = {
    {"UUID", "'123e4567-e89b-12d3-a456-426655440000'", ftString, kText},
    {"INET6", "'2001:db8::ff00:42:8329'", ftString, kText},
    {"YEAR(2)", "'70'", ftWord, kText},
};

const TValue MySqlValues[] = {
    {"VECTOR(3)", "STRING_TO_VECTOR('[1,-2.5,3]')", ftGeometry, kBytes},
};

class TFieldValueOnServer : public ::testing::Test
{
protected:
    /// What is read is written as a literal into a second table, which must then be the same.
    template <typename TValues>
    void Survive(TTestServer &server, const TValues &values)
    {
        TTestDatabase database(server);
        TTestSession check(server, database.Name());
        TMyConnection connection;
        Aim(connection, server, database.Name());
        connection.Execute("SET sql_mode = 'ALLOW_INVALID_DATES'");
        for (const TValue &value : values) {
            SCOPED_TRACE((value.Type + " " + value.Literal).toStdString());
            connection.Execute("CREATE TABLE a (v " + value.Type + ") CHARACTER SET utf8mb4");
            connection.Execute("CREATE TABLE b LIKE a");
            connection.Execute("INSERT INTO a VALUES (" + value.Literal + ")");
            Survives(connection, check, value);
            connection.Execute("DROP TABLE a, b");
        }
    }
    void Survives(TMyConnection &connection, TTestSession &check, const TValue &value)
    {
        TMyQuery query(&connection);
        query.SetSQL("SELECT v FROM a");
        query.Execute();
        const TField &field = query.FieldAt(0);
        EXPECT_EQ(field.DataType(), value.Field);
        EXPECT_EQ(field.IsNull(), value.Literal == "NULL");
        EXPECT_EQ(KindOf(field.Value()), value.Kind) << field.Value().ToString().toStdString();
        connection.Execute("INSERT INTO b VALUES (" + LiteralOf(field.Value()) + ")");
        EXPECT_EQ(check.Bytes("SELECT v FROM b"), check.Bytes("SELECT v FROM a"));
        EXPECT_EQ(check.Value("SELECT COUNT(*) FROM a, b WHERE HEX(a.v) <=> HEX(b.v)"), u"1"_s);
        if (!field.Info().IsBinary() && field.DataType() != ftBit) {
            EXPECT_EQ(field.DisplayText(), check.Value("SELECT v FROM a"));
        }
    }
};

TEST_F(TFieldValueOnServer, SurvivesReadingAndWritingOnMariaDb)
{
    Survive(TTestServer::Instance(), Values);
    Survive(TTestServer::Instance(), MariaDbValues);
}

TEST_F(TFieldValueOnServer, SurvivesReadingAndWritingOnMySql)
{
    SKIP_WITHOUT_MYSQL9();
    Survive(*TTestServer::MySql9(), Values);
    Survive(*TTestServer::MySql9(), MySqlValues);
}

using TFieldTest = TClientTest;

TEST_F(TFieldTest, ShowsBinaryAsDigitsAndCutsWhatIsLong)
{
    const auto query = Open("SELECT UNHEX('00FF27'), UNHEX(REPEAT('AB', 5000)), b'101', "
                            "REPEAT('я', 5000), UNHEX('')");
    EXPECT_EQ(query->FieldAt(0).DisplayText(), "0x00FF27"_L1);
    EXPECT_EQ(query->FieldAt(0).EditText(), "0x00FF27"_L1);
    EXPECT_EQ(query->FieldAt(0).AsBytes(), QByteArray("\0\xFF'", 3));
    EXPECT_EQ(query->FieldAt(1).DisplayText(), "0x" + QString("AB").repeated(64) + "... (4.9 KB)");
    EXPECT_EQ(query->FieldAt(1).EditText().size(), 10002);
    EXPECT_EQ(query->FieldAt(3).DisplayTextAt(0, 10), QString(u"я"_s).repeated(10) + u'…');
    EXPECT_EQ(query->FieldAt(3).DisplayText().size(), 5000);
    EXPECT_EQ(query->FieldAt(4).DisplayText(), QString());
    EXPECT_FALSE(query->FieldAt(4).IsNull());
}

TEST_F(TFieldTest, BytesThatAreNoTextAreNotLostInATextColumn)
{
    Exec("CREATE TABLE t (c VARCHAR(9) CHARACTER SET cp1251)");
    Exec("INSERT INTO t VALUES (0x9841)");
    FConnection.Options.UseUnicode = false;
    FConnection.Options.Charset = "cp1251";
    const auto query = Open("SELECT c FROM t");
    EXPECT_EQ(query->FieldAt(0).Value(), TVariant(QByteArray("\x98\x41")));
    EXPECT_EQ(query->FieldAt(0).AsString(), u"\uFFFDA"_s);
}

TEST(TFieldValue, TakesWhatAnEditorGives)
{
    TFieldInfo binary, bits;
    binary.DataType = ftBlob;
    bits.DataType = ftBit;
    const std::tuple<const TFieldInfo &, QString, TVariant> cases[] = {
        {binary, "0x00ff", QByteArray("\0\xFF", 2)},
        {binary, "text", "text"},
        {bits, "5", 5},
        {bits, "0x1F", 31},
        {bits, "18446744073709551615", QByteArray(8, '\xFF')},
    };
    for (const auto &[info, typed, value] : cases)
        EXPECT_EQ(TFieldValue::FromEditor(info, typed), value) << typed.toStdString();
    EXPECT_EQ(MessageOf([&] { TFieldValue::FromEditor(bits, "many"); }),
              "\"many\" is not a number of bits.");
    EXPECT_TRUE(TFieldValue::FromEditor(bits, TVariant()).IsNull());
}

} // namespace
