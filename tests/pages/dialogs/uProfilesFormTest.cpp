#include "app/uAppConfig.h"
#include "app/uAppPathUtils.h"
#include "app/uAppProfiles.h"
#include "shell/uAppUtils.h"
#include "shell/uWorkbenchFixture.h"
#include "support/uFileUtils.h"
#include "uTestSshServer.h"
#include "widgets/uVerticalGrid.h"

#include <QDir>
#include <QFile>
#include <QFileDialog>
#include <QFileInfo>

namespace {

class TProfilesTest : public TWorkbenchTest
{
protected:
    static QStringList Stored()
    {
        TAppProfiles profiles;
        profiles.Read();
        QStringList names;
        for (const TAppProfilePtr &profile : profiles.GetArray())
            names += profile->GetDisplayString();
        names.sort();
        return names;
    }
    void OpenProfiles(TModalDriver::THandler handler)
    {
        Driver.Expect("frmProfiles", std::move(handler));
        Trigger("actNewConnection");
    }
    /// Works on the only profile in its dialog, then presses the button.
    void EditProfile(const QString &button, const TModalDriver::THandler &work)
    {
        OpenProfiles([&](QWidget *form) {
            Driver.Expect("Edit profile", [&](QWidget *dialog) {
                work(dialog);
                TGuiTools::Click(dialog, button);
            });
            TGuiTools::Trigger(form, "actUpdate");
            TGuiTools::Click(form, "butClose");
        });
    }
    static TVerticalRow *Row(QWidget *form, const QString &name)
    {
        return Find<TVerticalGrid>(form, "vgProfile")->Row(name);
    }
    static void Edit(QWidget *form, const QString &row, const QString &text)
    {
        TGuiTools::Retype(Find<QWidget>(form, row), text);
    }
};

struct TBadProfile
{
    const char *Name;
    void (*Spoil)(TDbmConnectionProfile &profile, int silentPort);
    const char *Error;
};

const TBadProfile BadProfiles[] = {
    {"Host", [](TDbmConnectionProfile &p, int) { p.HostName = "bad..name"; },
     "\n---\nCannot resolve IPv4 address."},
    {"Password",
     [](TDbmConnectionProfile &p, int) {
         p.UserName = "nobody";
         p.Password = "wrong";
     },
     "\n---\nER_ACCESS_DENIED_ERROR\nAccess denied for user 'nobody'@'localhost' (using password: "
     "YES)\n"},
    {"SilentServer", [](TDbmConnectionProfile &p, int silentPort) { p.Port = silentPort; },
     "\n---\nCR_SERVER_LOST\nLost connection to server at 'handshake: reading initial "
     "communication packet', system error: 110\n"},
};

TEST_F(TProfilesTest, AFailedConnectionSaysWhyAndKeepsTheWindowsOpen)
{
    TBlackHole silent;
    for (const TBadProfile &row : BadProfiles) {
        TDbmConnectionProfile wrong = Profile();
        row.Spoil(wrong, silent.Port());
        StoreProfile(row.Name, wrong);
        OpenProfiles([this, &row](QWidget *form) {
            ExpectJob();
            TGuiTools::Click(form, "butOpen");
            EXPECT_TRUE(JobLog.contains(row.Error)) << JobLog.toStdString();
            EXPECT_TRUE(form->isVisible()) << row.Name;
            TGuiTools::Click(form, "butClose");
        });
        EXPECT_FALSE(TAppUtils::Instance().IsConnectionOpened()) << row.Name;
    }
}

TEST_F(TProfilesTest, APrivateKeyIsImportedAndCleared)
{
    TDbmConnectionProfile tunnel = Profile();
    tunnel.ConnectionType = ctSSHTunnel;
    tunnel.SSHSettings.Authentication = taPublicKey;
    StoreProfile("Tunnel", tunnel);
    const QString key = FilePath("id_rsa");
    TTestSshServer::Run("ssh-keygen", {"-q", "-t", "rsa", "-b", "2048", "-N", "", "-f", key});
    const QString noKey = FilePath("no_key.txt");
    TFileUtils::WriteBinary(noKey, "no key");
    QByteArray bytes;
    TFileUtils::ReadBinary(key, bytes);

    const auto edit = [this](const std::function<void(TVerticalRow * row)> &work) {
        EditProfile("butOK", [&](QWidget *dialog) { work(Row(dialog, "rowSSHPrivateKey")); });
        TAppProfiles profiles;
        profiles.Read();
        return profiles.GetArray().first()->ConnectionProfile.SSHSettings.PrivateKey;
    };
    const auto choose = [this](const QString &file) {
        Driver.Expect("frmFile", [file](QWidget *window) {
            auto *dialog = qobject_cast<QFileDialog *>(window);
            // Keys have names of any kind.
            EXPECT_TRUE(dialog->nameFilters().value(0).endsWith("(*)"));
            Find<QLineEdit>(dialog, "fileNameEdit")->setText(file);
            static_cast<QDialog *>(dialog)->accept();
        });
    };
    const QByteArray imported = edit([&](TVerticalRow *row) {
        choose(key);
        Q_EMIT row->OnButton(row, "Import");
        const QString shown = row->Text();
        EXPECT_TRUE(shown.startsWith("RSA 2048 - ")) << shown.toStdString();
        choose(noKey);
        ExpectError("\"" + noKey + "\" cannot be read as a private key");
        Q_EMIT row->OnButton(row, "Import");
        EXPECT_EQ(row->Text(), shown);
    });
    EXPECT_EQ(imported, bytes);
    EXPECT_EQ(TAppConfig::ReadLastSSHPrivateKeysFolder(), QFileInfo(noKey).path());
    EXPECT_EQ(edit([](TVerticalRow *row) { Q_EMIT row->OnButton(row, "Clear"); }), QByteArray());
}

TEST_F(TProfilesTest, ChangesThatCannotBeStoredAreNotDropped)
{
    StoreProfile("First", Profile());
    const QString file = TAppPathUtils::ProfilesFile();
    const QString folder = QFileInfo(file).path();
    OpenProfiles([&](QWidget *form) {
        ASSERT_TRUE(QDir(folder).removeRecursively());
        TFileUtils::WriteBinary(folder, "a file, not a folder");
        Driver.Expect("New profile", [](QWidget *dialog) {
            Edit(dialog, "rowProfileName", "Second");
            TGuiTools::Click(dialog, "butOK");
        });
        TGuiTools::Trigger(form, "actCreate");
        ExpectError("profiles.xml");
        Answer("butNo");
        TGuiTools::Click(form, "butClose");
        EXPECT_TRUE(form->isVisible());
        EXPECT_TRUE(QFile::remove(folder) && QDir().mkpath(folder));
        TGuiTools::Click(form, "butClose");
    });
    EXPECT_EQ(Stored(), (QStringList{"First", "Second"}));
}

TEST_F(TProfilesTest, ADamagedFileIsToldAndLeftAlone)
{
    const QByteArray damaged = "<config><group name='0'>";
    TFileUtils::WriteBinary(TAppPathUtils::ProfilesFile(), damaged);
    ExpectError("profiles.xml");
    OpenProfiles([](QWidget *form) { TGuiTools::Click(form, "butClose"); });
    QByteArray bytes;
    TFileUtils::ReadBinary(TAppPathUtils::ProfilesFile(), bytes);
    EXPECT_EQ(bytes, damaged);
}

} // namespace
