#include "uCoreTools.h"
#include "uTcpProxy.h"

#include <gmock/gmock.h>

namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

/// A connection whose events are written down in their order. Statements go through a proxy that
/// makes the faults.
class TDacConnection : public TServerTest
{
protected:
    TDacConnection() : FProxy(Server().Host(), Server().Port())
    {
        Aim(FConnection, Database());
        FConnection.SetPort(FProxy.Port());
        const auto note = [this](const char *name) {
            return [this, name](TDacMySqlConnection *) { FEvents.push_back(name); };
        };
        FConnection.SetOnInit(note("init"));
        FConnection.SetOnAfterConnect(note("connected"));
        FConnection.SetOnAfterDisconnect(note("disconnected"));
        FConnection.SetOnAfterExecute(note("after"));
        FConnection.SetOnBeforeExecute([this](TDacMySqlConnection *, const QString &text) {
            FEvents.push_back("before " + text.toStdString());
        });
        FConnection.SetOnExecuteError([this](TDacMySqlConnection *, const EDacMySqlError &e) {
            FEvents.push_back("error " + std::to_string(e.ErrorCode()));
        });
        FConnection.Connect();
        FQuery = FConnection.CreateDataset();
        FEvents.clear();
    }

    QString Ask(const QString &sql)
    {
        const auto query = FConnection.CreateDataset();
        FConnection.ExecuteDataset(sql, *query);
        return query->FieldAt(0).AsString();
    }
    void KillSession()
    {
        const QString id = Ask("SELECT CONNECTION_ID()");
        Exec("KILL " + id);
        while (Value("SELECT COUNT(*) FROM information_schema.processlist WHERE id = " + id) != "0")
            ;
        FEvents.clear();
    }

    std::vector<std::string> FEvents; // outlives the connection, whose end is an event too
    TTcpProxy FProxy;
    TDacMySqlConnection FConnection;
    std::unique_ptr<TMyQuery> FQuery;
};

TEST_F(TDacConnection, AStatementLiesBetweenItsEvents)
{
    FConnection.Execute("CREATE TABLE t (a INT)");
    FConnection.ExecuteDataset("SELECT * FROM t", *FQuery);
    EXPECT_THAT(FEvents, ElementsAre("before CREATE TABLE t (a INT)", "after",
                                     "before SELECT * FROM t", "after"));
    EXPECT_TRUE(FQuery->Active());
}

TEST_F(TDacConnection, AFailureIsToldOnceAndCarriesItsStatement)
{
    const EDacMySqlError error = ErrorOf([&] { FConnection.Execute("SELEC 1"); });
    EXPECT_EQ(error.ErrorCode(), 1064);
    EXPECT_EQ(error.CommandText().toStdString(), "SELEC 1");
    EXPECT_THAT(FEvents, ElementsAre("before SELEC 1", "error 1064", "after"));
}

TEST_F(TDacConnection, AChangeOfARowIsAStatementLikeOthers)
{
    Exec("CREATE TABLE t (a INT PRIMARY KEY)");
    Exec("INSERT INTO t VALUES (1), (2)");
    FConnection.ExecuteDataset("SELECT * FROM t", *FQuery);
    const std::string table = "`" + Database().Name().toStdString() + "`";
    FEvents.clear();
    FQuery->Edit();
    FQuery->FieldAt(0).SetValue(2);
    const EDacMySqlError error = ErrorOf([&] { FQuery->Post(); });
    EXPECT_EQ(error.Message(), "(1062) Duplicate entry '2' for key 'PRIMARY'");
    EXPECT_TRUE(error.CommandText().startsWith("UPDATE ")) << error.CommandText().toStdString();
    EXPECT_THAT(FEvents,
                ElementsAre("before SHOW KEYS FROM `t` FROM " + table, "after",
                            "before " + error.CommandText().toStdString(), "error 1062", "after"));
    EXPECT_EQ(FQuery->State(), dsEdit);
}

/// Each case with the session killed by another one, and with its wire cut.
class TDacConnectionLost : public TDacConnection, public ::testing::WithParamInterface<bool>
{
protected:
    void Lose()
    {
        if (GetParam()) {
            KillSession();
            return;
        }
        FProxy.Cut();
        FEvents.clear();
    }
};

TEST_P(TDacConnectionLost, AStatementIsRepeatedOnceWithItsEvents)
{
    Exec("CREATE TABLE t (a INT)");
    Lose();
    FConnection.Execute("INSERT INTO t VALUES (1)");
    EXPECT_EQ(Value("SELECT COUNT(*) FROM t").toStdString(), "1");
    EXPECT_THAT(FEvents, ElementsAre("before INSERT INTO t VALUES (1)", "disconnected",
                                     "before INSERT INTO t VALUES (1)", "init", "connected",
                                     "after", "after"));
}

