#include "core/uDbmScript.h"
#include "support/uFileUtils.h"
#include "uCoreTools.h"

#include <QTemporaryDir>

namespace {

class TScript : public TServerTest
{
protected:
    TScript() : FScript(FConnection)
    {
        Aim(FConnection, Database());
        FConnection.Connect();
        FScript.SetOnBeforeExecute([this](TDbmScript *) { FEvents << "before"; });
        FScript.SetOnAfterExecute([this](TDbmScript *) { FEvents << "after"; });
        FScript.SetOnProgress(
            [this](TDbmScript *, double percent) { FEvents << QString::number(percent); });
    }

    TDacMySqlConnection FConnection;
    TDbmScript FScript;
    QStringList FEvents;
};

TEST_F(TScript, RunsATextWithItsDelimiter)
{
    FScript.ExecuteFromText("CREATE TABLE t (a INT)$$\n"
                            "CREATE PROCEDURE p()\nBEGIN\n  INSERT INTO t VALUES (1);\n"
                            "  SELECT 5;\nEND$$\n"
                            "DELIMITER ;\nCALL p();\nINSERT INTO t VALUES (2)",
                            "$$");
    EXPECT_EQ(Value("SELECT GROUP_CONCAT(a ORDER BY a) FROM t").toStdString(), "1,2");
    EXPECT_EQ(FEvents.first().toStdString(), "before");
    EXPECT_EQ(FEvents.mid(FEvents.size() - 2), (QStringList{"100", "after"}));
}

TEST_F(TScript, RunsAFileWithItsTabs)
{
    QTemporaryDir folder;
    const QString name = folder.filePath("dump.sql");
    TFileUtils::WriteBinary(name, "CREATE TABLE t (a TEXT);\r\n"
                                  "INSERT INTO t VALUES ('a\tb\xD1\x8F');\r\n");
    FScript.ExecuteFromFile(name, ";");
    EXPECT_EQ(Value("SELECT HEX(a) FROM t").toStdString(), "610962D18F");
    EXPECT_EQ(FEvents.last().toStdString(), "after");
}

TEST_F(TScript, StopsAtTheFirstFailure)
{
    const EDacMySqlError error = ErrorOf([&] {
        FScript.ExecuteFromText("CREATE TABLE t (a INT);\nbad;\nINSERT INTO t VALUES (1);", ";");
    });
    EXPECT_EQ(error.CommandText().toStdString(), "bad");
    EXPECT_EQ(Value("SELECT COUNT(*) FROM t").toStdString(), "0");
    EXPECT_THROW(FScript.ExecuteFromFile("/nonexistent/dump.sql", ";"), EException);
}

TEST_F(TScript, ALineThatIsTooLongForTheServerIsItsErrorAndTheNextStatementWorks)
{
    QTemporaryDir folder;
    const QString name = folder.filePath("line.sql");
    TFileUtils::WriteBinary(name, "DO LENGTH('" + QByteArray(50 * 1024 * 1024, 'x') + "');");
    const EDacMySqlError error = ErrorOf([&] { FScript.ExecuteFromFile(name, ";"); });
    // Told by the server, unless it hangs up before its answer is read.
    EXPECT_TRUE(error.ErrorCode() == 1153 || error.IsLostConnection()) << error.what();
    EXPECT_EQ(error.CommandText().size(), 50 * 1024 * 1024 + 13);
    FConnection.Execute("DO 1");
}

} // namespace
