#include "support/uTextCoding.h"

#include "uTestErrors.h"

#include <gmock/gmock.h>

namespace {

using namespace Qt::StringLiterals;

/// The code page is the process's; each case gives it back.
class TCodePage
{
public:
    explicit TCodePage(const QString &name) { TTextCoding::SetLegacyCodePage(name); }
    ~TCodePage() { TTextCoding::SetLegacyCodePage({}); }
};

const QByteArray Mark("\xEF\xBB\xBF");

TEST(TTextCoding, ReadsAFileAndWritesItBackAlike)
{
    const struct
    {
        QByteArray Bytes;
        QString Text;
        TTextForm Form;
        const char *CodePage = "UTF-8";
    } files[] = {
        {Mark + "a\xD0\x96\r\n", u"aЖ\r\n"_qs, {teUtf8, true, leCrLf}},
        {"\xD0\x96\n", u"Ж\n"_qs, {teUtf8, false, leLf}, "windows-1251"},
        {Mark + Mark + "z", u"\uFEFFz"_qs, {teUtf8, true, leCrLf}}, // the second one is text
        {QByteArray("a\0b\r", 4), u"a\0b\r"_qs, {teUtf8, false, leCr}},
        {QByteArray("\xFF\xFE\x16\x04\n\0", 6), u"Ж\n"_qs, {teUtf16LE, true, leLf}},
        {QByteArray("\xFE\xFF\x04\x16\0\r\0\n", 8), u"Ж\r\n"_qs, {teUtf16BE, true, leCrLf}},
        {"\xCF\xF0\xE8\n", u"При\n"_qs, {teLegacy, false, leLf}, "windows-1251"},
        {"\x83\x65\x83\x58", u"テス"_qs, {teLegacy, false, leCrLf}, "SHIFT_JIS"},
        {QByteArray("\xCF\0\xF0", 3), u"П\0р"_qs, {teLegacy, false, leCrLf}, "windows-1251"},
    };
    for (const auto &file : files) {
        const TCodePage page(file.CodePage);
        TTextForm form;
        EXPECT_EQ(TTextCoding::Decode(file.Bytes, form), file.Text) << qPrintable(file.Text);
        EXPECT_EQ(form, file.Form) << qPrintable(file.Text);
        EXPECT_EQ(TTextCoding::Encode(file.Text, form), file.Bytes) << qPrintable(file.Text);
    }
}

TEST(TTextCoding, ShowsABrokenFileButNeverWritesItBack)
{
    const struct
    {
        const char *CodePage;
        QByteArray Bytes;
        QString Start; // of the text that is shown
    } files[] = {
        {"UTF-8", "ok \xCF\xF0", u"ok \uFFFD"_qs},
        {"UTF-8", "\xC0\xAF", u"\uFFFD"_qs},     // a slash in two bytes
        {"UTF-8", "\xED\xA0\x80", u"\uFFFD"_qs}, // half a pair
        {"windows-1251", Mark + "x\xFF", u"x\uFFFD"_qs},
        {"UTF-8", QByteArray("\xFF\xFE\x16\x04\x16", 5), u"Ж"_qs},
        {"windows-1251", "\xCF\x98\xF0", u"П\uFFFDр"_qs}, // a hole in the code page
        {"SHIFT_JIS", "a\xFF\x83\x65\x83", u"a\uFFFDテ\uFFFD"_qs},
    };
    for (const auto &file : files) {
        const TCodePage page(file.CodePage);
        TTextForm form;
        const QString text = TTextCoding::Decode(file.Bytes, form);
        EXPECT_TRUE(text.startsWith(file.Start)) << qPrintable(text);
        EXPECT_EQ(form.Encoding, teUndecodable) << qPrintable(text);
        EXPECT_THROW(TTextCoding::Encode(text, form), EException) << qPrintable(text);
    }
}

TEST(TTextCoding, RefusesWhatTheEncodingCannotHold)
{
    const TCodePage page("windows-1251");
    const TTextForm legacy{teLegacy, false, leLf};
    const std::string message = MessageOf([&] { TTextCoding::Encode(u"Ж😀"_qs, legacy); });
    EXPECT_THAT(message, testing::HasSubstr("U+1F600"));
    EXPECT_THAT(message, testing::HasSubstr("windows-1251"));
    EXPECT_THROW(TTextCoding::Encode(QString(QChar(0xD83D)) + u'x', TTextForm()), EException);
}

} // namespace
