#include "client/uMyConnection.h"

#include "client/uMySession.h"
#include "uClientTools.h"

#include <gmock/gmock.h>
#include <mysql.h>
#include <sys/socket.h>

namespace {

using namespace Qt::StringLiterals;

using TMyConnectionTest = TClientTest;

// Those that the layers above turn into texts of their own; the others are tested there.
TEST_F(TMyConnectionTest, WrongParametersAreErrorsAndTheNextTryWorks)
{
    int told = 0;
    FConnection.SetOnError(
        [&](TMyConnection *, const EMyError &e, bool &) { told = e.ErrorCode(); });
    FConnection.Server = "no.such.host.invalid";
    EXPECT_EQ(ErrorOf([&] { FConnection.Connect(); }).ErrorCode(), 2005);
    EXPECT_EQ(told, 2005);
    EXPECT_FALSE(FConnection.Connected());
    Aim(FConnection, Server(), Database().Name());
    FConnection.Options.UseUnicode = false;
    FConnection.Options.Charset = "klingon";
    EXPECT_EQ(ErrorOf([&] { FConnection.Connect(); }).ErrorCode(), 2019);
    EXPECT_EQ(told, 2019);
    Aim(FConnection, Server(), Database().Name());
    FConnection.Connect();
    EXPECT_TRUE(FConnection.Connected());
}

TEST_F(TMyConnectionTest, TakesTlsWhereItIsOfferedAndPlainWhereNot)
{
    const auto plain = TTestServer::Start({"--skip-ssl"});
    for (const TTestServer *server : {&Server(), plain.get()}) {
        TMyConnection connection;
        Aim(connection, *server);
        connection.ConnectionTimeout = 1;
        connection.Execute("DO SLEEP(1.6)"); // a statement may take longer than the handshake
        EXPECT_EQ(connection.TlsCipher().isEmpty(), server == plain.get());
    }
}

TEST_F(TMyConnectionTest, ATlsThatCannotBeSpokenGivesWayUnlessTheServerInsists)
{
    for (const bool insists : {false, true}) {
        const auto server =
            TTestServer::Start({"--tls-version=TLSv1.1",
                                QString("--require-secure-transport=") + (insists ? "ON" : "OFF")});
        TMyConnection connection;
        Aim(connection, *server);
        const std::string message = MessageOf([&] { connection.Connect(); });
        EXPECT_EQ(connection.Connected(), !insists) << message;
        EXPECT_EQ(message.find("TLS/SSL error") != std::string::npos, insists) << message;
        EXPECT_EQ(connection.TlsCipher(), QString());
    }
}

TEST_F(TMyConnectionTest, CompressesWhenAsked)
{
    FConnection.Options.Compress = true;
    EXPECT_EQ(Open("SHOW SESSION STATUS LIKE 'Compression'")->FieldAt(1).AsString(), "ON");
    EXPECT_EQ(Ask("SELECT LENGTH(REPEAT('x', 1000000))"), "1000000");
}

TEST_F(TMyConnectionTest, LogsInByAPluginOfTheServersChoice)
{
    SKIP_WITHOUT_MYSQL9();
    TMyConnection connection;
    Aim(connection, *TTestServer::MySql9());
    connection.Username = TTestServer::MySql9()->SecondUser();
    connection.Password = TTestServer::MySql9()->SecondPassword();
    connection.Connect();
    EXPECT_FALSE(connection.TlsCipher().isEmpty());
}

struct TCharset
{
    const char *Name; // as in the profile
    bool UseUnicode;
    const char *Session; // as the server tells it
    QString Text;
};

const TCharset Charsets[] = {
    {"", false, "utf8mb4", u"aя€😀"_s},          {"utf8mb4", true, "utf8mb4", u"aя€😀"_s},
    {"UTF8MB4", true, "utf8mb4", u"😀"_s},       {"utf8", true, "utf8mb3", u"aя€"_s},
    {"utf16", true, "utf8mb4", u"aя€😀"_s},      {"ucs2", false, "utf8mb4", u"я😀"_s},
    {"latin1", false, "latin1", u"é€\u0081"_s}, {"cp1251", false, "cp1251", u"Привет"_s},
    {"gbk", false, "gbk", u"運\\'銭"_s},        {"sjis", false, "sjis", u"ソ\\'ソ"_s},
    {"latin1", true, "utf8mb4", u"я"_s},        {"keybcs2", false, "keybcs2", u"Žluť ÷"_s},
};

TEST_F(TMyConnectionTest, TextGoesThroughEverySessionSetUnchanged)
{
    Exec("CREATE TABLE t (c TEXT CHARACTER SET utf8mb4)");
    for (const TCharset &charset : Charsets) {
        TMyConnection connection;
        Aim(connection, Server(), Database().Name());
        connection.Options.Charset = charset.Name;
        connection.Options.UseUnicode = charset.UseUnicode;
        const QString text = charset.Text;
        const QString quoted = QString(text).replace("\\", "\\\\").replace("'", "\\'");
        connection.Execute("TRUNCATE t");
        connection.Execute("INSERT INTO t VALUES ('" + quoted + "')");
        EXPECT_EQ(Value("SELECT c FROM t"), text) << charset.Name;
        TMyQuery query(&connection);
        query.SetSQL("SELECT c, @@character_set_client, '" + quoted + "' FROM t");
        query.Execute();
        EXPECT_EQ(query.FieldAt(0).AsString(), text) << charset.Name;
        EXPECT_EQ(query.FieldAt(1).AsString().toStdString(), charset.Session);
        EXPECT_EQ(query.FieldAt(2).AsString(), text) << charset.Name;
    }
}

TEST_F(TMyConnectionTest, ACharacterWithoutAPlaceInTheSetIsAnErrorAndNoQuestionMark)
{
    FConnection.Options.UseUnicode = false;
    FConnection.Options.Charset = "latin1";
    const EMyError error = ErrorOf([&] { FConnection.Execute("SELECT 'я'"); });
    EXPECT_EQ(error.ErrorCode(), 1300);
    EXPECT_EQ(error.Message(), (u"Invalid latin1 character string: 'я'"_s));
    EXPECT_EQ(Ask("SELECT 'é'"), "é");
}

TEST_F(TMyConnectionTest, FollowsASetThatAStatementChooses)
{
    FConnection.Execute("SET NAMES cp1251");
    EXPECT_EQ(FConnection.CurrentCharset(), QString("cp1251"));
    EXPECT_EQ(Ask("SELECT HEX('я')"), "FF");
    EXPECT_EQ(Ask("SELECT 'я' AS `ю`"), "я");
    EXPECT_EQ(Open("SELECT 1 AS `ю`")->FieldAt(0).FieldName(), QString("ю"));
    EXPECT_THAT(MessageOf([&] { FConnection.Execute("SELECT * FROM `таблица`"); }),
                ::testing::HasSubstr("таблица"));
}

} // namespace
