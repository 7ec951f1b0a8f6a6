#include "pages/query/uQueryPageFrame.h"
#include "shell/uWorkbenchFixture.h"
#include "widgets/uDataSetGrid.h"
#include "widgets/uDropDownCombo.h"
#include "widgets/uGridView.h"

#include <QFile>
#include <QLabel>
#include <QPlainTextEdit>
#include <sys/resource.h>
#include <thread>

namespace {

class TQueryPageTest : public TWorkbenchTest
{
protected:
    QString LabelText(const QString &name) { return Find<QLabel>(&QueryPage(), name)->text(); }
    QString ErrorText()
    {
        const auto *box = Find<QPlainTextEdit>(&QueryPage(), "memError");
        return box->isVisible() ? box->toPlainText() : QString();
    }
    static QStringList Rows(const QAbstractItemView *view)
    {
        return TGuiTools::Rows(*view->model());
    }
    QStringList ResultRows() { return Rows(Find<TDataSetGrid>(&QueryPage(), "grdData")); }
    void Goto(const char *action) { TGuiTools::Trigger(&QueryPage(), action); }
};

TEST_F(TQueryPageTest, StaysOnItsTabAndFillsTheOthersWhenTheyAreLookedAt)
{
    OpenWorkspace();
    NewQuery("");
    RunQuery("SELECT 1 AS a");
    Goto("actGotoLog");
    RunQuery("SELECT 2 AS a");
    EXPECT_TRUE(Find<TGridView>(&QueryPage(), "lvLog")->isVisible());
    Goto("actGotoResult");
    EXPECT_EQ(ResultRows(), QStringList("2"));
}

TEST_F(TQueryPageTest, AFailureStandsInTheErrorBox)
{
    OpenWorkspace();
    NewQuery("");
    RunQuery("SELECT 1");
    RunQuery("SELECT 1;\nSELECT * FROM no_such_db.t;\nSELECT 2;");
    EXPECT_TRUE(ErrorText().startsWith("ER_NO_SUCH_TABLE (1146) - ")) << ErrorText().toStdString();
    EXPECT_EQ(LabelText("labRows"), "Rows: -");
    EXPECT_TRUE(ResultRows().isEmpty());
    Goto("actGotoExplain");
    EXPECT_TRUE(Rows(Find<TGridView>(&QueryPage(), "lvExplain")).isEmpty());
    RunQuery("SELECT 3");
    EXPECT_EQ(ErrorText(), "");
}

TEST_F(TQueryPageTest, ARoutineThatCannotBeReplacedIsPutBack)
{
    Exec("CREATE PROCEDURE p (a enum('(')) SELECT a");
    OpenWorkspace().PageUtils().ShowRoutine(Database().Name(), "p", true);
    TTextEditor &editor = QueryEditor();
    const QString name = '`' + Database().Name() + "`.`p`";
    EXPECT_EQ(editor.Text().replace("\r\n", "\n"), "DROP PROCEDURE IF EXISTS " + name +
                                                       ";\n\nDELIMITER $$\n\nCREATE PROCEDURE " +
                                                       name + " (a enum('('))\nSELECT a");
    RunQuery(editor.Text() + " FROM");
    EXPECT_TRUE(ErrorText().startsWith("ER_PARSE_ERROR (1064) - ")) << ErrorText().toStdString();
    EXPECT_TRUE(ErrorText().endsWith("The old routine \"p\" was put back."));
    EXPECT_EQ(Value("SELECT routine_definition FROM information_schema.routines WHERE "
                    "routine_schema = DATABASE()"),
              "SELECT a");
    RunQuery(editor.Text().remove(" FROM") + " + 1 AS b");
    EXPECT_EQ(ErrorText(), "");
}

TEST_F(TQueryPageTest, UseChoosesTheDatabaseOfEachRun)
{
    Exec("CREATE TABLE t (a INT); ");
    TTcpProxy proxy(Server().Host(), Server().Port());
    OpenWorkspaceBehind(proxy);
    TQueryPageFrame &page = NewQuery("");
    auto *use = Find<TDropDownCombo>(&page, "cbxUse");
    EXPECT_EQ(use->itemText(0), "(none)");
    EXPECT_EQ(page.GetUsedDatabaseName(), "");
    RunQuery("SELECT DATABASE()");
    EXPECT_EQ(ResultRows(), QStringList("NULL"));
    use->setCurrentText(Database().Name());
    RunQuery("SELECT COUNT(*), DATABASE() FROM t");
    EXPECT_EQ(ResultRows(), QStringList("0|" + Database().Name()));

    // Another session drops and makes databases: the list follows when it is opened.
    const QString other = Database().Name() + "_b";
    Server().Exec("CREATE DATABASE " + other);
    use->showPopup();
    EXPECT_GE(use->findText(other), 0);
    EXPECT_EQ(use->currentText(), Database().Name()) << "the choice stays";
    use->hidePopup();
    Server().Exec("DROP DATABASE " + other);

    // A list that cannot be read takes no choice away.
    proxy.Vanish();
    use->showPopup();
    use->hidePopup();
    EXPECT_EQ(page.GetUsedDatabaseName(), Database().Name());
    Pages().ShowQueryFromText("", Database().Name(), 0, true);
    EXPECT_EQ(QueryPage().GetUsedDatabaseName(), Database().Name());
    proxy.Resume();
    RunQuery("SELECT DATABASE()");
    EXPECT_EQ(ResultRows(), QStringList(Database().Name()));
}

/// How a connection is lost under a query whose repeat fails as well, and what is said.
struct TLossRow
{
    const char *Name;
    const char *Query;
    void (*Lose)(TTestServer &server, TTcpProxy &proxy);
    const char *Error; // a regular expression
    void (*Mend)(TTestServer &server, TTcpProxy &proxy);
};

// A port of a dying server may take one connection more and reset it, so it is closed first.
void KillWhileItSleeps(TTestServer &server, TTcpProxy &proxy)
{
    const QString sleeping =
        "SELECT COUNT(*) FROM information_schema.processlist WHERE info LIKE 'SELECT SLEEP%'";
    while (server.Value(sleeping) == "0")
        ;
    proxy.Refuse();
    server.Kill();
}

const TLossRow Losses[] = {
    {"TheServerDies", "SELECT SLEEP(60)", KillWhileItSleeps,
     "^CR_CONNECTION_ERROR \\(2002\\) - Can't connect to server on '127\\.0\\.0\\.1' \\(11[15]\\)$",
     [](TTestServer &server, TTcpProxy &proxy) {
         server.Restart();
         proxy.Resume();
     }},
    {"TheAnswerIsCutOff", "SELECT seq, REPEAT('x', 100) FROM mysql.seq_1_to_100000",
     [](TTestServer &, TTcpProxy &proxy) { proxy.CutAfter(1000000); },
     "^CR_SERVER_LOST \\(2013\\) - Lost connection to server during query$",
     [](TTestServer &, TTcpProxy &proxy) { proxy.Resume(); }},
};

TEST_F(TQueryPageTest, AServerThatGoesUnderAQueryIsToldAndTheNextRunWorks)
{
    const auto server = TTestServer::Start();
    for (const TLossRow &row : Losses) {
        TTcpProxy proxy(server->Host(), server->Port());
        OpenWorkspaceBehind(proxy);
        NewQuery("");
        RunQuery("SELECT 1");
        const bool meanwhile = QString(row.Query).contains("SLEEP");
        std::thread loss;
        if (meanwhile)
            loss = std::thread([&] { row.Lose(*server, proxy); });
        else
            row.Lose(*server, proxy);
        RunQuery(row.Query);
        if (meanwhile)
            loss.join();
        EXPECT_TRUE(QRegularExpression(row.Error).match(ErrorText()).hasMatch())
            << row.Name << ": " << ErrorText().toStdString();
        EXPECT_EQ(LabelText("labRows"), "Rows: -") << row.Name;
        EXPECT_TRUE(ResultRows().isEmpty()) << row.Name;
        row.Mend(*server, proxy);
        RunQuery("SELECT 5");
        EXPECT_EQ(ResultRows(), QStringList("5")) << row.Name << ErrorText().toStdString();
        CloseWorkspace();
    }
}

#if !defined(__SANITIZE_ADDRESS__) // which reserves more memory than any limit allows
TEST_F(TQueryPageTest, AResultLargerThanMemoryIsAnErrorAndThePageGoesOn)
{
    OpenWorkspace();
    NewQuery("");
    RunQuery("SELECT REPEAT('x', 1000) FROM mysql.seq_1_to_10");
    {
        constexpr rlim_t Spare = 64 << 20;
        QFile sizes("/proc/self/statm");
        ASSERT_TRUE(sizes.open(QIODevice::ReadOnly));
        const QByteArray pages = sizes.readAll().split(' ').first();
        rlimit unlimited = {};
        getrlimit(RLIMIT_AS, &unlimited);
        const rlimit tight = {pages.toULongLong() * 4096 + Spare, unlimited.rlim_max};
        setrlimit(RLIMIT_AS, &tight);
        RunQuery("SELECT REPEAT('x', 1000) FROM mysql.seq_1_to_300000");
        setrlimit(RLIMIT_AS, &unlimited);
    }
    EXPECT_TRUE(QRegularExpression("^CR_OUT_OF_MEMORY \\(2008\\) - Client run out of memory: the "
                                   "result is larger than the memory that is free \\(.+ read in .+ "
                                   "rows\\)\\.$")
                    .match(ErrorText())
                    .hasMatch())
        << ErrorText().toStdString();
    EXPECT_EQ(LabelText("labRows"), "Rows: -");
    RunQuery("SELECT 5");
    EXPECT_EQ(ResultRows(), QStringList("5")) << ErrorText().toStdString();
}
#endif

TEST_F(TQueryPageTest, OddAnswersAreShown)
{
    OpenWorkspace();
    NewQuery("");
    RunQuery("SELECT '' AS ``, 1 AS a, 2 AS A, 3 AS a");
    EXPECT_EQ(ResultRows(), QStringList("|1|2|3"));
    QStringList columns;
    for (int i = 1; i <= 4096; ++i)
        columns += QString::number(i);
    RunQuery("SELECT " + columns.join(','));
    EXPECT_EQ(Find<TDataSetGrid>(&QueryPage(), "grdData")->model()->columnCount(), 4096);
    RunQuery("");
    EXPECT_EQ(LabelText("labRows"), "Rows: -");
    EXPECT_NE(LabelText("labTime"), "Time: -");
}

} // namespace