TEST_P(TDacConnectionLost, ADatasetIsRepeatedWithWhatTheSessionHad)
{
    TTestDatabase other;
    FConnection.Execute("USE " + other.Name());
    FConnection.Execute("SET NAMES cp1251");
    FConnection.Execute("SET autocommit = 0");
    Lose();
    FConnection.ExecuteDataset("SELECT DATABASE(), @@character_set_client, @@autocommit, 'я', "
                               "HEX('я')",
                               *FQuery);
    EXPECT_EQ(FQuery->FieldAt(0).AsString(), other.Name());
    EXPECT_EQ(FQuery->FieldAt(1).AsString().toStdString(), "cp1251");
    EXPECT_EQ(FQuery->FieldAt(2).AsString().toStdString(), "0");
    EXPECT_EQ(FQuery->FieldAt(3).AsString(), QString::fromUtf8("я"));
    EXPECT_EQ(FQuery->FieldAt(4).AsString().toStdString(), "FF");
}

TEST_P(TDacConnectionLost, AStatementInATransactionIsNotRepeated)
{
    Exec("CREATE TABLE t (a INT) ENGINE=InnoDB");
    FConnection.Execute("START TRANSACTION");
    FConnection.Execute("INSERT INTO t VALUES (1)");
    Lose();
    const EDacMySqlError error = ErrorOf([&] { FConnection.Execute("INSERT INTO t VALUES (2)"); });
    EXPECT_TRUE(error.IsLostConnection()) << error.what();
    EXPECT_THAT(FEvents, ElementsAre("before INSERT INTO t VALUES (2)", "disconnected",
                                     "error " + std::to_string(error.ErrorCode()), "after"));
    EXPECT_EQ(Value("SELECT COUNT(*) FROM t").toStdString(), "0");

    FConnection.Execute("INSERT INTO t VALUES (3)");
    EXPECT_EQ(Value("SELECT GROUP_CONCAT(a) FROM t").toStdString(), "3");
}

TEST_P(TDacConnectionLost, WhatWouldBeDoneTwiceIsNotRepeated)
{
    Exec("CREATE TABLE t (a INT PRIMARY KEY)");
    FConnection.ExecuteDataset("SELECT * FROM t", *FQuery);
    FQuery->Append();
    FQuery->FieldAt(0).SetValue(1);
    const std::function<void()> operations[] = {
        [&] {
            FConnection.Stream("SELECT 1", {}, [](const TMyQuery::TRowView &) { return true; });
        },
        [&] { FQuery->Post(); },
    };
    for (const auto &operation : operations) {
        FConnection.Execute("SELECT 1"); // what was lost before is open again
        Lose();
        const EDacMySqlError error = ErrorOf(operation);
        EXPECT_TRUE(error.IsLostConnection()) << error.what();
        EXPECT_THAT(FEvents,
                    ElementsAre("before " + error.CommandText().toStdString(), "disconnected",
                                "error " + std::to_string(error.ErrorCode()), "after"));
    }
    FQuery->Post();
    EXPECT_EQ(Value("SELECT a FROM t"), "1");
}

INSTANTIATE_TEST_SUITE_P(Faults, TDacConnectionLost, ::testing::Bool(),
                         [](const auto &info) { return info.param ? "Killed" : "Cut"; });

TEST_F(TDacConnection, ASecondLossIsTheError)
{
    FProxy.CutAfter(0);
    const EDacMySqlError error = ErrorOf([&] { FConnection.ExecuteDataset("SELECT 1", *FQuery); });
    const int code = error.ErrorCode();
    EXPECT_NE(code, 0);
    EXPECT_EQ(error.CommandText().toStdString(), "SELECT 1");
    EXPECT_EQ(std::count(FEvents.begin(), FEvents.end(), "before SELECT 1"), 2);
    EXPECT_EQ(std::count(FEvents.begin(), FEvents.end(), "after"), 2);
    EXPECT_EQ(std::count(FEvents.begin(), FEvents.end(), "error " + std::to_string(code)), 1);
    EXPECT_FALSE(FQuery->Active());

    FProxy.Resume();
    EXPECT_EQ(Ask("SELECT 1").toStdString(), "1");
}

TEST_F(TDacConnection, ARunningStatementThatIsKilledIsNotRepeated)
{
    EXPECT_EQ(ErrorOf([&] { FConnection.Execute("KILL CONNECTION_ID()"); }).ErrorCode(), 1927);
    EXPECT_THAT(FEvents,
                ElementsAre("before KILL CONNECTION_ID()", "disconnected", "error 1927", "after"));
    EXPECT_EQ(Ask("SELECT 1").toStdString(), "1");
}

TEST_F(TDacConnection, ConnectEventsCanBeSilenced)
{
    FConnection.SetDisableConnectEvents(true);
    FConnection.Disconnect();
    FConnection.Connect();
    EXPECT_THAT(FEvents, IsEmpty());
    FConnection.SetDisableConnectEvents(false);
    FConnection.Disconnect();
    FConnection.Connect();
    EXPECT_THAT(FEvents, ElementsAre("disconnected", "init", "connected"));
}

} // namespace
