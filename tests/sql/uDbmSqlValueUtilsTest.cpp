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

struct TLiteralCase
{
    const char *Name;
    TVariant Value;
    QString Quoted;
    QString Unquoted;
};

class TLiteral : public ::testing::TestWithParam<TLiteralCase>
{};

TEST_P(TLiteral, IsWrittenByItsKind)
{
    EXPECT_EQ(TUtils::FormatVariantValue(GetParam().Value, true), GetParam().Quoted);
    EXPECT_EQ(TUtils::FormatVariantValue(GetParam().Value, false), GetParam().Unquoted);
}

INSTANTIATE_TEST_SUITE_P(
    Kinds, TLiteral,
    ::testing::Values(TLiteralCase{"Null", TVariant(), "NULL", "NULL"},
                      TLiteralCase{"IntegerIsNeverQuoted", std::numeric_limits<qint64>::min(),
                                   "-9223372036854775808", "-9223372036854775808"},
                      TLiteralCase{"UnsignedFallsThroughToNull",
                                   std::numeric_limits<quint64>::max(), "NULL", "NULL"},
                      TLiteralCase{"FloatIsQuotedWhereAsked", 1.5, "'1.5'", "1.5"},
                      TLiteralCase{"FloatTakesAnExponent", 1e20, "'1E20'", "1E20"},
                      TLiteralCase{"SmallFloat", 1.5e-7, "'1.5E-7'", "1.5E-7"},
                      TLiteralCase{"FloatHasFifteenDigits", 0.1 + 0.2, "'0.3'", "0.3"},
                      TLiteralCase{"Currency", TCurrency{2.25}, "'2.25'", "2.25"},
                      TLiteralCase{"BooleanIsAWord", true, "TRUE", "TRUE"},
                      TLiteralCase{"Bytes", QByteArray("\x00\xab\xff", 3), "0x00ABFF", "0x00ABFF"},
                      TLiteralCase{"EmptyBytesAreThePrefixAlone", QByteArray(""), "0x", "0x"},
                      TLiteralCase{"QuoteIsBackslashed", "O'Brien", "'O\\'Brien'", "O\\'Brien"},
                      TLiteralCase{"MidnightLosesItsTime", DateTime(2010, 5, 1), "'2010-05-01'",
                                   "2010-05-01"},
                      TLiteralCase{"NoDayLosesItsDate", Time(12, 30, 0), "'12:30:00'", "12:30:00"},
                      TLiteralCase{"DateAndTime", DateTime(2010, 5, 1, 23, 59, 59),
                                   "'2010-05-01 23:59:59'", "2010-05-01 23:59:59"},
                      TLiteralCase{"BeforeTheEpoch", DateTime(1000, 1, 1, 6, 0, 1),
                                   "'1000-01-01 06:00:01'", "1000-01-01 06:00:01"}),
    [](const auto &info) { return std::string(info.param.Name); });

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

TEST(TColumnDefault, CurrentTimeStampWinsOverTheValue)
{
    const TDbmValue now{vtCurrentTimeStamp, 5};
    EXPECT_EQ(TUtils::FormatValue(now, true), "CURRENT_TIMESTAMP");
    EXPECT_EQ(TUtils::DisplayValue(now, "-"), "current_timestamp");
    EXPECT_FALSE(TUtils::IsNullValue(now));
    EXPECT_TRUE(TUtils::IsNullValue(TUtils::NullValue()));
    EXPECT_EQ(TUtils::DisplayValue(TUtils::NullValue(), "-"), "-");
    EXPECT_TRUE(TUtils::IsCurrentTimeStamp("Current_Timestamp"));
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
    EXPECT_EQ(TUtils::ParseTime("12:30", def), TVariant(Time(12, 30, 0)));
    EXPECT_EQ(TUtils::ParseTime("24:00:00", def), def);
    EXPECT_EQ(TUtils::ParseDateTime("2010-05-01 12:30:01", def),
              TVariant(DateTime(2010, 5, 1, 12, 30, 1)));
    EXPECT_EQ(TUtils::ParseDateTime("2010-05-01", def), TVariant(DateTime(2010, 5, 1)));
    EXPECT_EQ(TUtils::ParseDateTime("0000-00-00 00:00:00", def), def);
}

TEST(TParsing, TakesWordsAndNumbersForBooleans)
{
    for (const char *text : {"true", "TRUE", "1", "-2", "0.5"})
        EXPECT_EQ(TUtils::ParseBoolean(text), TVariant(true)) << text;
    for (const char *text : {"False", "0", "", "yes", "nan"})
        EXPECT_EQ(TUtils::ParseBoolean(text), TVariant(false)) << text;
}

} // namespace
