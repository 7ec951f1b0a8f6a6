#include "core/uDbmErrorNames.h"
#include "support/uFileUtils.h"
#include "uCoreTools.h"

#include <QTemporaryDir>
#include <gmock/gmock.h>

namespace {

TEST(TDacMySqlErrorText, IsCleanedOfTheStateInFront)
{
    const std::pair<const char *, const char *> texts[] = {
        {"#42000You have an error", "You have an error"},
        {"#28000", ""},
        {"Table '#42000' is full", "Table '#42000' is full"},
        {"#HY000 text", "#HY000 text"},
        {"one\n#42000two", "one\n#42000two"},
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

class TErrorNames : public ::testing::Test
{
protected:
    QString File(const QByteArray &xml)
    {
        const QString name = FFolder.filePath("names.xml");
        TFileUtils::WriteBinary(name, xml);
        return name;
    }
    QString NameOf(int code) const
    {
        const TDbmErrorNameItem *item = FList.Find(code);
        return item ? item->ErrorName : "none";
    }

    QTemporaryDir FFolder;
    TDbmErrorNameList FList;
};

TEST_F(TErrorNames, TakesTheErrorElementsOfTheRootInPlaceOfTheOldOnes)
{
    FList.LoadFromXml(File("<errors><error code='4' name='FOUR'/></errors>"));
    FList.LoadFromXml(File("<errors><error code='5' name='FIVE'/><error code='5' name='AGAIN'/>"
                           "<other code='6' name='SIX'/><error name='NO_CODE'/>"
                           "<group><error code='7' name='SEVEN'/></group></errors>"));
    EXPECT_EQ(NameOf(5).toStdString(), "FIVE");
    EXPECT_EQ(NameOf(0).toStdString(), "NO_CODE");
    EXPECT_EQ(FList.Count(), 2);
}

TEST_F(TErrorNames, ADamagedFileIsAnErrorWithItsPathAndLeavesTheListAlone)
{
    FList.LoadFromXml(File("<errors><error code='5' name='FIVE'/></errors>"));
    for (const QString &name : {File("<errors><error"), FFolder.filePath("missing.xml")}) {
        EXPECT_THAT(MessageOf([&] { FList.LoadFromXml(name); }),
                    testing::HasSubstr(name.toStdString()));
        EXPECT_EQ(NameOf(5).toStdString(), "FIVE");
    }
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
        {"SELECT missing FROM t", "ER_BAD_FIELD_ERROR"},
        {"USE no_such_database", "ER_BAD_DB_ERROR"},
        {"CREATE TABLE t (a INT)", "ER_TABLE_EXISTS_ERROR"},
        {"INSERT INTO t VALUES (1), (1)", "ER_DUP_ENTRY"},
        {"CALL missing()", "ER_SP_DOES_NOT_EXIST"},
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
