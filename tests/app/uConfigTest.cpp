#include "app/uConfig.h"

#include "support/uFileUtils.h"
#include "support/uTextCoding.h"
#include "uTestErrors.h"

#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>
#include <gtest/gtest.h>

namespace {

using namespace Qt::StringLiterals;

class TConfigTest : public testing::Test
{
protected:
    void SetUp() override { FPath = FFolder.filePath("config.xml"); }
    void Put(const QByteArray &bytes) { TFileUtils::WriteBinary(FPath, bytes); }
    QByteArray Bytes() const
    {
        QByteArray bytes;
        TFileUtils::ReadBinary(FPath, bytes);
        return bytes;
    }

    QTemporaryDir FFolder;
    QString FPath;
};

TEST_F(TConfigTest, GivesDefaultsOfAMissingFileAndWritesItAtCloseOnly)
{
    TConfig config;
    config.Open(FPath);
    EXPECT_EQ(config.GetValue("a.b", "p", QString("def")), "def");
    EXPECT_EQ(config.GetValue("a.b", "p", "def", true), "def");
    EXPECT_EQ(config.GetValue("", "p", 7), 7);
    EXPECT_EQ(config.GetValue("", "p", 1.5), 1.5);
    EXPECT_TRUE(config.GetValue("", "p", true));
    EXPECT_EQ(config.GetChildCount(""), 0) << "reading made nodes";
    EXPECT_FALSE(QFile::exists(FPath));
    config.Close();
    EXPECT_EQ(Bytes(), "<?xml version=\"1.0\" encoding=\"utf-8\"?>\n<config version=\"1.0.0\"/>\n");
    EXPECT_EQ(QFile::permissions(FPath) & ~(QFile::ReadUser | QFile::WriteUser),
              QFile::ReadOwner | QFile::WriteOwner);
}

TEST_F(TConfigTest, GivesBackValuesOfEveryKind)
{
    TConfig config;
    config.New(FPath);
    config.SetValue("", "text", "a <b>");
    config.SetValue("g", "hex", u"пароль 😀"_qs, true);
    config.SetValue("g", "empty", "", true);
    config.SetValue("g.h", "int", -5);
    config.SetValue("g.h", "bool", true);
    config.SetValue("g.h", "float", 0.1);
    config.Close();
    EXPECT_TRUE(Bytes().contains(">EFBBBFD0BFD0B0")) << Bytes().toStdString();
    EXPECT_TRUE(Bytes().contains("<property name=\"empty\"/>"));

    config.Open(FPath);
    EXPECT_EQ(config.GetValue("", "text", ""), "a <b>");
    EXPECT_EQ(config.GetValue("g", "hex", "", true), u"пароль 😀"_qs);
    EXPECT_EQ(config.GetValue("g", "empty", "def", true), "");
    EXPECT_EQ(config.GetValue("g.h", "int", 0), -5);
    EXPECT_TRUE(config.GetValue("g.h", "bool", false));
    EXPECT_EQ(config.GetValue("g.h", "float", 0.0), 0.1);
    EXPECT_EQ(config.GetChildCount("g"), 3);
    EXPECT_EQ(config.GetChildCount("none"), 0);
    EXPECT_EQ(config.GetChildCount(""), 2);
}

TEST_F(TConfigTest, ReadsHexInItsOldForms)
{
    struct TRow
    {
        const char *Digits;
        QString Text;
    };
    const TRow rows[] = {
        {"EFBBBF41D096", u"AЖ"_qs},        {"EFBBBF414", "A"},
        {"CFF0E8E2E5F2", u"Привет"_qs},    {"EFBB", u"п»"_qs},
        {"EFBBBFEFBBBF41", u"\uFEFFA"_qs},
    };
    TTextCoding::SetLegacyCodePage("windows-1251");
    for (const TRow &row : rows) {
        Put(QByteArray("<config><property name='p'>") + row.Digits + "</property></config>");
        TConfig config;
        config.Open(FPath);
        EXPECT_EQ(config.GetValue("", "p", "def", true), row.Text) << row.Digits;
    }
    TTextCoding::SetLegacyCodePage({});
}

TEST_F(TConfigTest, KeepsWhatItDoesNotKnow)
{
    Put("<config version='9'><!-- mine --><group name='future' x='1'><thing>text</thing></group>"
        "<property name='known'>1</property><other/></config>");
    TConfig config;
    config.Open(FPath);
    config.SetValue("", "known", 2);
    config.Close();
    for (const char *part : {"version=\"9\"", "<!-- mine -->", "<thing>text</thing>", "x=\"1\"",
                             "<other/>", "<property name=\"known\">2</property>"})
        EXPECT_TRUE(Bytes().contains(part)) << part;
}

TEST_F(TConfigTest, NeverWritesAFileThatItCouldNotRead)
{
    const QByteArray damaged = "<config><group name='a'>";
    Put(damaged);
    TConfig config;
    const auto text = QString::fromStdString(MessageOf([&] { config.Open(FPath); }));
    EXPECT_TRUE(text.contains(FPath)) << qPrintable(text);
    EXPECT_EQ(config.GetValue("a", "p", 3), 3);
    config.SetValue("a", "p", 4);
    EXPECT_EQ(config.GetValue("a", "p", 3), 4) << "usable in memory";
    config.Close();
    EXPECT_EQ(Bytes(), damaged);

    TConfig another;
    another.New(FFolder.path() + "/./config.xml");
    another.Close();
    EXPECT_EQ(Bytes(), damaged);
}

TEST_F(TConfigTest, KeepsValuesWhenItCannotBeSaved)
{
    TFileUtils::WriteBinary(FFolder.filePath("file"), "");
    const QString below = FFolder.filePath("file/config.xml");
    TConfig config;
    config.Open(below);
    config.SetValue("", "p", 5);
    EXPECT_THROW(config.Close(), EException);
    EXPECT_EQ(config.GetValue("", "p", 0), 5);
    ASSERT_TRUE(QFile::remove(FFolder.filePath("file")));
    QDir(FFolder.path()).mkdir("file");
    config.Close();
    config.Open(below);
    EXPECT_EQ(config.GetValue("", "p", 0), 5);
}

} // namespace
