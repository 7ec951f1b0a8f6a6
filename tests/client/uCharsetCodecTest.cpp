#include "client/uCharsetCodec.h"

#include <gtest/gtest.h>

namespace {

using namespace Qt::StringLiterals;

// How the other sets are spoken is seen where text goes through a server.
TEST(TCharsetCodec, GoesBothWays)
{
    const struct
    {
        const char *Charset;
        QString Text;
        QByteArray Bytes;
    } cases[] = {
        {"latin1", u"é€“\0"_s, QByteArray("\xE9\x80\x93\0", 4)}, // Windows' own, and NUL
        {"latin1", u"\u0081\u008D\u009D"_s, "\x81\x8D\x9D"},
        {"keybcs2", u"Žluť\u00A0"_s, "\x92lu\x9F\xFF"},
        {"ucs2", u"aя"_s, QByteArray("\0a\x04\x4F", 4)},
    };
    for (const auto &c : cases) {
        const auto codec = TCharsetCodec::Create(c.Charset);
        QString decoded;
        QByteArray encoded;
        EXPECT_TRUE(codec->TryDecode(c.Bytes, decoded)) << c.Charset;
        EXPECT_EQ(decoded, c.Text) << c.Charset;
        EXPECT_TRUE(codec->TryEncode(c.Text, encoded)) << c.Charset;
        EXPECT_EQ(encoded, c.Bytes) << c.Charset;
    }
}

TEST(TCharsetCodec, TellsWhatHasNoPlace)
{
    const struct
    {
        const char *Charset;
        QString Text;
        qsizetype Good;
    } cases[] = {
        {"latin1", u"abя"_s, 2},
        {"utf8", u"a😀"_s, 1},
        {"utf8mb4", u"ab"_s + QChar(0xD800) + u'c', 2},
        {"gbk", u"a😀"_s, 1},
        {"ascii", u"é"_s, 0},
    };
    for (const auto &c : cases) {
        QByteArray bytes;
        EXPECT_FALSE(TCharsetCodec::Create(c.Charset)->TryEncode(c.Text, bytes)) << c.Charset;
        EXPECT_EQ(bytes.size(), c.Good) << c.Charset;
    }
}

TEST(TCharsetCodec, TellsBytesThatAreNoText)
{
    for (const char *charset : {"utf8mb4", "gbk", "cp1251"}) {
        QString text;
        EXPECT_FALSE(TCharsetCodec::Create(charset)->TryDecode("ab\x98\xFF", text)) << charset;
        EXPECT_TRUE(text.startsWith(u"ab")) << charset;
    }
    QString text;
    EXPECT_TRUE(TCharsetCodec::Create("utf8")->TryDecode("\xEF\xBF\xBD", text)); // sent as such
}

TEST(TCharsetCodec, KnowsEverySetThatASessionCanSpeak)
{
    for (const char *charset :
         {"armscii8", "ascii",  "big5",    "binary", "cp1250",  "cp1251",  "cp1256",   "cp1257",
          "cp850",    "cp852",  "cp866",   "cp932",  "dec8",    "eucjpms", "euckr",    "gb18030",
          "gb2312",   "gbk",    "geostd8", "greek",  "hebrew",  "hp8",     "keybcs2",  "koi8r",
          "koi8u",    "latin1", "latin2",  "latin5", "latin7",  "macce",   "macroman", "sjis",
          "swe7",     "tis620", "ujis",    "utf8",   "utf8mb3", "utf8mb4"}) {
        const auto codec = TCharsetCodec::Create(charset);
        ASSERT_TRUE(codec) << charset;
        EXPECT_EQ(codec->Decode("SELECT 1"), QString("SELECT 1")) << charset;
    }
    EXPECT_FALSE(TCharsetCodec::Create("klingon"));
}

} // namespace
