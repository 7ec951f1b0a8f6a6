#include "pages/dialogs/uProfileDialogFrame.h"

#include "app/uAppConfig.h"
#include "client/uSSHUtils.h"
#include "jobs/uAppWorkers.h"
#include "model/uDbmManager.h"
#include "shell/uAppDialogs.h"
#include "shell/uFileDialogs.h"
#include "shell/uGuard.h"
#include "support/uException.h"
#include "support/uFileUtils.h"
#include "support/uFormat.h"
#include "widgets/uIcons.h"
#include "widgets/uPropertyRows.h"
#include "widgets/uToolBar.h"
#include "widgets/uWaitCursor.h"

#include <QAction>
#include <QFileInfo>
#include <QVBoxLayout>

/// What the rows hold: the profile laid flat.
struct TProfileDialogFrame::TValues
{
    QString Alias;
    TDbmConnectionProfileConnectionType ConnectionType = ctDirect;
    QString SSHHostName;
    int SSHPort = 0;
    QString SSHUserName;
    TSSHTunnelAuthentication SSHAuthentication = taPassword;
    QString SSHPassword;
    QString HostName;
    int Port = 0;
    QString UserName;
    QString Password;
    QString Database;
    QString Charset;
    bool UseCompression = false;
};

class TProfileDialogFrame::TRows : public TPropertyRows<TValues>
{
public:
    using TPropertyRows::TPropertyRows;
};

namespace {

constexpr int MaximumPort = 65535;

QStringList Charsets()
{
    return {"armscii8", "ascii",   "big5",   "binary", "cp1250", "cp1251",   "cp1256", "cp1257",
            "cp850",    "cp852",   "cp866",  "cp932",  "dec8",   "eucjpms",  "euckr",  "gb2312",
            "gbk",      "geostd8", "greek",  "hebrew", "hp8",    "keybcs2",  "koi8r",  "koi8u",
            "latin1",   "latin2",  "latin5", "latin7", "macce",  "macroman", "sjis",   "swe7",
            "tis620",   "ucs2",    "ujis",   "utf16",  "utf32",  "utf8",     "utf8mb4"};
}

} // namespace

TProfileDialogFrame::TProfileDialogFrame(QWidget *owner) : TDialogFrame(owner) {}

TProfileDialogFrame::~TProfileDialogFrame() = default;

void TProfileDialogFrame::DoCreate()
{
    auto *column = new QVBoxLayout(this);
    auto *toolBar = new TToolBar(this, "tbrProfile");
    actTestConnection = toolBar->addAction(TIcons::Icon("test-connection"), "Test Connection");
    actTestConnection->setObjectName("actTestConnection");
    connect(actTestConnection, &QAction::triggered, this,
            [this] { TGuard::Run([this] { TestConnection(); }); });
    column->addWidget(toolBar);
    vgProfile = new TVerticalGrid(this);
    vgProfile->setObjectName("vgProfile");
    const QFontMetrics metrics(font());
    resize(metrics.averageCharWidth() * 72, metrics.height() * 36);
    column->addWidget(vgProfile, 1);

    FRows.reset(new TRows{
        {.Caption = "Profile name", .Field = &TValues::Alias, .WhenEmpty = "(auto)"},
        {.Caption = "Connection type",
         .Kind = rkFixedCombo,
         .Field = &TValues::ConnectionType,
         .Values =
             [] {
                 return QStringList{"direct", "ssh tunnel"};
             }},
        {.Name = "rowSSHSettings",
         .Caption = "SSH settings",
         .Kind = rkCategory,
         .Shown =
             [](const TVerticalGrid &grid) {
                 return grid.Row("rowConnectionType")->ItemIndex() == ctSSHTunnel;
             }},
        {.Name = "rowSSHHostName", .Caption = "Host name", .Field = &TValues::SSHHostName},
        {.Name = "rowSSHPort",
         .Caption = "Port",
         .Kind = rkNumber,
         .Field = &TValues::SSHPort,
         .Min = 1,
         .Max = MaximumPort},
        {.Name = "rowSSHUserName",
         .Caption = "User name",
         .Field = &TValues::SSHUserName,
         .AsTyped = true},
        {.Name = "rowSSHAuthentication",
         .Caption = "Authentication",
         .Kind = rkFixedCombo,
         .Field = &TValues::SSHAuthentication,
         .Values =
             [] {
                 return QStringList{"password", "public key", "public key + password"};
             }},
        {.Name = "rowSSHPassword",
         .Caption = "Password",
         .Kind = rkMasked,
         .Field = &TValues::SSHPassword},
        {.Name = "rowSSHPrivateKey",
         .Caption = "Private key",
         .Kind = rkReadOnlyButtons,
         .Buttons =
             [] {
                 return QStringList{"Import", "Clear"};
             },
         .Pressed =
             [this](TVerticalRow &, const QString &button) {
                 TGuard::Run([this, import = button == "Import"] {
                     import ? ImportPrivateKey() : ClearPrivateKey();
                 });
             }},
        {.Name = "rowMySQLSettings", .Caption = "MySQL settings", .Kind = rkCategory},
        {.Caption = "Host name", .Field = &TValues::HostName},
        {.Caption = "Port",
         .Kind = rkNumber,
         .Field = &TValues::Port,
         .Min = 1,
         .Max = MaximumPort},
        {.Caption = "User name", .Field = &TValues::UserName, .AsTyped = true},
        {.Caption = "Password", .Kind = rkMasked, .Field = &TValues::Password},
        {.Caption = "Database",
         .Kind = rkTextButton,
         .Field = &TValues::Database,
         .WhenEmpty = "(all)",
         .Buttons = [] { return QStringList{"select"}; },
         .AsTyped = true,
         .Pressed = [this](TVerticalRow &,
                           const QString &) { TGuard::Run([this] { SelectDatabase(); }); }},
        {.Caption = "Character set",
         .Kind = rkFixedCombo,
         .Field = &TValues::Charset,
         .WhenEmpty = "(default)",
         .Values = Charsets},
        {.Caption = "Compression", .Kind = rkCheck, .Field = &TValues::UseCompression},
    });
    FRows->Build(*vgProfile);
}

