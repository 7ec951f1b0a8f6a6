#include "core/uDbmErrorNames.h"
#include "core/uDbmProvider.h"
#include "support/uFileUtils.h"
#include "uCoreTools.h"
#include "uServerProfile.h"
#include "uTcpProxy.h"

#include <QTemporaryDir>

namespace {

class TCommand : public TServerTest
{
protected:
    TCommand()
    {
        TDbmConnectionProfile profile = ServerProfile(Server());
        profile.Database = Database().Name();
        FProvider.SetParams(profile);
        TDbmErrorCodeParser::Initialize(QStringLiteral(KORVANE_SOURCE_DIR "/data/errors.xml"));
    }

    TDbmCommand &Command() { return FProvider.Command(); }
    static std::string FirstCell(TDataSet *query)
    {
        return query ? query->FieldAt(0).AsString().toStdString() : "no rows";
    }
    /// "text = status" of each item.
    static QStringList Items(const TDbmCommandLog &log)
    {
        QStringList items;
        log.ForEach([&](TDbmCommandLogItem &item) {
            items << item.Query() + " = " + item.GetStatusDisplayString();
        });
        return items;
    }
    static int CodeOf(const std::function<void()> &run) { return ErrorOf(run).ErrorCode(); }

    TDbmProvider FProvider;
};

TEST_F(TCommand, GivesTheRowsAndThePlanOfTheLastStatementWithRows)
{
    Exec("CREATE TABLE t (a INT)");
    const struct
    {
        const char *Sql, *FirstCell;
        bool HasPlan;
    } queries[] = {
        {"", "no rows", false},
        {"SELECT 1;\nSELECT 2;", "2", true},
        {"SELECT 1;\nSET @a = 1;", "1", true},
        {"SELECT 1;\nSHOW DATABASES LIKE 'mysql';", "mysql", false},
        {"UPDATE t SET a = 2;", "no rows", false},
        {"seLECT 3;", "3", true},
        {"/* c */ SELECT 3;", "3", false},
        {"SELECT a FROM t WHERE FALSE;", "", true},
    };
    for (const auto &query : queries) {
        const auto result = Command().ExecQuery(query.Sql, {qoExplain});
        EXPECT_EQ(FirstCell(result.Query), query.FirstCell) << query.Sql;
        EXPECT_EQ(result.Explain != nullptr, query.HasPlan) << query.Sql;
        EXPECT_EQ(result.Log, nullptr) << query.Sql;
        EXPECT_FALSE(result.DefQuery) << query.Sql;
    }
    const auto plan = Command().ExecQuery("SELECT * FROM t", {qoExplain}).Explain;
    EXPECT_EQ(plan->FieldByName("table").AsString().toStdString(), "t");
    EXPECT_EQ(Command().ExecQuery("SELECT 1").Explain, nullptr);
}

TEST_F(TCommand, FiresItsEventsAroundEveryRun)
{
    QStringList events;
    Command().SetOnScriptAfterExecute([&](TDbmCommand *) { events << "after"; });
    Command().SetOnProgress(
        [&](TDbmCommand *, double percent) { events << QString::number(percent); });
    EXPECT_EQ(Command().ExecQuery("").ExecTime, 0);
    Command().ExecScript("DO 1;\nDO 2;");
    EXPECT_EQ(CodeOf([&] { Command().ExecScript("bad;\nDO 1;"); }), 1064);
    EXPECT_EQ(events, (QStringList{"after", "50", "100", "after", "after"}));
}

TEST_F(TCommand, AFailingStatementEndsTheRunBehindWhatWasDone)
{
    Exec("CREATE TABLE t (a INT)");
    EXPECT_EQ(CodeOf([&] {
                  Command().ExecScript("INSERT INTO t VALUES (1);\nINSERT INTO no VALUES (1);\n"
                                       "INSERT INTO t VALUES (2);");
              }),
              1146);
    EXPECT_EQ(Value("SELECT GROUP_CONCAT(a) FROM t").toStdString(), "1");
    EXPECT_EQ(Items(Command().Log()),
              (QStringList{"INSERT INTO t VALUES (1) = OK",
                           "INSERT INTO no VALUES (1) = 1146 (ER_NO_SUCH_TABLE)"}));
}

TEST_F(TCommand, ASkippedFailureIsOnlySeenInTheCommandsLog)
{
    const auto result = Command().ExecQuery("SELECT 1;\nbad;\nSET @a = 1;", {qoSkipErrors, qoLog});
    EXPECT_EQ(FirstCell(result.Query), "1");
    EXPECT_EQ(Items(*result.Log), (QStringList{"SELECT 1 = OK", "bad = OK", "SET @a = 1 = OK"}));
    EXPECT_EQ(Items(Command().Log()),
              (QStringList{"SELECT 1 = OK", "bad = 1064 (ER_PARSE_ERROR)", "SET @a = 1 = OK"}));
    Command().ExecScript("bad", {soSkipErrors});
    EXPECT_EQ(Command().Log().Count(), 4);
}

TEST_F(TCommand, AFailingPlanFailsTheStatement)
{
    // Who may read a view but not what it is made of gets its rows and no plan.
    const QString user = "u" + Database().Name().right(16);
    Exec("CREATE TABLE t (a INT)");
    Exec("CREATE VIEW v AS SELECT * FROM t");
    Exec("CREATE USER " + user + "@'%' IDENTIFIED BY ''");
    Exec("GRANT SELECT ON v TO " + user + "@'%'");
    TDbmConnectionProfile profile = FProvider.ConnectionProfile();
    profile.UserName = user;
    FProvider.SetParams(profile);

    EXPECT_TRUE(Command().ExecQuery("SELECT * FROM v").Query->Active());
    EXPECT_EQ(CodeOf([&] { Command().ExecQuery("SELECT * FROM v", {qoExplain}); }), 1345);
    EXPECT_EQ(Command().ExecQuery("SELECT * FROM v", {qoExplain, qoSkipErrors}).Query, nullptr);
    Exec("DROP USER " + user + "@'%'");
    EXPECT_EQ(Items(Command().Log()),
              (QStringList{"SELECT * FROM v = OK", "SELECT * FROM v = 1345 (ER_VIEW_NO_EXPLAIN)",
                           "SELECT * FROM v = 1345 (ER_VIEW_NO_EXPLAIN)"}));
}

TEST_F(TCommand, RowsLandInTheCallersDataset)
{
    const auto mine = FProvider.Connection().CreateDataset();
    {
        auto result = Command().ExecQuery("SELECT 5;\nSELECT 6;", {qoExplain}, mine.get());
        EXPECT_EQ(result.Query, mine.get());
        EXPECT_TRUE(result.DefQuery);
        EXPECT_NE(result.Explain, nullptr);
        result.Release();
        EXPECT_EQ(result.Query, nullptr);
        EXPECT_EQ(result.Explain, nullptr);
    }
    EXPECT_TRUE(mine->Active());
    EXPECT_EQ(FirstCell(mine.get()), "6");
}

TEST_F(TCommand, ARepeatedStatementIsLoggedOnce)
{
    TTcpProxy proxy(Server().Host(), Server().Port());
    FProvider.SetParams(ServerProfile(Server(), proxy.Port()));
    Command().ExecScript("DO 1");
    proxy.Cut();
    EXPECT_EQ(FirstCell(Command().ExecQuery("SELECT 2").Query), "2");
    EXPECT_EQ(Items(Command().Log()), (QStringList{"DO 1 = OK", "SELECT 2 = OK"}));
}

TEST_F(TCommand, ItsLogSettlesAtOneAboveItsLimit)
{
    QString script;
    for (int i = 0; i < 300; ++i)
        script += QString("DO %1;\n").arg(i);
    EXPECT_EQ(Command().ExecQuery(script, {qoLog}).Log->Count(), 300); // the run's own has none
    const QStringList items = Items(Command().Log());
    EXPECT_EQ(items.size(), 257);
    EXPECT_EQ(items.first().toStdString(), "DO 43 = OK");
    EXPECT_EQ(items.last().toStdString(), "DO 299 = OK");
    Command().Log().Clear();
    EXPECT_EQ(Command().Log().Count(), 0);
}

TEST_F(TCommand, LogsKeepTheBeginningOfALongStatement)
{
    const QString sql = "DO '" + QString(3000, 'x') + "'";
    Command().ExecScript(sql);
    Command().ExecScript("DO\r\n   1,\r\n   2");
    EXPECT_EQ(Items(Command().Log()), (QStringList{sql.left(512) + " = OK", "DO 1, 2 = OK"}));
}

TEST_F(TCommand, RunsFilesWithTheirTabs)
{
    QTemporaryDir folder;
    const QString name = folder.filePath("script.sql");
    TFileUtils::WriteBinary(name, "\xEF\xBB\xBF"
                                  "CREATE TABLE t (a VARCHAR(9));\n"
                                  "INSERT INTO t VALUES ('\xD1\x8F\tb');\n"
                                  "SELECT a FROM t;");
    const auto result = Command().ExecQueryFromFile(name, {qoLog});
    EXPECT_EQ(FirstCell(result.Query), "я\tb");
    EXPECT_EQ(result.Log->Count(), 3);
    EXPECT_EQ(CodeOf([&] { Command().ExecScriptFromFile(name); }), 1050);
    EXPECT_THROW(Command().ExecScriptFromFile(folder.filePath("missing.sql")), EException);
    EXPECT_EQ(Command().Log().Count(), 4);
}

} // namespace
