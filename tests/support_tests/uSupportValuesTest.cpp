#include "support/uDateTime.h"
#include "support/uException.h"
#include "support/uFormat.h"
#include "support/uRegExUtils.h"
#include "support/uStringUtils.h"
#include "support/uVariant.h"

#include <QDateTime>
#include <gtest/gtest.h>
#include <limits>

namespace {

using namespace Qt::StringLiterals;

TEST(TFormat, KnowsItsFormsAndRefusesArgumentsThatDoNotFit)
{
    const struct
    {
        const char *Format;
        QList<TFormat::TArgument> Args;
        const char *Text;
    } rows[] = {
        {"%s is %d", {"x", -5}, "x is -5"},
        {"%2.2u:%2.2u", {7, 123}, "07:123"},
        {"%5.5u %d", {42, -9}, "00042 -9"},
        {"%.2f|%f", {1.005, 2}, "1.00|2.00"},
        {"%.2n", {1234567.891}, "1,234,567.89"},
        {"%u", {std::numeric_limits<quint64>::max()}, "18446744073709551615"},
        {"100%% %s", {"%d"}, "100% %d"},
        {"LIKE '%a%'", {}, "LIKE '%a%'"},
        {"%99999999999999999999x", {}, "%99999999999999999999x"},
    };
    for (const auto &row : rows)
        EXPECT_EQ(TFormat::Format(row.Format, row.Args), row.Text) << row.Format;
    EXPECT_THROW(TFormat::Format("%s %s", {"one"}), EException);
    EXPECT_THROW(TFormat::Format("%d", {"text"}), EException);
    EXPECT_THROW(TFormat::Format("%s", {5}), EException);
}

TEST(TFormat, WritesNumbersAsPeopleReadThem)
{
    const std::pair<double, const char *> floats[] = {
        {0, "0"},           {-2.5, "-2.5"},           {1.5e-7, "1.5E-7"},
        {0.1 + 0.2, "0.3"}, {1e15, "1E15"},           {123456789012345.0, "123456789012345"},
        {1e-5, "0.00001"},  {-5.25e-5, "-0.0000525"}, {9.99e-6, "9.99E-6"},
    };
    for (const auto &[value, text] : floats)
        EXPECT_EQ(TFormat::FloatText(value), text);
    const std::pair<qint64, const char *> sizes[] = {
        {0, "0 B"},       {1023, "1023 B"},    {1024, "1.0 KB"},
        {1536, "1.5 KB"}, {1048576, "1.0 MB"}, {std::numeric_limits<qint64>::max(), "8.0 EB"},
    };
    for (const auto &[bytes, text] : sizes)
        EXPECT_EQ(TFormat::SizeText(bytes), text);
    const std::pair<qint64, const char *> durations[] = {
        {0, "00:00:00"}, {3661, "01:01:01"}, {86399, "23:59:59"}, {90061, "1 01:01:01"}};
    for (const auto &[seconds, text] : durations)
        EXPECT_EQ(TFormat::DurationText(seconds), text);
}

TEST(TDateTime, EncodesDatesOfFourDigitYearsOnly)
{
    const struct
    {
        int Parts[6];
        const char *Text; // nullptr: refused
    } rows[] = {
        {{1899, 12, 30, 12, 30, 0}, "1899-12-30 12:30:00"},
        {{9999, 12, 31, 23, 59, 59}, "9999-12-31 23:59:59"},
        {{2023, 2, 29, 0, 0, 0}, nullptr},
        {{0, 1, 1, 0, 0, 0}, nullptr},
        {{10000, 1, 1, 0, 0, 0}, nullptr},
    };
    for (const auto &row : rows) {
        TDateTime value;
        const int *p = row.Parts;
        const bool ok = TDateTime::TryEncode(p[0], p[1], p[2], p[3], p[4], p[5], value);
        EXPECT_EQ(ok, row.Text != nullptr) << p[0] << '-' << p[1];
        if (ok) {
            EXPECT_EQ(value.DateTimeText(), row.Text);
        }
    }
}

TEST(TDateTime, IsRoundedWhereItIsShown)
{
    const TDateTime almostMidnight(40299 + 86399.7 / 86400);
    EXPECT_EQ(almostMidnight.DateTimeText(), "2010-05-02 00:00:00");
    EXPECT_EQ(almostMidnight.TimeText(), "00:00:00");
    const QDateTime moment(QDate(1850, 3, 4), QTime(23, 59, 59, 999));
    EXPECT_EQ(TDateTime::FromQDateTime(moment).ToQDateTime(), moment);
}

TEST(TVariant, KeepsItsKindsApart)
{
    const QByteArray bytes("\xFF\0a", 3);
    TDateTime noon;
    ASSERT_TRUE(TDateTime::TryEncodeTime(12, 0, 0, noon));
    const struct
    {
        TVariant Value;
        QString Text;
        qint64 Int;
    } rows[] = {
        {TVariant(), "", -1},
        {quint64(7), "7", 7},
        {std::numeric_limits<quint64>::max(), "18446744073709551615", -1},
        {1.5, "1.5", -1},
        {TCurrency{12.25}, "12.25", -1},
        {noon, "12:00:00", -1},
        {TDateTime(40299.5), "2010-05-01 12:00:00", -1},
        {" 12 ", " 12 ", 12},
        {bytes, QString::fromLatin1(bytes), -1},
    };
    for (const auto &row : rows) {
        EXPECT_EQ(row.Value.ToString(), row.Text);
        EXPECT_EQ(row.Value.ToInt(-1), row.Int) << qPrintable(row.Text);
    }
    EXPECT_NE(TVariant(1), TVariant(true));
    EXPECT_NE(TVariant(1), TVariant("1"));
    EXPECT_NE(TVariant("a"), TVariant(QByteArray("a")));
    EXPECT_EQ(TVariant(" 1e3 ").ToDouble(), 1000);
    EXPECT_THROW(TVariant("one").ToDouble(), EConvertError);
    EXPECT_THROW(TVariant().ToDouble(), EConvertError);
}

TEST(TStringUtils, Splits)
{
    EXPECT_EQ(TStringUtils::Lines("a\r\nb\nc\rd"), QStringList({"a", "b", "c", "d"}));
    EXPECT_EQ(TStringUtils::Compact(" a \r\n\r\n\tb c\n"), "a  b c");
    EXPECT_EQ(TStringUtils::Split("", "."), QStringList());
    EXPECT_EQ(TStringUtils::Split("a..b", "."), QStringList({"a", "", "b"}));
}

TEST(TStringUtils, GoesToHexAndBack)
{
    const QString text = u"\uFEFFaЖ😀"_qs;
    EXPECT_EQ(TStringUtils::StrToHex(text), "EFBBBF61D096F09F9880");
    EXPECT_EQ(TStringUtils::HexToStr(TStringUtils::StrToHex(text)), text);
    const std::pair<const char *, const char *> rows[] = {
        {"4A4b4", "JK"}, {"4A4x4B", "J"}, {"", ""}, {"4", ""}, {"zz4A", ""}};
    for (const auto &[digits, bytes] : rows)
        EXPECT_EQ(TStringUtils::HexToBytes(digits), bytes) << digits;
}

TEST(TRegExUtils, FindsAllMatchesWithOptionsOfEachCall)
{
    const auto options =
        QRegularExpression::MultilineOption | QRegularExpression::CaseInsensitiveOption;
    QStringList found;
    // The action uses the expressions' cache itself while the walk goes on.
    TRegExUtils::ForEachMatch(
        "a1\nA2\nb3", "^a(\\d)$",
        [&](const QRegularExpressionMatch &match) {
            found += TRegExUtils::Replace(match.captured(1), "(\\d)", "<\\1>");
        },
        options);
    EXPECT_EQ(found, QStringList({"<1>", "<2>"}));
    EXPECT_FALSE(TRegExUtils::IsMatch("A2", "^a(\\d)$"));
    EXPECT_THROW(TRegExUtils::IsMatch("x", "(open"), EException);
    for (int i = 0; i < 600; ++i) // more than are kept compiled
        ASSERT_TRUE(TRegExUtils::IsMatch(QString("x%1y").arg(i), QString("^x%1y$").arg(i)));
}

} // namespace
