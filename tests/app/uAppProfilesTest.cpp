#include "app/uAppProfiles.h"

#include "support/uFileUtils.h"
#include "uTestErrors.h"

#include <QFile>
#include <QTemporaryDir>
#include <QUuid>
#include <gtest/gtest.h>

namespace {

using namespace Qt::StringLiterals;

TDbmConnectionProfile Direct()
{
    TDbmConnectionProfile profile;
    profile.HostName = "srv";
    profile.Port = 3307;
    profile.UserName = u"администратор"_qs;
    profile.Password = "p<&>\"\n\t ";
    profile.Database = "shop";
    profile.Charset = "utf8mb4";
    profile.UseCompression = true;
    return profile;
}

TDbmConnectionProfile Tunnel(TSSHTunnelAuthentication authentication)
{
    TDbmConnectionProfile profile = Direct();
    profile.ConnectionType = ctSSHTunnel;
    profile.UseCompression = false;
    profile.SSHSettings.HostName = "gate";
    profile.SSHSettings.Port = 65535;
    profile.SSHSettings.UserName = "u";
    profile.SSHSettings.Authentication = authentication;
    profile.SSHSettings.Password = u"пароль"_qs;
    profile.SSHSettings.PrivateKey = QByteArray("-----\0\n\xFF", 8);
    return profile;
}

TAppProfilePtr Make(const QString &alias, const TDbmConnectionProfile &connection)
{
    auto profile = std::make_shared<TAppProfile>();
    profile->Alias = alias;
    profile->Id = TAppProfile::NewId();
    profile->ConnectionProfile = connection;
    return profile;
}

class TAppProfilesTest : public testing::Test
{
protected:
    void SetUp() override { FPath = FFolder.filePath("profiles.xml"); }
    void Put(const QByteArray &groups)
    {
        TFileUtils::WriteBinary(FPath, "<config version='1.0.0'>" + groups + "</config>");
    }
    QByteArray Bytes() const
    {
        QByteArray bytes;
        TFileUtils::ReadBinary(FPath, bytes);
        return bytes;
    }
    /// The only profile of the file.
    TAppProfile ReadOne() const
    {
        TAppProfiles profiles(FPath);
        profiles.Read();
        EXPECT_EQ(profiles.GetArray().size(), 1);
        return *profiles.GetArray().first();
    }
    void ExpectPath(const QString &error) const
    {
        EXPECT_TRUE(error.contains(FPath)) << qPrintable(error);
    }
    static void ExpectDefault(const TAppProfile &profile)
    {
        EXPECT_EQ(profile.Alias, "localhost");
        EXPECT_EQ(profile.Id.size(), 38);
        EXPECT_FALSE(QUuid::fromString(profile.Id).isNull());
        EXPECT_EQ(profile.ConnectionProfile.HostName, "localhost");
        EXPECT_EQ(profile.ConnectionProfile.Port, 3306);
        EXPECT_EQ(profile.ConnectionProfile.UserName, "root");
        EXPECT_TRUE(profile.ConnectionProfile.UseCompression);
        EXPECT_EQ(profile.ConnectionProfile.SSHSettings.HostName, "localhost");
        EXPECT_EQ(profile.ConnectionProfile.SSHSettings.Port, 22);
    }

