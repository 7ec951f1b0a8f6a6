#include "client/uCharsetCodec.h"
#include "uTestDatabase.h"

namespace {

using namespace Qt::StringLiterals;

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
