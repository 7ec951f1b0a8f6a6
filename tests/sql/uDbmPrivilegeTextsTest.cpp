#include "sql/uDbmLevelPrivileges.h"
#include "uFamilies.h"

#include <QSet>
#include <gtest/gtest.h>

namespace {

struct TFormattersOf
{
    explicit TFormattersOf(const char *version) { Features.SetParams(version); }
    TDbmServerFeatures Features;
    TDbmFormatters Formatters{&Features};
};

TDbmUserPrivilegesEntity Account(const TDbmPrivileges &privileges)
{
    TDbmUserPrivilegesEntity entity;
    entity.UserName = "u";
    entity.Privileges = privileges;
    entity.MaxUpdatesPerHour = 5;
    return entity;
}

const QString Limits = "WITH\r\n  MAX_QUERIES_PER_HOUR 0\r\n  MAX_UPDATES_PER_HOUR 5\r\n"
                       "  MAX_CONNECTIONS_PER_HOUR 0\r\n  MAX_USER_CONNECTIONS 0";

TEST(TAccountTexts, LimitsGoWithGrantOrApart)
{
    const TFormattersOf maria("10.11.6-MariaDB"), mysql("9.1.0");
    const auto &old = maria.Formatters.UsersPrivileges();
    const auto &now = mysql.Formatters.UsersPrivileges();
    const QString usage = "GRANT USAGE\r\nON\r\n  *.*\r\nTO\r\n  'u'@'%'";
    EXPECT_EQ(old.FormatGrant(Account({privGrantOption})), usage + "\r\n" + Limits);
    EXPECT_EQ(old.FormatLimits(Account({})), "");
    EXPECT_EQ(now.FormatGrant(Account({})), usage);
    EXPECT_EQ(now.FormatLimits(Account({})), "ALTER USER 'u'@'%'\r\n" + Limits);
    EXPECT_EQ(old.FormatSetPassword("u", "h", "p"),
              "SET PASSWORD FOR 'u'@'h' = PASSWORD('p');"); // deliberate: its own semicolon
}

TEST(TLevelTexts, ListOneWordALine)
{
    const TFormattersOf server("10.11.6-MariaDB");
    TDbmTablePrivilegesEntity table;
    table.User = "u";
    table.Database = "d";
    table.Table = "t";
    const auto &tables = server.Formatters.TablesPrivileges();
    EXPECT_EQ(tables.FormatCreate(table), "");
    table.Privs = {tpSelect, tpGrant};
    EXPECT_EQ(tables.FormatCreate(table), "GRANT \r\n  SELECT, \r\n  GRANT OPTION\r\nON\r\n"
                                          "  TABLE `d`.`t`\r\nTO\r\n  'u'@'%'\r\n");
    EXPECT_EQ(tables.FormatUpdate(table, {tpSelect, tpDrop}),
              "REVOKE \r\n  GRANT OPTION\r\nON\r\n  TABLE `d`.`t`\r\nFROM\r\n  'u'@'%';\r\n\r\n"
              "GRANT \r\n  DROP\r\nON\r\n  TABLE `d`.`t`\r\nTO\r\n  'u'@'%'\r\n");
    EXPECT_EQ(tables.FormatDelete(table), "REVOKE ALL PRIVILEGES ON TABLE `d`.`t` FROM 'u'@'%';\r\n"
                                          "REVOKE GRANT OPTION ON TABLE `d`.`t` FROM 'u'@'%';");

    TDbmRoutinePrivilegesEntity routine;
    routine.User = "u";
    routine.Host = "h";
    routine.Database = "d";
    routine.Routine = "r";
    routine.RoutineType = rtFunction;
    EXPECT_EQ(server.Formatters.RoutinesPrivileges().FormatDelete(routine),
              "REVOKE ALL PRIVILEGES ON FUNCTION `d`.`r` FROM 'u'@'h'");
}

// Both tables tell of the same privileges: one more is in the one that came later.
TEST(TPrivilegeTables, TellTheSameOfEachPrivilege)
{
    const TDbmServerFeatures none;
    const TDbmFormattersOwner<TDbmPrivilegesFormatters> owner(&none);
    const QStringList all =
        (*owner).FormatPrivileges(TDbmPrivileges::UpTo(privReferences)).split(", ");
    TFamilies families(TTestServer::Instance());
    QSet<QString> words;
    TDbmUserPrivs bits;
    for (const TDbmPrivilegeText &text : TDbmLevelPrivileges::UserPrivs()) {
        words.insert(text.Word);
        bits.Include(static_cast<TDbmUserPriv>(text.Bit));
        const auto parsed =
            families.Parse(QString("SELECT 'y' AS ") + text.Stored, [&](const TDataSet &row) {
                return (*owner).ParsePrivilegesFromFields(row);
            });
        EXPECT_EQ((*owner).FormatPrivileges(parsed), text.Word);
    }
    EXPECT_EQ(bits, TDbmUserPrivs::UpTo(upTrigger));
    EXPECT_EQ(QSet<QString>(all.begin(), all.end()) - words, QSet<QString>{"CREATE TABLESPACE"});
}

} // namespace
