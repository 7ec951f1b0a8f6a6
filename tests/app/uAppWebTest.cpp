#include "app/uAppConfig.h"
#include "app/uAppWebUtils.h"
#include "app/uCheckUpdates.h"
#include "app/uHttpUtils.h"
#include "jobs/uWorkerThreads.h"
#include "support/uException.h"
#include "support/uMainThread.h"
#include "uTestHttpServer.h"
#include "uTestLoop.h"

#include <QUrl>
#include <gtest/gtest.h>

namespace {

QByteArray Document(const char *version)
{
    return QByteArray("<update><version>") + version +
           "</version><display_version>Seven</display_version><url>http://x/</url></update>";
}

class TAppWebTest : public testing::Test
{
protected:
    void SetUp() override
    {
        TMainThread::Initialize();
        THttpUtils::Resume();
        TAppConfig::Config().New({});
    }
    void TearDown() override
    {
        TThreadUtils::WaitForAll();
        TAppConfig::Config().New({});
    }
    void UseHost(const QString &host)
    {
        TAppConfig::Config().SetValue(QString(), "web_host", host);
    }
    bool AwaitRequests(int count)
    {
        return TTestLoop::RunUntil([&] { return FServer.Requests.size() >= count; });
    }
    /// What a check with this answer tells; Status false and "-" when it tells nothing.
    TCheckUpdatesResult Check(const QString &address)
    {
        TCheckUpdatesResult told{false, "-", {}};
        bool done = false;
        TCheckUpdates check("6.8.3", address);
        check.SetOnAfterExecute([&](TCheckUpdates *, const TCheckUpdatesResult &result) {
            EXPECT_TRUE(TMainThread::IsMainThread());
            told = result;
            done = true;
        });
        check.Execute();
        EXPECT_TRUE(TTestLoop::RunUntil([&] { return done; }));
        return told;
    }
    TTestHttpServer FServer;
};

TEST_F(TAppWebTest, VersionsAreComparedByTheirNumber)
{
    const auto status = [](const QByteArray &document) {
        return TCheckUpdates::Read(document, "6.8.3").Status;
    };
    EXPECT_FALSE(status(Document("6.8.3")));
    EXPECT_TRUE(status(Document("6.9.0")));
    EXPECT_FALSE(status(Document("6.7.99")));
    EXPECT_FALSE(status(Document("6.9")));
    EXPECT_FALSE(status("rubbish <"));
    EXPECT_EQ(TCheckUpdates::Read(Document("9.0.0"), "6.8.3").Version, "Seven");
}

TEST_F(TAppWebTest, AnUpdateIsToldThroughRedirectsAndFailuresAreNot)
{
    FServer.Answers = {TTestHttpServer::Redirect("302 Found", "/elsewhere"),
                       TTestHttpServer::Ok(Document("7.0.0"))};
    const TCheckUpdatesResult result = Check("http://" + FServer.Host() + "/check-updates");
    EXPECT_TRUE(result.Status);
    EXPECT_EQ(result.URL, "http://x/");
    EXPECT_TRUE(FServer.Requests[0].startsWith("GET /check-updates "));
    EXPECT_TRUE(FServer.Requests[1].startsWith("GET /elsewhere "));
    FServer.Answers = {"HTTP/1.1 500 Broken\r\nContent-Length: 0\r\nConnection: close\r\n\r\n"};
    EXPECT_FALSE(Check("http://" + FServer.Host() + "/").Status);
    FServer.close();
    EXPECT_FALSE(Check("http://" + FServer.Host() + "/").Status) << "nobody listens";
}

TEST_F(TAppWebTest, ReportsAreFormsWithTheirFields)
{
    UseHost(FServer.Host());
    FServer.Answers = QByteArrayList(3, TTestHttpServer::Ok(""));
    TAppExecuteCounter::Increment();
    TAppExecuteCounter::Increment();
    TAppWebUtils::PostUserStatistics("6.8.3", 1920, 1080);
    ASSERT_TRUE(AwaitRequests(1));
    const QString first = FServer.Requests[0];
    EXPECT_TRUE(first.startsWith("POST /app/funcs/statistics/insert_user.php "));
    EXPECT_TRUE(first.contains("Content-Type: application/x-www-form-urlencoded"));
    QStringList keys;
    for (const QString &field : first.section("\r\n\r\n", 1).split('&'))
        keys += field.section('=', 0, 0);
    EXPECT_EQ(keys, (QStringList{"app_version", "os_version", "screen_width", "screen_height",
                                 "app_execute_counter", "app_first_executed", "os_language",
                                 "time_zone"}));
    EXPECT_TRUE(first.contains("app_execute_counter=2&app_first_executed=20"));
    TAppWebUtils::PostSessionStatistics("10.11", true);
    ASSERT_TRUE(AwaitRequests(2));
    EXPECT_TRUE(FServer.Requests[1].endsWith("server_version=10.11&is_tunneling=1"));
    TAppWebUtils::PostExceptionLog("6.8.3", "9", false, "a & b=ü", "stack\nline");
    ASSERT_TRUE(AwaitRequests(3));
    EXPECT_TRUE(
        FServer.Requests[2].contains("message=a%20%26%20b%3D%C3%BC&callstack=stack%0Aline"));
    TThreadUtils::WaitForAll();
}

TEST_F(TAppWebTest, NothingGoesOutWithoutAHost)
{
    TAppWebUtils::PostUserStatistics("6.8.3", 1, 1);
    TAppWebUtils::PostSessionStatistics("9", false);
    EXPECT_EQ(TAppWebUtils::Address("/check-updates"), "");
    bool told = false;
    TCheckUpdates check("6.8.3", TAppWebUtils::Address("/check-updates"));
    check.SetOnAfterExecute([&](TCheckUpdates *, const TCheckUpdatesResult &) { told = true; });
    check.Execute();
    TThreadUtils::WaitForAll();
    TTestLoop::Settle();
    EXPECT_FALSE(told);
    EXPECT_TRUE(FServer.Requests.isEmpty());
}

TEST_F(TAppWebTest, AStalledHostDoesNotHoldUpTheEnd)
{
    UseHost(FServer.Host());
    TAppWebUtils::PostSessionStatistics("9", false);
    bool told = false;
    TCheckUpdates check("6.8.3", TAppWebUtils::Address("/check-updates"));
    check.SetOnAfterExecute([&](TCheckUpdates *, const TCheckUpdatesResult &result) {
        told = true;
        EXPECT_FALSE(result.Status);
    });
    check.Execute();
    ASSERT_TRUE(AwaitRequests(2));
    THttpUtils::Abort();
    TThreadUtils::WaitForAll();
    EXPECT_TRUE(told);
    EXPECT_THROW(THttpUtils::Get("http://" + FServer.Host() + "/"), EException);
}

} // namespace
