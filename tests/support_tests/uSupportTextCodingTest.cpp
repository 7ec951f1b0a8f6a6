#include "support/uTextCoding.h"

#include "support/uException.h"

#include <gtest/gtest.h>

namespace {

using namespace Qt::StringLiterals;

/// The code page is the process's; each case gives it back.
class TCodePage
{
public:
    explicit TCodePage(const QString &name) { TTextCoding::SetLegacyCodePage(name); }
    ~TCodePage() { TTextCoding::SetLegacyCodePage({}); }
};

struct TFileRow
{
    const char *Name;
    const char *CodePage;
    QByteArray Bytes;
    QString Text;
    TTextForm Form;
};

const TFileRow Files[] = {
    {"Utf8WithMark",
     "UTF-8",
     "\xEF\xBB\xBF"
     "a\xD0\x96\r\n",
     u"aЖ\r\n"_qs,
     {teUtf8, true, leCrLf}},
    {"Utf8WithoutMark", "windows-1251", "\xD0\x96\n", u"Ж\n"_qs, {teUtf8, false, leLf}},
    {"SecondMarkIsText",
     "UTF-8",
     "\xEF\xBB\xBF\xEF\xBB\xBFz",
     u"\uFEFFz"_qs,
     {teUtf8, true, leCrLf}},
    {"Nul", "UTF-8", QByteArray("a\0b\r", 4), u"a\0b\r"_qs, {teUtf8, false, leCr}},
    {"Emoji", "UTF-8", "\xF0\x9F\x98\x80", u"😀"_qs, {teUtf8, false, leCrLf}},
    {"Empty", "UTF-8", "", u""_qs, {teUtf8, false, leCrLf}},
    {"MarkAlone", "UTF-8", "\xEF\xBB\xBF", u""_qs, {teUtf8, true, leCrLf}},
    {"Utf16LittleEndian",
     "UTF-8",
     QByteArray("\xFF\xFE\x16\x04\n\0", 6),
     u"Ж\n"_qs,
     {teUtf16LE, true, leLf}},
    {"Utf16BigEndian",
     "UTF-8",
     QByteArray("\xFE\xFF\x04\x16\0\r\0\n", 8),
     u"Ж\r\n"_qs,
     {teUtf16BE, true, leCrLf}},
    {"LegacyCyrillic",
     "windows-1251",
     "\xCF\xF0\xE8\xE2\xE5\xF2\n",
     u"Привет\n"_qs,
     {teLegacy, false, leLf}},
    {"LegacyJapanese",
     "SHIFT_JIS",
     "\x83\x65\x83\x58\x83\x67",
     u"テスト"_qs,
     {teLegacy, false, leCrLf}},
    {"LegacyNul",
     "windows-1251",
     QByteArray("\xCF\0\xF0", 3),
     u"П\0р"_qs,
     {teLegacy, false, leCrLf}},
};

class TTextFiles : public testing::TestWithParam<TFileRow>
{};

TEST_P(TTextFiles, AreReadAndWrittenBackAlike)
{
    const TFileRow &row = GetParam();
    const TCodePage page(row.CodePage);
    TTextForm form;
    EXPECT_EQ(TTextCoding::Decode(row.Bytes, form), row.Text);
    EXPECT_EQ(form, row.Form);
    EXPECT_EQ(TTextCoding::Encode(row.Text, form), row.Bytes);
}

INSTANTIATE_TEST_SUITE_P(TextCoding, TTextFiles, testing::ValuesIn(Files),
                         [](const auto &row) { return std::string(row.param.Name); });

struct TBrokenRow
{
    const char *Name;
    const char *CodePage;
    QByteArray Bytes;
    QString Start; // of the text that is shown
};

const TBrokenRow Broken[] = {
    {"ForeignByte", "UTF-8", "ok \xCF\xF0", u"ok \uFFFD"_qs},
    {"CutSequence", "UTF-8", "ok \xD0", u"ok \uFFFD"_qs},
    {"OverlongSlash", "UTF-8", "\xC0\xAF", u"\uFFFD"_qs},
    {"EncodedSurrogate", "UTF-8", "\xED\xA0\x80", u"\uFFFD"_qs},
    {"BrokenBehindMark", "windows-1251", "\xEF\xBB\xBFx\xFF", u"x\uFFFD"_qs},
    {"HalfUtf16Unit", "UTF-8", QByteArray("\xFF\xFE\x16\x04\x16", 5), u"Ж"_qs},
    {"HoleInCodePage", "windows-1251", "\xCF\x98\xF0", u"П\uFFFDр"_qs},
    {"CutDoubleByte", "SHIFT_JIS", "a\xFF\x83\x65\x83", u"a\uFFFDテ\uFFFD"_qs},
};

class TBrokenFiles : public testing::TestWithParam<TBrokenRow>
{};

TEST_P(TBrokenFiles, AreShownButNeverWrittenBack)
{
    const TBrokenRow &row = GetParam();
    const TCodePage page(row.CodePage);
    TTextForm form;
    const QString text = TTextCoding::Decode(row.Bytes, form);
    EXPECT_TRUE(text.startsWith(row.Start)) << qPrintable(text);
    EXPECT_EQ(form.Encoding, teUndecodable);
    EXPECT_THROW(TTextCoding::Encode(text, form), EException);
}

INSTANTIATE_TEST_SUITE_P(TextCoding, TBrokenFiles, testing::ValuesIn(Broken),
                         [](const auto &row) { return std::string(row.param.Name); });

TEST(TTextCoding, RefusesWhatTheEncodingCannotHold)
{
    const TCodePage page("windows-1251");
    const TTextForm legacy{teLegacy, false, leLf};
    try {
        TTextCoding::Encode(u"Ж😀"_qs, legacy);
        FAIL() << "no exception";
    } catch (const EException &e) {
        EXPECT_TRUE(e.Message().contains(u"U+1F600"_qs)) << qPrintable(e.Message());
        EXPECT_TRUE(e.Message().contains("windows-1251"));
    }
    EXPECT_THROW(TTextCoding::Encode(QString(QChar(0xD83D)) + u'x', TTextForm()), EException);
}

TEST(TTextCoding, RefusesAnUnknownCodePageAndKeepsTheOld)
{
    const TCodePage page("windows-1251");
    EXPECT_THROW(TTextCoding::SetLegacyCodePage("no-such-page"), EException);
    EXPECT_EQ(TTextCoding::LegacyCodePage(), "windows-1251");
}

TEST(TTextCoding, WritesALongLegacyTextWhole)
{
    const TCodePage page("SHIFT_JIS");
    const QString text = u"テスト, test\n"_qs.repeated(200000);
    TTextForm form{teLegacy, false, leLf};
    const QByteArray bytes = TTextCoding::Encode(text, form);
    EXPECT_EQ(TTextCoding::Decode(bytes, form), text);
    EXPECT_EQ(form.Encoding, teLegacy);
}

} // namespace
