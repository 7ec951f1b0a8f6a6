#include "app/uAppConfig.h"

#include "app/uAppPathUtils.h"
#include "support/uException.h"
#include "support/uFormat.h"
#include "support/uTextCoding.h"

namespace {

const QString LayoutGroup = QStringLiteral("layout");
const QString LegacyCodePage = QStringLiteral("legacy_code_page");

QString ReadFolder(const QString &name)
{
    return TAppConfig::Config().GetValue(QString(), name, QString(), true);
}

void WriteFolder(const QString &name, const QString &value)
{
    TAppConfig::Config().SetValue(QString(), name, value, true);
}

} // namespace

void TAppConfig::Open()
{
    Config().Open(TAppPathUtils::ConfigurationFile());
    try {
        TTextCoding::SetLegacyCodePage(ReadLegacyCodePage());
    } catch (const EException &e) {
        throw EException(TFormat::Format("Property \"%s\" of \"%s\": %s",
                                         {LegacyCodePage, Config().FileName(), e.Message()}));
    }
}

void TAppConfig::Close()
{
    Config().Close();
}

TConfig &TAppConfig::Config()
{
    static TConfig config;
    return config;
}

QString TAppConfig::ReadLastProfileFolder()
{
    return ReadFolder("last_profile_folder");
}

void TAppConfig::WriteLastProfileFolder(const QString &value)
{
    WriteFolder("last_profile_folder", value);
}

QString TAppConfig::ReadLastSSHPrivateKeysFolder()
{
    return ReadFolder("last_ssh_private_keys_folder");
}

void TAppConfig::WriteLastSSHPrivateKeysFolder(const QString &value)
{
    WriteFolder("last_ssh_private_keys_folder", value);
}

QString TAppConfig::ReadLastQueryFolder()
{
    return ReadFolder("last_query_folder");
}

void TAppConfig::WriteLastQueryFolder(const QString &value)
{
    WriteFolder("last_query_folder", value);
}

QString TAppConfig::ReadLastDumpFolder()
{
    return ReadFolder("last_dump_folder");
}

void TAppConfig::WriteLastDumpFolder(const QString &value)
{
    WriteFolder("last_dump_folder", value);
}

QString TAppConfig::ReadLegacyCodePage()
{
    return Config().GetValue(QString(), LegacyCodePage, QString());
}

void TAppConfig::WriteLegacyCodePage(const QString &value)
{
    Config().SetValue(QString(), LegacyCodePage, value);
}

QString TAppConfig::ReadLayout(const QString &key, const QString &def)
{
    return Config().GetValue(LayoutGroup, key, def);
}

void TAppConfig::WriteLayout(const QString &key, const QString &value)
{
    Config().SetValue(LayoutGroup, key, value);
}
