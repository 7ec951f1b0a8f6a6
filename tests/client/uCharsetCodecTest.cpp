#include "client/uCharsetCodec.h"
#include "uTestDatabase.h"

namespace {

using namespace Qt::StringLiterals;

// How the other sets are spoken is seen where text goes through a server.
TEST(TCharsetCodec, GoesBothWays)
{
    const std::tuple<const char *, QString, QByteArray> cases[] = {
        {"latin1", u"é€“\0"_s, QByteArray("\xE9\x80\x93\0", 4)}, // Windows' own, and NUL
        {"latin1", u"\u0081\u008D\u009D"_s, "\x81\x8D\x9D"},
        {"keybcs2", u"Žluť\u00A0"_s, "\x92lu\x9F\xFF"},
        {"ucs2", u"aя"_s, QByteArray("\0a\x04\x4F", 4)},
    };
    for (const auto &[charset, text, bytes] : cases) {
        const auto codec = TCharsetCodec::Create(charset);
        QString decoded;
        QByteArray encoded;
        EXPECT_TRUE(codec->TryDecode(bytes, decoded)) << charset;
        EXPECT_EQ(decoded, text) << charset;
        EXPECT_TRUE(codec->TryEncode(text, encoded)) << charset;
        EXPECT_EQ(encoded, bytes) << charset;
    }
}

TEST(TCharsetCodec, TellsWhatHasNoPlace)
{
    const std::tuple<const char *, QString, qsizetype> cases[] = {
        {"latin1", u"abя"_s, 2},
        {"utf8", u"a😀"_s, 1},
        {"utf8mb4", u"ab"_s + QChar(0xD800) + u'c', 2},
        {"gbk", u"a😀"_s, 1},
    };
    for (const auto &[charset, text, good] : cases) {
        QByteArray bytes;
        EXPECT_FALSE(TCharsetCodec::Create(charset)->TryEncode(text, bytes)) << charset;
        EXPECT_EQ(bytes.size(), good) << charset;
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

using TCharsetCodecOnServer = TServerTest;

TEST_F(TCharsetCodecOnServer, KnowsEverySetOfTheServer)
{
    const auto sets = Rows("SELECT character_set_name FROM information_schema.character_sets");
    ASSERT_GT(sets.size(), 30);
    for (const QStringList &set : sets)
        EXPECT_TRUE(TCharsetCodec::Create(set.first().toLatin1())) << set.first().toStdString();
}

} // namespace
