#include "core/uDbmErrorNames.h"
#include "uCoreTools.h"

namespace {

TEST(TDacMySqlErrorText, IsCleanedOfTheStateInFront)
{
    const std::pair<const char *, const char *> texts[] = {
        {"#42000You have an error", "You have an error"},
        {"Table '#42000' is full", "Table '#42000' is full"},
        {"#HY000 text", "#HY000 text"},
    };
    for (const auto &[raw, clean] : texts) {
        const EDacMySqlError error(1064, raw, "SELECT");
        EXPECT_EQ(error.ErrorMessage().toStdString(), clean);
        EXPECT_EQ(error.Message().toStdString(), std::string("(1064) ") + clean);
    }
}

TEST(TDacMySqlErrorText, OnlyTwoCodesAreALostConnection)
{
    for (const int code : {2002, 2003, 2005, 2007, 2012, 2014, 2055, 1927, 0, -2006})
        EXPECT_FALSE(EDacMySqlError(code, "", "").IsLostConnection()) << code;
    for (const int code : {2006, 2013})
        EXPECT_TRUE(EDacMySqlError(code, "", "").IsLostConnection()) << code;
}

using TErrorNamesOnServer = TServerTest;

TEST_F(TErrorNamesOnServer, ShippedListNamesWhatTheServerRaises)
{
    TDbmErrorCodeParser::Initialize(QStringLiteral(KORVANE_SOURCE_DIR "/data/errors.xml"));
    Exec("CREATE TABLE t (a INT PRIMARY KEY)");
    TDacMySqlConnection connection;
    Aim(connection, Database());
    connection.Connect();
    const std::pair<const char *, const char *> errors[] = {
        {"SELEC 1", "ER_PARSE_ERROR"},
        {"SELECT * FROM missing", "ER_NO_SUCH_TABLE"},
        {"INSERT INTO t VALUES (1), (1)", "ER_DUP_ENTRY"},
        {"KILL CONNECTION_ID()", "ER_CONNECTION_KILLED"},
    };
    for (const auto &[sql, name] : errors) {
        const EDacMySqlError error = ErrorOf([&] { connection.Execute(sql); });
        EXPECT_EQ(TDbmErrorCodeParser::Parse(error.ErrorCode()).toStdString(), name)
            << error.what();
        EXPECT_EQ(error.CommandText().toStdString(), sql);
    }
    EXPECT_EQ(TDbmErrorCodeParser::Parse(2013).toStdString(), "CR_SERVER_LOST");
    EXPECT_TRUE(TDbmErrorCodeParser::Parse(99999).isEmpty());
}

} // namespace
