#include "app/uAppConfig.h"
#include "shell/uGuard.h"
#include "shell/uMainDataModule.h"
#include "shell/uWorkbenchFixture.h"
#include "support/uException.h"
#include "uTestHttpServer.h"

#include <QLabel>
#include <QUrl>

namespace {

class TReportsTest : public TWorkbenchTest
{
protected:
    TReportsTest()
    {
        FServer.Answer = [this](const QString &request) {
            const bool isCheck = request.startsWith("GET /check-updates ");
            return TTestHttpServer::Ok(isCheck ? FUpdate : QByteArray());
        };
    }

    /// The program starts once more, with this host in its configuration.
    void Restart(const QString &host)
    {
        CloseWindow();
        TAppConfig::Config().SetValue(QString(), "web_host", host);
        const TMainDataModule dataModule;
        OpenWindow();
    }
    QLabel &NewVersion() { return *Find<QLabel>(Window.get(), "lblNewVersion"); }
    QStringList Requests(const QString &path) const { return FServer.Requests.filter(path); }
    bool Await(const QString &path)
    {
        return TTestLoop::RunUntil([=, this] { return !Requests(path).isEmpty(); });
    }
    static QByteArray Update(const QByteArray &version)
    {
        return "<update><version>" + version + "</version></update>";
    }

    TTestHttpServer FServer;
    QByteArray FUpdate;
};

TEST_F(TReportsTest, ANewerVersionIsOfferedInTheMenuBar)
{
    EXPECT_FALSE(NewVersion().isVisible()) << "no host, no question";
    FUpdate = Update("99.0.0");
    Restart(FServer.Host());
    ASSERT_TRUE(TTestLoop::RunUntil([this] { return NewVersion().isVisible(); }));
    EXPECT_TRUE(NewVersion().text().contains("Get new version"));

    FServer.Requests.clear();
    FUpdate = Update("1.0.0");
    Restart(FServer.Host());
    ASSERT_TRUE(Await("/check-updates"));
    ASSERT_TRUE(Await("insert_user"));
    TTestLoop::Settle();
    EXPECT_FALSE(NewVersion().isVisible());
}

TEST_F(TReportsTest, EachEventIsReportedOnceWhenThereIsAHost)
{
    const auto cause = [this] {
        TTcpProxy proxy(Server().Host(), Server().Port());
        TDbmDatabaseList &databases = OpenWorkspaceBehind(proxy).Manager().Databases();
        proxy.Vanish();
        databases.RequestProcess();
        databases.Count(); // which cannot be read
        ExpectError("boom & co");
        TGuard::Run([] { throw EException("boom & co"); });
    };
    cause();
    EXPECT_TRUE(FServer.Requests.isEmpty());

    Restart(FServer.Host());
    cause();
    const QString version = "server_version=" + QUrl::toPercentEncoding(Value("SELECT VERSION()"));
    const char *const once[] = {"POST /app/funcs/statistics/insert_user.php ",
                                "POST /app/funcs/statistics/insert_session.php ",
                                "POST /app/funcs/logging/insert_exception.php ",
                                "GET /check-updates "};
    for (const char *path : once)
        ASSERT_TRUE(Await(path)) << path;
    ASSERT_TRUE(Await("POST /app/funcs/logging/insert_not_executed_command.php "));
    TTestLoop::Settle();
    for (const char *path : once)
        EXPECT_EQ(Requests(path).size(), 1) << path;
    EXPECT_TRUE(Requests("insert_session").first().contains(version + "&is_tunneling=0"));
    EXPECT_TRUE(Requests("insert_exception").first().contains("message=boom%20%26%20co&callstack"));
    EXPECT_TRUE(Requests("insert_not_executed").first().contains("&command="));
}

} // namespace
