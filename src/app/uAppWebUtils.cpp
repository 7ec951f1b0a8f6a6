#include "app/uAppWebUtils.h"

#include "app/uAppConfig.h"
#include "app/uHttpUtils.h"
#include "jobs/uWorkerThreads.h"
#include "sql/uDbmSqlValueUtils.h"

#include <QLocale>
#include <QSysInfo>
#include <QTimeZone>

namespace {

const QString Statistics = QStringLiteral("statistics");

void Post(const QString &path, const QStringList &fields)
{
    const QString address = TAppWebUtils::Address(path);
    if (address.isEmpty())
        return;
    TThreadUtils::Start([address, fields] { THttpUtils::Post(address, fields); });
}

QString Flag(bool value)
{
    return value ? "1" : "0";
}

} // namespace

QString TOsUtils::GetOsVersion()
{
    return QSysInfo::prettyProductName();
}

QString TOsUtils::GetOsLanguage()
{
    const QLocale locale = QLocale::system();
    return QLocale::languageToString(locale.language()) + " (" +
           QLocale::territoryToString(locale.territory()) + ')';
}

QString TOsUtils::GetTimeZone()
{
    return QString::fromLatin1(QTimeZone::systemTimeZoneId());
}

int TAppRegistry::ReadAppExecuteCounter()
{
    return TAppConfig::Config().GetValue(Statistics, "app_execute_counter", 0);
}

void TAppRegistry::WriteAppExecuteCounter(int value)
{
    TAppConfig::Config().SetValue(Statistics, "app_execute_counter", value);
}

TDateTime TAppRegistry::ReadAppFirstExecuted()
{
    return TDateTime(TAppConfig::Config().GetValue(Statistics, "app_first_executed", 0.0));
}

void TAppRegistry::WriteAppFirstExecuted(TDateTime value)
{
    TAppConfig::Config().SetValue(Statistics, "app_first_executed", value.Days());
}

QString TAppRegistry::ReadWebHost()
{
    return TAppConfig::Config().GetValue(QString(), "web_host", QString()).trimmed();
}

void TAppExecuteCounter::Increment()
{
    TAppRegistry::WriteAppExecuteCounter(Read() + 1);
    if (TAppRegistry::ReadAppFirstExecuted().IsNull())
        TAppRegistry::WriteAppFirstExecuted(TDateTime::Now());
}

QString TAppWebUtils::Address(const QString &path)
{
    const QString host = TAppRegistry::ReadWebHost();
    return host.isEmpty() ? QString() : "http://" + host + path;
}

void TAppWebUtils::PostUserStatistics(const QString &appVersion, int screenWidth, int screenHeight)
{
    const QString first =
        TDbmSqlValueUtils::FormatDateTime(TAppRegistry::ReadAppFirstExecuted(), false);
    Post("/app/funcs/statistics/insert_user.php",
         {"app_version=" + appVersion, "os_version=" + TOsUtils::GetOsVersion(),
          "screen_width=" + QString::number(screenWidth),
          "screen_height=" + QString::number(screenHeight),
          "app_execute_counter=" + QString::number(TAppExecuteCounter::Read()),
          "app_first_executed=" + first, "os_language=" + TOsUtils::GetOsLanguage(),
          "time_zone=" + TOsUtils::GetTimeZone()});
}

void TAppWebUtils::PostSessionStatistics(const QString &serverVersion, bool isTunnelling)
{
    Post("/app/funcs/statistics/insert_session.php",
         {"server_version=" + serverVersion, "is_tunneling=" + Flag(isTunnelling)});
}

void TAppWebUtils::PostExceptionLog(const QString &appVersion, const QString &serverVersion,
                                    bool isTunnelling, const QString &message,
                                    const QString &callStack)
{
    Post("/app/funcs/logging/insert_exception.php",
         {"app_version=" + appVersion, "server_version=" + serverVersion,
          "is_tunneling=" + Flag(isTunnelling), "message=" + message, "callstack=" + callStack});
}

void TAppWebUtils::PostNotExecutedCommandLog(const QString &appVersion,
                                             const QString &serverVersion, bool isTunnelling,
                                             const QString &message, const QString &command)
{
    Post("/app/funcs/logging/insert_not_executed_command.php",
         {"app_version=" + appVersion, "server_version=" + serverVersion,
          "is_tunneling=" + Flag(isTunnelling), "message=" + message, "command=" + command});
}
