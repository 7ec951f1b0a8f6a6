#include "support/uXmlUtils.h"

#include "support/uFileUtils.h"
#include "uTestErrors.h"

#include <QTemporaryDir>
#include <gmock/gmock.h>

namespace {

using namespace Qt::StringLiterals;

class TXmlTest : public testing::Test
{
protected:
    void SetUp() override { TXmlUtils::CreateXml("config", "1.0.0", FDocument); }
    QDomElement Node(const QString &group, const QString &property, bool create = false)
    {
        QDomElement node;
        TXmlUtils::GetNodeByPath(FDocument.documentElement(), group, node, "property", "group",
                                 create, property);
        return node;
    }
    void Load(const QByteArray &bytes)
    {
        TFileUtils::WriteBinary(Path(), bytes);
        TXmlUtils::OpenXml(Path(), FDocument);
    }
    void SaveAndLoad() { Load(TXmlUtils::ToBytes(FDocument)); }
    QString Path() const { return FFolder.filePath("file.xml"); }

    QTemporaryDir FFolder;
    QDomDocument FDocument;
};

TEST_F(TXmlTest, GivesBackEveryTextAndNameAsItWasSet)
{
    const QString texts[] = {"",         " lead and trail ", " ",           "\n \t",
                             " \r",      "a\r\nb\nc\rd",     u"\u3000 "_qs, u"\0x"_qs,
                             "\x01\x1F", u"\uFFFE\uFFFF"_qs, u"Ж😀"_qs,      "]]>",
                             "<a>&amp;", "\"quoted\""};
    int position = 0;
    for (const QString &text : texts) {
        TXmlUtils::SetValueAsStr(Node("values", QString::number(position++), true), text);
        if (!text.isEmpty())
            TXmlUtils::SetValueAsStr(Node("names." + text, "p", true), "found");
    }
    SaveAndLoad();
    position = 0;
    for (const QString &text : texts) {
        EXPECT_EQ(TXmlUtils::GetValueAsString(Node("values", QString::number(position)), "def"),
                  text)
            << position;
        if (!text.isEmpty()) {
            EXPECT_EQ(TXmlUtils::GetValueAsString(Node("names." + text, "p"), "def"), "found")
                << position;
        }
        ++position;
    }
}

TEST_F(TXmlTest, ReadsNumbersAndBooleansOrTheDefault)
{
    Load("<config><property name='i'>-12</property><property name='f'>1.5e3</property>"
         "<property name='t'>TRUE</property><property name='n'>1</property>"
         "<property name='x' size='7'>12x</property></config>");
    EXPECT_EQ(TXmlUtils::GetValueAsInteger(Node("", "i"), 5), -12);
    EXPECT_EQ(TXmlUtils::GetValueAsInteger(Node("", "x"), 5), 5);
    EXPECT_EQ(TXmlUtils::GetValueAsFloat(Node("", "f"), 5), 1500);
    EXPECT_EQ(TXmlUtils::GetValueAsFloat(Node("", "x"), 5), 5);
    EXPECT_TRUE(TXmlUtils::GetValueAsBoolean(Node("", "t"), false));
    EXPECT_FALSE(TXmlUtils::GetValueAsBoolean(Node("", "n"), true));
    TXmlUtils::SetValueAsFloat(Node("", "f"), 0.1 + 0.2);
    SaveAndLoad();
    EXPECT_EQ(TXmlUtils::GetValueAsFloat(Node("", "f"), 0), 0.1 + 0.2);
}

TEST_F(TXmlTest, ReadsAForeignEncodingAndWritesUtf8)
{
    Load("<?xml version='1.0' encoding='iso-8859-1'?><config><property name='p'>\xE9</property>"
         "<!-- kept --></config>");
    SaveAndLoad();
    EXPECT_EQ(Node("", "p").text(), u"é"_qs);
    EXPECT_TRUE(TXmlUtils::ToBytes(FDocument).contains("<!-- kept -->"));
}

TEST_F(TXmlTest, NamesFileAndPlaceOfWhatItCannotRead)
{
    const QByteArray damaged[] = {"", "<config>\n<a></config>", "plain text",
                                  QByteArray("<config>\0</config>", 18), "<config>\x80</config>"};
    for (const QByteArray &bytes : damaged) {
        const std::string message = MessageOf([&] { Load(bytes); });
        EXPECT_THAT(message, testing::HasSubstr(Path().toStdString())) << bytes.toStdString();
        EXPECT_THAT(message, testing::HasSubstr("line ")) << bytes.toStdString();
    }
    EXPECT_EQ(FDocument.documentElement().tagName(), "config") << "the old document is kept";
}

} // namespace
