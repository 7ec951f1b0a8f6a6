#include "sql/uDbmSqlValueUtils.h"
#include "sql/uDbmSqlStringFormatter.h"
#include "uTestPrint.h"

#include <gtest/gtest.h>
#include <limits>

namespace {

using TUtils = TDbmSqlValueUtils;

TDateTime DateTime(int y, int m, int d, int h = 0, int n = 0, int s = 0)
{
    TDateTime value;
    EXPECT_TRUE(TDateTime::TryEncode(y, m, d, h, n, s, value));
    return value;
}

TDateTime Time(int h, int n, int s)
{
    TDateTime value;
    EXPECT_TRUE(TDateTime::TryEncodeTime(h, n, s, value));
    return value;
}

TEST(TLiteral, IsWrittenByItsKind)
{
    const struct
    {
        const char *Name;
        TVariant Value;
        QString Quoted, Unquoted;
    } rows[] = {
        {"IntegerIsNeverQuoted", std::numeric_limits<qint64>::min(), "-9223372036854775808",
         "-9223372036854775808"},
        {"UnsignedFallsThroughToNull", std::numeric_limits<quint64>::max(), "NULL", "NULL"},
        {"FloatIsQuotedWhereAsked", 1.5, "'1.5'", "1.5"},
        {"BooleanIsAWord", true, "TRUE", "TRUE"},
        {"Bytes", QByteArray("\x00\xab\xff", 3), "0x00ABFF", "0x00ABFF"},
        {"EmptyBytesAreThePrefixAlone", QByteArray(""), "0x", "0x"},
        {"QuoteIsBackslashed", "O'Brien", "'O\\'Brien'", "O\\'Brien"},
        {"MidnightLosesItsTime", DateTime(2010, 5, 1), "'2010-05-01'", "2010-05-01"},
        {"NoDayLosesItsDate", Time(12, 30, 0), "'12:30:00'", "12:30:00"},
        {"DateAndTime", DateTime(2010, 5, 1, 23, 59, 59), "'2010-05-01 23:59:59'",
         "2010-05-01 23:59:59"},
    };
    for (const auto &row : rows) {
        EXPECT_EQ(TUtils::FormatVariantValue(row.Value, true), row.Quoted) << row.Name;
        EXPECT_EQ(TUtils::FormatVariantValue(row.Value, false), row.Unquoted) << row.Name;
    }
}

TEST(TEscaping, TouchesEightCharactersAndLeavesNulAloneUntilOneOfThemIsThere)
{
    const QString nul(QChar(u'\0'));
    EXPECT_EQ(TDbmSqlStringFormatter::Format(nul), nul);
    EXPECT_EQ(TDbmSqlStringFormatter::Format(nul + u'\''), "\\0\\'");
    EXPECT_EQ(TDbmSqlStringFormatter::Format("\b\t\n\r\x1a\"'\\%_"),
              "\\b\\t\\n\\r\\Z\\\"\\'\\\\%_");
    // The low byte of these is that of a quote, a line feed and a backslash.
    EXPECT_EQ(TDbmSqlStringFormatter::Format(u"\u2027\u010A\u015C\u2019"_qs),
              u"\u2027\u010A\u015C\u2019"_qs);
}

TEST(TEscaping, GivesACleanTextBackWithoutACopy)
{
    const QString clean(1000, u'ж');
    EXPECT_EQ(TDbmSqlStringFormatter::Format(clean).constData(), clean.constData());
    // What the fast look takes for a trigger and is none: a control character, # and &.
    const QString odd = QString(20, u'\x0b') + QString(20, u'#') + QString(20, u'&');
    EXPECT_EQ(TDbmSqlStringFormatter::Format(odd).constData(), odd.constData());
    for (int at : {0, 15, 16, 63, 64, 65, 999}) {
        QString text = clean;
        text[at] = u'\'';
        EXPECT_EQ(TDbmSqlStringFormatter::Format(text), clean.left(at) + "\\'" + clean.mid(at + 1));
    }
}

TEST(TParsing, GivesTheDefaultForWhatIsNoValue)
{
    const TVariant def = "def";
    EXPECT_EQ(TUtils::ParseInt(" 42 ", def), TVariant(qint64(42)));
    EXPECT_EQ(TUtils::ParseInt("4.2", def), def);
    EXPECT_EQ(TUtils::ParseFloat("1.5E-7", def), TVariant(1.5e-7));
    for (const char *text : {"1,5", "nan", "-inf", "1e999", ""})
        EXPECT_EQ(TUtils::ParseFloat(text, def), def) << text;
    EXPECT_EQ(TUtils::ParseDate("2010-05-01", def), TVariant(DateTime(2010, 5, 1)));
    EXPECT_EQ(TUtils::ParseDate("2010-02-30", def), def);
    EXPECT_EQ(TUtils::ParseDateTime("2010-05-01 12:30:01", def),
              TVariant(DateTime(2010, 5, 1, 12, 30, 1)));
    EXPECT_EQ(TUtils::ParseDateTime("0000-00-00 00:00:00", def), def);
    for (const char *text : {"true", "TRUE", "1", "-2", "0.5"})
        EXPECT_EQ(TUtils::ParseBoolean(text), TVariant(true)) << text;
    for (const char *text : {"False", "0", "", "yes", "nan"})
        EXPECT_EQ(TUtils::ParseBoolean(text), TVariant(false)) << text;
}

} // namespace
