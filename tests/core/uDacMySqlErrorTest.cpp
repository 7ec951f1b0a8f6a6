#include "core/uDacMySqlConnection.h"
#include "core/uDbmErrorNames.h"
#include "support/uFileUtils.h"
#include "uTestDatabase.h"

#include <QTemporaryDir>

namespace {

/// The list that is shipped with the program.
QString ShippedList()
{
    return QStringLiteral(KORVANE_SOURCE_DIR "/data/errors.xml");
}

struct TTextRow
{
    const char *Raw;
    const char *Clean;
};

const TTextRow Texts[] = {
    {"#42000You have an error", "You have an error"},
    {"#28000", ""},
    {"You have an error", "You have an error"},
    {"Table '#42000' is full", "Table '#42000' is full"},
    {"#HY000 text", "#HY000 text"},
    {"one\n#42000two", "one\n#42000two"},
};

TEST(TDacMySqlErrorText, IsCleanedOfTheStateInFront)
{
    for (const TTextRow &row : Texts) {
        const EDacMySqlError error(1064, row.Raw, "SELECT");
        EXPECT_EQ(error.ErrorMessage().toStdString(), row.Clean);
        EXPECT_EQ(error.Message().toStdString(), std::string("(1064) ") + row.Clean);

        const EDacMySqlError copy(error);
        EXPECT_EQ(copy.Message(), error.Message());
        EXPECT_EQ(copy.CommandText().toStdString(), "SELECT");
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

TEST_F(TErrorNames, TakesTheErrorElementsOfTheRoot)
{
    FList.LoadFromXml(File("<errors><error code='5' name='FIVE'/><error code='5' name='AGAIN'/>"
                           "<other code='6' name='SIX'/><error name='NO_CODE'/>"
                           "<group><error code='7' name='SEVEN'/></group></errors>"));
    EXPECT_EQ(NameOf(5).toStdString(), "FIVE");
    EXPECT_EQ(NameOf(0).toStdString(), "NO_CODE");
    EXPECT_EQ(FList.Count(), 2);
}

TEST_F(TErrorNames, LoadingAgainReplacesTheList)
{
    FList.LoadFromXml(File("<errors><error code='5' name='FIVE'/></errors>"));
    FList.LoadFromXml(File("<errors><error code='6' name='SIX'/></errors>"));
    EXPECT_EQ(FList.Find(5), nullptr);
    EXPECT_EQ(NameOf(6).toStdString(), "SIX");
}

TEST_F(TErrorNames, ADamagedFileIsAnErrorWithItsPathAndLeavesTheListAlone)
{
    FList.LoadFromXml(File("<errors><error code='5' name='FIVE'/></errors>"));
    for (const QString &name : {File("<errors><error"), FFolder.filePath("missing.xml")}) {
        try {
            FList.LoadFromXml(name);
            ADD_FAILURE() << name.toStdString();
        } catch (const EException &e) {
            EXPECT_TRUE(e.Message().contains(name)) << e.what();
        }
        EXPECT_EQ(NameOf(5).toStdString(), "FIVE");
    }
}

struct TServerErrorRow
{
    const char *Sql;
    const char *Name;
};

const TServerErrorRow ServerErrors[] = {
    {"SELEC 1", "ER_PARSE_ERROR"},
    {"SELECT * FROM missing", "ER_NO_SUCH_TABLE"},
    {"SELECT missing FROM t", "ER_BAD_FIELD_ERROR"},
    {"USE no_such_database", "ER_BAD_DB_ERROR"},
    {"CREATE TABLE t (a INT)", "ER_TABLE_EXISTS_ERROR"},
    {"INSERT INTO t VALUES (1), (1)", "ER_DUP_ENTRY"},
    {"CALL missing()", "ER_SP_DOES_NOT_EXIST"},
    {"KILL CONNECTION_ID()", "ER_CONNECTION_KILLED"},
};

class TErrorNamesOnServer : public TServerTest
{};

TEST_F(TErrorNamesOnServer, ShippedListNamesWhatTheServerRaises)
{
    TDbmErrorCodeParser::Initialize(ShippedList());
    Exec("CREATE TABLE t (a INT PRIMARY KEY)");
    TDacMySqlConnection connection;
    connection.SetHost(Server().Host());
    connection.SetPort(Server().Port());
    connection.SetUserName(Server().User());
    connection.SetDatabase(Database().Name());
    connection.Connect();
    for (const TServerErrorRow &row : ServerErrors) {
        try {
            connection.Execute(row.Sql);
            ADD_FAILURE() << row.Sql;
        } catch (const EDacMySqlError &e) {
            EXPECT_EQ(TDbmErrorCodeParser::Parse(e.ErrorCode()).toStdString(), row.Name)
                << e.what();
            EXPECT_EQ(e.CommandText().toStdString(), row.Sql);
        }
    }
    EXPECT_EQ(TDbmErrorCodeParser::Parse(2013).toStdString(), "CR_SERVER_LOST");
    EXPECT_TRUE(TDbmErrorCodeParser::Parse(99999).isEmpty());
}

} // namespace