    QTemporaryDir FFolder;
    QString FPath;
};

TEST_F(TAppProfilesTest, StartWithTheDefaultAndWithoutAFile)
{
    ExpectDefault(ReadOne());
    EXPECT_FALSE(QFile::exists(FPath));
    Put("");
    ExpectDefault(ReadOne());
}

TEST_F(TAppProfilesTest, SurviveAWriteAndARead)
{
    const TAppProfilePtr stored[] = {
        Make("", Direct()),
        Make(u"Магазин"_qs, Tunnel(taPassword)),
        Make("key", Tunnel(taPublicKey)),
        Make("key and phrase", Tunnel(taPublicKeyWithPassword)),
    };
    TAppProfiles profiles(FPath);
    profiles.Clear();
    for (const TAppProfilePtr &profile : stored)
        profiles.Add(profile);
    profiles.Write();

    TAppProfiles read(FPath);
    read.Read();
    EXPECT_EQ(read.GetArray().size(), 4);
    for (const TAppProfilePtr &profile : stored) {
        const TAppProfilePtr found = read.Get(profile->Id);
        EXPECT_EQ(found->Alias, profile->Alias);
        EXPECT_EQ(found->ConnectionProfile, profile->ConnectionProfile)
            << qPrintable(profile->GetDisplayString());
    }
    EXPECT_EQ(read.Get(stored[0]->Id)->GetDisplayString(), "srv:3307/shop");
    EXPECT_EQ(read.Get(stored[1]->Id)->GetDisplayString(), u"Магазин"_qs);
}

TEST_F(TAppProfilesTest, AProfileWithoutAnIdGetsOneForGood)
{
    const QByteArray nameless = "<group name='%'/>";
    Put(QByteArray(nameless).replace('%', '0'));
    TAppProfiles profiles(FPath);
    profiles.Read();
    EXPECT_EQ(profiles.GetArray().first()->Id, "");
    profiles.GiveMissingId();
    const QString id = profiles.GetArray().first()->Id;
    EXPECT_EQ(id.size(), 38);
    EXPECT_TRUE(profiles.IsChanged());
    profiles.Write();
    EXPECT_EQ(ReadOne().Id, id);
    Put(QByteArray(nameless).replace('%', '0') + QByteArray(nameless).replace('%', '1'));
    EXPECT_THROW(profiles.Read(), EException) << "of two one would be lost";
}

TEST_F(TAppProfilesTest, AreReadableByTheirOwnerOnlyAlsoWhenTheFileWasOpen)
{
    Put("");
    QFile::setPermissions(FPath, QFile::ReadOwner | QFile::WriteOwner | QFile::ReadOther);
    TAppProfiles profiles(FPath);
    profiles.Write();
    EXPECT_FALSE(QFile::permissions(FPath) & (QFile::ReadGroup | QFile::ReadOther));
}

TEST_F(TAppProfilesTest, LoseNoneWhenGroupsAreNotNumberedInOrder)
{
    Put("<!-- two --><group name='5'><property name='id'>a</property></group>"
        "<property name='note'/><group name='2'><property name='id'>b</property></group>");
    TAppProfiles profiles(FPath);
    profiles.Read();
    profiles.Write();
    TAppProfiles again(FPath);
    again.Read();
    EXPECT_EQ(again.GetArray().size(), 2);
    EXPECT_NO_THROW(again.Get("a"));
    EXPECT_NO_THROW(again.Get("b"));
}

TEST_F(TAppProfilesTest, NeverOverwriteAFileThatCouldNotBeReadWhole)
{
    const QByteArray twice = "<group name='0'><property name='id'>a</property></group>"
                             "<group name='1'><property name='id'>a</property></group>"
                             "<group name='2'><property name='id'>b</property></group>";
    const std::pair<QString, QByteArray> rows[] = {
        {"damaged.xml", "<group>"}, {"twice.xml", twice}, {"cut.xml", "<group name='0'></gro"}};
    for (const auto &[name, groups] : rows) {
        FPath = FFolder.filePath(name);
        Put(groups);
        const QByteArray before = Bytes();
        TAppProfiles profiles(FPath);
        ExpectPath(QString::fromStdString(MessageOf([&] { profiles.Read(); })));
        EXPECT_EQ(profiles.GetArray().size(), 1) << "something to connect with";
        EXPECT_NO_THROW(profiles.Write()) << "nothing to lose";
        profiles.Add(Make("mine", Direct()));
        ExpectPath(QString::fromStdString(MessageOf([&] { profiles.Write(); })));
        EXPECT_EQ(Bytes(), before);
    }
}

TEST_F(TAppProfilesTest, SayWhereTheyCouldNotBeSaved)
{
    TFileUtils::WriteBinary(FFolder.filePath("file"), "");
    FPath = FFolder.filePath("file/profiles.xml");
    TAppProfiles profiles(FPath);
    EXPECT_NO_THROW(profiles.Read());
    ExpectPath(QString::fromStdString(MessageOf([&] { profiles.Write(); })));
}

} // namespace
