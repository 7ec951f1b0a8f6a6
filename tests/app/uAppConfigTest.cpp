#include "app/uAppConfig.h"

#include "app/uAppPathUtils.h"
#include "support/uFileUtils.h"
#include "support/uTextCoding.h"
#include "uTestErrors.h"

#include <QTemporaryDir>
#include <gtest/gtest.h>

namespace {

using namespace Qt::StringLiterals;

/// A home of its own for each test; the system's folders come back with the process's end.
class TAppHomeTest : public testing::Test
{
protected:
    void SetUp() override
    {
        TAppPathUtils::SetBaseFolders(FFolder.filePath("data home"), FFolder.filePath("docs"));
    }
    void TearDown() override
    {
        TAppConfig::Config().New({});
        TTextCoding::SetLegacyCodePage({});
    }

    QTemporaryDir FFolder;
};

TEST_F(TAppHomeTest, NamesAFolderThatCannotBeMade)
{
    TFileUtils::WriteBinary(FFolder.filePath("docs"), "in the way");
    const auto text = QString::fromStdString(MessageOf([] { TAppPathUtils::CreateFolders(); }));
    EXPECT_TRUE(text.contains(TAppPathUtils::UserFolder())) << qPrintable(text);
}

TEST_F(TAppHomeTest, RemembersSettingsFromOneRunToTheNext)
{
    TAppPathUtils::CreateFolders();
    TAppConfig::Open();
    EXPECT_EQ(TAppConfig::ReadLastQueryFolder(), "");
    TAppConfig::WriteLastQueryFolder(u"/home/я/запросы"_qs);
    TAppConfig::WriteLastDumpFolder("/dumps");
    TAppConfig::WriteLastProfileFolder("/profiles");
    TAppConfig::WriteLastSSHPrivateKeysFolder("/keys");
    TAppConfig::WriteLegacyCodePage("windows-1251");
    TAppConfig::WriteLayout("main.window \x01", "10 20\x02");
    TAppConfig::Close();

    TAppConfig::Open();
    EXPECT_EQ(TAppConfig::ReadLastQueryFolder(), u"/home/я/запросы"_qs);
    EXPECT_EQ(TAppConfig::ReadLastDumpFolder(), "/dumps");
    EXPECT_EQ(TAppConfig::ReadLastProfileFolder(), "/profiles");
    EXPECT_EQ(TAppConfig::ReadLastSSHPrivateKeysFolder(), "/keys");
    EXPECT_EQ(TAppConfig::ReadLayout("main.window \x01"), "10 20\x02");
    EXPECT_EQ(TAppConfig::ReadLayout("none", "def"), "def");
    EXPECT_EQ(TTextCoding::LegacyCodePage(), "windows-1251");
}

TEST_F(TAppHomeTest, SaysWhichPropertyNamesAnUnknownCodePage)
{
    TAppPathUtils::CreateFolders();
    TAppConfig::Open();
    TAppConfig::WriteLegacyCodePage("klingon");
    TAppConfig::WriteLastQueryFolder("/q");
    TAppConfig::Close();
    const auto text = QString::fromStdString(MessageOf([] { TAppConfig::Open(); }));
    for (const QString &part :
         {QString("legacy_code_page"), TAppPathUtils::ConfigurationFile(), QString("klingon")})
        EXPECT_TRUE(text.contains(part)) << qPrintable(text);
    EXPECT_EQ(TAppConfig::ReadLastQueryFolder(), "/q");
}

TEST_F(TAppHomeTest, RunsOnWithADamagedFileAndLeavesItAlone)
{
    TAppPathUtils::CreateFolders();
    TFileUtils::WriteBinary(TAppPathUtils::ConfigurationFile(), "<config>");
    EXPECT_THROW(TAppConfig::Open(), EException);
    TAppConfig::WriteLastQueryFolder("/q");
    EXPECT_EQ(TAppConfig::ReadLastQueryFolder(), "/q");
    TAppConfig::Close();
    QByteArray bytes;
    TFileUtils::ReadBinary(TAppPathUtils::ConfigurationFile(), bytes);
    EXPECT_EQ(bytes, "<config>");
}

} // namespace