void TProfileDialogFrame::InitializeCreate()
{
    FIsCreate = true;
    TAppProfile profile;
    profile.Id = TAppProfile::NewId();
    TDbmConnectionProfile &connection = profile.ConnectionProfile;
    connection.HostName = "localhost";
    connection.Port = 3306;
    connection.UserName = "root";
    connection.UseCompression = true;
    connection.SSHSettings.HostName = "localhost";
    connection.SSHSettings.Port = 22;
    LoadRows(profile);
}

void TProfileDialogFrame::InitializeUpdate(const TAppProfile &profile)
{
    FIsCreate = false;
    LoadRows(profile);
}

void TProfileDialogFrame::LoadRows(const TAppProfile &profile)
{
    const TDbmConnectionProfile &connection = profile.ConnectionProfile;
    const TDbmConnectionProfileSSHSettings &ssh = connection.SSHSettings;
    TValues values;
    values.Alias = profile.Alias;
    values.ConnectionType = connection.ConnectionType;
    values.SSHHostName = ssh.HostName;
    values.SSHPort = ssh.Port;
    values.SSHUserName = ssh.UserName;
    values.SSHAuthentication = ssh.Authentication;
    values.SSHPassword = ssh.Password;
    values.HostName = connection.HostName;
    values.Port = connection.Port;
    values.UserName = connection.UserName;
    values.Password = connection.Password;
    values.Database = connection.Database;
    values.Charset = connection.Charset;
    values.UseCompression = connection.UseCompression;
    FRows->Load(*vgProfile, values);
    FId = profile.Id;
    FPrivateKey = ssh.PrivateKey;
    ShowPrivateKey();
}

TAppProfile TProfileDialogFrame::CreateProfile()
{
    TValues values;
    FRows->Store(*vgProfile, values);
    TAppProfile profile;
    profile.Alias = values.Alias;
    profile.Id = FId;
    TDbmConnectionProfile &connection = profile.ConnectionProfile;
    connection.ConnectionType = values.ConnectionType;
    connection.HostName = values.HostName;
    connection.Port = values.Port;
    connection.UserName = values.UserName;
    connection.Password = values.Password;
    connection.Database = values.Database;
    connection.Charset = values.Charset;
    connection.UseCompression = values.UseCompression;
    TDbmConnectionProfileSSHSettings &ssh = connection.SSHSettings;
    ssh.HostName = values.SSHHostName;
    ssh.Port = static_cast<quint16>(values.SSHPort);
    ssh.UserName = values.SSHUserName;
    ssh.Authentication = values.SSHAuthentication;
    ssh.Password = values.SSHPassword;
    ssh.PrivateKey = FPrivateKey;
    return profile;
}

void TProfileDialogFrame::DoGetTitle(QString &title) const
{
    title = FIsCreate ? "New profile" : "Edit profile";
}

void TProfileDialogFrame::DoGetOkButtonTitle(QString &title) const
{
    title = FIsCreate ? "Create" : "Update";
}

void TProfileDialogFrame::TestConnection()
{
    TAppWorkers::Instance().TestConnection(CreateProfile().ConnectionProfile);
}

// On a connection of its own without the profile's database, so that a wrong one can be replaced.
void TProfileDialogFrame::SelectDatabase()
{
    TDbmConnectionProfile connection = CreateProfile().ConnectionProfile;
    connection.Database.clear();
    const auto manager = TDbmManager::Create();
    TWaitCursor::Show();
    manager->SetParams(connection);
    manager->Connect();
    QString name = vgProfile->Row("rowDatabase")->Text();
    if (TAppDialogs::SelectDatabase(*manager, name))
        vgProfile->Row("rowDatabase")->SetValue(name);
}

void TProfileDialogFrame::ImportPrivateKey()
{
    QString fileName;
    if (!TFileDialogs::Open(
            this,
            {.Folder = TAppConfig::ReadLastSSHPrivateKeysFolder(), .Filters = {"All files (*)"}},
            fileName))
        return;
    TAppConfig::WriteLastSSHPrivateKeysFolder(QFileInfo(fileName).path());
    QByteArray key;
    TFileUtils::ReadBinary(fileName, key);
    TSSHKeyInfo info;
    if (!TSSHUtils::TryGetKeyInfo(key, vgProfile->Row("rowSSHPassword")->Text(), info))
        throw EException(TFormat::Format(
            "\"%s\" cannot be read as a private key: it is damaged, of an unknown kind, or needs "
            "another password than the one above.",
            {fileName}));
    FPrivateKey = key;
    ShowPrivateKey();
}

void TProfileDialogFrame::ClearPrivateKey()
{
    FPrivateKey.clear();
    ShowPrivateKey();
}

void TProfileDialogFrame::ShowPrivateKey()
{
    QString text = FPrivateKey.isEmpty() ? QString() : TFormat::SizeText(FPrivateKey.size());
    TSSHKeyInfo info;
    if (!FPrivateKey.isEmpty() &&
        TSSHUtils::TryGetKeyInfo(FPrivateKey, vgProfile->Row("rowSSHPassword")->Text(), info))
        text = TFormat::Format("%s %d - %s", {TSSHUtils::GetAlgorithmName(info.Algorithm),
                                              info.BitCount, info.MD5FingerprintString});
    vgProfile->Row("rowSSHPrivateKey")->SetValue(text);
}
